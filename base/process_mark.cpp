// Which process a file that should not last belongs to.
// SPDX-License-Identifier: MIT

#include "base/process_mark.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <system_error>

#include <fmt/format.h>
#include <unistd.h>

namespace base {

namespace {

/// Of the machine since it was started, or the container: a number names another process elsewhere.
std::string MachineMark()
{
    std::string boot;
    std::ifstream("/proc/sys/kernel/random/boot_id") >> boot;
    std::error_code unknown;
    boot += std::filesystem::read_symlink("/proc/self/ns/pid", unknown).string();
    std::string name(256, '\0');
    if (gethostname(name.data(), name.size() - 1) != 0)
        name.clear();
    return fmt::format("{:016x}", std::hash<std::string>()(boot + name.c_str()));
}

/// When the process began, in ticks since the machine did; empty if there is none, or one that has only its
/// parent to tell of its end.
std::string StartOf(long process)
{
    std::ifstream file(fmt::format("/proc/{}/stat", process));
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    // The second field is the program's name in brackets, which may hold anything.
    const std::size_t name = text.rfind(')');
    if (name == std::string::npos)
        return {};
    std::istringstream fields(text.substr(name + 1));
    std::string state, field;
    fields >> state;
    if (state == "Z" || state == "X")
        return {};
    constexpr int start = 22, behindState = 4;
    for (int i = behindState; i <= start && fields; ++i)
        fields >> field;
    return field;
}

std::string MakeMark(long process)
{
    return fmt::format("{}-{}-{}", MachineMark(), process, StartOf(process));
}

} // namespace

std::string ProcessMark()
{
    // A process that was divided in two is not the one that asked before.
    thread_local pid_t process = 0;
    thread_local std::string mark;
    if (process != getpid()) {
        process = getpid();
        mark = MakeMark(process);
    }
    return mark;
}

bool HasEnded(std::string_view mark)
{
    const std::string machine = MachineMark() + "-";
    if (mark.substr(0, machine.size()) != machine)
        return false;
    mark.remove_prefix(machine.size());
    long process = 0;
    const auto [end, error] = std::from_chars(mark.data(), mark.data() + mark.size(), process);
    if (error != std::errc() || end == mark.data() + mark.size() || *end != '-' || StartOf(getpid()).empty())
        return false;
    return StartOf(process) != mark.substr(static_cast<std::size_t>(end - mark.data()) + 1);
}

} // namespace base
