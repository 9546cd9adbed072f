// Matching meshes that may be inside out.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/morph_transfer.h"

namespace cli {

/// Whether any face spans one; without, nothing tells which side of a mesh is out.
bool HasArea(const geometry::PolygonMeshView& mesh);

/// The same faces, wound the other way round.
geometry::Topology TurnedInsideOut(const geometry::Topology& topology);

struct EitherWayMatch {
    geometry::SurfaceMap map;
    bool isTurned = false; ///< the target's faces were taken the other way round
    bool isMisfit = false; ///< either way; the map is that of the target as it is
};

/// Also with the target's faces turned where it hardly fits as it is: programs that show both sides of a face
/// let nobody see that a mesh is inside out.
/// @throws geometry::TopologyError  as geometry::MatchSurfaces
EitherWayMatch MatchEitherWay(const geometry::PolygonMeshView& source,
                              const geometry::PolygonMeshView& target, const geometry::MatchOptions& options);

} // namespace cli
