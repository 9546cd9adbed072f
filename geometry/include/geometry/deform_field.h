// Moving the part of a surface that lies within a field.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/transform.h"

#include <vector>

namespace geometry {

/// How strong a field is at a part of its radius: a curve through knots.
class Falloff {
public:
    struct Knot {
        double distance; ///< 0 at the centre, 1 at the edge
        double strength;
    };

    /// Full at the centre, none at the edge, level at both.
    Falloff() = default;
    /// Straight between the knots, level before the first and behind the last; the default without knots.
    explicit Falloff(std::vector<Knot> knots);

    double at(double distance) const; ///< 0 beyond the edge
    bool isDefault() const { return _knots.empty(); }
    const std::vector<Knot>& knots() const { return _knots; } ///< by distance

private:
    std::vector<Knot> _knots;
};

/// The strength of a ball of radius 1 at each position.
/// @param toField  from the positions' space into the ball's
std::vector<float> BallWeights(base::Span<const Vec3f> positions, const Eigen::Affine3d& toField,
                               const Falloff& falloff);

/// Moves each position the part of the way to where the transform puts it that its weight says.
/// @param weights  one per position
void Deform(base::Span<Vec3f> positions, const Eigen::Affine3d& transform, base::Span<const float> weights);

} // namespace geometry
