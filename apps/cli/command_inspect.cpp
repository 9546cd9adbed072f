// The subcommand `inspect`.
// SPDX-License-Identifier: MIT

#include "command_inspect.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "base/file_failure.h"
#include "command.h"
#include "dson/reader.h"
#include "dzscene.h"
#include "error_sentence.h"
#include "facts/file_facts.h"
#include "facts/morph_check.h"
#include "facts/morph_facts.h"
#include "host_session.h"
#include "mesh_files.h"
#include "options.h"
#include "progress.h"
#include "standard_streams.h"
#include "temporary_folder.h"

#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

struct InspectArguments {
    std::string file;
    std::vector<std::string> content, morphs;
    bool check = false;
    bool json = false;
    bool verbose = false;
};

Json Figures(Detail detail)
{
    Json figures = Json::array();
    for (int i = 0; i < dzScene->getNumNodes(); ++i)
        if (dzScene->getNode(i)->getObject())
            figures.push_back(FigureFacts(*dzScene->getNode(i), detail));
    return figures;
}

/// The host knows the file by its full name; what is told of it twice is told once under the name given.
base::Diagnostics AsGiven(base::Diagnostics met, const std::string& file)
{
    std::error_code error;
    for (base::Diagnostic& diagnostic : met)
        if (!diagnostic.file.empty() && std::filesystem::equivalent(diagnostic.file, file, error))
            diagnostic.file = file;
    return met;
}

/// Content that is missing belongs into the report: it is what one inspects a file for.
void AddFigures(Json& facts, base::Diagnostics& diagnostics, const InspectArguments& arguments, Detail detail)
{
    HostSession session(ContentDirectoriesFor(arguments.file, ToPaths(arguments.content)), arguments.verbose);
    base::Diagnostics reason;
    try {
        session.open(arguments.file);
    } catch (const std::runtime_error& error) {
        if (!base::FirstError(session.diagnostics()))
            reason.push_back(base::FailureOfFile(base::Severity::Error, arguments.file, error.what()));
    }
    facts["figures"] = Figures(detail);
    for (const base::Diagnostics& met : {AsGiven(session.diagnostics(), arguments.file), reason})
        diagnostics.insert(diagnostics.end(), met.begin(), met.end());
}

ContentFiles ContentFor(const InspectArguments& arguments)
{
    return ContentFiles(ContentDirectoriesFor(arguments.file, ToPaths(arguments.content)));
}

Json DsonFacts(const InspectArguments& arguments, Progress& progress)
{
    const Detail detail = arguments.json ? Detail::Full : Detail::Summary;
    const dson::Document document = dson::ReadDocument(arguments.file);
    Json facts = DocumentFacts(document, detail);
    base::Diagnostics diagnostics = document.diagnostics;
    if (!document.nodeInstances.empty()) {
        progress.stage("load", "Loading what it names");
        AddFigures(facts, diagnostics, arguments, detail);
    }
    AddDiagnostics(facts, diagnostics, arguments.json);
    return facts;
}

Json MeshFacts(const InspectArguments& arguments)
{
    base::Diagnostics met;
    Json facts = ObjFacts(arguments.file, met);
    AddDiagnostics(facts, met, arguments.json);
    return facts;
}

Json FileFacts(const InspectArguments& arguments, Progress& progress)
{
    if (HasExtension(arguments.file, ".obj") || IsStandardStream(arguments.file))
        return MeshFacts(arguments);
    if (HasExtension(arguments.file, ".dhdm"))
        return DhdmFacts(arguments.file, ContentFor(arguments));
    return DsonFacts(arguments, progress);
}

void InspectMorphs(const InspectArguments& arguments, Progress& progress)
{
    const ContentFiles content = ContentFor(arguments);
    MorphSurvey survey = SurveyMorphs(MorphFilesOf(arguments.file, content), content, {arguments.check});
    progress.finish();
    base::ThrowIfCancelled();
    const std::size_t unusable = survey.unusable.size();
    Json facts = MorphFacts(survey, arguments.morphs, arguments.check, arguments.json);
    const std::string failure = fmt::format("{} cannot be used", base::Counted(unusable, "file", "files"));
    const bool hasFailed = arguments.check && unusable > 0;
    if (hasFailed && arguments.json)
        facts["error"] = app::ErrorSentence(failure);
    WriteReport(facts, arguments.json);
    if (hasFailed)
        throw ReportedError(failure);
}

void Inspect(const InspectArguments& arguments)
{
    TemporaryFolder::removeThoseOfEndedRuns();
    Progress progress(!arguments.json);
    progress.stage("read", "Reading " + InputText(arguments.file));
    std::error_code error;
    if (IsStandardStream(arguments.file) && (arguments.check || !arguments.morphs.empty()))
        throw UsageError("standard input has no morphs, which are files beside a figure's");
    if (arguments.check || !arguments.morphs.empty() ||
        std::filesystem::is_directory(arguments.file, error)) {
        InspectMorphs(arguments, progress);
        return;
    }
    const Json facts = FileFacts(arguments, progress);
    progress.finish();
    base::ThrowIfCancelled();
    WriteReport(facts, arguments.json);
}

} // namespace

void AddInspectCommand(CLI::App& program, CommandContext& context)
{
    const auto arguments = std::make_shared<InspectArguments>();
    CLI::App* const command = program.add_subcommand("inspect", "Tell what is in a file");
    command->footer("Example:\n"
                    "  gantrel inspect \"$HOME/library/People/Genesis 9/Genesis 9.duf\" --check");
    command
        ->add_option("FILE", arguments->file,
                     "What to look into; of a folder, its morphs; - for an OBJ file's text on standard input")
        ->type_name("FILE.duf|FILE.dsf|FILE.dhdm|FILE.obj|FOLDER")
        ->required();
    command
        ->add_option(
            "--morphs", arguments->morphs,
            "List the figure's morphs and controllers whose name or label fits, such as 'PHM*'; again "
            "for further ones")
        ->type_name("PATTERN")
        ->allow_extra_args(false);
    command->add_flag("--check", arguments->check,
                      "Read all morphs of the figure and tell which cannot be used");
    AddContentOption(*command, arguments->content);
    AddJsonOption(*command, arguments->json);
    command->callback([arguments, &context] {
        context.work = [arguments, &context] {
            arguments->verbose = context.verbose;
            Inspect(*arguments);
        };
    });
}

} // namespace cli
