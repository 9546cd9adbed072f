// The morph files of a figure, wherever content directories have them.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace cli {

/// Files of content directories by their addresses. Case does not count, since content grew on disks that
/// ignore it.
class ContentFiles {
public:
    explicit ContentFiles(std::vector<std::filesystem::path> directories)
        : _directories(std::move(directories))
    {
    }

    /// In the first directory that holds it; empty where none does.
    /// @param path  decoded, with or without a leading slash
    std::filesystem::path find(const std::string& path) const;
    /// Those below the folder `Morphs` beside a figure's file, in any directory, sorted. Of files with the
    /// same place the first directory's counts.
    std::vector<std::filesystem::path> morphsOf(const std::filesystem::path& figureFile) const;

private:
    std::vector<std::filesystem::path> _directories;
};

/// All below a folder that end like morph files, sorted; no companion files of other systems.
std::vector<std::filesystem::path> MorphFilesBelow(const std::filesystem::path& folder);

/// Whether the text fits the pattern, in which `*` stands for any text and `?` for one character; without
/// regard to case.
bool FitsPattern(const std::string& text, const std::string& pattern);

} // namespace cli
