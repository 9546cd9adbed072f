// Pushing a surface out along its normals.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <vector>

namespace geometry {

/// Each vertex moved along its normal by the distance times its weight.
/// @param distance  cm; negative pushes inwards
/// @param weights   one per vertex; empty for 1 everywhere
/// @return one position per vertex; a vertex that no face uses stays
std::vector<Vec3f> PushAlongNormals(const PolygonMeshView& mesh, float distance,
                                    base::Span<const float> weights = {});

} // namespace geometry
