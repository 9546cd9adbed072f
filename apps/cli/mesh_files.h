// OBJ files as the subcommands need them, and facts about meshes.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/obj.h"

#include <filesystem>

namespace cli {

/// @throws base::IoError, base::FormatError  it cannot be read, holds no vertex, or a position is not
/// finite
geometry::ObjContent ReadMeshFile(const std::filesystem::path& file);
/// As above, and the mesh has faces.
geometry::ObjContent ReadSurfaceFile(const std::filesystem::path& file);
bool HasExtension(const std::filesystem::path& file, const char* lowerCaseExtension);

/// How many faces meet at the edges.
struct EdgeCounts {
    std::size_t total = 0;
    std::size_t boundary = 0;    ///< of one face
    std::size_t nonManifold = 0; ///< of more than two faces

    bool isClosed() const { return total > 0 && boundary == 0 && nonManifold == 0; }
};
EdgeCounts CountEdges(const geometry::Topology& topology);

} // namespace cli
