// Unfinished files that programs which have ended left in a folder.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>

namespace base {

/// For a program once in each folder: who writes thousands of files does not list it for each of them.
void RemoveUnfinishedFilesOnce(const std::filesystem::path& folder);

/// The same as often as SearchFoldersOnce() lets sets of files do it.
void RemoveUnfinishedFilesOfSet(const std::filesystem::path& folder);

} // namespace base
