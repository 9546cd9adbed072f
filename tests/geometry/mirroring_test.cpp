// Mirrored morph deltas.
// SPDX-License-Identifier: MIT

#include "geometry/mirroring.h"

#include "geometry/errors.h"
#include "throws.h"

#include <vector>

using namespace geometry;

namespace {

/// Left, middle and right of the plane across each axis, and one vertex that has no counterpart.
const std::vector<Vec3f> places{{-2, 1, 1}, {0, 1, 1}, {2, 1, 1}, {5, 1, 1}};
const std::vector<Vec3f> deltas{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}};

std::vector<Vec3f> Mirrored(MirrorSide side)
{
    std::vector<Vec3f> result = deltas;
    MirrorDeltas(result, places, {0, side});
    return result;
}

} // namespace

TEST(MirrorDeltas, swaps_the_two_sides)
{
    EXPECT_EQ(Mirrored(MirrorSide::Swap),
              (std::vector<Vec3f>{{-7, 8, 9}, {-4, 5, 6}, {-1, 2, 3}, {10, 11, 12}}));
}

TEST(MirrorDeltas, copies_one_side_and_keeps_the_plane_within_itself)
{
    EXPECT_EQ(Mirrored(MirrorSide::PositiveToNegative),
              (std::vector<Vec3f>{{-7, 8, 9}, {0, 5, 6}, {7, 8, 9}, {10, 11, 12}}));
    EXPECT_EQ(Mirrored(MirrorSide::NegativeToPositive),
              (std::vector<Vec3f>{{1, 2, 3}, {0, 5, 6}, {-1, 2, 3}, {10, 11, 12}}));
}

TEST(MirrorDeltas, goes_across_any_axis)
{
    for (int axis = 0; axis < 3; ++axis) {
        Vec3f place{1, 1, 1}, other = place, expected{1, 1, 1};
        other[axis] = -1;
        expected[axis] = -1;
        std::vector<Vec3f> result{{1, 1, 1}, {0, 0, 0}};
        MirrorDeltas(result, std::vector<Vec3f>{place, other}, {axis, MirrorSide::Swap});
        EXPECT_EQ(result[0], Vec3f{});
        EXPECT_EQ(result[1], expected) << axis;
    }
}

TEST(MirrorDeltas, finds_a_counterpart_within_a_tenth_of_a_millimetre)
{
    const auto moved = [](int axis, float gap) {
        std::vector<Vec3f> places{{-2.005f, 1.005f, 1.005f}, {2.005f, 1.005f, 1.005f}},
            result{{0, 0, 0}, {0, 1, 0}};
        places[1][axis] += gap;
        MirrorDeltas(result, places, {0, MirrorSide::Swap});
        return result[0];
    };
    for (int axis = 0; axis < 3; ++axis)
        for (const float sign : {-1.0f, 1.0f}) {
            EXPECT_EQ(moved(axis, sign * 0.0099f), (Vec3f{0, 1, 0})) << axis << sign;
            EXPECT_EQ(moved(axis, sign * 0.0101f), Vec3f{}) << axis << sign;
        }
}

TEST(MirrorDeltas, refuses_deltas_of_another_mesh)
{
    std::vector<Vec3f> result(2);
    EXPECT_THROW_MSG(MirrorDeltas(result, std::vector<Vec3f>(3), {}), TopologyError,
                     "neutral shape has 3 vertices but 2 deltas are given");
}
