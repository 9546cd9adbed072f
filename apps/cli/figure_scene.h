// Scenes of figures' own files.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <vector>

namespace cli {

/// The file itself, unless it only defines a figure: then a scene in the folder that has this figure in it.
/// @throws base::IoError, base::FormatError  it cannot be read, or lies in none of the content directories
std::filesystem::path SceneOf(const std::filesystem::path& file,
                              const std::vector<std::filesystem::path>& contentDirectories,
                              const std::filesystem::path& folder);

} // namespace cli
