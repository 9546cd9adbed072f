// The subcommand `convert-morphs`.
// SPDX-License-Identifier: MIT

#include "command_convert_morphs.h"

#include "dson/reader.h"
#include "host_session.h"
#include "morph_conversion.h"
#include "options.h"
#include "progress.h"
#include "report.h"
#include "save_options.h"

#include <cmath>
#include <memory>

#include <CLI/CLI.hpp>
#include <QString>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

struct ConvertMorphsArguments {
    std::vector<std::string> content, patterns;
    std::string source, target, list, path, suffix, resolution = "base";
    std::string contentDirectory, vendor, product;
    double value = 1.0;
    bool controllers = false, correctives = false, overwrite = false, compress = false, json = false;
};

void AddFigureOptions(CLI::App& command, ConvertMorphsArguments& arguments)
{
    AddContentOption(command, arguments.content)
        ->allow_extra_args(true)
        ->description("Content directories, in order; also again for each further one");
    command.add_option("--source", arguments.source, "Genesis 3, 8 or 8.1 figure with the morphs")
        ->type_name("FIGURE.duf")
        ->required();
    command.add_option("--target", arguments.target, "Genesis 9 figure that receives the morphs")
        ->type_name("FIGURE.duf")
        ->required();
}

void AddChoiceOptions(CLI::App& command, ConvertMorphsArguments& arguments)
{
    CLI::Option_group* const choice = command.add_option_group("Morphs", "Which morphs to convert");
    choice
        ->add_option(
            "--morphs", arguments.patterns,
            "Names or labels, with * for any text and ? for one character; hidden dials only by their "
            "whole names, or with --controllers or --correctives")
        ->type_name("PATTERN");
    choice
        ->add_option("--list", arguments.list,
                     "File with a name or label a line; a line that begins with # is a remark")
        ->type_name("FILE");
    choice->require_option(1);
}

void AddMorphOptions(CLI::App& command, ConvertMorphsArguments& arguments)
{
    command.add_option("--path", arguments.path, "Property group that the groups of the new dials go into")
        ->type_name("PREFIX");
    command.add_option("--suffix", arguments.suffix, "Text behind the names of the new morphs")
        ->type_name("TEXT");
    command.add_option("--value", arguments.value, "Strength at which the morphs are taken")
        ->type_name("X")
        ->capture_default_str();
    command.add_flag(
        "--controllers", arguments.controllers,
        "Dials that drive others drive the new morphs; otherwise they are taken with what they drive");
    command.add_flag("--correctives", arguments.correctives,
                     "Morphs that several others turn together are turned by the new ones");
    command
        .add_option(
            "--resolution", arguments.resolution,
            "Resolution of the morphs: base, or subd for those with detail of the source's subdivision "
            "level, which take longer")
        ->check(CLI::IsMember({"base", "subd"}))
        ->capture_default_str();
}

void AddSaveOptions(CLI::App& command, ConvertMorphsArguments& arguments)
{
    command
        .add_option("--save-library", arguments.contentDirectory, "Content directory to save the morphs into")
        ->type_name("DIR")
        ->required();
    command.add_option("--vendor", arguments.vendor, "Vendor folder of the saved morphs")
        ->type_name("TEXT")
        ->required();
    command.add_option("--product", arguments.product, "Product folder of the saved morphs")
        ->type_name("TEXT")
        ->required();
    command.add_flag("--compress", arguments.compress, "Compress the saved morphs");
    command.add_flag("--overwrite", arguments.overwrite, "Replace saved morphs that have the same name");
    AddJsonOption(command, arguments.json);
}

void CheckText(const char* option, const std::string& text)
{
    if (QString::fromStdString(text).toStdString() != text)
        throw UsageError(fmt::format("{} is not UTF-8", option));
}

MorphConversionRequest MakeRequest(const ConvertMorphsArguments& arguments)
{
    MorphConversionRequest request;
    request.source = arguments.source;
    request.target = arguments.target;
    request.contentDirectories = ContentDirectoriesFor(request.source, ToPaths(arguments.content));
    for (const std::string& pattern : arguments.patterns)
        CheckText("--morphs", pattern);
    // A script's variable that is not set must not quietly mean no morphs.
    if (arguments.patterns.empty() && arguments.list.empty())
        throw UsageError("--list: the name is empty");
    CheckText("--path", arguments.path);
    CheckText("--suffix", arguments.suffix);
    if (!std::isfinite(arguments.value) || arguments.value == 0.0)
        throw UsageError("--value is to be a number other than 0");
    const bool takesLinks = arguments.controllers || arguments.correctives;
    if (arguments.value != 1.0 && takesLinks)
        throw UsageError("--value cannot be used with --controllers or --correctives, which make links for "
                         "whole morphs");
    request.choice = {arguments.patterns, arguments.list, takesLinks};
    request.pathPrefix = arguments.path;
    request.suffix = arguments.suffix;
    request.value = arguments.value;
    request.takesControllers = arguments.controllers;
    request.takesCorrectives = arguments.correctives;
    request.resolution = arguments.resolution == "subd" ? GntResolution::Subd : GntResolution::Base;
    request.save = {arguments.contentDirectory, arguments.vendor, arguments.product, arguments.compress};
    CheckSaveOptions(request.save);
    request.mayOverwrite = arguments.overwrite;
    return request;
}

Json Describe(const ConvertedMorph& morph, bool asJson)
{
    Json json{{"name", morph.name}};
    if (asJson) {
        json["label"] = morph.label;
        json["path"] = morph.path;
    }
    json["vertices_moved"] = morph.verticesMoved;
    if (morph.detailVerticesMoved > 0 || asJson)
        json["detail_vertices_moved"] = morph.detailVerticesMoved;
    json["largest_displacement_mm"] = Rounded(morph.largestDisplacementMm, 3);
    if (asJson)
        json["drivers"] = morph.drivers;
    json["file"] = morph.file;
    return json;
}

Json Describe(const MorphConversionReport& report, const Progress& progress, bool asJson)
{
    Json created = Json::array(), skipped = Json::array();
    for (const ConvertedMorph& morph : report.created)
        created.push_back(Describe(morph, asJson));
    for (const SkippedMorph& morph : report.skipped)
        skipped.push_back({{"name", morph.name}, {"reason", morph.reason}});
    Json json{
        {"source", report.source}, {"target", report.target}, {"created", created}, {"skipped", skipped}};
    json["seconds"] = SecondsOf(progress);
    json["peak_memory_mib"] = Rounded(PeakMemoryMebibytes(), 1);
    AddDiagnostics(json, report.diagnostics, asJson);
    return json;
}

/// The run as a whole has failed when a morph has.
void ThrowIfFailed(const MorphConversionReport& report)
{
    std::size_t failures = 0;
    for (const SkippedMorph& morph : report.skipped)
        failures += morph.isFailure ? 1 : 0;
    if (failures > 0)
        throw ReportedError(fmt::format("{} converted; {} saved",
                                        dson::Counted(failures, "morph was not", "morphs were not"),
                                        dson::Counted(report.created.size(), "is", "are")));
}

} // namespace

void AddConvertMorphsCommand(CLI::App& program, CommandContext& context)
{
    CLI::App* const command = program.add_subcommand(
        "convert-morphs", "Turn single morphs of a figure into morphs on a Genesis 9 figure");
    const auto arguments = std::make_shared<ConvertMorphsArguments>();
    // Help lists them in this order.
    AddFigureOptions(*command, *arguments);
    AddChoiceOptions(*command, *arguments);
    AddMorphOptions(*command, *arguments);
    AddSaveOptions(*command, *arguments);
    command->callback([arguments, &context] {
        context.work = [arguments, &context] {
            MorphConversionRequest request = MakeRequest(*arguments);
            request.verbose = context.verbose;
            Progress progress(!arguments->json);
            const MorphConversionReport report = ConvertMorphs(request, progress);
            WriteReport(Describe(report, progress, arguments->json), arguments->json);
            ThrowIfFailed(report);
        };
    });
}

} // namespace cli
