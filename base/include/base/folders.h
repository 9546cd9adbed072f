// Folders for files to be written.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace base {

/// Makes the folder and those that it lies in; what is there already stays.
/// @throws IoError  names the folder and what is in its way
void MakeFolders(const std::filesystem::path& folder);

/// Folders for files that may not come: those that it made and that are empty at its end are removed.
class MadeFolders {
public:
    MadeFolders() = default;
    ~MadeFolders();
    MadeFolders(const MadeFolders&) = delete;
    MadeFolders& operator=(const MadeFolders&) = delete;

    /// @throws IoError  as MakeFolders
    void make(const std::filesystem::path& folder);

private:
    std::vector<std::filesystem::path> _made; ///< those that others lie in come first
};

/// The first part of the path that is a link to something that is not there, with where it leads; empty for
/// none.
std::string DescribeLostLink(const std::filesystem::path& path);

} // namespace base
