// Whether a shape that was carried over lies as smoothly as the one it came from.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/morph_transfer.h"

namespace geometry {

/// The angle between each face of the target and the source's surface where the face lies, over the area of
/// the target's faces.
struct Crumple {
    double meanDegrees = 0.0;
    double p95Degrees = 0.0; ///< of 95 % of the area no face leans further
    double steepShare = 0.0; ///< 0 to 1, of the area that leans by more than 30 degrees: it looks jagged
};

/// Of any shape of two meshes that are matched. Faces without an area, and those whose place on the source
/// has none, do not count.
/// @throws TopologyError  a mesh has another number of vertices than the map
Crumple MeasureCrumple(const SurfaceMap& map, const PolygonMeshView& source, const PolygonMeshView& target);

} // namespace geometry
