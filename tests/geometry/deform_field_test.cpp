// Fields and what they move.
// SPDX-License-Identifier: MIT

#include "geometry/deform_field.h"

#include <gtest/gtest.h>

#include <limits>

using geometry::Falloff;
using geometry::Vec3f;

TEST(Falloff, is_full_at_the_centre_half_in_the_middle_and_nothing_from_the_edge)
{
    const Falloff falloff;
    EXPECT_EQ(falloff.at(0.0), 1.0);
    EXPECT_EQ(falloff.at(0.5), 0.5);
    EXPECT_EQ(falloff.at(0.25), 0.84375);
    EXPECT_EQ(falloff.at(1.0), 0.0);
    EXPECT_EQ(falloff.at(1.5), 0.0);
    EXPECT_EQ(falloff.at(std::numeric_limits<double>::quiet_NaN()), 0.0);
}

TEST(Falloff, goes_straight_from_knot_to_knot)
{
    const Falloff falloff({{0.75, 0.0}, {0.25, 0.5}, {0.5, 1.0}});
    EXPECT_EQ(falloff.at(0.0), 0.5) << "level before the first";
    EXPECT_EQ(falloff.at(0.375), 0.75);
    EXPECT_EQ(falloff.at(0.5), 1.0);
    EXPECT_EQ(falloff.at(0.625), 0.5);
    EXPECT_EQ(falloff.at(1.0), 0.0) << "level behind the last";
}

TEST(Falloff, steps_where_two_knots_stand_in_one_place)
{
    const Falloff falloff({{0.0, 1.0}, {0.5, 1.0}, {0.5, 0.25}, {1.0, 0.25}});
    EXPECT_EQ(falloff.at(0.499), 1.0);
    EXPECT_EQ(falloff.at(0.5), 0.25);
    EXPECT_EQ(falloff.at(1.0), 0.25);
    EXPECT_EQ(falloff.at(1.001), 0.0) << "a field ends at its edge";
}

TEST(BallWeights, are_those_of_an_ellipsoid_that_is_moved_turned_and_stretched)
{
    // Radii 4 and 2, the long axis along Y after the turn; centre at (10, 0, 0).
    const Eigen::Affine3d field = Eigen::Translation3d(10, 0, 0) *
                                  Eigen::AngleAxisd(std::acos(-1.0) / 2, Eigen::Vector3d::UnitZ()) *
                                  Eigen::Scaling(4.0, 2.0, 2.0);
    const std::vector<Vec3f> positions{{10, 0, 0}, {10, 2, 0}, {11, 0, 0}, {12, 0, 0}, {10, 4, 0}, {0, 0, 0}};
    const std::vector<float> weights = geometry::BallWeights(positions, field.inverse(), Falloff());
    const float expected[] = {1.0f, 0.5f, 0.5f, 0.0f, 0.0f, 0.0f};
    for (std::size_t v = 0; v < weights.size(); ++v)
        EXPECT_NEAR(weights[v], expected[v], 1e-6f) << v;
}

TEST(Deform, goes_the_weighted_part_of_the_way)
{
    std::vector<Vec3f> positions{{1, 2, 3}, {1, 2, 3}, {1, 2, 3}};
    const std::vector<float> weights{0.0f, 0.25f, 1.0f};
    Eigen::Affine3d transform(Eigen::Translation3d(0, 4, 0));
    transform.scale(3.0);
    geometry::Deform(positions, transform, weights);
    EXPECT_EQ(positions[0], (Vec3f{1, 2, 3}));
    EXPECT_EQ(positions[1], (Vec3f{1.5f, 4.0f, 4.5f}));
    EXPECT_EQ(positions[2], (Vec3f{3, 10, 9}));
}
