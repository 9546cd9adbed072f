// Evening out a mesh along the canonical body.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <vector>

namespace content {

/// Moves each vertex towards the middle of its quads along the surface, several rounds, and back onto the
/// body. Quads that fold are opened by rounds of their own.
std::vector<geometry::Vec3f> RelaxOnBody(const geometry::Topology& topology,
                                         std::vector<geometry::Vec3f> positions, int rounds);

/// How many quads have a corner that is turned against the body's outside.
std::size_t CountFoldedQuads(const geometry::PolygonMeshView& mesh);

} // namespace content
