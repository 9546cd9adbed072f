// Folders that hold what somebody may have.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <vector>

namespace base {

/// Places below some folders, wherever links lead.
class FolderBounds {
public:
    FolderBounds() = default;
    /// Each as it is now: a link that leads elsewhere later changes nothing.
    explicit FolderBounds(const std::vector<std::filesystem::path>& folders);

    /// Of a file, also one that is not there yet, or a folder; each of the folders holds itself. A name with
    /// a NUL is nobody's.
    bool hold(const std::filesystem::path& file) const;

private:
    std::vector<std::filesystem::path> _folders;
};

} // namespace base
