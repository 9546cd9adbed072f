// A file that programs wait for.
// SPDX-License-Identifier: MIT

#include "cli_held_file.h"

#include <csignal>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

HeldFile::HeldFile(const std::string& path) : _file(open(path.c_str(), O_RDONLY | O_CLOEXEC))
{
    std::signal(SIGIO, SIG_IGN);
    if (_file < 0 || fcntl(_file, F_SETLEASE, F_WRLCK) != 0)
        throw std::runtime_error("cannot hold " + path);
}

HeldFile::~HeldFile()
{
    letGo();
    std::signal(SIGIO, SIG_DFL);
}

bool HeldFile::isWaitedFor() const
{
    return fcntl(_file, F_GETLEASE) != F_WRLCK;
}

void HeldFile::letGo()
{
    if (_file >= 0)
        close(std::exchange(_file, -1));
}
