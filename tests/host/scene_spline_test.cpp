// Values between knots.
// SPDX-License-Identifier: MIT

#include "scene/spline.h"

#include <gtest/gtest.h>

namespace {

using openhost::SplineKind;
using openhost::SplineKnot;
using Knots = std::vector<SplineKnot>;

double At(const Knots& knots, double x, SplineKind kind = SplineKind::Tcb)
{
    return openhost::Interpolate(knots, kind, x);
}

} // namespace

TEST(Spline, passes_through_its_knots_and_is_held_outside)
{
    const Knots knots{{-2, 5, 0.3, 0.2, 0.1}, {0, 1, -0.5, 0.4, 0.9}, {10, 3}};
    for (const SplineKind kind : {SplineKind::Linear, SplineKind::Constant, SplineKind::Tcb}) {
        for (const SplineKnot& knot : knots)
            EXPECT_EQ(At(knots, knot.in, kind), knot.out);
        EXPECT_EQ(At(knots, -100, kind), 5.0);
        EXPECT_EQ(At(knots, 100, kind), 3.0);
    }
    EXPECT_EQ(At({}, 1), 0.0);
    EXPECT_EQ(At({{4, 7}}, 1), 7.0);
}

TEST(Spline, follows_a_line_however_its_knots_are_spaced)
{
    const Knots knots{{0, 3}, {1, 5}, {1.5, 6}, {10, 23}};
    for (double x = 0.0; x <= 10.0; x += 0.125)
        EXPECT_NEAR(At(knots, x), 3.0 + 2.0 * x, 1e-12) << x;
}

TEST(Spline, with_even_knots_follows_a_parabola_between_its_inner_ones)
{
    const Knots knots{{0, 0}, {1, 1}, {2, 4}, {3, 9}};
    for (double x = 1.0; x <= 2.0; x += 0.125)
        EXPECT_NEAR(At(knots, x), x * x, 1e-12) << x;
}

TEST(Spline, at_uneven_knots_has_the_slope_from_neighbour_to_neighbour)
{
    // At the middle knot that slope is 1 / 4; the ends go along their chords, 1 and 0.
    const Knots knots{{0, 0}, {1, 1}, {4, 1}};
    EXPECT_DOUBLE_EQ(At(knots, 0.5), 0.5 + (1.0 - 0.25) / 8.0);
    EXPECT_DOUBLE_EQ(At(knots, 2.5), 1.0 + 3.0 * 0.25 / 8.0);
}

TEST(Spline, weighs_the_steps_by_tension_continuity_and_bias_before_it_scales_them)
{
    // Steps 1 and -3 over distances 1 and 3, tension 1/2, continuity 1/4, bias -1/2:
    // incoming  1/2 (3/4 * 1/2 * 1 + 5/4 * 3/2 * -3) / 4 = -21/32
    // outgoing  1/2 (5/4 * 1/2 * 1 + 3/4 * 3/2 * -3) / 4 = -11/32
    const Knots knots{{0, 0}, {1, 1, 0.5, 0.25, -0.5}, {4, -2}};
    EXPECT_DOUBLE_EQ(At(knots, 0.5), 0.5 + (1.0 + 21.0 / 32.0) / 8.0);
    EXPECT_DOUBLE_EQ(At(knots, 2.5), -0.5 + 3.0 * (-11.0 / 32.0 + 1.0) / 8.0);
}

TEST(Spline, jumps_where_two_knots_share_a_place)
{
    const Knots knots{{0, 0}, {1, 1}, {1, 11}, {2, 12}};
    EXPECT_DOUBLE_EQ(At(knots, 0.5), 0.5);
    EXPECT_DOUBLE_EQ(At(knots, 1.5), 11.5);
}
