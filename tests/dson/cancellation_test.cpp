// Reading that is told to end.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/file_text.h"
#include "dson/gzip.h"
#include "dson/reader.h"
#include "tests/base/counted_asks.h"
#include "tests/base/scratch_folder.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace {

constexpr int rowCount = 1000;

/// A morph with many rows; with an oddity, such as a comma too many, the text has to be mended first.
std::string MorphText(const std::string& oddity)
{
    std::string rows;
    for (int i = 0; i < rowCount; ++i)
        rows += (i ? ", [" : "[") + std::to_string(i) + ", 1, 0, 0]";
    return R"({"file_version": "0.6.0.0", "asset_info": {"id": "/Tall.dsf"}, "modifier_library": [{"id": "Tall",
        "parent": "/Box.dsf#Box", "channel": {"id": "value", "type": "float"},
        "morph": {"vertex_count": 1000, "deltas": {"values": [)" +
           rows + oddity + "]}}}]}";
}

/// Asks of reading the file to its end.
int AsksOf(const std::filesystem::path& file)
{
    const CountedAsks asks;
    EXPECT_EQ(dson::ReadDocument(file).modifiers.at(0).morph->deltas.size(), std::size_t{rowCount});
    return asks.count();
}

void ExpectEnd(const std::filesystem::path& file, int at)
{
    const CountedAsks asks(at);
    EXPECT_THROW(dson::ReadDocument(file), base::Cancelled);
    EXPECT_EQ(asks.count(), at);
}

TEST(CancelledReading, ends_at_any_row_and_is_no_broken_file)
{
    const ScratchFolder folder;
    for (const std::string oddity : {"", ","}) {
        const auto file = folder.write("Tall.dsf", MorphText(oddity));
        const int all = AsksOf(file);
        EXPECT_GT(all, (oddity.empty() ? 1 : 2) * rowCount);
        for (const int at : {1, 2, all / 4, all / 2, all})
            ExpectEnd(file, at);
    }
}

TEST(CancelledReading, ends_while_a_text_expands)
{
    // More than is expanded at once, and no more than a file may expand to.
    std::string text(std::size_t{80} << 20, ' ');
    std::mt19937 random(1);
    for (std::size_t at = 0; at < text.size(); at += 128)
        text[at] = static_cast<char>('a' + random() % 26);
    const std::string bytes = dson::Compress(text);
    int all = 0;
    {
        const CountedAsks asks;
        EXPECT_EQ(dson::Decompress(bytes, "large", text.size()), text);
        all = asks.count();
    }
    EXPECT_GT(all, 10);
    const CountedAsks asks(all / 2);
    EXPECT_THROW(dson::Decompress(bytes, "large", text.size()), base::Cancelled);
    EXPECT_EQ(asks.count(), all / 2);
}

TEST(CancelledReading, ends_while_a_text_is_compressed)
{
    std::string text;
    std::mt19937 random; // what cannot be compressed fills one piece of the result after the other
    for (int i = 0; i < 1 << 20; ++i)
        text += static_cast<char>(random());
    const CountedAsks asks(2);
    EXPECT_THROW(dson::Compress(text), base::Cancelled);
}

} // namespace
