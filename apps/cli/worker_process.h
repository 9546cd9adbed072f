// Work that may go wrong in ways that a program does not survive.
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <memory>
#include <string>

namespace cli {

/// The rest of the program, in a process of its own. The one that was started waits for it and ends as it
/// does; files that it leaves in the temporary folder go with it.
class WorkerProcess {
public:
    struct Options {
        std::string name;                     ///< what runs, for sentences
        std::chrono::milliseconds timeout{0}; ///< from startClock(); 0 for none
        int megabytes = 0;                    ///< what startClock() leaves it to take
    };

    /// Returns in the new process only. No other thread may run yet.
    /// @throws std::runtime_error  in the first process: the other one came to an end that it could not tell
    /// of itself, or there can be none
    explicit WorkerProcess(Options options);
    ~WorkerProcess();
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    /// The part that the limits are for begins.
    void startClock() const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

/// Half of what the machine has.
int DefaultMegabytes();

} // namespace cli
