// Files that a run would write, told by one that writes nothing (`--dry-run`).
// SPDX-License-Identifier: MIT

#pragma once

#include "report.h"

#include <filesystem>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace cli {

/// @param how  what of the work is done all the same, as the help tells it
CLI::Option* AddDryRunOption(CLI::App& command, bool& isDryRun, const std::string& how);

struct PlannedFile {
    std::filesystem::path file;
    bool replaces = false; ///< one that is there
};
using PlannedFiles = std::vector<PlannedFile>;

/// Finds out whether the file can be written.
/// @throws std::runtime_error  it cannot, or its folder is not there
void PlanFile(PlannedFiles& planned, const std::filesystem::path& file);
/// The same where a run makes the folders that are missing; makes none.
void PlanFileWithFolders(PlannedFiles& planned, const std::filesystem::path& file);
/// The latter for every file below a folder, at the same place below another one.
void PlanFilesLike(PlannedFiles& planned, const std::filesystem::path& made,
                   const std::filesystem::path& folder);

/// The same for a file that an option sends there.
void PlanStandardOutput(PlannedFiles& planned);

/// A report that begins with "dry_run" and what would be written, for others to be added.
Json DescribePlan(const PlannedFiles& planned, bool asJson);
/// The same with what there is to tell already.
Json WithPlan(const PlannedFiles& planned, const Json& report, bool asJson);

} // namespace cli
