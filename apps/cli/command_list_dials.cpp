// The subcommand `list-dials`.
// SPDX-License-Identifier: MIT

#include "command_list_dials.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "command.h"
#include "dials.h"
#include "dson/uri.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzscene.h"
#include "figure_scene.h"
#include "host_session.h"
#include "openhost/asset_uri.h"
#include "options.h"
#include "progress.h"
#include "report.h"
#include "table.h"

#include <algorithm>
#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

struct ListDialsArguments {
    std::string file, search;
    std::vector<std::string> content;
    bool changed = false;
    bool json = false;
    bool verbose = false;
};

struct ListedDial {
    const DzNode* figure;
    Dial dial;
};

std::string Group(const Dial& dial)
{
    return dial.property->getPath().toStdString();
}

/// Where the dial is defined; empty for one of the figure itself.
std::string DefiningFile(const Dial& dial)
{
    const auto* const morph = qobject_cast<const DzMorph*>(dial.modifier);
    const DzUri uri = morph ? morph->getAssetUri() : openhost::AssetUriOf(*dial.property);
    return uri.getFilePath().toStdString();
}

bool IsWanted(const Dial& dial, const ListDialsArguments& arguments)
{
    if (arguments.changed && IsAtDefault(dial))
        return false;
    const std::string wanted = Folded(arguments.search);
    for (const std::string& text : {dial.label, dial.name, Group(dial)})
        if (Folded(text).find(wanted) != std::string::npos)
            return true;
    return false;
}

std::vector<ListedDial> WantedDials(const ListDialsArguments& arguments)
{
    std::vector<ListedDial> listed;
    for (int i = 0; i < dzScene->getNumNodes(); ++i) {
        const DzNode* const node = dzScene->getNode(i);
        if (!node->getObject())
            continue;
        for (const std::vector<Dial>& dials : {OwnDials(*node), BoneDials(*node)})
            for (const Dial& dial : dials)
                if (!dial.property->isHidden() && IsWanted(dial, arguments))
                    listed.push_back({node, dial});
    }
    return listed;
}

/// Single precision has no more to tell.
double Shown(double value)
{
    return Rounded(value, 6);
}

Json DialEntry(const ListedDial& listed)
{
    const DzNumericProperty& property = *listed.dial.property;
    const DzNumericProperty& target = TargetOf(listed.dial);
    return {{"label", listed.dial.label},
            {"name", listed.dial.name},
            {"group", Group(listed.dial)},
            {"value", Shown(property.getDoubleValue())},
            {"default", Shown(target.getDoubleDefaultValue())},
            {"min", Shown(property.getDoubleMin())},
            {"max", Shown(property.getDoubleMax())},
            {"clamped", property.isClamped()},
            {"file", DefiningFile(listed.dial)},
            {"figure", listed.figure->getLabel().toStdString()},
            {"node", listed.dial.node->getName().toStdString()},
            {"alias_of", IsAlias(listed.dial) ? Json(NameOf(target)) : Json()}};
}

std::string Limits(const DzNumericProperty& property)
{
    return property.isClamped()
               ? fmt::format("{:g}..{:g}", Shown(property.getDoubleMin()), Shown(property.getDoubleMax()))
               : std::string("none");
}

/// The figure's label, with the bone's for a dial of a bone.
std::string FigureText(const ListedDial& listed)
{
    const std::string figure = listed.figure->getLabel().toStdString();
    return listed.dial.node == listed.figure
               ? figure
               : fmt::format("{}, {}", figure, listed.dial.node->getLabel().toStdString());
}

/// Where there are aliases, a last column tells what they stand for.
Table DialTable(const std::vector<ListedDial>& dials)
{
    Table table{{"LABEL", "NAME", "GROUP", "VALUE", "LIMITS", "FILE", "FIGURE"}, {}};
    const bool hasAliases = std::any_of(dials.begin(), dials.end(),
                                        [](const ListedDial& listed) { return IsAlias(listed.dial); });
    if (hasAliases)
        table.headings.push_back("ALIAS OF");
    for (const ListedDial& listed : dials) {
        const DzNumericProperty& property = *listed.dial.property;
        table.rows.push_back({listed.dial.label, listed.dial.name, Group(listed.dial),
                              fmt::format("{:g}", Shown(property.getDoubleValue())), Limits(property),
                              DefiningFile(listed.dial), FigureText(listed)});
        if (hasAliases)
            table.rows.back().push_back(IsAlias(listed.dial) ? NameOf(TargetOf(listed.dial)) : std::string());
    }
    return table;
}

/// The table is alone on stdout, so that other programs can read it.
void WriteTable(const std::vector<ListedDial>& dials, const base::Diagnostics& diagnostics)
{
    TellWarnings(diagnostics);
    WriteOutput(TableText(DialTable(dials), OutputColumns()));
}

void WriteJson(const std::vector<ListedDial>& dials, const base::Diagnostics& diagnostics)
{
    Json entries = Json::array();
    for (const ListedDial& listed : dials)
        entries.push_back(DialEntry(listed));
    Json report{{"dials", std::move(entries)}};
    AddDiagnostics(report, diagnostics, true);
    WriteReport(report, true);
}

/// Why a list is empty, which could be taken for one that was not written.
std::string WhyNone(const ListDialsArguments& arguments)
{
    return arguments.search.empty()
               ? "there is nothing with dials in it"
               : fmt::format("no dial has \"{}\" in label, name or group", arguments.search);
}

void ListDials(const ListDialsArguments& arguments)
{
    Progress progress(!arguments.json);
    progress.stage("load", "Loading " + arguments.file);
    const auto directories = ContentDirectoriesFor(arguments.file, ToPaths(arguments.content));
    HostSession session(directories, arguments.verbose);
    session.open(SceneOf(arguments.file, directories, session.temporaryFolder()));
    const std::vector<ListedDial> dials = WantedDials(arguments);
    progress.finish();
    base::ThrowIfCancelled();
    base::Diagnostics met = session.diagnostics();
    if (dials.empty() && !arguments.changed)
        met.push_back({base::Severity::Warning, arguments.file, {}, WhyNone(arguments)});
    (arguments.json ? WriteJson : WriteTable)(dials, met);
}

} // namespace

void AddListDialsCommand(CLI::App& program, CommandContext& context)
{
    const auto arguments = std::make_shared<ListDialsArguments>();
    CLI::App* const command =
        program.add_subcommand("list-dials", "Tell what the dials of a figure are called");
    command->footer("Example:\n"
                    "  gantrel list-dials Vera.duf --search smile");
    command->add_option("FIGURE", arguments->file, "The figure or character")
        ->type_name("FILE.duf|FILE.dsf")
        ->required();
    AddContentOption(*command, arguments->content);
    command->add_option("--search", arguments->search, "Those alone with this in label, name or group")
        ->type_name("TEXT");
    command->add_flag("--changed", arguments->changed, "Those alone that are not at their defaults");
    AddJsonOption(*command, arguments->json);
    command->callback([arguments, &context] {
        context.work = [arguments, &context] {
            arguments->verbose = context.verbose;
            ListDials(*arguments);
        };
    });
}

} // namespace cli
