// Putting the files of a set in place, by the program that wrote them or the next one.
// SPDX-License-Identifier: MIT

#include "file_set_recovery.h"

#include "base/atomic_file.h"
#include "base/counted.h"
#include "base/errors.h"
#include "base/file_set.h"
#include "base/reason.h"
#include "file_identity.h"
#include "unfinished_files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iterator>
#include <utility>

#include <unistd.h>

namespace base {

namespace fs = std::filesystem;

namespace {

/// What is not there any more has been put in place, or removed, already.
void ThrowUnlessGone(const fs::path& file, const fs::path& target)
{
    const int reason = errno;
    std::error_code error;
    if (reason != ENOENT || fs::exists(file, error))
        throw IoError(
            "cannot write {}: {}; it changes with all that belongs to it as soon as that is possible",
            target.string(), ReasonOf(reason));
}

/// What was done of a plan, and what not.
struct Tally {
    std::size_t done = 0, others = 0;
    fs::path example; ///< of files that are others than the plan knew

    /// @return false for what is done already, or another file
    bool isToBeDone(const fs::path& file, const std::string& identity)
    {
        const std::string now = IdentityOf(file);
        if (now == identity)
            return now != noFile;
        if (now != noFile)
            addOther(file);
        return false;
    }
    void addOther(const fs::path& file)
    {
        if (others++ == 0)
            example = file;
    }
};

void Put(const fs::path& folder, const Renaming& renaming, Tally* left)
{
    const fs::path from = folder / renaming.from, to = folder / renaming.to;
    if (left && !left->isToBeDone(from, renaming.fromIdentity))
        return;
    if (left && IdentityOf(to) != renaming.toIdentity)
        return left->addOther(to);
    if (std::rename(from.c_str(), to.c_str()) != 0)
        ThrowUnlessGone(from, to);
    else if (left)
        ++left->done;
}

void Remove(const fs::path& file, const Removal& removal, Tally* left)
{
    if (left && !left->isToBeDone(file, removal.identity))
        return;
    if (unlink(file.c_str()) != 0)
        ThrowUnlessGone(file, file);
    else if (left)
        ++left->done;
}

/// @param left  null for a plan that was made just now
void Carry(const fs::path& folder, const FolderPlan& plan, Tally* left)
{
    for (const Renaming& renaming : plan.renames)
        Put(folder, renaming, left);
    for (const Removal& removal : plan.removals)
        Remove(folder / removal.name, removal, left);
}

void Tell(const LeftSet& set, const Tally& tally, FinishedSets& left)
{
    left.hasPut |= tally.done > 0;
    const auto tell = [&](std::string what) {
        left.told.push_back({Severity::Warning, set.home().string(), {}, std::move(what)});
    };
    if (tally.done > 0)
        tell(fmt::format("a save was interrupted here and is finished now: {} changed",
                         Counted(tally.done, "file has", "files have")));
    if (tally.others > 0)
        tell(fmt::format("{} than an interrupted save knew and {} as {}, such as {}",
                         Counted(tally.others, "file is another", "files are others"),
                         tally.others == 1 ? "stays" : "stay", tally.others == 1 ? "it is" : "they are",
                         tally.example.string()));
}

/// 0, or why one of the set's folders may not be changed: what cannot be done as a whole is not begun.
std::optional<FolderLocks::Refusal> RefusalOf(const std::vector<fs::path>& folders)
{
    for (const fs::path& folder : folders)
        if (access(folder.c_str(), W_OK) != 0)
            return FolderLocks::Refusal{folder, errno};
    return std::nullopt;
}

/// There, and below no link.
bool IsPlainFolder(const fs::path& folder)
{
    std::error_code error;
    const fs::path real = fs::canonical(folder, error);
    constexpr int lost[] = {0, ENOENT, ENOTDIR, ELOOP};
    if (std::find(std::begin(lost), std::end(lost), error.value()) == std::end(lost))
        throw IoError("cannot read {}: {}", folder.string(), ReasonOf(error));
    return !error && real == folder;
}

bool IsHome(const LeftSet& set, const FolderPlan& plan)
{
    return plan.folder == set.journal.folders.front().folder;
}

/// A journal has its say only where a pointer to it lies: one that came from elsewhere, or back after a loss
/// of power, finds none.
bool IsMember(const LeftSet& set, const FolderPlan& plan)
{
    const fs::path folder = set.folder(plan);
    if (!IsPlainFolder(folder))
        return false;
    const std::optional<JournalPointer> pointer = PointerIn(folder);
    return pointer && pointer->id == set.journal.id && pointer->folder == plan.folder &&
           pointer->home == set.journal.folders.front().folder;
}

/// What tells of the others goes last, so that whoever is stopped leaves nothing that nobody finds.
void RemoveJournals(const LeftSet& set)
{
    std::error_code error;
    for (const FolderPlan& plan : set.journal.folders)
        // A draft may be older than what lies in a folder.
        if (!IsHome(set, plan) && (set.journal.isDecided || IsMember(set, plan)))
            fs::remove(set.folder(plan) / fileSetJournal, error);
    fs::remove(set.home() / fileSetJournal, error);
}

/// The set whose journal lies in the folder.
std::optional<LeftSet> SetIn(const fs::path& home)
{
    std::optional<Journal> journal = JournalIn(home);
    if (!journal)
        return std::nullopt;
    LeftSet set{RootAbove(home, journal->folders.front().folder), std::move(*journal)};
    if (set.root.empty())
        return std::nullopt;
    std::vector<FolderPlan>& plans = set.journal.folders;
    plans.erase(std::remove_if(plans.begin() + 1, plans.end(),
                               [&set](const FolderPlan& plan) {
                                   return set.journal.isDecided ? !IsMember(set, plan)
                                                                : !IsPlainFolder(set.folder(plan));
                               }),
                plans.end());
    return set;
}

/// The set that the folder changes with.
std::optional<LeftSet> SetFor(const fs::path& folder)
{
    const std::optional<JournalPointer> pointer = PointerIn(folder);
    if (!pointer)
        return SetIn(folder);
    const fs::path root = RootAbove(folder, pointer->folder);
    if (root.empty())
        return std::nullopt;
    const fs::path home = pointer->home == "." ? root : root / pointer->home;
    if (!IsPlainFolder(home))
        return std::nullopt;
    std::optional<LeftSet> set = SetIn(home);
    const bool isOurs = set && set->root == root && set->journal.id == pointer->id;
    return isOurs ? std::move(set) : std::nullopt;
}

std::vector<fs::path> FoldersOf(const LeftSet& set)
{
    std::vector<fs::path> folders;
    for (const FolderPlan& plan : set.journal.folders)
        folders.push_back(set.folder(plan));
    std::sort(folders.begin(), folders.end());
    folders.erase(std::unique(folders.begin(), folders.end()), folders.end());
    return folders;
}

/// Whatever somebody did to the set until now is over when its folders are locked.
std::optional<FolderLocks::Refusal> FinishSet(const LeftSet& left, FolderLocks::Deadline end,
                                              FinishedSets& finished)
{
    FolderLocks locks;
    const std::vector<fs::path> folders = FoldersOf(left);
    if (auto refusal = locks.take(folders, end))
        return refusal;
    const std::optional<LeftSet> set = SetIn(left.home());
    if (!set || set->journal.id != left.journal.id || FoldersOf(*set) != folders)
        return std::nullopt;
    if (auto refusal = RefusalOf(folders))
        return refusal;
    if (set->journal.isDecided)
        PutInPlace(*set, &finished);
    else
        RemoveJournals(*set);
    // Anything else would go round for ever.
    if (JournalIn(set->home()))
        throw IoError("cannot remove {}", (set->home() / fileSetJournal).string());
    for (const fs::path& folder : folders)
        RemoveUnfinishedFiles(folder);
    return std::nullopt;
}

/// What is left in a locked folder and has to do with no other.
void FinishAlone(const fs::path& folder, FinishedSets& finished)
{
    if (const std::optional<LeftSet> set = SetFor(folder)) {
        PutInPlace(*set, &finished);
    } else if (HasJournalFile(folder)) {
        std::error_code ignored;
        fs::remove(folder / fileSetJournal, ignored); // nothing was put in place by it
    } else {
        return RemoveUnfinishedFilesOfSet(folder);
    }
    RemoveUnfinishedFiles(folder);
}

} // namespace

void PutInPlace(const LeftSet& set, FinishedSets* left)
{
    const std::vector<FolderPlan>& plans = set.journal.folders;
    Tally tally;
    for (const FolderPlan& plan : plans)
        Carry(set.folder(plan), plan, left ? &tally : nullptr);
    if (left)
        Tell(set, tally, *left);
    try {
        for (const FolderPlan& plan : plans)
            SyncFolder(set.folder(plan));
        RemoveJournals(set);
        SyncFolder(set.home());
    } catch (const IoError& failure) {
        throw IoError("{}; its new files are in place, but may not outlast a loss of power", failure.what());
    }
}

std::optional<FolderLocks::Refusal> FinishAndLock(FolderLocks& locks, const std::vector<fs::path>& folders,
                                                  FolderLocks::Deadline end, FinishedSets& left)
{
    while (true) {
        if (auto refusal = locks.take(folders, end))
            return refusal;
        std::optional<LeftSet> wide;
        for (auto folder = folders.begin(); !wide && folder != folders.end(); ++folder)
            if ((wide = SetFor(*folder)) && wide->journal.id.empty())
                wide.reset();
        if (!wide)
            break;
        // Its folders have an order of their own in which they are locked.
        locks.release();
        if (auto refusal = FinishSet(*wide, end, left))
            return refusal;
    }
    for (const fs::path& folder : folders)
        FinishAlone(folder, left);
    return std::nullopt;
}

} // namespace base
