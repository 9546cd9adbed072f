// Settings in place of options that are not given.
// SPDX-License-Identifier: MIT

#include "settings_arguments.h"

#include "setting_origins.h"
#include "settings.h"

#include <algorithm>
#include <optional>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cli {

namespace {

/// Words behind "--" are no options.
bool IsGiven(const std::string& option, const std::vector<std::string>& arguments)
{
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    return std::any_of(arguments.begin(), end, [&](const std::string& argument) {
        return argument.compare(0, option.size(), option) == 0 &&
               (argument.size() == option.size() || argument[option.size()] == '=');
    });
}

/// Vendor, product and author tell of what is saved into a library, so that they are nothing without it.
bool IsWanted(const CLI::App& command, const SettingKind& kind, const std::vector<std::string>& arguments)
{
    const std::string option = "--" + kind.name;
    if (!command.get_option_no_throw(option) || IsGiven(option, arguments))
        return false;
    const bool isOfSaving =
        kind.value == SettingKind::Value::FolderName || kind.value == SettingKind::Value::Text;
    return !isOfSaving || IsGiven("--save-library", arguments);
}

} // namespace

const CLI::App* CommandOf(const CLI::App& program, const std::vector<std::string>& arguments)
{
    const auto isWord = [](const std::string& word) { return word.empty() || word[0] != '-'; };
    const auto name = std::find_if(arguments.begin(), arguments.end(), isWord);
    const auto isNamed = [&](const CLI::App* command) { return command->get_name() == *name; };
    const auto named =
        name == arguments.end() ? std::vector<const CLI::App*>() : program.get_subcommands(isNamed);
    return named.empty() ? nullptr : named.front();
}

std::vector<std::string> WithSettings(const CLI::App& program, std::vector<std::string> arguments)
{
    const CLI::App* const command = CommandOf(program, arguments);
    if (!command || command->get_group().empty()) // the program calls itself with all that it needs
        return arguments;
    std::vector<std::string> more;
    std::optional<Settings> settings;
    for (const SettingKind& kind : SettingKinds()) {
        if (!IsWanted(*command, kind, arguments))
            continue;
        if (!settings)
            settings.emplace();
        if (const std::optional<Setting> setting = settings->find(kind))
            for (const std::string& value : setting->values) {
                more.push_back("--" + kind.name + '=' + value);
                NoteOrigin(value, fmt::format("the setting {} of {}", kind.name, setting->origin));
            }
    }
    // Behind lists, which end there.
    arguments.insert(std::find(arguments.begin(), arguments.end(), "--"), more.begin(), more.end());
    return arguments;
}

} // namespace cli
