// Names of files to be written.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>

namespace cli {

/// Told before the work rather than behind it, when there is nowhere to put what has been made.
/// @throws std::runtime_error  the name is longer than those that its folder can hold, or something is there
/// that
///                             cannot be replaced
void CheckOutput(const std::filesystem::path& file);

} // namespace cli
