// Folders that one program at a time writes.
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <vector>

namespace base {

/// Of folders, by all programs that use this; nothing of it is left on disk.
class FolderLocks {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    struct Refusal {
        std::filesystem::path folder;
        int reason; ///< EWOULDBLOCK when another program has it
    };

    FolderLocks() = default;
    ~FolderLocks() { release(); }
    FolderLocks(const FolderLocks&) = delete;
    FolderLocks& operator=(const FolderLocks&) = delete;

    /// All or none of them.
    /// @param folders  in the order of their paths, each once and without links, so that no two programs wait
    ///                 for each other
    /// @return nothing when they are locked
    std::optional<Refusal> take(const std::vector<std::filesystem::path>& folders, Deadline end);
    void release();

private:
    int takeOne(const std::filesystem::path& folder, Deadline end);

    std::vector<int> _descriptors;
};

} // namespace base
