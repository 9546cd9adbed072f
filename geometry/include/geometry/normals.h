// Vertex and face normals.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <vector>

namespace geometry {

/// Unit normal of each face by Newell's method; zero for a face without area. One per face.
std::vector<Vec3f> FaceNormals(const PolygonMeshView& mesh);

/// Unit normal of each vertex: the sum of its faces' normals weighted by corner angle (Thürmer and Wüthrich,
/// "Computing vertex normals from polygonal facets", 1998). Zero for a vertex that no face uses. One per
/// vertex.
std::vector<Vec3f> VertexNormals(const PolygonMeshView& mesh);

} // namespace geometry
