// What pictures of figures show.
// SPDX-License-Identifier: MIT

#include "page/picture_box.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

namespace {

using geometry::Box3f;
using geometry::Vec3f;

std::vector<Vec3f> Figure()
{
    std::vector<Vec3f> positions;
    for (int i = 0; i <= 1000; ++i)
        positions.push_back({static_cast<float>(i % 7) - 3.0f, 0.17f * static_cast<float>(i),
                             0.5f * static_cast<float>(i % 3)});
    return positions;
}

void ExpectFigure(const Box3f& box)
{
    EXPECT_FLOAT_EQ(box.min.x, -3.0f);
    EXPECT_FLOAT_EQ(box.max.x, 3.0f);
    EXPECT_FLOAT_EQ(box.min.y, 0.0f);
    EXPECT_FLOAT_EQ(box.max.y, 170.0f);
    EXPECT_FLOAT_EQ(box.min.z, 0.0f);
    EXPECT_FLOAT_EQ(box.max.z, 1.0f);
}

} // namespace

TEST(BoxToShow, is_that_of_all_positions_of_a_sound_figure)
{
    std::size_t farOff = 0;
    ExpectFigure(cli::BoxToShow(Figure(), &farOff));
    EXPECT_EQ(farOff, 0u);
    EXPECT_TRUE(cli::BoxToShow({}).isEmpty());
}

TEST(BoxToShow, leaves_vertices_out_that_lie_far_off_and_counts_them)
{
    std::vector<Vec3f> positions = Figure();
    positions.push_back({1e7f, 3.0f, 0.0f});
    positions.push_back({0.0f, -2000.0f, 0.0f});
    positions.push_back({0.0f, NAN, 0.0f});
    std::size_t farOff = 0;
    ExpectFigure(cli::BoxToShow(positions, &farOff));
    EXPECT_EQ(farOff, 3u);
}

TEST(BoxToShow, has_what_stands_out_a_little)
{
    std::vector<Vec3f> positions = Figure();
    positions.push_back({0.0f, 400.0f, 0.0f}); // a hat
    EXPECT_FLOAT_EQ(cli::BoxToShow(positions).max.y, 400.0f);
}
