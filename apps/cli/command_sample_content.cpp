// The subcommand `sample-content`.
// SPDX-License-Identifier: MIT

#include "command_sample_content.h"

#include "base/folders.h"
#include "command.h"
#include "interrupt.h"
#include "output_name.h"
#include "planned_files.h"
#include "progress.h"
#include "report.h"
#include "sample_content/sample_library.h"
#include "temporary_folder.h"

#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

void MakeIn(const std::filesystem::path& folder, Progress& progress)
{
    content::WriteSampleLibrary(
        folder, [&](const std::string& figure) { progress.stage(figure, "Making " + figure); });
}

/// Makes the library elsewhere, which tells its files.
void ListSamples(const std::string& directory)
{
    Progress progress(true);
    const TemporaryFolder folder(TemporaryFolder::Lasting::ForRun);
    MakeIn(folder.path(), progress);
    progress.finish();
    PlannedFiles planned;
    PlanFilesLike(planned, folder.path(), directory);
    WriteReport(DescribePlan(planned, false), false);
}

void WriteSamples(const std::string& directory)
{
    ExpectFiles();
    // Making the figures takes seconds; a place that cannot be made shows at once.
    base::MadeFolders folders;
    folders.make(directory);
    Progress progress(true);
    MakeIn(directory, progress);
    NoteWritten("the sample library is written to " + directory);
    progress.finish();
    WriteSummary(fmt::format("Sample library written to {}\n", directory));
}

} // namespace

void AddSampleContentCommand(CLI::App& program, CommandContext& context)
{
    const auto directory = std::make_shared<std::string>();
    CLI::App* const command = program.add_subcommand(
        "sample-content",
        "Write the sample library: stand-ins for the stock figures and characters shaped on them");
    command->footer("Example:\n"
                    "  gantrel sample-content ~/sample-library");
    command->add_option("DIR", *directory, "Content directory to write into; other files in it stay")
        ->type_name("DIR")
        ->required();
    const auto isDryRun = std::make_shared<bool>(false);
    AddDryRunOption(*command, *isDryRun, "the library is made in a temporary folder, which goes");
    command->callback([directory, isDryRun, &context] {
        context.work = [directory, isDryRun] {
            CheckFolder(*directory);
            if (*isDryRun)
                ListSamples(*directory);
            else
                WriteSamples(*directory);
        };
    });
}

} // namespace cli
