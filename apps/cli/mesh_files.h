// OBJ files as the subcommands need them.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/obj.h"

#include <filesystem>

namespace cli {

/// @param file  - for the text on standard input
/// @throws base::IoError, base::FormatError  it cannot be read, holds no vertex, or a position is not
/// finite or farther out than anything that can be traced
/// @param met  receives what was left out
geometry::ObjContent ReadMeshFile(const std::filesystem::path& file, base::Diagnostics& met);
/// As above, and the mesh has faces.
geometry::ObjContent ReadSurfaceFile(const std::filesystem::path& file, base::Diagnostics& met);
bool HasExtension(const std::filesystem::path& file, const char* lowerCaseExtension);

} // namespace cli
