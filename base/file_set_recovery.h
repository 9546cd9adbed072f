// Putting the files of a set in place, by the program that wrote them or the next one.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
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

/// What came of sets that programs had left.
struct FinishedSets {
    bool hasPut = false; ///< files are in place
    Diagnostics told;
};

/// Goes on wherever somebody was stopped. The journal decides, and the folders are locked.
/// @param left      null for a set that was decided just now. Of one that somebody left, what is another file
///                  than it was stays as it is
/// @throws IoError  a file could not be put in place, or may not stay there: the journal remains
void PutInPlace(const LeftSet& set, FinishedSets* left = nullptr);

/// Finishes what programs that have ended left in the folders, and all that belongs to it in others, or takes
/// it back. Then they are locked.
/// @param folders   as FolderLocks::take has them
/// @throws IoError  as PutInPlace
std::optional<FolderLocks::Refusal> FinishAndLock(FolderLocks& locks,
                                                  const std::vector<std::filesystem::path>& folders,
                                                  FolderLocks::Deadline end, FinishedSets& left);

} // namespace base
