// Which files' text scripts may have.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>

namespace openhost {

/// Everything may be read while no ScriptBounds lives.
/// @throws base::IoError  the present bounds do not hold the file or folder
void ThrowIfOutOfReach(const std::filesystem::path& file);

} // namespace openhost
