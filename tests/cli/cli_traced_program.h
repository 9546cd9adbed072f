// The program on disks that fail, and cut off by a kill.
// SPDX-License-Identifier: MIT

#pragma once

#include "cli_run_program.h"

#include "tests/base/traced_run.h"

/// What was written to the program's streams comes with it.
struct TracedProgram : TracedRun {
    std::string out, err;
};

/// Runs the program under test to its end, without a terminal.
/// @param folder  as RunTraced has it
TracedProgram RunProgramTraced(const std::filesystem::path& folder, std::vector<std::string> arguments,
                               const Interference& interference = {}, Counted counted = Counted::Changes);

/// The errors that a call is tried with. All of them take long: each call gets one, and calls that follow
/// each other different ones, unless the variable TEST_ALL_ERRORS is set.
std::vector<int> ErrorsFor(std::size_t call, const std::vector<int>& all);
