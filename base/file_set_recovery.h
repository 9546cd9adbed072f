// Putting the files of a set in place, by the program that wrote them or the next one.
// SPDX-License-Identifier: MIT

#pragma once

#include "file_set_journal.h"
#include "folder_locks.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace base {

/// Files that a journal tells of.
struct LeftSet {
    std::filesystem::path root; ///< without links
    Journal journal;

    std::filesystem::path folder(const FolderPlan& plan) const
    {
        return plan.folder == "." ? root : root / plan.folder;
    }
    /// Where the journal lies.
    std::filesystem::path home() const { return folder(journal.folders.front()); }
};

/// Goes on wherever somebody was stopped. The journal decides, and the folders are locked.
/// @throws IoError  a file could not be put in place, or may not stay there: the journal remains
void PutInPlace(const LeftSet& set);

/// Finishes what programs that have ended left in the folders, and all that belongs to it in others, or takes
/// it back. Then they are locked.
/// @param folders   as FolderLocks::take has them
/// @param hasPut    becomes true when files were put in place
/// @throws IoError  as PutInPlace
std::optional<FolderLocks::Refusal> FinishAndLock(FolderLocks& locks,
                                                  const std::vector<std::filesystem::path>& folders,
                                                  FolderLocks::Deadline end, bool* hasPut = nullptr);

} // namespace base
