// Files that were cut or hit: each is read or refused, soon.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/lenient_json.h"
#include "dson/reader.h"
#include "tests/content/temp_folder.h"

#include <random>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

/// Every kind of token, strict and otherwise.
const char* const oddText = R"({"file_version": "0.6.0.0", // a comment
"asset_info": {"id": "/data/A%20B.dsf", "type": "modifier", "contributor": {"author": "Zo\u00eb \ud83d\ude00 \ud800"}},
"modifier_library": [{"id": "Up", "channel": {"id": "value", "min": -1.#IND, "max": 1e400, "value": +.5, "clamped": True,},
 "formulas": [{"output": "a:#b?c", "operations": [{"op": "push", "url": "C:\data\x"}, {"op": "push", "val": [1, 2 3]}]}],
 "morph": {"vertex_count": 123456789012345678901, "deltas": {"count": 2, "values": [[1, 0.5e-3, NaN, 0], [2, 1, 1, 1]]}}}],
unquoted: 'it\'s "so"', "comma": -1,5e1, "hex": 0x1F, "many": 1, $2: 0,25,
"x": null, /* end */ "y": , "z": [[], {}, [,]]}
)";

dson::MendedJson MendedCopy(const std::string& text)
{
    // A block of just this size: reading beyond it is found by a sanitizer.
    const std::vector<char> block(text.begin(), text.end());
    return dson::Mend({block.data(), block.size()});
}

void ExpectStrictOrRefused(const std::string& text)
{
    const dson::MendedJson mended = MendedCopy(text);
    if (mended.error)
        EXPECT_LE(*mended.error, text.size()) << text;
    else
        EXPECT_TRUE(nlohmann::json::accept(mended.text)) << text << "\n" << mended.text;
}

std::string Hit(std::string text, std::mt19937& random)
{
    for (std::size_t hits = 1 + random() % 3; hits > 0; --hits)
        text[random() % text.size()] = static_cast<char>(random());
    return text;
}

} // namespace

TEST(MendedText, is_strict_json)
{
    const dson::MendedJson mended = MendedCopy(oddText);
    ASSERT_FALSE(mended.error);
    EXPECT_TRUE(nlohmann::json::accept(mended.text)) << mended.text;
    EXPECT_TRUE(dson::Mend(mended.text).oddities.empty());
    EXPECT_EQ(dson::Mend(mended.text).text, mended.text);
}

TEST(MendedText, is_none_where_a_file_was_cut)
{
    const std::string text(oddText);
    const std::size_t end = text.find_last_of('}');
    for (std::size_t size = 0; size <= end; ++size) {
        const dson::MendedJson mended = MendedCopy(text.substr(0, size));
        ASSERT_TRUE(mended.error) << size;
        EXPECT_LE(*mended.error, size);
    }
}

TEST(MendedText, is_strict_or_none_whatever_hit_it)
{
    std::mt19937 random(20240719);
    for (int i = 0; i < 5000; ++i)
        ExpectStrictOrRefused(Hit(oddText, random));
}

TEST(MendedText, of_a_document_that_was_hit_is_read_or_refused)
{
    const TempFolder folder;
    std::mt19937 random(7);
    for (int i = 0; i < 300; ++i) {
        const auto file = folder.write("hit.dsf", Hit(oddText, random));
        try {
            dson::ReadDocument(file);
        } catch (const base::FormatError& error) {
            EXPECT_EQ(std::string(error.what()).find(file.string() + ": "), 0u) << error.what();
        }
    }
}

TEST(MendedText, may_be_odd_throughout)
{
    const std::pair<const char*, const char*> cases[] = {{"\"\t\",", "100000 raw control characters"},
                                                         {"NaN,", "100000 numbers that are not finite"},
                                                         {"1/**/,", "100000 comments"},
                                                         {"1,,", "100000 stray commas"},
                                                         {"1 ", "100000 missing commas"},
                                                         {"\"\\ud800\",", "100000 halves of characters"},
                                                         {"\"\xFF\",", "100000 bytes"},
                                                         {"'\"',", "100000 texts in single quotes"},
                                                         {"0x1,", "100000 values in a notation"},
                                                         {"1e400,", "100000 numbers that are not finite"}};
    for (const auto& [piece, what] : cases) {
        std::string text = "[";
        for (int i = 0; i < 100000; ++i)
            text += piece;
        const dson::MendedJson mended = dson::Mend(text + "0]");
        ASSERT_FALSE(mended.oddities.empty()) << piece;
        EXPECT_NE((mended.oddities[0] + mended.oddities.back()).find(what), std::string::npos)
            << mended.oddities[0];
    }
}
