// Interpolation between knots.
// SPDX-License-Identifier: MIT

#include "scene/spline.h"

#include <algorithm>

namespace openhost {

namespace {

/// From one knot to the next.
struct Step {
    double in = 0.0, out = 0.0;
};

Step StepBetween(const std::vector<SplineKnot>& knots, std::size_t from, std::size_t to)
{
    return {knots[to].in - knots[from].in, knots[to].out - knots[from].out};
}

struct Tangents {
    double incoming, outgoing; ///< per unit of `in`
};

// Kochanek and Bartels, "Interpolating splines with local tension, continuity, and bias control", 1984: the
// steps to the neighbours are weighed, and both tangents scaled by the neighbours' distances, so that the
// curve passes an unevenly spaced knot without a change of speed. At the ends the one neighbour counts for
// both; so it does beside a second knot in the same place, where the curve jumps.
Tangents TangentsAt(const std::vector<SplineKnot>& knots, std::size_t i)
{
    const SplineKnot& k = knots[i];
    Step before = i > 0 ? StepBetween(knots, i - 1, i) : Step();
    Step after = i + 1 < knots.size() ? StepBetween(knots, i, i + 1) : Step();
    if (before.in <= 0.0)
        before = after;
    if (after.in <= 0.0)
        after = before;
    const double scale = (1.0 - k.tension) / (before.in + after.in);
    return {scale * ((1.0 - k.continuity) * (1.0 + k.bias) * before.out +
                     (1.0 + k.continuity) * (1.0 - k.bias) * after.out),
            scale * ((1.0 + k.continuity) * (1.0 + k.bias) * before.out +
                     (1.0 - k.continuity) * (1.0 - k.bias) * after.out)};
}

double Hermite(double y0, double m0, double y1, double m1, double t)
{
    const double t2 = t * t, t3 = t2 * t;
    return (2.0 * t3 - 3.0 * t2 + 1.0) * y0 + (t3 - 2.0 * t2 + t) * m0 + (3.0 * t2 - 2.0 * t3) * y1 +
           (t3 - t2) * m1;
}

} // namespace

double Interpolate(const std::vector<SplineKnot>& knots, SplineKind kind, double x)
{
    if (knots.empty())
        return 0.0;
    if (x <= knots.front().in)
        return knots.front().out;
    if (x >= knots.back().in)
        return knots.back().out;
    const auto after = std::upper_bound(knots.begin(), knots.end(), x,
                                        [](double value, const SplineKnot& k) { return value < k.in; });
    const std::size_t i = static_cast<std::size_t>(after - knots.begin()) - 1;
    const SplineKnot &a = knots[i], &b = knots[i + 1];
    if (kind == SplineKind::Constant)
        return a.out;
    const double width = b.in - a.in;
    const double t = (x - a.in) / width;
    if (kind == SplineKind::Linear)
        return a.out + (b.out - a.out) * t;
    return Hermite(a.out, TangentsAt(knots, i).outgoing * width, b.out,
                   TangentsAt(knots, i + 1).incoming * width, t);
}

} // namespace openhost
