// Files that appear all together or not at all.
// SPDX-License-Identifier: MIT

#include "base/file_set.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/folders.h"
#include "base/limits.h"
#include "base/process_mark.h"
#include "base/reason.h"
#include "base/write_bounds.h"
#include "file_identity.h"
#include "file_set_recovery.h"
#include "folder_locks.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cerrno>
#include <mutex>
#include <optional>
#include <utility>

#include <unistd.h>

namespace base {

namespace fs = std::filesystem;

const char* const fileSetJournal = ".gantrel-saving";

namespace {

struct Member {
    fs::path named, real; ///< as it was given, and without links
    FolderPlan plan;
    std::vector<std::unique_ptr<AtomicFile>> files; ///< that it renames
};

/// A folder that another path leads to as well counts once.
std::vector<Member> MembersOf(const std::vector<fs::path>& folders)
{
    std::vector<Member> members;
    for (const fs::path& folder : folders) {
        std::error_code error;
        const fs::path real = fs::canonical(folder, error);
        if (error)
            throw IoError("cannot write folder {}: {}", folder.string(), ReasonOf(error));
        members.push_back({folder, real, {}, {}});
    }
    std::stable_sort(members.begin(), members.end(),
                     [](const Member& a, const Member& b) { return a.real < b.real; });
    members.erase(std::unique(members.begin(), members.end(),
                              [](const Member& a, const Member& b) { return a.real == b.real; }),
                  members.end());
    return members;
}

/// Unlike any other set's, in this process or another one.
std::string NextId()
{
    static std::atomic<unsigned> counter{0};
    return fmt::format("{}.{}", ProcessMark(), ++counter);
}

/// That holds all of them.
fs::path CommonFolder(const std::vector<Member*>& sorted)
{
    // What the first and the last share, those between share too.
    const fs::path &first = sorted.front()->real, &last = sorted.back()->real;
    const auto end = std::mismatch(first.begin(), first.end(), last.begin(), last.end()).first;
    fs::path common;
    for (auto step = first.begin(); step != end; ++step)
        common /= *step;
    return common;
}

LeftSet Describe(const std::vector<Member*>& changing)
{
    LeftSet set{CommonFolder(changing), {}};
    if (changing.size() > 1)
        set.journal.id = NextId();
    for (Member* const member : changing) {
        member->plan.folder = member->real.lexically_relative(set.root).string();
        for (Renaming& renaming : member->plan.renames) {
            renaming.fromIdentity = IdentityOf(member->real / renaming.from);
            renaming.toIdentity = IdentityOf(member->real / renaming.to);
        }
        for (Removal& removal : member->plan.removals)
            removal.identity = IdentityOf(member->real / removal.name);
        set.journal.folders.push_back(member->plan);
    }
    return set;
}

/// From its end on whoever comes next would go on. The decision comes last: draft and pointers say whose the
/// unfinished files are, before anybody could take those of one folder for leavings.
void WriteJournals(const LeftSet& set)
{
    const std::string text = ToText(set.journal);
    if (text.size() > longestJournal)
        throw IoError("cannot write {}: too many files at a time", set.root.string());
    const std::vector<FolderPlan>& plans = set.journal.folders;
    if (plans.size() > 1) {
        Journal draft = set.journal;
        draft.isDecided = false;
        WriteFileAtomically(set.home() / fileSetJournal, ToText(draft));
    } else {
        SyncFolder(set.home()); // as the draft does: the unfinished files have to be there for the journal
    }
    for (std::size_t i = 1; i < plans.size(); ++i)
        WriteFileAtomically(set.folder(plans[i]) / fileSetJournal,
                            ToText(JournalPointer{set.journal.id, plans[i].folder, plans.front().folder}));
    WriteFileAtomically(set.home() / fileSetJournal, text);
}

/// @return false when the journal stays
bool TakeBackJournals(const LeftSet& set)
{
    std::error_code error;
    fs::remove(set.home() / fileSetJournal, error);
    if (fs::symlink_status(set.home() / fileSetJournal, error).type() != fs::file_type::not_found)
        return false;
    try {
        SyncFolder(set.home());
    } catch (const IoError&) {
        // It is told already that the disk fails.
    }
    for (const FolderPlan& plan : set.journal.folders)
        fs::remove(set.folder(plan) / fileSetJournal, error);
    return true;
}

} // namespace

struct FileSet::Impl {
    FolderLocks locks;
    MadeFolders made;
    std::vector<Member> members;                    ///< in the order of their real paths
    std::vector<std::unique_ptr<AtomicFile>> alone; ///< what links lead to that lie in the folders
    std::mutex writing;
    FinishedSets left;

    [[noreturn]] void refuse(const FolderLocks::Refusal& refusal) const;
    std::optional<FolderLocks::Refusal> tryToLock(FolderLocks::Deadline end);
    fs::path placeOf(const fs::path& file) const
    {
        return file.has_parent_path() ? file : members.front().named / file;
    }
    Member* memberWith(const fs::path& file);
};

std::optional<FolderLocks::Refusal> FileSet::Impl::tryToLock(FolderLocks::Deadline end)
{
    std::vector<fs::path> folders;
    for (const Member& member : members)
        folders.push_back(member.real);
    return FinishAndLock(locks, folders, end, left);
}

void FileSet::Impl::refuse(const FolderLocks::Refusal& refusal) const
{
    const auto member = std::find_if(members.begin(), members.end(), [&](const Member& candidate) {
        return candidate.real == refusal.folder;
    });
    const std::string name = (member != members.end() ? member->named : refusal.folder).string();
    if (refusal.reason == EWOULDBLOCK)
        throw IoError("another program is saving into {}", name);
    throw IoError("cannot write folder {}: {}", name, ReasonOf(refusal.reason));
}

/// Null where the file's folder is none of the set's.
Member* FileSet::Impl::memberWith(const fs::path& file)
{
    std::error_code error;
    const fs::path folder = fs::canonical(file.parent_path(), error);
    const auto member =
        std::find_if(members.begin(), members.end(), [&](const Member& m) { return m.real == folder; });
    return member == members.end() ? nullptr : &*member;
}

FileSet::FileSet(const fs::path& folder) : _impl(std::make_unique<Impl>())
{
    ThrowIfOutOfBounds(folder);
    _impl->members = MembersOf({folder});
    if (const auto refusal = _impl->tryToLock(std::chrono::steady_clock::now() + patience))
        _impl->refuse(*refusal);
}

FileSet::FileSet(const std::vector<fs::path>& folders) : _impl(std::make_unique<Impl>())
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (true) {
        for (const fs::path& folder : folders) {
            ThrowIfOutOfBounds(folder);
            _impl->made.make(folder);
        }
        _impl->members = MembersOf(folders);
        const auto refusal = _impl->tryToLock(end);
        if (!refusal)
            return;
        // Whoever had made one, and wrote nothing, has removed it.
        if (refusal->reason != ENOENT || std::chrono::steady_clock::now() >= end)
            _impl->refuse(*refusal);
    }
}

FileSet::~FileSet() = default;

const Diagnostics& FileSet::diagnostics() const
{
    return _impl->left.told;
}

void FileSet::write(const fs::path& file, std::string_view content)
{
    ThrowIfCancelled();
    auto unfinished = std::make_unique<AtomicFile>(_impl->placeOf(file));
    unfinished->write(content);
    unfinished->finish();
    const std::lock_guard<std::mutex> lock(_impl->writing);
    assert(_impl->memberWith(_impl->placeOf(file)));
    Member* const member = _impl->memberWith(unfinished->target());
    // What a link leads to may lie anywhere; journals tell of the set's own folders alone.
    if (!member)
        return _impl->alone.push_back(std::move(unfinished));
    member->plan.renames.push_back(
        {unfinished->unfinished().filename().string(), unfinished->target().filename().string(), {}, {}});
    member->files.push_back(std::move(unfinished));
}

void FileSet::remove(const fs::path& file)
{
    const std::lock_guard<std::mutex> lock(_impl->writing);
    Member* const member = _impl->memberWith(_impl->placeOf(file));
    assert(member);
    member->plan.removals.push_back({file.filename().string(), {}});
}

void FileSet::commit()
{
    std::vector<Member*> changing;
    for (Member& member : _impl->members)
        if (!member.plan.isEmpty())
            changing.push_back(&member);
    for (const std::unique_ptr<AtomicFile>& file : _impl->alone)
        file->commit();
    if (changing.empty())
        return;
    // One file is put in place at once by the system itself.
    const Member& first = *changing.front();
    if (changing.size() == 1 && first.files.size() == 1 && first.plan.removals.empty())
        return first.files.front()->commit();
    const LeftSet set = Describe(changing);
    const auto release = [&changing] {
        for (const Member* const member : changing)
            for (const std::unique_ptr<AtomicFile>& file : member->files)
                file->release();
    };
    try {
        WriteJournals(set);
    } catch (...) {
        // It may be in place, and only the wait for the disk have failed.
        if (!TakeBackJournals(set))
            release();
        throw;
    }
    release();
    PutInPlace(set);
}

bool FinishFileSet(const fs::path& folder, Diagnostics* told)
{
    FinishedSets left;
    std::string reason;
    try {
        if (!HasJournalFile(folder) && access(folder.c_str(), W_OK) != 0)
            return false;
        FolderLocks locks;
        const auto refusal = FinishAndLock(locks, {fs::canonical(folder)},
                                           std::chrono::steady_clock::now() + FileSet::patience, left);
        // Whoever is saving tells of it.
        if (refusal && refusal->reason != EWOULDBLOCK)
            reason = ReasonOf(refusal->reason);
    } catch (const IoError& error) {
        reason = error.what();
    } catch (const fs::filesystem_error& error) {
        reason = ReasonOf(error.code());
    }
    if (!reason.empty())
        left.told.push_back({Severity::Warning,
                             folder.string(),
                             {},
                             "a save was interrupted here and cannot be finished: " + reason});
    if (told)
        told->insert(told->end(), left.told.begin(), left.told.end());
    return left.hasPut;
}

} // namespace base
