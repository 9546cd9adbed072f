// Evening out a mesh along the canonical body.
// SPDX-License-Identifier: MIT

#pragma once

#include "body_solid.h"
#include "geometry/polygon_mesh.h"

#include <vector>

namespace content {

/// Moves each vertex towards the middle of its quads along the solid's surface, several rounds, and back onto
/// it. Quads that fold are opened by rounds of their own.
std::vector<Vec3f> RelaxOn(Solid solid, const geometry::Topology& topology, std::vector<Vec3f> positions,
                           int rounds);

/// Likewise the marked vertices alone, whose places lie on the solid already.
void RelaxSome(Solid solid, const geometry::Topology& topology, const std::vector<char>& marked, int rounds,
               std::vector<Vec3f>& positions);

/// Marks the vertices of all faces that have a marked one.
void WidenByAFace(const geometry::Topology& topology, std::vector<char>& marked);

/// How many quads have a corner that is turned against the body's outside.
std::size_t CountFoldedQuads(const geometry::PolygonMeshView& mesh);

} // namespace content
