// A process of our own program that works on rows of a batch.
// SPDX-License-Identifier: MIT

#include "batch/batch_process.h"

#include "base/reason.h"

#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace cli {

namespace {

/// Two ends, none of which other processes get.
struct Pipe {
    Pipe()
    {
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error(fmt::format("cannot start another process: {}", base::ReasonOf(errno)));
    }
    ~Pipe()
    {
        for (const int end : ends)
            if (end >= 0)
                close(end);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    int take(int end) { return std::exchange(ends[end], -1); }

    int ends[2] = {-1, -1};
};

/// What the child is to begin with.
class Beginning {
public:
    Beginning(int input, int output)
    {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    }
    ~Beginning()
    {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
    }
    Beginning(const Beginning&) = delete;
    Beginning& operator=(const Beginning&) = delete;

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
};

} // namespace

BatchProcess::BatchProcess(const std::vector<std::string>& arguments)
{
    std::vector<std::string> owned{"gantrel"};
    owned.insert(owned.end(), arguments.begin(), arguments.end());
    std::vector<char*> texts;
    for (std::string& text : owned)
        texts.push_back(text.data());
    texts.push_back(nullptr);
    Pipe to, from;
    const Beginning beginning(to.ends[0], from.ends[1]);
    const int error = posix_spawn(&_process, "/proc/self/exe", &beginning.actions, &beginning.attributes,
                                  texts.data(), environ);
    if (error != 0)
        throw std::runtime_error(fmt::format("cannot start another process: {}", base::ReasonOf(error)));
    _writing = to.take(1);
    _reading = from.take(0);
}

BatchProcess::~BatchProcess()
{
    if (_process > 0)
        waitForEnd();
}

void BatchProcess::writeLine(const std::string& line) const
{
    const std::string bytes = line + '\n';
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t count = write(_writing, bytes.data() + at, bytes.size() - at);
        if (count < 0 && errno != EINTR)
            return;
        at += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

bool BatchProcess::read()
{
    char piece[1 << 16];
    const ssize_t count = ::read(_reading, piece, sizeof piece);
    if (count > 0)
        _bytes.append(piece, static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && errno == EINTR);
}

std::optional<std::string> BatchProcess::nextLine()
{
    const std::size_t end = _bytes.find('\n');
    if (end == _bytes.npos)
        return std::nullopt;
    std::string line = _bytes.substr(0, end);
    _bytes.erase(0, end + 1);
    return line;
}

void BatchProcess::askToEnd() const
{
    ::kill(_process, SIGTERM);
}

void BatchProcess::kill() const
{
    ::kill(_process, SIGKILL);
}

std::string BatchProcess::waitForEnd()
{
    closeLines();
    int status = 0;
    while (waitpid(_process, &status, 0) < 0)
        if (errno != EINTR)
            break;
    _process = 0;
    return WIFSIGNALED(status) ? fmt::format("the worker ended by signal {}", WTERMSIG(status))
                               : fmt::format("the worker ended with code {}", WEXITSTATUS(status));
}

void BatchProcess::closeLines()
{
    for (int* const end : {&_writing, &_reading})
        if (*end >= 0)
            close(std::exchange(*end, -1));
}

} // namespace cli
