// Changing the settings file one program at a time.
// SPDX-License-Identifier: MIT

#include "settings_lock.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/reason.h"
#include "command.h"

#include <cerrno>
#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::seconds patience(5); // a change takes milliseconds
constexpr std::chrono::milliseconds pause(20);

fs::path PlaceFor(const fs::path& file)
{
    return file.native() + ".lock";
}

/// @return whether it is had; always on disks that know no locks
bool Take(int descriptor)
{
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR);
}

} // namespace

SettingsLock::SettingsLock(const fs::path& file) : _file(PlaceFor(file))
{
    const auto end = std::chrono::steady_clock::now() + patience;
    open();
    while (!Take(_descriptor) || !isInPlace()) {
        close(_descriptor);
        base::ThrowIfCancelled();
        if (std::chrono::steady_clock::now() >= end)
            throw base::IoError("cannot write {}: another program is changing it", FileText(file));
        std::this_thread::sleep_for(pause);
        open();
    }
}

SettingsLock::~SettingsLock()
{
    // While it is still locked: nobody else has it then.
    unlink(_file.c_str());
    close(_descriptor);
}

void SettingsLock::open()
{
    constexpr mode_t ownersAlone = 0600;
    // Open for writing, or disks of the network would not lock it.
    _descriptor = ::open(_file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, ownersAlone);
    if (_descriptor < 0)
        throw base::IoError("cannot write {}: {}", FileText(_file), base::ReasonOf(errno));
}

/// Whoever had the lock before has removed the file, and the next one made it anew.
bool SettingsLock::isInPlace() const
{
    struct stat locked {
    }, now{};
    return fstat(_descriptor, &locked) == 0 && lstat(_file.c_str(), &now) == 0 &&
           locked.st_dev == now.st_dev && locked.st_ino == now.st_ino;
}

} // namespace cli
