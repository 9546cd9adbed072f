// Programs whose system calls on files are watched, made to fail, or their last.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// What happens at one of the calls; nothing without a number.
struct Interference {
    std::size_t at = 0;     ///< number of the call, from 1
    int error = 0;          ///< the call is not made and fails so; 0: the program is killed before the call
    bool isLasting = false; ///< all later calls that change something fail likewise
};

/// Which of the calls on files are numbered.
enum class Counted {
    Changes, ///< those that change a file or folder, or write it to disk
    Reads,   ///< those that open, read or list one
    Neither
};

struct TracedRun {
    std::vector<std::string> calls; ///< name and path of each, in order
    bool wasKilled = false;
    int exitCode = -1;
};

/// Runs work in a process of its own.
/// @param folder  calls for what is below it count; others are let through
/// @param work    its result is the exit code; may have threads and run programs
/// @throws std::runtime_error  where nobody may trace, or the calls of the processor are not known here.
///         No other test shows that a save loses nothing, so it fails instead of being left out.
TracedRun RunTraced(const std::filesystem::path& folder, const std::function<int()>& work,
                    const Interference& interference = {}, Counted counted = Counted::Changes);
