// Files that appear whole or not at all.
// SPDX-License-Identifier: MIT

#include "base/atomic_file.h"

#include "base/errors.h"
#include "base/file_set.h"
#include "base/folder_search.h"
#include "base/folders.h"
#include "base/limits.h"
#include "base/process_mark.h"
#include "base/reason.h"
#include "base/write_bounds.h"
#include "unfinished_files.h"

#include <atomic>
#include <cerrno>
#include <mutex>
#include <set>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace base {

namespace fs = std::filesystem;

namespace {

const std::string ending = ".part";
std::atomic<bool> setsSearchOnce{false};

/// The length up to which nothing is cut in the middle of a character.
std::size_t WholeCharacters(const fs::path::string_type& utf8, std::size_t length)
{
    while (length > 0 && (utf8[length] & 0xC0) == 0x80)
        --length;
    return length;
}

/// Unlike any other writer's, in this process or another one.
fs::path UnfinishedName(const fs::path& target)
{
    static std::atomic<unsigned> counter{0};
    const std::string mark = fmt::format(".{}.{}{}", ProcessMark(), ++counter, ending);
    constexpr std::size_t longest = 255; // of the names of the usual file systems
    fs::path::string_type name = target.filename().native();
    // What may have its own name is not to fail for that of the unfinished file.
    if (name.size() <= longest && name.size() > longest - mark.size())
        name.resize(WholeCharacters(name, longest - mark.size()));
    fs::path unfinished = target.parent_path() / name;
    unfinished += mark;
    return unfinished;
}

/// The process's mark in the name of an unfinished file; empty for other files.
std::string MarkIn(const std::string& name)
{
    if (name.size() < ending.size() || name.compare(name.size() - ending.size(), ending.size(), ending) != 0)
        return {};
    const std::size_t counter = name.rfind('.', name.size() - ending.size() - 1);
    const std::size_t mark =
        counter == std::string::npos || counter == 0 ? std::string::npos : name.rfind('.', counter - 1);
    return mark == std::string::npos ? std::string() : name.substr(mark + 1, counter - mark - 1);
}

/// Where the links of the path's last part lead; also where nothing is yet.
fs::path Followed(fs::path path)
{
    std::error_code error;
    for (int i = 0; i < mostLinks && fs::is_symlink(path, error); ++i) {
        const fs::path next = fs::read_symlink(path, error);
        if (error)
            break;
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
    return path;
}

/// Which belongs to its folder: a link of that name, which anybody may have put there, leads nowhere.
bool IsJournal(const fs::path& file)
{
    return file.filename() == fileSetJournal;
}

[[noreturn]] void Fail(const fs::path& file, int reason)
{
    throw IoError("cannot write {}: {}", file.string(), ReasonOf(reason));
}

/// The calls of the system, again when a signal came between.
template <class Call>
int Uninterrupted(Call call)
{
    int result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// Else what it puts in place later would replace what is newer.
void FinishLeftSet(const fs::path& target)
{
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::error_code error;
    if (!IsJournal(target) && fs::is_regular_file(fs::symlink_status(folder / fileSetJournal, error)))
        FinishFileSet(folder);
}

} // namespace

AtomicFile::AtomicFile(const fs::path& target, Durability durability)
    : _named(target), _target(IsJournal(target) ? target : Followed(target)),
      _unfinished(UnfinishedName(_target)), _durability(durability)
{
    // Told now rather than at the end, when other files may have been put in place already.
    ThrowIfOutOfBounds(_target);
    CheckReplaceable(_named);
    FinishLeftSet(_target);
    RemoveUnfinishedFilesOnce(_target.parent_path());
    _stream = std::fopen(_unfinished.string().c_str(), "wbx");
    if (!_stream)
        fail(errno);
    _isOurs = true;
}

AtomicFile::~AtomicFile()
{
    if (_stream)
        std::fclose(_stream);
    std::error_code ignored;
    if (_isOurs)
        fs::remove(_unfinished, ignored);
}

void AtomicFile::fail(int reason) const
{
    Fail(_named, reason);
}

/// Mode and owner of the file that is replaced.
void AtomicFile::takeOver()
{
    struct stat present {};
    if (stat(_target.c_str(), &present) != 0)
        return;
    const int file = fileno(_stream);
    constexpr mode_t permissions = 07777;
    const bool isOwned = fchown(file, present.st_uid, present.st_gid) == 0 ||
                         fchown(file, static_cast<uid_t>(-1), present.st_gid) == 0;
    // Rights to act as the owner must not go to another one.
    if (Uninterrupted([&] { return fchmod(file, present.st_mode & (isOwned ? permissions : 0777)); }) != 0)
        fail(errno);
}

void AtomicFile::write(std::string_view bytes)
{
    // Flushed, so that a full disk shows here and commit() only has to rename.
    if (std::fwrite(bytes.data(), 1, bytes.size(), _stream) != bytes.size() || std::fflush(_stream) != 0)
        fail(errno);
}

void AtomicFile::finish()
{
    if (!_stream)
        return;
    takeOver();
    if (_durability == Durability::Lasting && Uninterrupted([&] { return fsync(fileno(_stream)); }) != 0)
        fail(errno);
    // Some disks tell only now that they are full.
    if (std::fclose(std::exchange(_stream, nullptr)) != 0)
        fail(errno);
}

void AtomicFile::commit()
{
    finish();
    if (std::rename(_unfinished.c_str(), _target.c_str()) != 0)
        fail(errno);
    _isOurs = false;
    if (_durability == Durability::Lasting)
        SyncFolder(_target.parent_path());
}

void WriteFileAtomically(const fs::path& file, std::string_view content, Durability durability)
{
    AtomicFile target(file, durability);
    target.write(content);
    target.commit();
}

void CheckReplaceable(const fs::path& file)
{
    const fs::path target = Followed(file);
    struct stat present {};
    if (stat(target.c_str(), &present) != 0) {
        if (errno != ENOENT && errno != ENOTDIR)
            Fail(file, errno);
        return;
    }
    if (S_ISDIR(present.st_mode))
        Fail(file, EISDIR);
    if (!S_ISREG(present.st_mode))
        throw IoError("cannot write {}: it is no file, but a device, pipe or socket", file.string());
    constexpr mode_t anybodyWrites = S_IWUSR | S_IWGRP | S_IWOTH;
    // The system lets its administrator write to all files, but a file that is protected is so for a reason.
    if ((present.st_mode & anybodyWrites) == 0 || access(target.c_str(), W_OK) != 0)
        throw IoError("cannot write {}: it is write-protected", file.string());
}

void CheckWritable(const fs::path& file)
{
    CheckReplaceable(file);
    const fs::path target = Followed(file);
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::error_code error;
    if (!fs::exists(folder, error)) {
        const std::string lost = DescribeLostLink(file);
        throw IoError("cannot write {}: {}", file.string(), lost.empty() ? ReasonOf(ENOENT) : lost);
    }
    if (!fs::is_directory(folder, error))
        Fail(file, ENOTDIR);
    if (access(folder.c_str(), W_OK | X_OK) != 0)
        Fail(file, errno);
}

bool IsUnfinishedName(const std::string& name)
{
    return !MarkIn(name).empty();
}

void RemoveUnfinishedFiles(const fs::path& folder)
{
    const fs::path path = folder.empty() ? fs::path(".") : folder;
    std::error_code error;
    std::vector<fs::path> old;
    for (fs::directory_iterator entry(path, error), end; !error && entry != end; entry.increment(error))
        if (HasEnded(MarkIn(entry->path().filename().string())))
            old.push_back(entry->path());
    // Asked last: whoever had ended by then makes no journal any more.
    if (old.empty() || fs::symlink_status(path / fileSetJournal, error).type() != fs::file_type::not_found)
        return;
    for (const fs::path& file : old)
        fs::remove(file, error);
}

void RemoveUnfinishedFilesOnce(const fs::path& folder)
{
    static std::mutex asking;
    static std::set<fs::path> asked;
    const std::lock_guard<std::mutex> lock(asking);
    if (asked.insert(folder).second)
        RemoveUnfinishedFiles(folder);
}

void SearchFoldersOnce()
{
    setsSearchOnce = true;
}

void RemoveUnfinishedFilesOfSet(const fs::path& folder)
{
    if (setsSearchOnce)
        RemoveUnfinishedFilesOnce(folder);
    else
        RemoveUnfinishedFiles(folder);
}

void SyncFolder(const fs::path& folder)
{
    const fs::path path = folder.empty() ? fs::path(".") : folder;
    const int descriptor =
        Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    // Folders that may be written but not read cannot be waited for.
    if (descriptor < 0)
        return;
    const int result = Uninterrupted([&] { return fsync(descriptor); });
    const int reason = errno;
    close(descriptor);
    if (result != 0 && reason != EINVAL && reason != EBADF && reason != EROFS)
        throw IoError("cannot write folder {}: {}", path.string(), ReasonOf(reason));
}

} // namespace base
