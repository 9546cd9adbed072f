// The subcommand `config`.
// SPDX-License-Identifier: MIT

#include "command_config.h"

#include "command.h"
#include "options.h"
#include "planned_files.h"
#include "report.h"
#include "settings.h"
#include "table.h"

#include <memory>
#include <utility>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

struct ConfigArguments {
    std::string action = "show", name;
    std::vector<std::string> values;
    bool json = false, isDryRun = false;
};

base::Diagnostics UnknownNames(const Settings& settings)
{
    base::Diagnostics met;
    for (const std::string& name : settings.unknownNames())
        met.push_back({base::Severity::Warning,
                       FileText(SettingsFile()),
                       {},
                       fmt::format("there is no setting \"{}\"", name)});
    return met;
}

void Show(bool asJson)
{
    const Settings settings;
    Table table{{"NAME", "VALUE", "FROM"}, {}};
    Json entries = Json::array();
    for (const SettingKind& kind : SettingKinds()) {
        const std::optional<Setting> setting = settings.find(kind);
        table.rows.push_back({kind.name, setting ? fmt::format("{}", fmt::join(setting->values, ":")) : "-",
                              setting ? setting->origin : "not set"});
        entries.push_back({{"name", kind.name},
                           {"values", setting ? setting->values : std::vector<std::string>()},
                           {"from", setting ? Json(setting->origin) : Json()},
                           {"variable", kind.variable}});
    }
    const base::Diagnostics met = UnknownNames(settings);
    if (!asJson) {
        TellWarnings(met);
        return WriteOutput(TableText(table, OutputColumns()));
    }
    Json report{{"file", FileText(SettingsFile())}, {"settings", std::move(entries)}};
    AddDiagnostics(report, met, true);
    WriteReport(report, true);
}

std::vector<std::string> MissingFolders(const SettingKind& kind, const std::vector<std::string>& values)
{
    std::vector<std::string> missing;
    std::error_code error;
    for (const std::string& value : values)
        if (kind.value == SettingKind::Value::Folders && !std::filesystem::is_directory(value, error))
            missing.push_back(value);
    return missing;
}

/// @throws UsageError  there are more or less than the action takes
void CheckShape(const ConfigArguments& arguments)
{
    const bool isSet = arguments.action == "set";
    if (arguments.action == "show" && !arguments.name.empty())
        throw UsageError("show takes neither a name nor a value");
    if (arguments.action != "show" && arguments.name.empty())
        throw UsageError(fmt::format("{} needs the name of a setting", arguments.action));
    if (arguments.action != "show" && arguments.values.empty() == isSet)
        throw UsageError(isSet ? "set needs a value" : "unset takes no value");
}

void TellWhatWouldBeKept(const SettingKind& kind, const ConfigArguments& arguments)
{
    CheckSetting(kind, arguments.values);
    PlannedFiles planned;
    PlanFileWithFolders(planned, SettingsFile());
    WriteReport(DescribePlan(planned, arguments.json), arguments.json);
}

void Configure(const ConfigArguments& arguments)
{
    CheckShape(arguments);
    if (arguments.action == "show")
        return Show(arguments.json);
    const SettingKind& kind = FindSettingKind(arguments.name);
    // What the file says of the others is to make sense, or it stays as it is.
    const Settings before;
    for (const SettingKind& other : SettingKinds())
        if (other.name != kind.name)
            before.find(other);
    if (arguments.isDryRun)
        return TellWhatWouldBeKept(kind, arguments);
    KeepSetting(kind, arguments.values);
    const std::optional<Setting> now = Settings().find(kind);
    const std::string file = FileText(SettingsFile());
    Json report{{"file", file}};
    report[arguments.action] = kind.name;
    base::Diagnostics met;
    if (now && now->origin == kind.variable)
        met.push_back(
            {base::Severity::Warning,
             {},
             {},
             fmt::format("{} is set in the environment, which goes before the file", kind.variable)});
    for (const std::string& folder : MissingFolders(kind, arguments.values))
        met.push_back({base::Severity::Warning, folder, {}, "there is no such folder at the moment"});
    AddDiagnostics(report, met, arguments.json);
    WriteSummary(report, arguments.json);
}

} // namespace

void AddConfigCommand(CLI::App& program, CommandContext& context)
{
    const auto arguments = std::make_shared<ConfigArguments>();
    CLI::App* const command =
        program.add_subcommand("config", "Show and keep settings that stand for options which are not given");
    command->footer("Example:\n"
                    "  gantrel config set content ~/library ~/more\n"
                    "  gantrel config set vendor Me\n"
                    "  gantrel config unset threads\n"
                    "  gantrel config");
    std::vector<std::string> names;
    for (const SettingKind& kind : SettingKinds())
        names.push_back(kind.name);
    AllowWords(*command->add_option("ACTION", arguments->action, "What to do (show)")->type_name("ACTION"),
               {"show", "set", "unset"});
    AllowWords(*command
                    ->add_option("NAME", arguments->name,
                                 "Of the setting; the environment's GANTREL_NAME in capitals goes before it, "
                                 "and the option before both")
                    ->type_name("NAME"),
               names);
    command->add_option("VALUE", arguments->values, "Several of content, each a folder")->type_name("VALUE");
    AddDryRunOption(*command, arguments->isDryRun, "the setting is checked");
    AddJsonOption(*command, arguments->json);
    command->callback([arguments, &context] { context.work = [arguments] { Configure(*arguments); }; });
}

} // namespace cli
