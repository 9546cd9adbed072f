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
    /// Of vertices with a face that turns so far from their normal that neither tells which side is out: the
    /// mesh folds over there. Their normal is that of the vertices around them.
    std::vector<bool> isFolded;

    explicit MatchTarget(const PolygonMeshView& target);

private:
    void findFolds();
};

/// A source mesh and what the matching needs to know about it.
struct MatchSource {
    SurfaceTree tree;
    std::vector<Vec3f> normals;
    std::vector<bool> isBoundary; ///< of vertices on an edge that only one face uses

    explicit MatchSource(const PolygonMeshView& source);
};

/// A place on the source for each target vertex, invalid where none can be trusted.
///
/// A dense target that uniform subdivision has made is matched on the way from coarse to fine: the offsets
/// that carry one of its coarser levels onto the source carry the fine vertices close to their places.
/// @param statistics  its slides are set
std::vector<SurfacePoint> MatchVertices(const MatchSource& source, const MatchTarget& target,
                                        const MatchOptions& options, MatchStatistics& statistics);

} // namespace geometry
