// Files that a run would write, told by one that writes nothing (`--dry-run`).
// SPDX-License-Identifier: MIT

#include "planned_files.h"

#include "command.h"
#include "output_name.h"
#include "standard_streams.h"

#include <algorithm>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace fs = std::filesystem;

namespace {

fs::path FolderOf(const fs::path& file)
{
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

} // namespace

CLI::Option* AddDryRunOption(CLI::App& command, bool& isDryRun, const std::string& how)
{
    return command.add_flag("--dry-run", isDryRun, "Print what would be written, and write nothing; " + how);
}

void PlanFile(PlannedFiles& planned, const fs::path& file)
{
    std::error_code error;
    const fs::path folder = FolderOf(file);
    if (!fs::is_directory(folder, error))
        throw std::runtime_error(
            fmt::format("cannot write {}: there is no folder {}", FileText(file), FileText(folder)));
    PlanFileWithFolders(planned, file);
}

void PlanFileWithFolders(PlannedFiles& planned, const fs::path& file)
{
    CheckFolder(FolderOf(file));
    CheckOutput(file, {});
    std::error_code error;
    planned.push_back({file, fs::exists(file, error)});
}

void PlanFilesLike(PlannedFiles& planned, const fs::path& made, const fs::path& folder)
{
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(made))
        if (entry.is_regular_file())
            files.push_back(entry.path().lexically_relative(made));
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files)
        PlanFileWithFolders(planned, folder / file);
}

void PlanStandardOutput(PlannedFiles& planned)
{
    planned.push_back({standardOutputText, false});
}

Json DescribePlan(const PlannedFiles& planned, bool asJson)
{
    Json report;
    report["dry_run"] = asJson ? Json(true) : Json("nothing is written");
    Json& files = report["would_write"] = Json::array();
    for (const PlannedFile& one : planned)
        files.push_back({{"replaces", one.replaces}, {"file", FileText(one.file)}});
    return report;
}

Json WithPlan(const PlannedFiles& planned, const Json& report, bool asJson)
{
    Json whole = DescribePlan(planned, asJson);
    whole.update(report);
    return whole;
}

} // namespace cli
