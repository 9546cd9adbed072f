// Markup for rich-text boxes.
// SPDX-License-Identifier: MIT

#include "ks_string.h"

#include <gtest/gtest.h>

using namespace kst::str;

TEST(HtmlEscape, replaces_five_characters_and_no_other)
{
    EXPECT_EQ(HtmlEscape("<a href=\"x\">Tom & Jerry's</a>\n"),
              "&lt;a href=&quot;x&quot;&gt;Tom &amp; Jerry&apos;s&lt;/a&gt;\n");
    EXPECT_EQ(HtmlEscape("&lt;"), "&amp;lt;");
    EXPECT_EQ(HtmlEscape("\xC3\xA4 \t%{}/"), "\xC3\xA4 \t%{}/");
}

TEST(QuoteHtml, shows_a_name_as_it_is_in_rich_text)
{
    EXPECT_EQ(QuoteHtml("<b>Tom & Jerry</b>"), "\xE2\x80\x9C&lt;b&gt;Tom &amp; Jerry&lt;/b&gt;\xE2\x80\x9D");
    EXPECT_EQ(QuoteHtml(QStringLiteral("A<B")), QuoteHtml(std::string("A<B")));
}

TEST(HtmlEscape, takes_every_kind_of_text)
{
    EXPECT_EQ(HtmlEscape(ToQ("a<b")), "a&lt;b");
    EXPECT_EQ(HtmlEscape(std::string("a<b")), "a&lt;b");
    EXPECT_EQ(HtmlEscapeQ("a<b"), ToQ("a&lt;b"));
}

TEST(HtmlEscape, joins_a_list_with_a_separator_that_stays)
{
    EXPECT_EQ(HtmlEscape("<br>", QStringList() << ToQ("a<") << ToQ("b")), "a&lt;<br>b");
    EXPECT_EQ(HtmlEscape("<br>", QStringList()), "");
}

TEST(Markup, makes_a_table_row_with_a_bold_label_and_a_colon)
{
    EXPECT_EQ(
        MakeTableRow("Name", "Vera"),
        "\n<tr>\n<td style=\"padding-left: 3px; padding-right: 3px; padding-top: 1px;\"><b>Name:</b></td>"
        "\n<td style=\"padding-left: 3px; padding-right: 3px; padding-top: 1px;\">Vera</td>\n</tr>");
}

TEST(Markup, makes_a_paragraph_with_or_without_a_font_size)
{
    EXPECT_EQ(MakePara("text"), "<p>text</p>");
    EXPECT_EQ(MakePara("text", "12pt"), "<p style='font-size:12pt'>text</p>");
    EXPECT_EQ(MakeParaQ("text", "12pt"), ToQ("<p style='font-size:12pt'>text</p>"));
    EXPECT_EQ(MakeParaQ("text"), ToQ("<p>text</p>"));
}

TEST(Markup, makes_a_warning_between_leading_and_trailing_text)
{
    EXPECT_EQ(MakeWarningElement("span", "color: red;", "Beware: ", "cut", "<br>"),
              "<span style=\"color: red;\">Beware: cut</span><br>");
    EXPECT_EQ(MakeWarningElementQ("p", "", "", "cut", ""), ToQ("<p style=\"\">cut</p>"));
}

TEST(Sentences, begin_with_a_capital_and_end_with_a_full_stop)
{
    EXPECT_EQ(MakeSentence("failed to get it"), "Failed to get it.");
    EXPECT_EQ(MakeSentence("x"), "X.");
    EXPECT_EQ(MakeSentence("9 lives"), "9 lives.");
    EXPECT_EQ(MakeSentence(""), ".");
}

TEST(Sentences, keep_their_own_end)
{
    EXPECT_EQ(MakeSentence("Stop."), "Stop.");
    EXPECT_EQ(MakeSentence("stop!"), "Stop!");
    EXPECT_EQ(MakeSentence("Really?"), "Really?");
    EXPECT_EQ(MakeSentence("<b>x</b>"), "<b>x</b>");
    EXPECT_EQ(MakeSentence("see: "), "See: .");
}
