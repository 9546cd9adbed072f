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
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace cli {

namespace {

/// Tells of them if the run is interrupted.
class WrittenFigures {
public:
    explicit WrittenFigures(const std::string& directory) : _directory(directory) {}
    ~WrittenFigures()
    {
        NoteWritten(_labels.empty()
                        ? "no figure is written whole to " + _directory
                        : fmt::format("written whole to {}: {}", _directory, fmt::join(_labels, ", ")));
    }
    WrittenFigures(const WrittenFigures&) = delete;
    WrittenFigures& operator=(const WrittenFigures&) = delete;

    void add(const std::string& label) { _labels.push_back(label); }

private:
    std::string _directory;
    std::vector<std::string> _labels;
};

void WriteSamples(const std::string& directory)
{
    // Making the figures takes seconds; a place that cannot be made shows at once.
    base::MakeFolders(directory);
    Progress progress(true);
    WrittenFigures written(directory);
    content::WriteSampleLibrary(
        directory, [&](const std::string& figure) { progress.stage(figure, "Making " + figure); },
        [&written](const std::string& figure) { written.add(figure); });
    progress.finish();
    WriteOutput(fmt::format("Sample library written to {}\n", directory));
}

} // namespace

void AddSampleContentCommand(CLI::App& program, CommandContext& context)
{
    const auto directory = std::make_shared<std::string>();
    CLI::App* const command = program.add_subcommand(
        "sample-content",
        "Write the sample library: stand-ins for the stock figures and characters shaped on them");
    command->add_option("DIR", *directory, "Content directory to write into; other files in it stay")
        ->type_name("DIR")
        ->required();
    command->callback([directory, &context] { context.work = [directory] { WriteSamples(*directory); }; });
}

} // namespace cli
