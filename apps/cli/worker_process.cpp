// Work that may go wrong in ways that a program does not survive.
// SPDX-License-Identifier: MIT

#include "worker_process.h"

#include "base/cancellation.h"
#include "base/reason.h"
#include "interrupt.h"
#include "temporary_folder.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fmt/format.h>

namespace cli {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// How long the process may take to end by itself once it is asked to, or its own clock has run out.
constexpr milliseconds patience{1500};
constexpr std::uint64_t megabyte = 1 << 20;

std::atomic<pid_t> g_worker{0};

/// Async-signal-safe. Ctrl+C reaches the worker this way alone, as it is not in the terminal's group.
void PassSignalOn()
{
    kill(g_worker, InterruptSignal());
}

[[noreturn]] void Fail(const std::string& what)
{
    throw std::runtime_error(fmt::format("{}: {}", what, base::ReasonOf(errno)));
}

/// Ends of a pipe whose other ends are in the other process; told by its closing that this has ended.
class Line {
public:
    Line()
    {
        if (pipe2(_ends, O_CLOEXEC) != 0)
            Fail("cannot start another process");
    }
    ~Line()
    {
        for (const int end : _ends)
            if (end >= 0)
                close(end);
    }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    void keep(int end)
    {
        close(_ends[1 - end]);
        _ends[1 - end] = -1;
    }
    int reading() const { return _ends[0]; }
    int writing() const { return _ends[1]; }

private:
    int _ends[2] = {-1, -1};
};

/// Waits for the process, and ends it where it does not end by itself.
class Watch {
public:
    Watch(pid_t worker, const Line& line, milliseconds timeout)
        : _worker(worker), _line(line), _timeout(timeout)
    {
    }

    /// @return as waitpid has it
    int waitForEnd()
    {
        while (!lineIsClosed())
            endIfDue();
        int status = 0;
        while (waitpid(_worker, &status, 0) < 0)
            if (errno != EINTR)
                Fail("cannot wait for the other process");
        return status;
    }
    bool wasLate() const { return _wasLate; }

private:
    static constexpr steady_clock::time_point never = steady_clock::time_point::max();

    bool lineIsClosed()
    {
        constexpr int interval = 100; // milliseconds
        pollfd wanted{_line.reading(), POLLIN, 0};
        if (poll(&wanted, 1, interval) <= 0)
            return false;
        char sign = 0;
        const ssize_t count = read(_line.reading(), &sign, 1);
        if (count == 1 && _timeout.count() > 0)
            _end = steady_clock::now() + _timeout + patience;
        return count == 0;
    }

    void endIfDue()
    {
        const steady_clock::time_point now = steady_clock::now();
        if (InterruptSignal() != 0 && !_wasAsked) {
            _wasAsked = true;
            _end = now + patience;
        }
        if (now < _end)
            return;
        _wasLate = !_wasAsked;
        kill(_worker, SIGKILL);
        _end = never;
    }

    pid_t _worker;
    const Line& _line;
    milliseconds _timeout;
    steady_clock::time_point _end = never;
    bool _wasAsked = false, _wasLate = false;
};

/// What the process has of the address space already, in bytes.
std::uint64_t AddressSpace()
{
    std::uint64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

void Limit(int resource, std::uint64_t value)
{
    rlimit limit{};
    getrlimit(static_cast<__rlimit_resource>(resource), &limit);
    limit.rlim_cur = std::min<rlim_t>(value, limit.rlim_max);
    setrlimit(static_cast<__rlimit_resource>(resource), &limit);
}

/// @throws std::runtime_error  it had no time to say why it ended
void ThrowIfKilled(int status, bool wasLate, const WorkerProcess::Options& options)
{
    // Of a pipe that nobody reads it has nothing to say.
    if (!WIFSIGNALED(status) || WTERMSIG(status) == InterruptSignal() || WTERMSIG(status) == SIGPIPE)
        return;
    base::ThrowIfCancelled();
    if (wasLate)
        throw std::runtime_error(fmt::format("{}: the script was stopped after {} s", options.name,
                                             std::chrono::duration<double>(options.timeout).count()));
    throw std::runtime_error(
        fmt::format("{}: the script took more than {} megabytes, which --memory can raise, or met a fault of "
                    "the engine ({})",
                    options.name, options.megabytes, strsignal(WTERMSIG(status))));
}

[[noreturn]] void EndAs(int status)
{
    if (WIFSIGNALED(status))
        EndBySignal(WTERMSIG(status));
    std::exit(WEXITSTATUS(status));
}

} // namespace

struct WorkerProcess::Impl {
    Options options;
    Line line;
};

WorkerProcess::WorkerProcess(Options options) : _impl(new Impl{std::move(options), {}})
{
    std::optional<TemporaryFolder> folder(TemporaryFolder::Lasting::ForRun);
    const pid_t first = getpid(), worker = fork();
    if (worker < 0)
        Fail("cannot start another process");
    if (worker == 0) {
        setpgid(0, 0);
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != first)
            std::_Exit(1); // it ended before that was heard
        _impl->line.keep(1);
        setenv("TMPDIR", folder->path().c_str(), 1);
        folder->leaveToOthers();
        return;
    }
    g_worker = worker;
    const InterruptAction passOn(PassSignalOn);
    _impl->line.keep(0);
    Watch watch(worker, _impl->line, _impl->options.timeout);
    const int status = watch.waitForEnd();
    ThrowIfKilled(status, watch.wasLate(), _impl->options);
    folder.reset(); // the end comes without the ends of objects
    EndAs(status);
}

WorkerProcess::~WorkerProcess() = default;

void WorkerProcess::startClock() const
{
    Limit(RLIMIT_CORE, 0); // an engine without memory ends by a crash
    Limit(RLIMIT_AS, AddressSpace() + static_cast<std::uint64_t>(_impl->options.megabytes) * megabyte);
    const char sign = 0;
    if (write(_impl->line.writing(), &sign, 1) != 1)
        Fail("cannot reach the first process");
}

int DefaultMegabytes()
{
    const auto bytes = static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) *
                       static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    return static_cast<int>(bytes / 2 / megabyte);
}

} // namespace cli
