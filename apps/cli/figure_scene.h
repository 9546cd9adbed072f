// Figures in their own files, and scenes of them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

#include <filesystem>
#include <string>
#include <vector>

namespace cli {

/// The geometry of an id, or that of a node: the one that its skin names, else the file's first. Null for
/// none.
const dson::Geometry* GeometryOf(const dson::Document& document, const std::string& id);

/// The file itself, unless it only defines a figure: then a scene in the folder that has this figure in it.
/// @throws base::IoError, base::FormatError  it cannot be read, or lies in none of the content directories
std::filesystem::path SceneOf(const std::filesystem::path& file,
                              const std::vector<std::filesystem::path>& contentDirectories,
                              const std::filesystem::path& folder);

} // namespace cli
