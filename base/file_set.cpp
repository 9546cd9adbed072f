// Files that appear all together or not at all.
// SPDX-License-Identifier: MIT

#include "base/file_set.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/reason.h"
#include "base/write_bounds.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace base {

namespace fs = std::filesystem;

const char* const fileSetJournal = ".gantrel-saving";

namespace {

const std::string heading = "gantrel file set 1";

/// What a journal asks for, by names of files in its folder.
struct Plan {
    std::vector<std::pair<std::string, std::string>> renames; ///< from, to
    std::vector<std::string> removals;
};

/// Names may hold anything but NUL, so that is what divides them.
std::string ToText(const Plan& plan)
{
    std::string text = heading + '\0';
    for (const auto& [from, to] : plan.renames)
        text += "put" + ('\0' + from) + '\0' + to + '\0';
    for (const std::string& name : plan.removals)
        text += "remove" + ('\0' + name) + '\0';
    return text + "end" + '\0';
}

std::vector<std::string> Words(const std::string& text)
{
    std::vector<std::string> words;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\0', at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

/// A journal that somebody else wrote is not to reach other folders.
bool IsName(const std::string& name)
{
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

/// @return false for what is no whole journal
bool Parse(const std::string& text, Plan& plan)
{
    const std::vector<std::string> words = Words(text);
    if (words.size() < 2 || words.front() != heading || words.back() != "end")
        return false;
    for (std::size_t i = 1; i + 1 < words.size();) {
        const bool isPut = words[i] == "put";
        const std::size_t next = i + (isPut ? 3 : 2);
        if ((!isPut && words[i] != "remove") || next >= words.size() || !IsName(words[i + 1]) ||
            !IsName(words[next - 1]))
            return false;
        if (isPut)
            plan.renames.emplace_back(words[i + 1], words[i + 2]);
        else
            plan.removals.push_back(words[i + 1]);
        i = next;
    }
    return true;
}

[[noreturn]] void FailAfterJournal(const fs::path& file, int reason)
{
    throw IoError("cannot write {}: {}; it changes with all that belongs to it as soon as that is possible",
                  file.string(), ReasonOf(reason));
}

/// What is not there any more has been put in place already.
void Carry(const fs::path& folder, const Plan& plan)
{
    std::error_code error;
    for (const auto& [from, to] : plan.renames)
        if (std::rename((folder / from).c_str(), (folder / to).c_str()) != 0) {
            const int reason = errno;
            if (reason != ENOENT || fs::exists(folder / from, error))
                FailAfterJournal(folder / to, reason);
        }
    for (const std::string& name : plan.removals)
        if (unlink((folder / name).c_str()) != 0) {
            const int reason = errno;
            if (reason != ENOENT || fs::exists(folder / name, error))
                FailAfterJournal(folder / name, reason);
        }
    try {
        SyncFolder(folder);
        fs::remove(folder / fileSetJournal, error);
        SyncFolder(folder);
    } catch (const IoError& failure) {
        throw IoError("{}; its new files are in place, but may not outlast a loss of power", failure.what());
    }
}

/// Of a folder, by all programs that use this; nothing of it is left on disk.
class FolderLock {
public:
    /// @return 0, or why not: EWOULDBLOCK when another program has it
    int take(const fs::path& folder, std::chrono::milliseconds patience)
    {
        _descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (_descriptor < 0)
            return errno;
        constexpr std::chrono::milliseconds pause(20);
        const auto end = std::chrono::steady_clock::now() + patience;
        while (flock(_descriptor, LOCK_EX | LOCK_NB) != 0) {
            if (errno == EINTR)
                continue;
            // Disks that know no locks are used by one program at a time anyway.
            if (errno != EWOULDBLOCK)
                return 0;
            if (std::chrono::steady_clock::now() >= end)
                return EWOULDBLOCK;
            ThrowIfCancelled();
            std::this_thread::sleep_for(pause);
        }
        return 0;
    }
    FolderLock() = default;
    ~FolderLock()
    {
        if (_descriptor >= 0)
            close(_descriptor);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int _descriptor = -1;
};

/// Empty for none. What somebody else calls so, a pipe that nobody writes into or a folder, is none.
std::string JournalOf(const fs::path& folder)
{
    std::error_code error;
    const fs::path journal = folder / fileSetJournal;
    if (!fs::is_regular_file(fs::symlink_status(journal, error)))
        return {};
    std::ifstream file(journal, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), {});
}

/// @return whether there was a whole journal
bool FinishLocked(const fs::path& folder)
{
    Plan plan;
    const bool isWhole = Parse(JournalOf(folder), plan);
    std::error_code ignored;
    if (isWhole)
        Carry(folder, plan);
    else if (fs::is_regular_file(fs::symlink_status(folder / fileSetJournal, ignored)))
        fs::remove(folder / fileSetJournal, ignored); // nothing was put in place by it
    RemoveUnfinishedFiles(folder);
    return isWhole;
}

} // namespace

struct FileSet::Impl {
    fs::path folder;
    FolderLock lock;
    std::vector<std::unique_ptr<AtomicFile>> files;
    std::vector<std::string> removals;
};

FileSet::FileSet(const fs::path& folder) : _impl(std::make_unique<Impl>())
{
    ThrowIfOutOfBounds(folder);
    _impl->folder = folder;
    const int reason = _impl->lock.take(folder, patience);
    if (reason == EWOULDBLOCK)
        throw IoError("another program is saving into {}", folder.string());
    if (reason != 0)
        throw IoError("cannot write folder {}: {}", folder.string(), ReasonOf(reason));
    FinishLocked(folder);
}

FileSet::~FileSet() = default;

const fs::path& FileSet::folder() const
{
    return _impl->folder;
}

void FileSet::write(const std::string& name, std::string_view content)
{
    ThrowIfCancelled();
    auto file = std::make_unique<AtomicFile>(_impl->folder / name);
    file->write(content);
    file->finish();
    _impl->files.push_back(std::move(file));
}

void FileSet::remove(const std::string& name)
{
    _impl->removals.push_back(name);
}

void FileSet::commit()
{
    Plan plan;
    std::vector<std::unique_ptr<AtomicFile>> linked;
    for (std::unique_ptr<AtomicFile>& file : _impl->files) {
        // What a link leads to may lie anywhere; a journal names nothing but its own folder's files.
        if (file->target().parent_path() != _impl->folder)
            linked.push_back(std::move(file));
        else
            plan.renames.emplace_back(file->unfinished().filename(), file->target().filename());
    }
    plan.removals = std::exchange(_impl->removals, {});
    const std::vector<std::unique_ptr<AtomicFile>> files = std::exchange(_impl->files, {});
    for (const std::unique_ptr<AtomicFile>& file : linked)
        file->commit();
    // One file is put in place at once by the system itself.
    if (linked.empty() && files.size() == 1 && plan.removals.empty())
        return files.front()->commit();
    const fs::path journal = _impl->folder / fileSetJournal;
    const auto release = [&files] {
        for (const std::unique_ptr<AtomicFile>& file : files)
            if (file)
                file->release();
    };
    try {
        WriteFileAtomically(journal, ToText(plan));
    } catch (const IoError&) {
        // It may be in place, and only the wait for the disk have failed.
        std::error_code error;
        fs::remove(journal, error);
        if (fs::exists(journal, error))
            release();
        throw;
    }
    // From here on whoever comes next would go on.
    release();
    Carry(_impl->folder, plan);
}

bool FinishFileSet(const fs::path& folder)
{
    FolderLock lock;
    if (access(folder.c_str(), W_OK) != 0 || lock.take(folder, FileSet::patience) != 0)
        return false;
    try {
        return FinishLocked(folder);
    } catch (const IoError&) {
        return false;
    }
}

} // namespace base
