// Running the program and looking at what it says.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <string>
#include <vector>

struct ProgramResult {
    int exitCode = -1; ///< -1 when a signal ended it
    int signal = 0;    ///< the one that ended it
    std::string out, err;
};

/// Runs the program under test to its end, without a terminal.
ProgramResult RunProgram(const std::vector<std::string>& arguments);
/// Starts the program, waits until something has come, and sends Ctrl+C's signal.
/// @param afterwards  what happens then, before the end is waited for
ProgramResult InterruptProgram(const std::vector<std::string>& arguments,
                               const std::function<bool()>& hasCome,
                               const std::function<void()>& afterwards = {});
/// The same with another signal.
ProgramResult SignalProgram(const std::vector<std::string>& arguments, int signal,
                            const std::function<bool()>& hasCome,
                            const std::function<void()>& afterwards = {});
/// The same with Ctrl+C's signal and one more at once.
ProgramResult InterruptProgramTwice(const std::vector<std::string>& arguments,
                                    const std::function<bool()>& hasCome);
/// Ctrl+C's signal when the file or folder exists.
ProgramResult InterruptProgram(const std::vector<std::string>& arguments, const std::string& awaitedPath);
