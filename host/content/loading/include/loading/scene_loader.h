// Loading content files into the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "library/asset_library.h"

#include <filesystem>

namespace openhost {

/// Adds a file's figures and props to the scene and selects what it added, or applies a preset to the
/// selection. Missing parts are left out, one line each in the log. What a person should know or decide goes
/// through CurrentAttendant().
/// @param replace  figures and props take the place of all that is in the scene, which stays if they cannot
/// be
///                 loaded
/// @return false when a question was answered by cancelling; the scene is as it was
/// @throws base::IoError, base::FormatError  the file cannot be read
/// @throws base::Error  a preset has nothing selected to be applied to, or the file holds nothing to load
bool LoadIntoScene(AssetLibrary& library, const std::filesystem::path& file, bool replace);

} // namespace openhost
