// Moving the part of a surface that lies within a field.
// SPDX-License-Identifier: MIT

#include "geometry/deform_field.h"

#include <algorithm>
#include <cassert>

namespace geometry {

Falloff::Falloff(std::vector<Knot> knots) : _knots(std::move(knots))
{
    std::stable_sort(_knots.begin(), _knots.end(),
                     [](const Knot& a, const Knot& b) { return a.distance < b.distance; });
}

double Falloff::at(double distance) const
{
    if (!(distance <= 1.0))
        return 0.0;
    if (_knots.empty())
        return 1.0 - distance * distance * (3.0 - 2.0 * distance);
    const auto next = std::find_if(_knots.begin(), _knots.end(),
                                   [&](const Knot& knot) { return knot.distance > distance; });
    if (next == _knots.begin())
        return next->strength;
    const Knot& last = *(next - 1);
    if (next == _knots.end())
        return last.strength;
    const double part = (distance - last.distance) / (next->distance - last.distance);
    return last.strength + part * (next->strength - last.strength);
}

std::vector<float> BallWeights(base::Span<const Vec3f> positions, const Eigen::Affine3d& toField,
                               const Falloff& falloff)
{
    std::vector<float> weights(positions.size());
    for (std::size_t v = 0; v < weights.size(); ++v)
        weights[v] = static_cast<float>(falloff.at((toField * ToEigen(positions[v])).norm()));
    return weights;
}

void Deform(base::Span<Vec3f> positions, const Eigen::Affine3d& transform, base::Span<const float> weights)
{
    assert(weights.size() == positions.size());
    for (std::size_t v = 0; v < positions.size(); ++v) {
        if (weights[v] == 0.0f)
            continue;
        const Eigen::Vector3d from = ToEigen(positions[v]), to = transform * from;
        positions[v] = FromEigen(from + static_cast<double>(weights[v]) * (to - from));
    }
}

} // namespace geometry
