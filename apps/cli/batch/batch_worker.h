// The process that rows of a batch are converted in, one after the other.
// SPDX-License-Identifier: MIT

#pragma once

#include "command.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cli {

/// How such a process works.
struct WorkerTraits {
    std::size_t threads = 1;    ///< that it computes with
    bool tellsProgress = false; ///< of each row, in lines to standard error
    bool verbose = false;
};
/// Arguments of the program that make it such a process, a child of this one.
std::vector<std::string> BatchWorkerArguments(const WorkerTraits& traits);

/// A subcommand that no help lists. It reads a line for each row, an object with "arguments", "may_replace",
/// "own_files", "wants_picture" and "dry_run", and answers with an object on a line: "report", as the row's
/// command has it with `--json`, "files_used" and "picture", or "error" with "warnings" and "diagnostics", or
/// both; "peak_memory_mib" of the row, and "held_mib" that it holds behind it. Before files are put in place
/// it says {"saving": [...]}, with their names where only it knows them, and waits for {"refusal": ""}, or
/// why it may not.
void AddBatchWorkerCommand(CLI::App& program, CommandContext& context);

} // namespace cli
