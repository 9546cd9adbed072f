// Merging and dropping vertices.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

namespace geometry {

struct CleanUpOptions {
    bool weld = false;       ///< vertices at exactly the same place become one; faces that lose a side go
    bool dropUnused = false; ///< vertices that no face uses go
};

/// The mesh with new vertex numbers, in the old order; positions stay as they are. Groups and surfaces stay
/// with their faces, and their names all stay.
PolygonMesh CleanUp(const PolygonMeshView& mesh, const CleanUpOptions& options);

} // namespace geometry
