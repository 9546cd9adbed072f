// Sparse rows and what they become by source.
// SPDX-License-Identifier: MIT

#include "refinement.h"

#include <gtest/gtest.h>

#include <random>

using namespace geometry;

namespace {

constexpr std::uint32_t sourceCount = 400;

/// @param kinds  how many weights there are
std::vector<std::vector<SparseRows::Entry>> RandomRows(unsigned seed, int kinds)
{
    std::mt19937 random(seed);
    std::vector<std::vector<SparseRows::Entry>> rows(40000); // for several threads
    for (auto& row : rows)
        for (std::uint32_t k = 0; k < 1 + random() % 9; ++k)
            // The last source is one that nothing uses.
            row.push_back({static_cast<std::uint32_t>(random() % (sourceCount - 1)),
                           1.0f / static_cast<float>(1 + random() % static_cast<unsigned>(kinds))});
    return rows;
}

SparseRows Joined(const std::vector<std::vector<SparseRows::Entry>>& rows)
{
    return JoinRows(MakePieces(rows.size(), [&](std::size_t r, auto& row) { row = rows[r]; }), sourceCount);
}

std::vector<std::pair<std::uint32_t, float>> EntriesOf(const SparseRows& rows, std::size_t row)
{
    std::vector<std::pair<std::uint32_t, float>> entries;
    rows.forEachEntry(row, [&](std::uint32_t source, float weight) { entries.emplace_back(source, weight); });
    return entries;
}

class TransposedRows : public testing::TestWithParam<int> {};

} // namespace

TEST_P(TransposedRows, have_each_entry_once_heavy_ones_first_and_equals_in_order)
{
    const auto rows = RandomRows(7, GetParam());
    std::vector<std::vector<std::pair<std::uint32_t, float>>> expected(sourceCount);
    for (std::size_t r = 0; r < rows.size(); ++r)
        for (const SparseRows::Entry& entry : rows[r])
            expected[entry.source].emplace_back(static_cast<std::uint32_t>(r), entry.weight);
    expected.back().emplace_back(0, 0.0f);
    for (auto& entries : expected)
        std::stable_sort(entries.begin(), entries.end(),
                         [](const auto& a, const auto& b) { return a.second > b.second; });
    const SparseRows transposed = Joined(rows).transposed();
    ASSERT_EQ(transposed.size(), sourceCount);
    EXPECT_EQ(transposed.sourceCount(), rows.size());
    for (std::size_t s = 0; s < sourceCount; ++s)
        EXPECT_EQ(EntriesOf(transposed, s), expected[s]) << s;
}

INSTANTIATE_TEST_SUITE_P(OfWeights, TransposedRows, testing::Values(1, 3, 16, 17, 1000));
