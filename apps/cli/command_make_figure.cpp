// The subcommand `make-figure`.
// SPDX-License-Identifier: MIT

#include "command_make_figure.h"

#include "command.h"
#include "interrupt.h"
#include "options.h"
#include "output_name.h"
#include "planned_files.h"
#include "progress.h"
#include "report.h"
#include "sample_content/figure_kinds.h"
#include "sample_content/make_figure.h"
#include "standard_streams.h"
#include "temporary_folder.h"

#include <algorithm>
#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using NamedFile = std::pair<std::string, std::filesystem::path>;

struct MakeFigureArguments {
    std::string kind, mesh, skeleton, joints, weights, contentDirectory;
    std::vector<std::string> morphs, weightMaps;
    bool json = false, isDryRun = false;
};

std::vector<std::string> Kinds()
{
    std::vector<std::string> keywords;
    for (const content::FigureKindInfo& kind : content::FigureKinds())
        keywords.push_back(kind.keyword);
    return keywords;
}

/// File names hold "=" more often than morphs do, so the first one counts.
std::string CheckNamedFile(const std::string& text)
{
    const std::size_t equals = text.find('=');
    const bool isNamed = equals != text.npos && equals > 0 && equals + 1 < text.size();
    return isNamed ? std::string() : fmt::format("\"{}\" is not of the form NAME=FILE", text);
}

std::vector<NamedFile> NamedFiles(const std::vector<std::string>& texts)
{
    std::vector<NamedFile> files;
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        files.emplace_back(text.substr(0, equals), text.substr(equals + 1));
    }
    return files;
}

content::MakeFigureOptions OptionsOf(const MakeFigureArguments& arguments)
{
    content::MakeFigureOptions options;
    options.kind = arguments.kind;
    options.mesh = arguments.mesh;
    options.skeleton = arguments.skeleton;
    options.joints = arguments.joints;
    options.weights = arguments.weights;
    options.morphs = NamedFiles(arguments.morphs);
    options.weightMaps = NamedFiles(arguments.weightMaps);
    options.contentDirectory = arguments.contentDirectory;
    return options;
}

/// Makes it elsewhere, which tells its files.
content::MadeFigure TryToMake(content::MakeFigureOptions options, PlannedFiles& planned)
{
    const std::filesystem::path library = options.contentDirectory;
    const TemporaryFolder folder(TemporaryFolder::Lasting::ForRun);
    options.contentDirectory = folder.path();
    content::MadeFigure made = content::MakeFigure(options);
    PlanFilesLike(planned, folder.path(), library);
    return made;
}

content::MadeFigure Make(const content::MakeFigureOptions& options)
{
    ExpectFiles();
    content::MadeFigure made = content::MakeFigure(options);
    NoteWritten("the figure is written to " + FileText(options.contentDirectory));
    return made;
}

/// They belong together, and one that has no name could not be told from another.
void CheckAreFiles(const content::MakeFigureOptions& options)
{
    std::vector<std::filesystem::path> files{options.mesh, options.skeleton, options.weights};
    for (const std::vector<NamedFile>& list : {options.morphs, options.weightMaps})
        std::transform(list.begin(), list.end(), std::back_inserter(files),
                       [](const NamedFile& one) { return one.second; });
    if (std::any_of(files.begin(), files.end(), IsStandardStream))
        throw UsageError(
            "a figure is made of files alone, none of them standard input; ./- is a file of that name");
}

void MakeFigure(const MakeFigureArguments& arguments)
{
    Progress progress(!arguments.json);
    progress.stage("figure", "Making the figure");
    const content::MakeFigureOptions options = OptionsOf(arguments);
    CheckAreFiles(options);
    CheckFolder(options.contentDirectory);
    PlannedFiles planned;
    const content::MadeFigure made = arguments.isDryRun ? TryToMake(options, planned) : Make(options);
    progress.finish();
    Json report;
    report["figure"] = made.label;
    report["kind"] = arguments.kind;
    report["library"] = arguments.contentDirectory;
    report["vertices"] = made.vertexCount;
    report["bones"] = made.boneCount;
    report["morphs"] = made.morphCount;
    report["joints"] = made.joints;
    report["seconds"] = Rounded(progress.totalSeconds(), 4);
    AddDiagnostics(report, made.diagnostics, arguments.json);
    WriteResult(arguments.isDryRun ? WithPlan(planned, report, arguments.json) : report, arguments.json,
                arguments.isDryRun);
}

} // namespace

void AddMakeFigureCommand(CLI::App& program, CommandContext& context)
{
    const auto arguments = std::make_shared<MakeFigureArguments>();
    CLI::App* const command = program.add_subcommand(
        "make-figure", "Make a library figure of a mesh, a skeleton, weights and morphs");
    command->footer("Example:\n"
                    "  gantrel make-figure --kind genesis9 --mesh neutral.obj \\\n"
                    "      --skeleton bones.json --weights weights.json.gz \\\n"
                    "      --morph Smile=smile.obj --library ~/library");
    const auto add = [&](const char* option, std::string& text, const char* type, const char* what) {
        return command->add_option(option, text, what)->type_name(type);
    };
    AllowWords(*add("--kind", arguments->kind, "KIND", "Stock figure that it stands in for")->required(),
               Kinds());
    add("--mesh", arguments->mesh, "NEUTRAL.obj", "The neutral shape")->required();
    add("--skeleton", arguments->skeleton, "S.json", "Bones and their places")->required();
    add("--joints", arguments->joints, "SET", "Which of the skeleton's sets of places (by kind)");
    add("--weights", arguments->weights, "W.json[.gz]", "Skin weights")->required();
    const auto addNamed = [&](const char* option, std::vector<std::string>& files, const char* type,
                              const char* what) {
        command->add_option(option, files, what)
            ->type_name(type)
            ->allow_extra_args(false)
            ->check(CheckNamedFile);
    };
    addNamed("--morph", arguments->morphs, "NAME=FILE.obj|FILE.csv[.gz]",
             "A morph; again for each further one");
    addNamed("--weight-map", arguments->weightMaps, "NAME=FILE.csv[.gz]",
             "A weight map; again for each further one");
    add("--library", arguments->contentDirectory, "DIR", "Content directory to write into")->required();
    AddDryRunOption(*command, arguments->isDryRun, "the figure is made in a temporary folder, which goes");
    AddJsonOption(*command, arguments->json);
    command->callback([arguments, &context] { context.work = [arguments] { MakeFigure(*arguments); }; });
}

} // namespace cli
