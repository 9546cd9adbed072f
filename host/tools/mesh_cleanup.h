// Merging and dropping vertices for export.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

namespace openhost {

/// A mesh with other vertex numbers.
/// @param weld        vertices at exactly the same place become one; faces that lose a side go
/// @param dropUnused  vertices that no face uses go
geometry::PolygonMesh CleanUp(const geometry::PolygonMeshView& mesh, bool weld, bool dropUnused);

} // namespace openhost
