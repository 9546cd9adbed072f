// The subcommand `inspect`.
// SPDX-License-Identifier: MIT

#include "command_inspect.h"

#include "command.h"
#include "dson/reader.h"
#include "dzscene.h"
#include "file_facts.h"
#include "host_session.h"
#include "mesh_files.h"
#include "options.h"
#include "progress.h"

#include <memory>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

struct InspectArguments {
    std::string file;
    std::vector<std::string> content;
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

/// Content that is missing belongs into the report: it is what one inspects a file for.
void AddFigures(Json& facts, base::Diagnostics& diagnostics, const InspectArguments& arguments, Detail detail)
{
    HostSession session(ContentDirectoriesFor(arguments.file, ToPaths(arguments.content)), arguments.verbose);
    base::Diagnostics reason;
    try {
        session.open(arguments.file);
    } catch (const std::runtime_error& error) {
        if (!base::FirstError(session.diagnostics()))
            reason.push_back(base::FromSentence(base::Severity::Error, arguments.file, error.what()));
    }
    facts["figures"] = Figures(detail);
    for (const base::Diagnostics& met : {session.diagnostics(), reason})
        diagnostics.insert(diagnostics.end(), met.begin(), met.end());
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

void Inspect(const InspectArguments& arguments)
{
    Progress progress(!arguments.json);
    progress.stage("read", "Reading " + arguments.file);
    const Json facts =
        HasExtension(arguments.file, ".obj") ? ObjFacts(arguments.file) : DsonFacts(arguments, progress);
    progress.finish();
    WriteReport(facts, arguments.json);
}

} // namespace

void AddInspectCommand(CLI::App& program, CommandContext& context)
{
    const auto arguments = std::make_shared<InspectArguments>();
    CLI::App* const command = program.add_subcommand("inspect", "Tell what is in a file");
    command->add_option("FILE", arguments->file, "What to look into")
        ->type_name("FILE.duf|FILE.dsf|FILE.obj")
        ->required();
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
