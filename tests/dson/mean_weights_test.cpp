// The weights that come next to those for each axis alone.
// SPDX-License-Identifier: MIT

#include "dson/asset.h"

#include <gtest/gtest.h>

TEST(MeanOfAxes, is_the_nearest_that_a_weight_map_holds)
{
    constexpr float step = 1.0f / 65535.0f;
    const dson::WeightMap mean = dson::MeanOfAxes(
        {dson::WeightMap{{3, 5, 8}, {1.0f, step, 2.0f * step}}, dson::WeightMap{{3}, {0.5f}}, {}});
    EXPECT_EQ(mean.vertices, (std::vector<std::uint32_t>{3, 8}));
    EXPECT_EQ(mean.weights, (std::vector<float>{32768.0f / 65535.0f, step}));
}
