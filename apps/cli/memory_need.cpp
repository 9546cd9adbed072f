// How much memory a conversion takes, and the machine has.
// SPDX-License-Identifier: MIT

#include "memory_need.h"

#include "option_words.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>
#include <string>

#include <fmt/format.h>
#include <sys/resource.h>

namespace cli {

namespace {

constexpr double kibibyte = 1024.0, mebibyte = 1024.0 * 1024.0;

/// Of a line such as "MemAvailable:   123 kB".
std::optional<double> KibibytesIn(const char* file, const std::string& name)
{
    std::ifstream lines(file);
    std::string word;
    while (lines >> word)
        if (word == name) {
            double value = 0.0;
            return lines >> value ? std::optional<double>(kibibyte * value) : std::nullopt;
        }
    return std::nullopt;
}

std::optional<double> NumberIn(const char* file)
{
    double value = 0.0;
    return std::ifstream(file) >> value ? std::optional<double>(value) : std::nullopt;
}

/// Of the group of processes that a container is.
std::optional<double> LeftOfGroup()
{
    const auto most = NumberIn("/sys/fs/cgroup/memory.max"), used = NumberIn("/sys/fs/cgroup/memory.current");
    return most && used ? std::optional<double>(*most - *used) : std::nullopt;
}

std::optional<double> LeftOfAddresses()
{
    rlimit limit{};
    const auto used = KibibytesIn("/proc/self/status", "VmSize:");
    if (!used || getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
        return std::nullopt;
    return static_cast<double>(limit.rlim_cur) - *used;
}

} // namespace

double SubdividedConversionNeed(std::size_t cageVertices, int level)
{
    // Measured with the sample figures at levels 2 to 5: 265 to 300 bytes for each vertex of the finest
    // meshes, and 340 where pictures are drawn, besides what the program takes without any.
    constexpr double bytesForVertex = 400.0;
    return bytesForVertex * static_cast<double>(cageVertices) * std::pow(4.0, level);
}

std::optional<double> MemoryLeft()
{
    std::optional<double> left;
    for (const auto& one : {KibibytesIn("/proc/meminfo", "MemAvailable:"), LeftOfGroup(), LeftOfAddresses()})
        if (one)
            left = std::max(0.0, std::min(left.value_or(*one), *one));
    return left;
}

void CheckMemory(std::size_t cageVertices, int level)
{
    const double need = SubdividedConversionNeed(cageVertices, level);
    const std::optional<double> left = MemoryLeft();
    if (left && need > *left)
        throw std::runtime_error(fmt::format("a conversion at subdivision level {} needs about {:.0f} MiB of "
                                             "memory, and {:.0f} are left; a lower {} needs less",
                                             level, need / mebibyte, *left / mebibyte, OptionWord("--subd")));
}

} // namespace cli
