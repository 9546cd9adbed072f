// Which process a file that should not last belongs to.
// SPDX-License-Identifier: MIT

#include "base/process_mark.h"

#include <algorithm>
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

std::string FirstWord(const char* file)
{
    std::string word;
    std::ifstream(file) >> word;
    return word;
}

std::string Short(const std::string& text)
{
    return fmt::format("{:08x}", std::hash<std::string>()(text) & 0xffffffff);
}

/// Of the machine's run: all processes of an earlier one have ended.
std::string RunMark()
{
    return Short(FirstWord("/proc/sys/kernel/random/boot_id"));
}

/// Of the machine, or the container.
std::string MachineMark()
{
    std::string name(256, '\0');
    if (gethostname(name.data(), name.size() - 1) != 0)
        name.clear();
    const std::string id = FirstWord("/etc/machine-id");
    // Many machines may have the same name, or none; without a number they are others after each start.
    return Short((id.empty() ? RunMark() : id) + name.c_str());
}

/// Of those that are numbered together: elsewhere a number names another process.
std::string NumberingMark()
{
    std::error_code unknown;
    return Short(std::filesystem::read_symlink("/proc/self/ns/pid", unknown).string());
}

/// Takes what stands before the next hyphen.
std::string_view TakeField(std::string_view& mark)
{
    const std::size_t end = std::min(mark.find('-'), mark.size());
    const std::string_view field = mark.substr(0, end);
    mark.remove_prefix(std::min(end + 1, mark.size()));
    return field;
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
    return fmt::format("{}-{}-{}-{}-{}", MachineMark(), RunMark(), NumberingMark(), process,
                       StartOf(process));
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
    const std::string_view machine = TakeField(mark), run = TakeField(mark), numbering = TakeField(mark),
                           number = TakeField(mark);
    long process = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), process);
    if (error != std::errc() || end != number.data() + number.size() || mark.empty() ||
        machine != MachineMark())
        return false;
    if (run != RunMark())
        return true;
    return numbering == NumberingMark() && !StartOf(getpid()).empty() && StartOf(process) != mark;
}

} // namespace base
