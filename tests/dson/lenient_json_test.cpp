// Files whose text is not quite JSON.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/file_text.h"
#include "dson/reader.h"
#include "dson/writer.h"
#include "tests/content/temp_folder.h"
#include "tests/content/throws.h"

#include <gtest/gtest.h>

namespace {

using Phrases = std::vector<std::string>;

/// A morph on three lines; the members given stand on the second, from its first column.
std::string WithMembers(const std::string& members)
{
    return "{\"file_version\": \"0.6.0.0\", \"modifier_library\": [{\"id\": \"Up\",\n" + members + "\n}]}";
}

class OddText : public testing::Test {
protected:
    dson::Document read(const std::string& text) const
    {
        return dson::ReadDocument(_folder.write("odd.dsf", text));
    }
    dson::Modifier morph(const std::string& members) const
    {
        return read(WithMembers(members)).modifiers.at(0);
    }
    Phrases told(const std::string& text) const
    {
        Phrases phrases;
        for (const base::Diagnostic& diagnostic : read(text).diagnostics) {
            EXPECT_EQ(diagnostic.severity, base::Severity::Warning);
            EXPECT_EQ(diagnostic.file, (_folder.path() / "odd.dsf").string());
            phrases.push_back((diagnostic.asset.empty() ? "" : diagnostic.asset + ": ") + diagnostic.what);
        }
        return phrases;
    }
    Phrases toldOf(const std::string& members) const { return told(WithMembers(members)); }
    std::string label(const std::string& string) const
    {
        return morph("\"channel\": {\"label\": \"" + string + "\"}").channel.label;
    }
    void expectError(const std::string& text, const std::string& what) const
    {
        EXPECT_THROW_MSG(read(text), base::FormatError, (_folder.path() / "odd.dsf").string() + ": " + what);
    }

    const TempFolder _folder;
};

const char* const numbersThatAreNone[] = {"NaN",    "nan",       "Infinity", "-Infinity",
                                          "inf",    "-nan(ind)", "1e400",    "-1.#IND",
                                          "1.#INF", "1.#QNAN",   "-1.#J",    "-1.#IND000",
                                          "-1E999", "9.9e308",   "+NaN",     "1e99999999999999999999999"};

} // namespace

TEST_F(OddText, a_good_text_is_read_without_a_word)
{
    EXPECT_EQ(
        toldOf(
            R"("channel": {"label": "\u00e4\/", "min": -1.5e-3, "max": 18446744073709551615, "value": 1e-400})"),
        Phrases{});
}

TEST_F(OddText, a_member_that_is_not_finite_counts_as_absent)
{
    for (const char* const number : numbersThatAreNone) {
        const std::string members = std::string("\"channel\": {\"min\": ") + number +
                                    ", \"max\": 2, \"value\": 0.5, \"current_value\": " + number + "}";
        const dson::Channel channel = morph(members).channel;
        EXPECT_FALSE(channel.min || channel.currentValue) << number;
        EXPECT_EQ(channel.max, 2.0) << number;
        EXPECT_EQ(channel.value, 0.5) << number;
        EXPECT_EQ(toldOf(members),
                  Phrases{"has 2 numbers that are not finite, left out: the first at line 2, column 20"})
            << number;
    }
}

TEST_F(OddText, a_scale_that_is_not_finite_stays_what_it_is_by_default)
{
    const dson::Document document = read(R"({"file_version": "0.6.0.0", "node_library": [{"id": "hip",
        "scale": [{"id": "x", "value": NaN}], "general_scale": {"value": null}}]})");
    EXPECT_EQ(document.nodes.at(0).scale[0].value, 1.0);
    EXPECT_EQ(document.nodes.at(0).generalScale.value, 1.0);
}

TEST_F(OddText, a_delta_that_is_not_finite_is_left_out_and_the_others_stay)
{
    for (const char* const number : numbersThatAreNone) {
        const std::string members = std::string("\"morph\": {\"deltas\": {\"values\": [[1, 0, ") + number +
                                    ", 0], [2, 0, 1, 0], [" + number + ", 0, 1, 0]]}}";
        EXPECT_EQ(morph(members).morph->deltas.vertices, std::vector<std::uint32_t>{2}) << number;
        const Phrases phrases = toldOf(members);
        ASSERT_EQ(phrases.size(), 2u) << number;
        EXPECT_EQ(phrases[0], "has 2 numbers that are not finite, left out: the first at line 2, column 40");
        EXPECT_EQ(phrases[1], "Up: 2 rows of deltas are not four numbers and left out");
    }
}

TEST_F(OddText, whole_numbers_beyond_64_bits_are_read_as_doubles)
{
    for (const auto& [text, value] : {std::pair("18446744073709551616", 18446744073709551616.0),
                                      std::pair("-9223372036854775809", -9223372036854775809.0),
                                      std::pair("100000000000000000000000000000000000000", 1e38)}) {
        const std::string members = std::string("\"channel\": {\"max\":") + text + "}";
        EXPECT_EQ(morph(members).channel.max, value) << text;
        EXPECT_EQ(toldOf(members), Phrases{"has 1 whole number beyond 64 bits, rounded: line 2, column 19"})
            << text;
    }
}

TEST_F(OddText, numbers_and_words_of_other_languages_are_understood)
{
    const std::pair<const char*, double> cases[] = {{"+1", 1},      {"007", 7},   {".5", 0.5}, {"-.5", -0.5},
                                                    {"5.", 5},      {"5.e1", 50}, {"True", 1}, {"FALSE", 0},
                                                    {"+00.5", 0.5}, {"-01", -1}};
    for (const auto& [text, value] : cases) {
        const std::string members = std::string("\"channel\": {\"value\":") + text + "}";
        EXPECT_EQ(morph(members).channel.value, value) << text;
        EXPECT_EQ(toldOf(members),
                  Phrases{"has 1 value in a notation of its own, read as what was meant: line 2, column 21"})
            << text;
    }
    EXPECT_EQ(morph("\"channel\": {\"min\": None}").channel.min, std::nullopt);
}

TEST_F(OddText, hexadecimal_numbers_are_understood)
{
    const std::pair<const char*, double> cases[] = {{"0x1F", 31}, {"-0xfF", -255}, {"+0X10", 16}, {"0x0", 0}};
    for (const auto& [text, value] : cases) {
        const std::string members = std::string("\"channel\": {\"value\":") + text + "}";
        EXPECT_EQ(morph(members).channel.value, value) << text;
        EXPECT_EQ(toldOf(members),
                  Phrases{"has 1 value in a notation of its own, read as what was meant: line 2, column 21"})
            << text;
    }
    const std::string wide =
        "\"channel\": {\"max\": 0x10000000000000000, \"min\": 0x" + std::string(300, 'F') + "}";
    EXPECT_EQ(morph(wide).channel.max, 18446744073709551616.0);
    EXPECT_FALSE(morph(wide).channel.min);
    EXPECT_EQ(toldOf(wide), (Phrases{"has 1 whole number beyond 64 bits, rounded: line 2, column 20",
                                     "has 1 number that is not finite, left out: line 2, column 48"}));
}

TEST_F(OddText, a_comma_in_the_number_of_a_member_is_its_point)
{
    const std::string members = "\"channel\": {\"min\": -0,25, \"max\": 1,5e1 , \"value\": +0,5\n}";
    const dson::Channel channel = morph(members).channel;
    EXPECT_EQ(channel.min, -0.25);
    EXPECT_EQ(channel.max, 15.0);
    EXPECT_EQ(channel.value, 0.5);
    EXPECT_EQ(toldOf(members),
              Phrases{"has 3 numbers with commas for their points, read as with a point: the "
                      "first at line 2, column 20"});
}

TEST_F(OddText, a_comma_in_a_list_of_numbers_parts_two_of_them)
{
    const std::string members = "\"morph\": {\"deltas\": {\"values\": [[1,0,5,0],]}}";
    const dson::Modifier modifier = morph(members);
    ASSERT_EQ(modifier.morph->deltas.vertices, std::vector<std::uint32_t>{1});
    EXPECT_EQ(modifier.morph->deltas.deltas[0].y, 5.0f);
    EXPECT_EQ(toldOf(members), Phrases{"has 1 stray comma, left out: line 2, column 42"});
}

TEST_F(OddText, single_quotes_serve_as_double_ones)
{
    const std::string members = R"('channel': {'label': 'a "b" \'c\' \u00e4 // d', "name": "it's"})";
    EXPECT_EQ(morph(members).channel.label, "a \"b\" 'c' \xC3\xA4 // d");
    EXPECT_EQ(morph(members).channel.name, "it's");
    EXPECT_EQ(toldOf(members),
              Phrases{"has 3 texts in single quotes, read as any other: the first at line 2, column 1"});
}

TEST_F(OddText, names_need_no_quotes)
{
    const std::string members = "channel: {label : \"x\", $own_1: 2, max:3 min: 1}";
    EXPECT_EQ(morph(members).channel.label, "x");
    EXPECT_EQ(morph(members).channel.max, 3.0);
    EXPECT_EQ(morph(members).channel.min, 1.0);
    EXPECT_EQ(toldOf(members),
              (Phrases{"has 5 names without quotes, read as any other: the first at line 2, column 1",
                       "has 1 missing comma, put in: line 2, column 41"}));
}

TEST_F(OddText, half_of_a_surrogate_pair_is_replaced)
{
    EXPECT_EQ(label("a\\ud800b"), "a\xEF\xBF\xBD"
                                  "b");
    EXPECT_EQ(label("\\uDC00"), "\xEF\xBF\xBD");
    EXPECT_EQ(label("\\ud83d\\u0041"), "\xEF\xBF\xBD"
                                       "A");
    EXPECT_EQ(label("\\ud83d\\ud83d\\ude00"), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
    EXPECT_EQ(toldOf("\"label\": \"a\\ud800\\udbff\""),
              Phrases{"has 2 halves of characters, replaced: the first at line 2, column 12"});
}

TEST_F(OddText, control_characters_stay_in_strings)
{
    EXPECT_EQ(label("a\tb\nc\x01"), "a\tb\nc\x01");
    EXPECT_EQ(toldOf("\"label\": \"a\tb\n\""),
              Phrases{"has 2 raw control characters in strings, kept: the first at line 2, column 12"});
}

TEST_F(OddText, backslashes_that_begin_no_escape_stay)
{
    EXPECT_EQ(label(R"(C:\data\Acme\q \u12g4 \\ \n)"), "C:\\data\\Acme\\q \\u12g4 \\ \n");
    EXPECT_EQ(toldOf(R"("label": "\data \u12")"),
              Phrases{"has 2 backslashes that stand for nothing, kept: the first at line 2, column 11"});
}

TEST_F(OddText, bytes_of_another_encoding_are_read_as_what_they_mean_there)
{
    EXPECT_EQ(label("Zo\xEB \xC3\xA4 \x80\x96 \xFF"),
              "Zo\xC3\xAB \xC3\xA4 \xE2\x82\xAC\xE2\x80\x93 \xC3\xBF");
    EXPECT_EQ(
        toldOf("\"label\": \"\xC3\xA4\xC3\xA4 \xEB\xE4\""),
        Phrases{"has 2 bytes that are not UTF-8, read as Windows-1252: the first at line 2, column 14"});
    // Longer than need be, half a pair, beyond the last character, cut off by the end of the string.
    for (const char* const wrong :
         {"\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"})
        EXPECT_EQ(toldOf(std::string("\"label\": \"") + wrong + "\"").size(), 1u);
}

TEST_F(OddText, comments_are_stepped_over)
{
    EXPECT_EQ(
        toldOf("\"label\": /* a \" and a } */ \"//no /* comment\", // \"value\": 3\n\"group\": \"/A\" //"),
        Phrases{"has 3 comments, left out: the first at line 2, column 10"});
    EXPECT_EQ(morph("\"label\": /* x */ \"//no /* comment\"").channel.label, "//no /* comment");
    EXPECT_EQ(told("// made by hand\n{\"file_version\": \"0.6.0.0\"} /* end */").size(), 1u);
}

TEST_F(OddText, stray_commas_are_left_out)
{
    const std::string members = "\"morph\": {,\"deltas\": {\"values\": [,[1, 0,, 1, 0,],,], },},";
    EXPECT_EQ(morph(members).morph->deltas.vertices, std::vector<std::uint32_t>{1});
    EXPECT_EQ(toldOf(members), Phrases{"has 9 stray commas, left out: the first at line 2, column 11"});
}

TEST_F(OddText, missing_commas_are_put_in)
{
    const std::string members =
        "\"morph\": {\"vertex_count\": 4\n\"deltas\": {\"values\": [[1 0 1 0] [2, 0, 1, 0]]}}";
    EXPECT_EQ(morph(members).morph->deltas.vertices, (std::vector<std::uint32_t>{1, 2}));
    EXPECT_EQ(toldOf(members), Phrases{"has 5 missing commas, put in: the first at line 3, column 1"});
}

TEST_F(OddText, members_without_a_value_count_as_absent)
{
    const std::string members = "\"channel\": {\"min\": , \"max\": 3, \"value\": }";
    EXPECT_FALSE(morph(members).channel.min);
    EXPECT_EQ(morph(members).channel.max, 3.0);
    EXPECT_EQ(toldOf(members),
              Phrases{"has 2 members without a value, left out: the first at line 2, column 20"});
}

TEST_F(OddText, what_stands_behind_the_end_is_left_out)
{
    const std::string good = WithMembers("\"label\": \"x\"");
    EXPECT_EQ(told(good + std::string(300, '\0')),
              Phrases{"has 1 stretch of padding behind its end, left out: line 3, column 4"});
    EXPECT_EQ(told(good + "\n\x1A"),
              Phrases{"has 1 stretch of padding behind its end, left out: line 4, column 1"});
    EXPECT_EQ(told(good + "\n}]}"),
              Phrases{"has 1 stretch of text behind its end, left out: line 4, column 1"});
}

TEST_F(OddText, oddities_are_told_in_the_order_of_their_first_places)
{
    EXPECT_EQ(toldOf("\"label\": \"\t\", \"a\": NaN, \"b\": [1,], \"c\": inf"),
              (Phrases{"has 1 raw control character in a string, kept: line 2, column 11",
                       "has 2 numbers that are not finite, left out: the first at line 2, column 20",
                       "has 1 stray comma, left out: line 2, column 32"}));
}

TEST_F(OddText, places_are_those_of_the_text_in_any_encoding)
{
    std::string wide = "\xFF\xFE";
    for (const char c : WithMembers("\"label\": NaN"))
        wide += {c, '\0'};
    EXPECT_EQ(told(wide), Phrases{"has 1 number that is not finite, left out: line 2, column 10"});
}

TEST_F(OddText, what_makes_no_sense_is_refused_where_it_begins)
{
    expectError("what", "line 1, column 1 is not valid JSON");
    expectError("{\"a\":\n what}", "line 2, column 2 is not valid JSON");
    expectError("{\"a\": [1}", "line 1, column 9 is not valid JSON");
    expectError("{\"a\" 1}", "line 1, column 6 is not valid JSON");
    expectError("{1: 2}", "line 1, column 2 is not valid JSON");
    expectError("{[]: 2}", "line 1, column 2 is not valid JSON");
    expectError("{\"a\": 1.2.3}", "line 1, column 7 is not valid JSON");
    expectError("{\"a\": 0x}", "line 1, column 7 is not valid JSON");
    expectError("{\"a\": 0x1G}", "line 1, column 7 is not valid JSON");
    expectError("{\"a\": 1,234,567}", "line 1, column 13 is not valid JSON");
    expectError("{\"a\": 0,5: 1}", "line 1, column 9 is not valid JSON");
    expectError("{a b: 1}", "line 1, column 4 is not valid JSON");
    expectError("{\"a\": 'b}", "ends too early, at line 1, column 10");
    expectError("{\"a\": 1e}", "line 1, column 7 is not valid JSON");
    expectError("{\"a\": 1.#}", "line 1, column 7 is not valid JSON");
    expectError(std::string("{\"a\": \0 1}", 10), "line 1, column 7 is not valid JSON");
    expectError("{\"a\": /* 1}", "ends too early, at line 1, column 12");
    expectError("{\"a\": \"b\\", "ends too early, at line 1, column 10");
    expectError(std::string(5000, '['), "ends too early, at line 1, column 5001");
}

TEST_F(OddText, saving_over_an_odd_file_keeps_what_others_put_into_it)
{
    const dson::Modifier up = dson::MakeMorph("Up", "/");
    dson::AssetInfo info;
    info.id = "/odd.dsf";
    info.type = "modifier";
    _folder.write("odd.dsf", R"({"file_version": "0.6.0.0", "asset_info": {"id": "/odd.dsf"}, // mine
        "modifier_library": [{"id": "Up", "extra": [{"type": "tag", "text": "a	b"},],}]})");
    const std::string text = dson::ReadText(dson::WriteMorph(info, up, _folder.path()));
    EXPECT_NE(text.find(R"({"type":"tag","text":"a\tb"})"), std::string::npos) << text;
}
