// Interpolation between knots.
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

namespace openhost {

struct SplineKnot {
    double in = 0.0, out = 0.0;
    double tension = 0.0, continuity = 0.0, bias = 0.0; ///< of Tcb only
};

enum class SplineKind { Linear, Constant, Tcb };

/// The value at x; held outside the knots, 0 without any.
/// @param knots  ascending by `in`
double Interpolate(const std::vector<SplineKnot>& knots, SplineKind kind, double x);

} // namespace openhost
