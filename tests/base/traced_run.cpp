// Programs whose system calls on files are watched, made to fail, or their last.
// SPDX-License-Identifier: MIT

#include "tests/base/traced_run.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#if defined(__x86_64__)

namespace {

namespace fs = std::filesystem;

/// Where a call says which file it is about.
enum class Names { Path, PathAt, Descriptor, OpenPath, OpenPathAt };

struct Call {
    const char* name;
    Names names;
    Counted kind = Counted::Changes;
};

const std::map<long, Call>& WatchedCalls()
{
    static const std::map<long, Call> calls{
        {SYS_open, {"open", Names::OpenPath}},
        {SYS_openat, {"openat", Names::OpenPathAt}},
        {SYS_creat, {"creat", Names::Path}},
        {SYS_write, {"write", Names::Descriptor}},
        {SYS_pwrite64, {"pwrite64", Names::Descriptor}},
        {SYS_writev, {"writev", Names::Descriptor}},
        {SYS_ftruncate, {"ftruncate", Names::Descriptor}},
        {SYS_fsync, {"fsync", Names::Descriptor}},
        {SYS_fdatasync, {"fdatasync", Names::Descriptor}},
        {SYS_fchmod, {"fchmod", Names::Descriptor}},
        {SYS_fchown, {"fchown", Names::Descriptor}},
        {SYS_close, {"close", Names::Descriptor}},
        {SYS_rename, {"rename", Names::Path}},
        {SYS_renameat, {"renameat", Names::PathAt}},
        {SYS_renameat2, {"renameat2", Names::PathAt}},
        {SYS_unlink, {"unlink", Names::Path}},
        {SYS_unlinkat, {"unlinkat", Names::PathAt}},
        {SYS_rmdir, {"rmdir", Names::Path}},
        {SYS_mkdir, {"mkdir", Names::Path}},
        {SYS_mkdirat, {"mkdirat", Names::PathAt}},
        {SYS_link, {"link", Names::Path}},
        {SYS_linkat, {"linkat", Names::PathAt}},
        {SYS_symlink, {"symlink", Names::Path}},
        {SYS_chmod, {"chmod", Names::Path}},
        {SYS_truncate, {"truncate", Names::Path}},
        {SYS_read, {"read", Names::Descriptor, Counted::Reads}},
        {SYS_pread64, {"pread64", Names::Descriptor, Counted::Reads}},
        {SYS_readv, {"readv", Names::Descriptor, Counted::Reads}},
        {SYS_getdents64, {"getdents64", Names::Descriptor, Counted::Reads}},
    };
    return calls;
}

std::string TextAt(pid_t process, unsigned long long address)
{
    std::string text;
    char piece[64];
    while (text.size() < PATH_MAX) {
        iovec local{piece, sizeof piece};
        iovec remote{reinterpret_cast<void*>(address + text.size()), sizeof piece};
        const ssize_t read = process_vm_readv(process, &local, 1, &remote, 1, 0);
        if (read <= 0)
            break;
        const std::size_t end = strnlen(piece, static_cast<std::size_t>(read));
        text.append(piece, end);
        if (end < static_cast<std::size_t>(read))
            break;
    }
    return text;
}

std::string Below(pid_t process, int folder, const std::string& path)
{
    if (path.empty() || path.front() == '/')
        return path;
    std::error_code error;
    const std::string base = folder == AT_FDCWD ? "cwd" : "fd/" + std::to_string(folder);
    return (fs::read_symlink("/proc/" + std::to_string(process) + "/" + base, error) / path).string();
}

std::string PathOf(pid_t process, Names names, const user_regs_struct& registers)
{
    const int first = static_cast<int>(registers.rdi);
    std::error_code error;
    switch (names) {
    case Names::Descriptor:
        return fs::read_symlink("/proc/" + std::to_string(process) + "/fd/" + std::to_string(first), error)
            .string();
    case Names::Path:
    case Names::OpenPath:
        return Below(process, AT_FDCWD, TextAt(process, registers.rdi));
    case Names::PathAt:
    case Names::OpenPathAt:
        return Below(process, first, TextAt(process, registers.rsi));
    }
    return {};
}

/// How the file was opened that the process knows by the number.
unsigned long long FlagsOf(pid_t process, unsigned long long descriptor)
{
    std::ifstream info("/proc/" + std::to_string(process) + "/fdinfo/" + std::to_string(descriptor));
    std::string name;
    unsigned long long flags = O_RDWR;
    while (info >> name)
        if (name == "flags:")
            info >> std::oct >> flags;
    return flags;
}

/// Opening a file to read it changes nothing, nor does closing it then.
Counted KindOf(pid_t process, const Call& call, long number, const user_regs_struct& registers)
{
    unsigned long long flags = 0;
    if (call.names == Names::OpenPath)
        flags = registers.rsi;
    else if (call.names == Names::OpenPathAt)
        flags = registers.rdx;
    else if (number == SYS_close)
        flags = FlagsOf(process, registers.rdi);
    else
        return call.kind;
    if (flags & (O_WRONLY | O_RDWR | O_CREAT))
        return Counted::Changes;
    return number == SYS_close ? Counted::Neither : Counted::Reads;
}

class Tracer {
public:
    Tracer(pid_t process, std::string folder, const Interference& interference, Counted counted)
        : _process(process), _folder(std::move(folder)), _interference(interference), _counted(counted)
    {
    }

    TracedRun run()
    {
        int status = 0;
        if (waitpid(_process, &status, 0) < 0)
            throw std::runtime_error(std::string("A process cannot be waited for: ") + std::strerror(errno));
        if (!WIFSTOPPED(status))
            throw std::runtime_error(
                "This system lets nobody trace a process (" + reasonOf(status) +
                "), which the tests of interrupted saves need; a container has to allow it.");
        ptrace(PTRACE_SETOPTIONS, _process, nullptr,
               PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL | PTRACE_O_TRACECLONE | PTRACE_O_TRACEFORK |
                   PTRACE_O_TRACEVFORK | PTRACE_O_TRACEEXEC);
        resume(_process, 0);
        while (true) {
            const pid_t stopped = waitpid(-1, &status, __WALL);
            if (stopped < 0)
                return _result;
            if (WIFSTOPPED(status))
                stoppedAt(stopped, status);
            else if (stopped == _process)
                ended(status);
        }
    }

private:
    /// Of a process that came to its end instead of a stop.
    static std::string reasonOf(int status)
    {
        return WIFEXITED(status) ? std::strerror(WEXITSTATUS(status)) : strsignal(WTERMSIG(status));
    }
    static void resume(pid_t process, int signal) { ptrace(PTRACE_SYSCALL, process, nullptr, signal); }
    void ended(int status)
    {
        if (WIFEXITED(status))
            _result.exitCode = WEXITSTATUS(status);
        else
            _result.wasKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }
    void stoppedAt(pid_t process, int status)
    {
        const int signal = WSTOPSIG(status);
        if (signal == (SIGTRAP | 0x80)) {
            _isInside.count(process) ? leave(process) : enter(process);
            return resume(process, 0);
        }
        // Threads and programs begin with stops of their own, which are no signals to them.
        const bool isOwn = signal == SIGTRAP || signal == SIGSTOP;
        resume(process, isOwn ? 0 : signal);
    }
    void enter(pid_t process)
    {
        _isInside.insert(process);
        user_regs_struct registers{};
        ptrace(PTRACE_GETREGS, process, nullptr, &registers);
        const auto call = WatchedCalls().find(static_cast<long>(registers.orig_rax));
        if (call == WatchedCalls().end() || KindOf(process, call->second, call->first, registers) != _counted)
            return;
        const std::string path = PathOf(process, call->second.names, registers);
        if (path.compare(0, _folder.size(), _folder) != 0)
            return;
        _result.calls.push_back(call->second.name + (' ' + path));
        const std::size_t number = _result.calls.size();
        const bool isHit = _interference.at > 0 && (number == _interference.at ||
                                                    (_interference.isLasting && number > _interference.at));
        if (!isHit)
            return;
        if (_interference.error == 0) {
            kill(_process, SIGKILL);
            return;
        }
        registers.orig_rax = static_cast<unsigned long long>(-1); // no call at all
        ptrace(PTRACE_SETREGS, process, nullptr, &registers);
        _isToFail.insert(process);
    }
    void leave(pid_t process)
    {
        _isInside.erase(process);
        if (_isToFail.erase(process) == 0)
            return;
        user_regs_struct registers{};
        ptrace(PTRACE_GETREGS, process, nullptr, &registers);
        registers.rax = static_cast<unsigned long long>(-_interference.error);
        ptrace(PTRACE_SETREGS, process, nullptr, &registers);
    }

    pid_t _process;
    std::string _folder;
    Interference _interference;
    Counted _counted;
    std::set<pid_t> _isInside, _isToFail;
    TracedRun _result;
};

} // namespace

TracedRun RunTraced(const fs::path& folder, const std::function<int()>& work,
                    const Interference& interference, Counted counted)
{
    const pid_t process = fork();
    if (process < 0)
        throw std::runtime_error(std::string("A process cannot be started: ") + std::strerror(errno));
    if (process == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            _exit(errno);
        raise(SIGSTOP);
        _exit(work());
    }
    return Tracer(process, fs::weakly_canonical(folder).string(), interference, counted).run();
}

#else

TracedRun RunTraced(const std::filesystem::path&, const std::function<int()>&, const Interference&, Counted)
{
    throw std::runtime_error("The tests of interrupted saves know the calls of x86-64 processors alone.");
}

#endif
