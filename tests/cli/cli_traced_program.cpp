// The program on disks that fail, and cut off by a kill.
// SPDX-License-Identifier: MIT

#include "cli_traced_program.h"

#include "cli_capture.h"
#include "tests/base/sanitizer_option.h"

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

TracedProgram RunProgramTraced(const std::filesystem::path& folder, std::vector<std::string> arguments,
                               const Interference& interference, Counted counted)
{
    const Capture out, err;
    // Leaks are looked for by tracing, and a process has one tracer.
    const SanitizerOption withoutLeaks("detect_leaks=0");
    arguments.insert(arguments.begin(), GANTREL_PROGRAM);
    const auto program = [&] {
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
        dup2(out.descriptor(), STDOUT_FILENO);
        dup2(err.descriptor(), STDERR_FILENO);
        execv(GANTREL_PROGRAM, argv.data());
        return 126;
    };
    TracedProgram result;
    static_cast<TracedRun&>(result) = RunTraced(folder, program, interference, counted);
    result.out = out.text();
    result.err = err.text();
    return result;
}

std::vector<int> ErrorsFor(std::size_t call, const std::vector<int>& all)
{
    return std::getenv("TEST_ALL_ERRORS") ? all : std::vector<int>{all[call % all.size()]};
}
