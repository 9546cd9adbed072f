// UTF-8 string functions.
// SPDX-License-Identifier: MIT

#include "shared/ks_help.h"
#include "shared/ks_string.h"

#include <gtest/gtest.h>

#include <set>

using namespace kst::str;
using Strings = std::vector<std::string>;

TEST(Strings, convert_to_the_toolkit_and_back_with_embedded_zeros)
{
    const std::string text("\xE2\x80\x9C"
                           "a\0b",
                           6);
    EXPECT_EQ(ToQ(text).size(), 4);
    EXPECT_EQ(ToStd(ToQ(text)), text);
    EXPECT_EQ(ToStd(QStringList() << ToQ("a") << ToQ("b")), (Strings{"a", "b"}));
}

TEST(Strings, split_passes_an_empty_piece_only_at_the_end)
{
    Strings pieces;
    EXPECT_TRUE(ForEachSubstring("a,,b,", ",", [&](std::string_view piece) {
        pieces.emplace_back(piece);
        return true;
    }));
    EXPECT_EQ(pieces, (Strings{"a", "b", ""}));
}

TEST(Strings, split_stops_when_the_callback_has_enough)
{
    int calls = 0;
    EXPECT_FALSE(ForEachSubstring("a,b,c", ",", [&](std::string_view) { return ++calls < 2; }));
    EXPECT_EQ(calls, 2);
}

TEST(Strings, explode_keeps_an_empty_last_piece_on_request)
{
    EXPECT_EQ(ExplodeVector("a,,b,", ",", false, true), (Strings{"a", "b", ""}));
    EXPECT_EQ(ExplodeVector("a,,b,", ",", false, false), (Strings{"a", "b"}));
    EXPECT_TRUE(ExplodeVector("", ",", false, true).empty());
}

TEST(Strings, explode_trims_after_testing_for_emptiness)
{
    EXPECT_EQ(ExplodeVector(" a , ,b", ",", true, false), (Strings{"a", "", "b"}));
}

TEST(Strings, implode_is_the_inverse_of_explode_without_empty_pieces)
{
    EXPECT_EQ(Implode(":::", Strings{"x", "y", "z"}), "x:::y:::z");
    EXPECT_EQ(Implode(",", Strings{}), "");
    EXPECT_EQ(Implode("_!_", std::set<std::string>{"123", "456", "789"}), "123_!_456_!_789");
}

TEST(Strings, trim_takes_white_space_of_every_kind)
{
    EXPECT_EQ(trimmed(" \t\n\v\f\r1 2 "), "1 2");
    EXPECT_EQ(trimmed("  "), "");
}

TEST(Strings, replace_goes_on_behind_the_inserted_text)
{
    EXPECT_EQ(FindReplaceReturn("aaa", "a", "aa"), "aaaaaa");
    EXPECT_EQ(FindReplaceReturn("abc", "x", "y"), "abc");
}

TEST(Strings, compare_prefix_suffix_and_case)
{
    EXPECT_TRUE(StartsWith("/data/x", "/data/"));
    EXPECT_FALSE(StartsWith("/dat", "/data/"));
    EXPECT_TRUE(EndsWith("a.obj", ".obj"));
    EXPECT_FALSE(EndsWith("j", ".obj"));
    EXPECT_TRUE(EqualsCaseInsensitive("DAZ%203D", "Daz%203d"));
    EXPECT_FALSE(EqualsCaseInsensitive("a", "ab"));
}

TEST(Strings, quote_in_typographic_quotes)
{
    EXPECT_EQ(Quote("Vera"), "\xE2\x80\x9CVera\xE2\x80\x9D");
    EXPECT_EQ(Quote(ToQ("Vera")), Quote("Vera"));
    EXPECT_EQ(QuoteQ("Vera"), ToQ(Quote("Vera")));
}

TEST(Strings, make_a_sentence)
{
    EXPECT_EQ(MakeSentence("failed to get it"), "Failed to get it.");
    EXPECT_EQ(MakeSentence("Really?"), "Really?");
    EXPECT_EQ(MakeSentence("<b>x</b>"), "<b>x</b>");
    EXPECT_EQ(MakeSentence(""), ".");
}

TEST(Strings, format_seconds)
{
    EXPECT_EQ(FormatSecondsElapsed(0), "0 seconds");
    EXPECT_EQ(FormatSecondsElapsed(1), "1 second");
    EXPECT_EQ(FormatSecondsElapsed(59), "59 seconds");
    EXPECT_EQ(FormatSecondsElapsed(60), "1:00 minutes");
    EXPECT_EQ(FormatSecondsElapsed(125), "2:05 minutes");
    EXPECT_EQ(FormatSecondsElapsed(3600), "1:00:00 hours");
    EXPECT_EQ(FormatSecondsElapsed(3723), "1:02:03 hours");
}

TEST(Strings, count_in_words)
{
    EXPECT_EQ(Pluralize(1, "1 morph", "%d morphs"), "1 morph");
    EXPECT_EQ(Pluralize(0, "1 morph", "%d morphs"), "0 morphs");
    EXPECT_EQ(Pluralize(1234, "1 morph", "%d morphs"), "1,234 morphs");
    EXPECT_EQ(FormatNumberWithThousands(1234567), "1,234,567");
    EXPECT_EQ(FormatNumberWithThousands(999), "999");
}

TEST(Strings, make_random_names_of_letters_and_digits)
{
    const std::string name = MakeRandomString(64);
    EXPECT_EQ(name.size(), 64u);
    for (const char c : name)
        EXPECT_TRUE(std::isalnum(static_cast<unsigned char>(c))) << c;
    std::set<std::string> names;
    for (int i = 0; i < 1000; ++i)
        names.insert(MakeRandomString(8));
    EXPECT_EQ(names.size(), 1000u);
}

TEST(Strings, join_a_folder_and_a_name_with_one_slash)
{
    EXPECT_EQ(MakePath("/tmp", "a.obj"), "/tmp/a.obj");
    EXPECT_EQ(MakePath("/tmp/", "a.obj"), "/tmp/a.obj");
    EXPECT_EQ(MakePath("", "a.obj"), "a.obj");
}

TEST(HelpTexts, get_typographic_quotes_and_the_title)
{
    EXPECT_EQ(kst::daz::FormatHelp("a ``b'' c"), "a \xE2\x80\x9C"
                                                 "b\xE2\x80\x9D c");
    EXPECT_EQ(kst::daz::FormatHelp("%{x}%"), "\xE2\x80\x9Cx\xE2\x80\x9D");
    EXPECT_EQ(kst::daz::FormatHelp("%PLUGINNAME% help"), "Kestrom's Gantrel help");
    EXPECT_EQ(kst::daz::FormatHelp("``''"), "\xE2\x80\x9C\xE2\x80\x9D");
    EXPECT_EQ(kst::daz::FormatHelp("it's %% and {} `"), "it's %% and {} `");
    EXPECT_EQ(kst::daz::MakeVersionStringOnly(), "V1.0.5");
}
