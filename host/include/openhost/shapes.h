// Shapes of the scene as the geometry library has them, for programs.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/deltas.h"
#include "geometry/multires_detail.h"
#include "geometry/polygon_mesh.h"
#include "geometry/texcoords.h"

#include <string>
#include <vector>

class DzMorph;
class DzNode;

namespace openhost {

/// The node's deformed mesh in world space, at the subdivision level in effect. The scene owns it; it is
/// valid until the next change. The node is to have an object with a mesh.
geometry::PolygonMeshView WorldMesh(const DzNode& node);
/// Of the corners of WorldMesh(), refined where that is; empty without.
geometry::TexCoords WorldTexCoords(const DzNode& node);
/// Of the undeformed cage; the node is to have an object with a mesh.
std::size_t CageVertexCount(const DzNode& node);

/// Labels of the modifiers that move the node's mesh behind its skin as their dials are now: smoothing and
/// pushing. What they do is no morph's, but stands in whatever is made from the deformed mesh.
std::vector<std::string> MeshShapers(const DzNode& node);

/// What the morph does to the cage, in centimetres at a dial of 1; read now if still in its file. Empty, and
/// told as a diagnostic once, when that fails.
const geometry::SparseDeltas& MorphDeltas(const DzMorph& morph);
/// What the morph adds to the subdivided mesh; otherwise likewise.
const geometry::MultiresDetail& MorphDetail(const DzMorph& morph);

} // namespace openhost
