// Finding the small round pieces of a mesh.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <vector>

namespace geometry {

/// Vertices that are to move as a whole.
struct WholePiece {
    std::vector<std::uint32_t> vertices;
    Vec3f center;        ///< cm
    float radius = 0.0f; ///< cm, of the ball around the center that holds the piece itself
};

/// Connected pieces that are small beside the surface they go with and about as deep as they are wide, each
/// with the smaller pieces in or on it: an eyeball with its cornea, a tooth, a button.
/// @param surfaceSize  cm, the diagonal of that surface's box
std::vector<WholePiece> FindWholePieces(const PolygonMeshView& mesh, float surfaceSize);

} // namespace geometry
