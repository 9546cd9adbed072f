// The options of a conversion, wherever they are given.
// SPDX-License-Identifier: MIT

#include "conversions/convert_options.h"

#include "base/spelling.h"
#include "command.h"
#include "conversions/new_names.h"
#include "host_session.h"
#include "option_words.h"
#include "options.h"
#include "save_options.h"

#include <algorithm>

#include <CLI/CLI.hpp>
#include <QString>
#include <fmt/format.h>

namespace cli {

namespace {

void AddFigureOptions(CLI::App& command, ConvertArguments& arguments, OptionUse use)
{
    const bool isWhole = use == OptionUse::Whole;
    // Where nothing stands on its own behind the subcommand, a list cannot swallow it.
    CLI::Option* const content = AddContentOption(command, arguments.content);
    if (isWhole)
        content->allow_extra_args(true)->description(
            "Content directories, in order; also again for each further one");
    command.add_option("--source", arguments.source, "Genesis 3, 8 or 8.1 character to convert")
        ->type_name("FILE.duf")
        ->required(isWhole);
    AddDialOption(command, arguments.dials);
    command.add_option("--target", arguments.target, "Genesis 9 figure that receives the morphs")
        ->type_name("FILE.duf")
        ->required(isWhole);
    CLI::Option* const base = command
                                  .add_option("--base", arguments.bases,
                                              "Base dial of the target against which the morphs are built; "
                                              "height=auto matches the source; again for each further one")
                                  ->type_name("DIAL=VALUE")
                                  ->allow_extra_args(false);
    ListWords(*base, {"clone", "feminine", "masculine", "height"});
}

void AddMorphOptions(CLI::App& command, ConvertArguments& arguments)
{
    std::vector<std::string> jobs;
    for (const GntJob& job : GNT_JOBS)
        jobs.push_back(job.keyword);
    ListWords(*command.add_option("--jobs", arguments.jobs, "Morphs to create, with commas between them")
                   ->type_name("LIST")
                   ->capture_default_str(),
              jobs);
    command.add_option("--name", arguments.name, "Name of the morphs; head and body have it in front")
        ->type_name("TEXT");
    command.add_option("--path", arguments.path, "Property group of the new dials")
        ->type_name("PATH")
        ->capture_default_str();
    AddResolutionOption(command, arguments.resolution);
    command
        .add_option(
            "--subd", arguments.subdLevel,
            "Subdivision level of the source, 1 to 5, with --resolution subd; as its file has it when "
            "not given")
        ->type_name("LEVEL")
        ->check(CLI::Range(1, 5));
    command.add_flag(
        "--adjust-rig", arguments.adjustRig,
        "Let the target's joints follow the new shape, so that it bends in the right places; the "
        "morphs move them");
    AddRegisterOption(command, arguments.registers);
}

void AddSaveOptions(CLI::App& command, ConvertArguments& arguments, OptionUse use)
{
    const SaveOptionSet save = AddSaveOptions(command, arguments);
    if (use == OptionUse::Defaults)
        return;
    save.contentDirectory->needs(save.vendor)->needs(save.product);
    for (CLI::Option* const option : {save.vendor, save.product, save.author, save.compress, save.overwrite})
        option->needs(save.contentDirectory);
}

void AddExtraOptions(CLI::App& command, ConvertArguments& arguments, OptionUse use)
{
    const std::string stream = use == OptionUse::Whole ? "; - for standard output" : "";
    command.add_option("--export-obj", arguments.exportObj, "Also write the converted figure" + stream)
        ->type_name("FILE.obj");
    command
        .add_option("--pictures", arguments.pictures, "Also draw source and converted figure into a folder")
        ->type_name("DIR");
    if (use == OptionUse::Whole)
        command
            .add_option("--report", arguments.page,
                        "Also write a page to look at: pictures, the figure to turn, all that is told" +
                            stream)
            ->type_name("FILE.html");
    command.add_flag(
        "--accept-missing", arguments.acceptMissing,
        "Convert also without shapes that the source wears and whose files are missing or broken");
    command.add_flag("--keep-temp", arguments.keepTemporary,
                     "Keep the folder of temporary files, and say where it is");
}

GntJobFlag ParseJob(const std::string& text)
{
    for (const GntJob& job : GNT_JOBS)
        if (text == job.keyword)
            return job.flag;
    throw UsageError(OptionWord("--jobs") + " names \"" + text + "\"; the jobs are full, head and body");
}

GntJobs ParseJobs(const std::string& text)
{
    GntJobs jobs;
    std::size_t at = 0;
    while (at <= text.size()) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        jobs.set(ParseJob(text.substr(at, end - at)));
        at = end + 1;
    }
    return jobs;
}

GntBase ParseBaseName(const std::string& name)
{
    std::vector<std::string> names;
    for (const GntBase base : {GntBase::Clone, GntBase::Feminine, GntBase::Masculine, GntBase::Height}) {
        if (name == BaseName(base))
            return base;
        names.emplace_back(BaseName(base));
    }
    const std::string meant = base::LikelyMeant(name, names);
    throw UsageError(fmt::format("{} names \"{}\"; the bases are clone, feminine, masculine and height{}",
                                 OptionWord("--base"), name,
                                 meant.empty() ? "" : fmt::format("; did you mean {}?", meant)));
}

void ParseBase(const std::string& text, GntRequest& request)
{
    if (text == "height=auto") {
        request.matchHeight = true;
        return;
    }
    const std::string name = text.substr(0, text.rfind('='));
    const GntBase base = ParseBaseName(name);
    if (text == name + "=auto")
        throw UsageError(fmt::format("{} {}: only height can be auto", OptionWord("--base"), text));
    request.bases[base] = ParseNameValue(text).value;
}

GntRequest MakeMorphRequest(const ConvertArguments& arguments)
{
    GntRequest request;
    for (const std::string& base : arguments.bases)
        ParseBase(base, request);
    request.jobs = ParseJobs(arguments.jobs);
    if (arguments.resolution == "subd")
        request.resolution = GntResolution::Subd;
    request.subdLevel = arguments.subdLevel;
    if (request.subdLevel && request.resolution != GntResolution::Subd)
        throw UsageError(OptionWord("--subd") + " needs " + OptionWord("--resolution") + " subd");
    if (arguments.name) {
        CheckMorphName(*arguments.name);
        request.names = GntProposedNames(*arguments.name);
    }
    if (QString::fromStdString(arguments.path).toStdString() != arguments.path)
        throw UsageError(OptionWord("--path") + " is not UTF-8");
    request.paths.assign(GNT_JOBS.size(), arguments.path);
    return request;
}

} // namespace

std::string DefaultJobs()
{
    std::string list;
    for (const GntJob& job : GNT_JOBS)
        if (GntDefaultJobs().test(job.flag))
            list += (list.empty() ? "" : ",") + std::string(job.keyword);
    return list;
}

void AddConvertOptions(CLI::App& command, ConvertArguments& arguments, OptionUse use)
{
    AddFigureOptions(command, arguments, use);
    AddMorphOptions(command, arguments);
    AddSaveOptions(command, arguments, use);
    AddExtraOptions(command, arguments, use);
}

ConversionRequest MakeRequest(const ConvertArguments& arguments)
{
    ConversionRequest request;
    request.source = arguments.source;
    request.target = arguments.target;
    request.contentDirectories = ContentDirectoriesFor(request.source, ToPaths(arguments.content));
    request.dials = ParseDials(arguments.dials);
    request.morphs = MakeMorphRequest(arguments);
    request.adjustsRig = arguments.adjustRig;
    request.registers = arguments.registers;
    if (!arguments.contentDirectory.empty())
        request.save = MakeSaveOptions(arguments);
    request.author = arguments.author;
    request.exportObj = arguments.exportObj;
    request.pictures = arguments.pictures;
    request.page = arguments.page;
    request.mayOverwrite = arguments.overwrite;
    request.acceptsMissing = arguments.acceptMissing;
    request.keepTemporary = arguments.keepTemporary;
    return request;
}

} // namespace cli
