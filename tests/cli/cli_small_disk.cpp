// A disk that a test can fill.
// SPDX-License-Identifier: MIT

#include "cli_small_disk.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

void Write(const char* file, const std::string& text)
{
    std::ofstream(file) << text;
}

/// Mounts that are made from now on are for this process; who is not root may make them as its own root,
/// and stays who it is for files.
bool HaveOwnMounts()
{
    static const bool have = [] {
        const std::string user = std::to_string(getuid()), group = std::to_string(getgid());
        if (unshare(CLONE_NEWNS) != 0) {
            if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
                return false;
            Write("/proc/self/setgroups", "deny");
            Write("/proc/self/uid_map", user + ' ' + user + " 1");
            Write("/proc/self/gid_map", group + ' ' + group + " 1");
        }
        return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    }();
    return have;
}

struct statvfs StateOf(const std::string& folder)
{
    struct statvfs state {};
    if (statvfs(folder.c_str(), &state) != 0)
        throw std::runtime_error("cannot look at " + folder);
    return state;
}

} // namespace

SmallDisk::SmallDisk(std::string folder) : _folder(std::move(folder))
{
    std::filesystem::create_directories(_folder);
    if (!HaveOwnMounts() || mount("small", _folder.c_str(), "tmpfs", 0, "size=16m") != 0)
        _whyNot = std::string("this system lets us mount no disk: ") + std::strerror(errno);
}

SmallDisk::~SmallDisk()
{
    if (_whyNot.empty())
        umount2(_folder.c_str(), MNT_DETACH);
}

std::size_t SmallDisk::usedBlocks() const
{
    const struct statvfs state = StateOf(_folder);
    return state.f_blocks - state.f_bfree;
}

void SmallDisk::leaveFree(std::size_t blocks) const
{
    const struct statvfs state = StateOf(_folder);
    if (state.f_bfree < blocks)
        throw std::runtime_error("the disk is too small");
    const int file = open(ballast().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const bool isFilled =
        file >= 0 &&
        posix_fallocate(file, 0, static_cast<off_t>((state.f_bfree - blocks) * state.f_bsize)) == 0;
    close(file);
    if (!isFilled || StateOf(_folder).f_bfree != blocks)
        throw std::runtime_error("cannot fill the disk");
}

void SmallDisk::makeRoom() const
{
    std::filesystem::remove(ballast());
}

std::string SmallDisk::ballast() const
{
    return _folder + "/ballast";
}
