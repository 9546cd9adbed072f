// UTF-8 strings: conversion, splitting and joining, searching, quoting, identifiers.
// SPDX-License-Identifier: MIT

#include "ks_string.h"

#include "tests/shared/throws.h"

#include <gtest/gtest.h>

#include <set>

using namespace kst::str;
using Strings = std::vector<std::string>;
using Views = std::vector<std::string_view>;
using Flags = kst::FlagSet<CamelCaseFlag>;

TEST(Strings, convert_to_the_toolkit_and_back_with_embedded_zeros)
{
    const std::string text("\xE2\x80\x9C"
                           "a\0b",
                           6);
    EXPECT_EQ(ToQ(text).size(), 4);
    EXPECT_EQ(ToStd(ToQ(text)), text);
    EXPECT_EQ(ToStd(QStringList() << ToQ("a") << ToQ("b")), (Strings{"a", "b"}));
}

TEST(Strings, name_the_signs_that_texts_use)
{
    EXPECT_EQ(EMPTY, "");
    EXPECT_EQ(ToQ(OPEN_QUOTE), QString(QChar(0x201C)));
    EXPECT_EQ(ToQ(CLOSE_QUOTE), QString(QChar(0x201D)));
    EXPECT_EQ(ToQ(EM_DASH), QString(QChar(0x2014)));
    EXPECT_EQ(ToQ(LEFTWARDS_ARROW), QString(QChar(0x2190)));
    EXPECT_EQ(ToQ(UPWARDS_ARROW), QString(QChar(0x2191)));
    EXPECT_EQ(ToQ(RIGHTWARDS_ARROW), QString(QChar(0x2192)));
    EXPECT_EQ(ToQ(DOWNWARDS_ARROW), QString(QChar(0x2193)));
}

TEST(Strings, convert_lists_between_views_texts_and_the_toolkit)
{
    const Strings texts{"a", "\xC3\xA4"};
    EXPECT_EQ(FromSv(texts), (Views{"a", "\xC3\xA4"}));
    EXPECT_EQ(FromSv(texts)[1].data(), texts[1].data());
    EXPECT_EQ(FromSvv(FromSv(texts)), texts);
    EXPECT_EQ(ToQ(FromSv(texts)), QStringList() << QLatin1String("a") << QString(QChar(0xE4)));
}

TEST(Strings, change_the_case_of_letters_byte_by_byte)
{
    EXPECT_EQ(ToLower("ABC_1 x"), "abc_1 x");
    EXPECT_EQ(ToUpper("abc_1 X"), "ABC_1 X");
    EXPECT_EQ(ToUpper("\xC3\xA4"), "\xC3\xA4") << "a letter of two bytes is none to the C library";
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

TEST(Strings, split_passes_no_empty_piece_from_the_start_and_nothing_of_an_empty_text)
{
    Strings pieces;
    const auto collect = [&](std::string_view piece) {
        pieces.emplace_back(piece);
        return true;
    };
    EXPECT_TRUE(ForEachSubstring("::a::b", "::", collect));
    EXPECT_EQ(pieces, (Strings{"a", "b"}));
    pieces.clear();
    EXPECT_TRUE(ForEachSubstring("", ",", collect));
    EXPECT_EQ(pieces, Strings());
    EXPECT_TRUE(ForEachSubstring(",", ",", collect));
    EXPECT_EQ(pieces, Strings{""});
}

TEST(Strings, split_returns_what_the_callback_says_of_the_last_piece)
{
    EXPECT_FALSE(ForEachSubstring("a,b", ",", [](std::string_view piece) { return piece != "b"; }));
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

TEST(Strings, explode_takes_a_text_of_the_toolkit)
{
    EXPECT_EQ(ExplodeVector(ToQ("x y z"), " ", false, false), (Strings{"x", "y", "z"}));
}

TEST(Strings, explode_into_views_of_the_text)
{
    const std::string text = " a,,b,";
    const Views views = ExplodeViewVector(text, ",", true);
    EXPECT_EQ(views, (Views{" a", "b", ""}));
    EXPECT_EQ(views[1].data(), text.data() + 4);
    Views filled{"old"};
    ExplodeViewVector(text, ",", false, filled);
    EXPECT_EQ(filled, (Views{" a", "b"}));
}

TEST(Strings, explode_into_a_set_without_duplicates)
{
    EXPECT_EQ(ExplodeSet("b, a,b", ",", true, false), (std::set<std::string>{"a", "b"}));
    EXPECT_EQ(ExplodeSet("b,", ",", false, true), (std::set<std::string>{"", "b"}));
    EXPECT_EQ(ExplodeSet("b, ", ",", false, false), (std::set<std::string>{" ", "b"}));
}

TEST(Strings, implode_is_the_inverse_of_explode_without_empty_pieces)
{
    EXPECT_EQ(Implode(":::", Strings{"x", "y", "z"}), "x:::y:::z");
    EXPECT_EQ(Implode(",", Strings{}), "");
    EXPECT_EQ(Implode("_!_", std::set<std::string>{"123", "456", "789"}), "123_!_456_!_789");
}

TEST(Strings, implode_every_kind_of_list)
{
    const QStringList list = QStringList() << QLatin1String("x") << QLatin1String("y");
    EXPECT_EQ(Implode(", ", Views{"x", "y"}), "x, y");
    EXPECT_EQ(Implode(", ", std::set<int>{3, -1, 20}), "-1, 3, 20");
    EXPECT_EQ(Implode(", ", std::set<int>{}), "");
    EXPECT_EQ(Implode(", ", list), "x, y");
    EXPECT_EQ(ImplodeQ(", ", list), ToQ("x, y"));
    EXPECT_EQ(ImplodeQ(", ", Strings{"x", "y"}), ToQ("x, y"));
    EXPECT_EQ(ImplodeQ(", ", Views{"x", "y"}), ToQ("x, y"));
    EXPECT_EQ(ImplodeQ(", ", std::set<std::string>{"y", "x"}), ToQ("x, y"));
    EXPECT_EQ(ImplodeQ(", ", std::set<int>{2, 1}), ToQ("1, 2"));
}

TEST(Strings, list_every_item_on_a_line_of_its_own)
{
    EXPECT_EQ(UnorderedList(2, "- ", {"one", "two"}), "\n  - one\n  - two");
    EXPECT_EQ(UnorderedList(0, "", {"one"}), "\none");
    EXPECT_EQ(UnorderedList(2, "- ", {}), "");
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
    EXPECT_EQ(FindReplaceReturn("aaa", "aa", "b"), "ba");
    std::string text = "a.b.c";
    FindReplaceInPlace(text, ".", "");
    EXPECT_EQ(text, "abc");
}

TEST(Strings, find_a_text_in_other_case)
{
    EXPECT_EQ(FindCaseInsensitive("The Genesis 9", "gENESIS"), 4u);
    EXPECT_EQ(FindCaseInsensitive("aA", "A"), 0u);
    EXPECT_EQ(FindCaseInsensitive("abc", "abcd"), std::string_view::npos);
    EXPECT_EQ(FindCaseInsensitive("abc", "x"), std::string_view::npos);
}

TEST(Strings, find_an_empty_text_in_any_but_an_empty_one)
{
    EXPECT_EQ(FindCaseInsensitive("abc", ""), 0u);
    EXPECT_EQ(FindCaseInsensitive("", ""), std::string_view::npos);
}

TEST(Strings, stand_in_for_an_empty_one)
{
    EXPECT_EQ(StringOrOther("a", "b"), "a");
    EXPECT_EQ(StringOrOther("", "b"), "b");
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

TEST(Strings, quote_in_bold_without_escaping)
{
    EXPECT_EQ(BoldQuote(ToQ("a<i>")), "<b>\xE2\x80\x9C"
                                      "a<i>\xE2\x80\x9D</b>");
}

TEST(Strings, put_an_identifier_in_double_quotes_when_it_has_capitals)
{
    EXPECT_EQ(MakeQuotedIdentifier("abc"), "abc");
    EXPECT_EQ(MakeQuotedIdentifier("aBc"), "\"aBc\"");
    EXPECT_EQ(MakeQuotedIdentifier("\"X\""), "\"X\"");
    EXPECT_EQ(MakeQuotedIdentifier("\"X"), "\"X");
    EXPECT_EQ(MakeQuotedIdentifier(""), "");
    EXPECT_EQ(MakeQuotedIdentifier("a b"), "a b");
}

TEST(CamelCase, gives_every_word_but_the_first_a_capital)
{
    EXPECT_EQ(CamelCase("hello world"), "helloWorld");
    EXPECT_EQ(CamelCase("Hello big WORLD"), "HelloBigWORLD");
    EXPECT_EQ(CamelCase("  hello  world "), "helloWorld");
    EXPECT_EQ(CamelCase("[a] {b}"), "aB");
    EXPECT_EQ(CamelCase(""), "");
}

TEST(CamelCase, puts_an_underscore_for_a_bracket_inside_a_word)
{
    EXPECT_EQ(CamelCase("Max(Deluxe)"), "Max_Deluxe");
    EXPECT_EQ(CamelCase("Max (Deluxe)"), "MaxDeluxe");
    EXPECT_EQ(CamelCase("(a)(b"), "aB") << "the second bracket stands at the start of a word";
    EXPECT_EQ(CamelCase("a(b"), "a_b") << "behind the underscore the word keeps its case";
}

TEST(CamelCase, drops_apostrophes_within_the_word)
{
    EXPECT_EQ(CamelCase("vera's hat"), "verasHat");
    EXPECT_EQ(CamelCase("the 'hat'"), "theHat");
}

TEST(CamelCase, makes_the_first_letter_small_on_request)
{
    EXPECT_EQ(CamelCase("Hello World", CamelCaseFlag::LowerFirst), "helloWorld");
    EXPECT_EQ(CamelCase("(Hello)", CamelCaseFlag::LowerFirst), "hello");
    EXPECT_EQ(static_cast<int>(CamelCaseFlag::LowerFirst), 1);
}

TEST(CamelCase, takes_an_underscore_for_a_blank_unless_it_is_to_stay)
{
    EXPECT_EQ(CamelCase("hello_world"), "helloWorld");
    EXPECT_EQ(CamelCase("hello_world", CamelCaseFlag::KeepUnderscores), "hello_world");
    EXPECT_EQ(CamelCase("Hello_big world", Flags(CamelCaseFlag::KeepUnderscores) | CamelCaseFlag::LowerFirst),
              "hello_bigWorld");
    EXPECT_EQ(static_cast<int>(CamelCaseFlag::KeepUnderscores), 2);
}

TEST(Strings, name_the_check_that_fails)
{
    EXPECT_NO_THROW(ThrowUnless(true, "1 == 1"));
    EXPECT_EQ(MessageOf([] { ThrowUnless(false, "str5.empty()"); }), "Test failed: str5.empty()");
}

TEST(Strings, pass_their_own_checks)
{
    EXPECT_NO_THROW(TestCasesOrThrow());
}
