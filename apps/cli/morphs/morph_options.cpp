// The options of a conversion of single morphs, wherever they are given.
// SPDX-License-Identifier: MIT

#include "morphs/morph_options.h"

#include "command.h"
#include "host_session.h"
#include "options.h"
#include "save_options.h"

#include <cmath>

#include <CLI/CLI.hpp>
#include <QString>
#include <fmt/format.h>

namespace cli {

namespace {

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

CLI::Option* AddPatternOption(CLI::App& command, ConvertMorphsArguments& arguments)
{
    return command
        .add_option(
            "--morphs", arguments.patterns,
            "Names or labels, with * for any text and ? for one character; hidden dials only by their "
            "whole names, or with --controllers or --correctives")
        ->type_name("PATTERN");
}

void AddChoiceOptions(CLI::App& command, ConvertMorphsArguments& arguments)
{
    CLI::Option_group* const choice = command.add_option_group("Morphs", "Which morphs to convert");
    AddPatternOption(*choice, arguments);
    choice
        ->add_option(
            "--list", arguments.list,
            "File with a name or label a line; a line that begins with # is a remark; - reads standard input")
        ->type_name("FILE");
    choice->require_option(1);
}

void AddPathOption(CLI::App& command, ConvertMorphsArguments& arguments)
{
    command.add_option("--path", arguments.path, "Property group that the groups of the new dials go into")
        ->type_name("PREFIX");
}

void AddStrengthOptions(CLI::App& command, ConvertMorphsArguments& arguments)
{
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
}

void AddReportOption(CLI::App& command, ConvertMorphsArguments& arguments)
{
    command
        .add_option(
            "--report", arguments.page,
            "Also write a page to look at: every morph in a table, the largest in pictures, the figure "
            "to turn")
        ->type_name("FILE.html");
}

void CheckText(const char* option, const std::string& text)
{
    if (QString::fromStdString(text).toStdString() != text)
        throw UsageError(fmt::format("{} is not UTF-8", option));
}

} // namespace

void AddConvertMorphsOptions(CLI::App& command, ConvertMorphsArguments& arguments)
{
    AddFigureOptions(command, arguments);
    AddChoiceOptions(command, arguments);
    AddPathOption(command, arguments);
    AddStrengthOptions(command, arguments);
    AddResolutionOption(command, arguments.resolution);
    const SaveOptionSet save = AddSaveOptions(command, arguments);
    for (CLI::Option* const option : {save.contentDirectory, save.vendor, save.product})
        option->required();
    AddReportOption(command, arguments);
}

void AddMorphDefaults(CLI::App& command, ConvertMorphsArguments& arguments)
{
    // Where nothing stands on its own behind the subcommand, a list cannot swallow it.
    AddPatternOption(command, arguments)->allow_extra_args(false);
    AddStrengthOptions(command, arguments);
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
    request.save = MakeSaveOptions(arguments);
    request.author = arguments.author;
    request.page = arguments.page;
    request.mayOverwrite = arguments.overwrite;
    return request;
}

} // namespace cli
