// Meshes and morphs as pages carry them: few bytes, and as exact as a screen shows.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"
#include "report.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace cli {

/// Several meshes as one, in their order.
struct JoinedMesh {
    std::vector<geometry::Vec3f> positions; ///< cm
    std::vector<std::uint32_t> faces;       ///< four corners each; of a triangle the last two are one
};
JoinedMesh Join(const std::vector<geometry::PolygonMeshView>& meshes);

/// Positions to a 65535th of the box around them.
Json PackMesh(const JoinedMesh& mesh);
/// Displacements (cm), one per vertex, to a 32767th of the largest part of one; only of vertices that move.
Json PackDeltas(const std::vector<geometry::Vec3f>& deltas);
Json PackBytes(const std::vector<std::uint8_t>& bytes);

} // namespace cli
