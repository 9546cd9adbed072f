// Folders that one program at a time writes.
// SPDX-License-Identifier: MIT

#include "folder_locks.h"

#include "base/cancellation.h"

#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace base {

namespace {

/// @return 0, or why not
int Lock(int descriptor, FolderLocks::Deadline end)
{
    constexpr std::chrono::milliseconds pause(20);
    while (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
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

/// Whoever had the lock may have removed the folder, and somebody else made it anew.
bool IsSame(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

} // namespace

int FolderLocks::takeOne(const std::filesystem::path& folder, Deadline end)
{
    while (true) {
        const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0)
            return errno;
        _descriptors.push_back(descriptor);
        if (const int reason = Lock(descriptor, end))
            return reason;
        struct stat now {
        }, locked{};
        if (stat(folder.c_str(), &now) != 0 || fstat(descriptor, &locked) != 0)
            return errno;
        if (IsSame(now, locked))
            return 0;
        close(descriptor);
        _descriptors.pop_back();
    }
}

std::optional<FolderLocks::Refusal> FolderLocks::take(const std::vector<std::filesystem::path>& folders,
                                                      Deadline end)
{
    for (const std::filesystem::path& folder : folders)
        if (const int reason = takeOne(folder, end)) {
            release();
            return Refusal{folder, reason};
        }
    return std::nullopt;
}

void FolderLocks::release()
{
    for (const int descriptor : _descriptors)
        close(descriptor);
    _descriptors.clear();
}

} // namespace base
