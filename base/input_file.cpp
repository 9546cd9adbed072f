// Reading files without being held up by them.
// SPDX-License-Identifier: MIT

#include "base/input_file.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/reason.h"
#include "told_to_end.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace base {

namespace {

constexpr std::chrono::milliseconds pause(20);

} // namespace

InputFile::InputFile(const std::filesystem::path& file, const char* opening) : _file(file)
{
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        throw IoError("cannot read {}: {}", file.string(), ReasonOf(EISDIR));
    open(opening);
}

InputFile::~InputFile()
{
    close(_descriptor);
}

void InputFile::open(const char* opening)
{
    // Else a pipe that nobody writes into would be waited for here, where nobody asks.
    while ((_descriptor = ::open(_file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) < 0) {
        const int reason = errno;
        // Another program holds the file and has been asked to let go of it.
        if (reason != EWOULDBLOCK && reason != EINTR)
            throw IoError("{} {}: {}", opening, _file.string(), ReasonOf(reason));
        ThrowIfCancelled();
        std::this_thread::sleep_for(pause);
    }
    struct stat found {};
    if (fstat(_descriptor, &found) != 0)
        return;
    _isPlain = S_ISREG(found.st_mode);
    _size = _isPlain ? static_cast<std::size_t>(found.st_size) : 0;
}

void InputFile::waitForBytes() const
{
    pollfd wanted{_descriptor, POLLIN, 0};
    do
        if (IsToldToEnd())
            throw Cancelled();
    while (poll(&wanted, 1, static_cast<int>(pause.count())) == 0);
}

std::size_t InputFile::read(char* bytes, std::size_t room)
{
    constexpr std::size_t most = std::size_t{1} << 24; // of a slow disk in less than a moment
    while (true) {
        ThrowIfCancelled();
        if (!_isPlain)
            waitForBytes();
        const ssize_t count = ::read(_descriptor, bytes, std::min(room, most));
        if (count >= 0)
            return static_cast<std::size_t>(count);
        if (errno != EINTR && errno != EAGAIN)
            throw IoError("cannot read {}: {}", _file.string(), ReasonOf(errno));
    }
}

} // namespace base
