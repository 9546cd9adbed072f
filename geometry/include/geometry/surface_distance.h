// How far one surface lies from another.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <vector>

namespace geometry {

/// Summary of a list of distances.
struct DistanceSummary {
    double mean = 0.0, p95 = 0.0, max = 0.0; ///< cm; p95 is what 95 % do not exceed
};
DistanceSummary Summarize(std::vector<float> distances); ///< all zero for an empty list

/// Distance of each vertex of `from` to the closest point on the surface of `to`, in cm. Infinite where a
/// position is not finite.
/// @throws TopologyError  `to` has no faces
std::vector<float> SurfaceDistances(base::Span<const Vec3f> from, const PolygonMeshView& to);

} // namespace geometry
