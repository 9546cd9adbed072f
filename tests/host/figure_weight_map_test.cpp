// Weight maps, which hold only what is not 0.
// SPDX-License-Identifier: MIT

#include "dzweightmap.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace {

using Listed = std::vector<std::pair<int, unsigned short>>;

Listed List(const DzWeightMap& map)
{
    Listed listed;
    map.forEachWeight([&](int vertex, unsigned short weight) { listed.emplace_back(vertex, weight); });
    return listed;
}

TEST(WeightMap, holds_what_is_set_at_any_vertex)
{
    const DzWeightMapPtr map(new DzWeightMap(3000, QStringLiteral("Hand")));
    EXPECT_EQ(map->getNumWeights(), 3000);
    EXPECT_TRUE(List(*map).empty());
    map->setWeight(2999, 7);
    map->setWeight(0, 65535);
    map->setFloatWeight(1023, 0.5f);
    map->setWeight(1500, 0);
    EXPECT_EQ(List(*map), (Listed{{0, 65535}, {1023, 32768}, {2999, 7}}));
    EXPECT_EQ(map->getWeight(1024), 0);
    EXPECT_NEAR(map->getFloatWeight(1023), 0.5f, 1e-5f);
    map->setWeight(0, 0);
    EXPECT_EQ(List(*map), (Listed{{1023, 32768}, {2999, 7}}));
}

TEST(WeightMap, takes_nothing_beyond_its_ends)
{
    const DzWeightMapPtr map(new DzWeightMap(10));
    map->setWeight(10, 5);
    map->setWeight(-1, 5);
    map->setFloatWeight(511, 1.0f);
    EXPECT_TRUE(List(*map).empty());
    EXPECT_EQ(map->getWeight(10), 0);
    EXPECT_EQ(map->getWeight(-1), 0);
}

TEST(WeightMap, forgets_what_lies_behind_a_new_end)
{
    const DzWeightMapPtr map(new DzWeightMap(1000));
    for (const int vertex : {3, 599, 600, 999})
        map->setWeight(vertex, 9);
    map->setNumWeights(600, true);
    map->setNumWeights(2000, true);
    EXPECT_EQ(List(*map), (Listed{{3, 9}, {599, 9}}));
    map->setNumWeights(2000, false);
    EXPECT_TRUE(List(*map).empty());
}

TEST(WeightMap, lies_in_a_row_for_those_who_want_it_so)
{
    const DzWeightMapPtr map(new DzWeightMap(1300));
    map->setWeight(1299, 4);
    EXPECT_EQ(map->getWeightsPtr()[1299], 4);
    EXPECT_EQ(map->getWeightsPtr()[0], 0);
    map->setWeight(0, 8);
    map->setWeight(1299, 0);
    EXPECT_EQ(map->getWeightsPtr()[0], 8);
    EXPECT_EQ(map->getWeightsPtr()[1299], 0);
    const DzWeightMapPtr copy(map->makeCopy());
    map->setWeight(0, 1);
    EXPECT_EQ(List(*copy), (Listed{{0, 8}}));
    EXPECT_EQ(copy->getWeightsPtr()[0], 8);
}

} // namespace
