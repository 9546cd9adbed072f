// The subcommand `sample-content`.
// SPDX-License-Identifier: MIT

#include "command_sample_content.h"

#include "base/folders.h"
#include "command.h"
#include "interrupt.h"
#include "progress.h"
#include "report.h"
#include "sample_content/sample_library.h"

#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cli {

namespace {

void WriteSamples(const std::string& directory)
{
    ExpectFiles();
    // Making the figures takes seconds; a place that cannot be made shows at once.
    base::MadeFolders folders;
    folders.make(directory);
    Progress progress(true);
    content::WriteSampleLibrary(
        directory, [&](const std::string& figure) { progress.stage(figure, "Making " + figure); });
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
    command->callback([directory, &context] { context.work = [directory] { WriteSamples(*directory); }; });
}

} // namespace cli
