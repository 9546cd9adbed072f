// Running the program and looking at what it says.
// SPDX-License-Identifier: MIT

#include "cli_run_program.h"

#include "cli_capture.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

/// The settings of whoever runs the tests are not theirs.
const bool hasNoSettings = [] {
    for (const char* variable : {"GANTREL_CONTENT", "GANTREL_VENDOR", "GANTREL_PRODUCT", "GANTREL_THREADS"})
        unsetenv(variable);
    return setenv("XDG_CONFIG_HOME", "/nonexistent", 1) == 0;
}();

/// A program on its way.
class RunningProgram {
public:
    explicit RunningProgram(const std::vector<std::string>& arguments)
    {
        std::vector<std::string> owned{GANTREL_PROGRAM};
        owned.insert(owned.end(), arguments.begin(), arguments.end());
        std::vector<char*> argv;
        for (std::string& argument : owned)
            argv.push_back(&argument[0]);
        argv.push_back(nullptr);

        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", 0, 0);
        posix_spawn_file_actions_adddup2(&actions, _out.descriptor(), STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, _err.descriptor(), STDERR_FILENO);
        if (!hasNoSettings)
            throw std::runtime_error("cannot set an environment variable");
        const int error = posix_spawn(&_child, GANTREL_PROGRAM, &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        if (error != 0)
            throw std::runtime_error("cannot run the program");
    }

    bool hasEnded() const
    {
        // The child stays to be waited for.
        siginfo_t info{};
        return waitid(P_PID, static_cast<id_t>(_child), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
               info.si_pid != 0;
    }
    void send(int signal) const { kill(_child, signal); }

    ProgramResult wait() const
    {
        int status = 0;
        while (waitpid(_child, &status, 0) < 0)
            if (errno != EINTR)
                throw std::runtime_error("cannot wait for the program");
        ProgramResult result;
        result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
        result.out = _out.text();
        result.err = _err.text();
        return result;
    }

private:
    Capture _out, _err;
    pid_t _child = 0;
};

} // namespace

ProgramResult RunProgram(const std::vector<std::string>& arguments)
{
    return RunningProgram(arguments).wait();
}

ProgramResult InterruptProgram(const std::vector<std::string>& arguments, const std::string& awaitedPath)
{
    return InterruptProgram(arguments, [&awaitedPath] { return std::filesystem::exists(awaitedPath); });
}

ProgramResult InterruptProgram(const std::vector<std::string>& arguments,
                               const std::function<bool()>& hasCome, const std::function<void()>& afterwards)
{
    return SignalProgram(arguments, SIGINT, hasCome, afterwards);
}

ProgramResult SignalProgram(const std::vector<std::string>& arguments, int signal,
                            const std::function<bool()>& hasCome, const std::function<void()>& afterwards)
{
    const RunningProgram program(arguments);
    while (!hasCome() && !program.hasEnded())
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    program.send(signal);
    if (afterwards)
        afterwards();
    return program.wait();
}

ProgramResult InterruptProgramTwice(const std::vector<std::string>& arguments,
                                    const std::function<bool()>& hasCome)
{
    const RunningProgram program(arguments);
    while (!hasCome() && !program.hasEnded())
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    // Held, so that both are there when it goes on.
    for (const int signal : {SIGSTOP, SIGINT, SIGTERM, SIGCONT})
        program.send(signal);
    return program.wait();
}
