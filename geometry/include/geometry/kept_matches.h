// Matches of meshes that are asked for again and again.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/morph_transfer.h"

#include <memory>

namespace geometry {

/// MatchSurfaces() with its own options, which is done once for the same two meshes: the last few maps stay
/// in memory, unless they are of millions of vertices. Any thread may ask.
std::shared_ptr<const SurfaceMap> MatchOnce(const PolygonMeshView& sourceNeutral,
                                            const PolygonMeshView& targetNeutral);

} // namespace geometry
