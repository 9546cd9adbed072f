// A table of conversions for all characters of a folder.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

#include <filesystem>
#include <string>

namespace cli {

/// Comma-separated values: the presets below the folder that bring a Genesis 3, 8 or 8.1 figure with shapes,
/// in the order of their names, with names for their morphs that differ. Scenes are left out.
/// @param target       empty to leave it to the command line
/// @param diagnostics  hears of files that cannot be read
/// @throws std::runtime_error  there is no such folder, or no such preset in it
std::string TableOfCharacters(const std::filesystem::path& folder, const std::string& target,
                              base::Diagnostics& diagnostics);

} // namespace cli
