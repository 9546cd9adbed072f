// Folders for files to be written.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>

namespace base {

/// Makes the folder and those that it lies in; what is there already stays.
/// @throws IoError  names the folder and what is in its way
void MakeFolders(const std::filesystem::path& folder);

/// The first part of the path that is a link to something that is not there, with where it leads; empty for
/// none.
std::string DescribeLostLink(const std::filesystem::path& path);

} // namespace base
