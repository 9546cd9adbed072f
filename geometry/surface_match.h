// Finding where the vertices of one surface lie on another one close by.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/incidence.h"
#include "geometry/morph_transfer.h"
#include "geometry/surface_tree.h"

#include <vector>

namespace geometry {

/// A target mesh and what the matching needs to know about it.
struct MatchTarget {
    PolygonMeshView mesh;
    IndexLists neighbours;
    std::vector<float> edgeLengths; ///< cm, mean near each vertex
    std::vector<Vec3f> normals;

    explicit MatchTarget(const PolygonMeshView& target);
};

/// A place on the source for each target vertex, invalid where none can be trusted.
std::vector<SurfacePoint> MatchVertices(const SurfaceTree& tree, const PolygonMeshView& source,
                                        const MatchTarget& target, const MatchOptions& options);

} // namespace geometry
