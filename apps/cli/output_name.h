// Names of files to be written.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <vector>

namespace cli {

/// Told before the work rather than behind it, when there is nowhere to put what has been made.
/// @param inputs               of the same run, under whatever names
/// @throws UsageError          the name stands for standard output
/// @throws std::runtime_error  the name is longer than those that its folder can hold, or something is there
///                             that cannot be replaced, or that is an input
void CheckOutput(const std::filesystem::path& file, const std::vector<std::filesystem::path>& inputs);

/// That files can be written into a folder, which may have to be made with those above it; makes none.
/// @throws UsageError          the name stands for standard output
/// @throws std::runtime_error  they cannot
void CheckFolder(const std::filesystem::path& folder);

} // namespace cli
