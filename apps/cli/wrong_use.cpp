// What is said of arguments that the parser refuses.
// SPDX-License-Identifier: MIT

#include "wrong_use.h"

#include "base/spelling.h"

#include <algorithm>
#include <optional>
#include <regex>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cli {

namespace {

std::vector<std::string> OptionNames(const CLI::App& app)
{
    std::vector<std::string> names;
    const auto all = [](const CLI::App*) { return true; };
    for (const CLI::Option* const option : app.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    for (const CLI::App* const group : app.get_subcommands(all))
        if (group->get_name().empty()) {
            const std::vector<std::string> more = OptionNames(*group);
            names.insert(names.end(), more.begin(), more.end());
        }
    return names;
}

std::vector<std::string> CommandNames(const CLI::App& program)
{
    std::vector<std::string> names;
    for (const CLI::App* const command : program.get_subcommands([](const CLI::App*) { return true; }))
        if (!command->get_group().empty()) // the others are for the program itself
            names.push_back(command->get_name());
    return names;
}

bool IsOption(const std::string& word)
{
    return word.size() > 1 && word[0] == '-';
}

std::string WithoutValue(const std::string& option)
{
    return option.substr(0, option.find('='));
}

std::optional<std::string> FirstOption(const std::vector<std::string>& words)
{
    const auto found = std::find_if(words.begin(), words.end(), IsOption);
    return found == words.end() ? std::nullopt : std::optional<std::string>(WithoutValue(*found));
}

std::string WithProposal(const std::string& what, const std::string& meant)
{
    return meant.empty() ? what : fmt::format("{}; did you mean {}?", what, meant);
}

/// Of subcommands that cannot say beforehand what they write.
std::string NoDryRun(const std::string& command)
{
    return command == "script"
               ? "what a script writes is known only when it has run, so script takes no --dry-run"
               : fmt::format("{} writes nothing, so it takes no --dry-run", command);
}

std::string NoOption(const CLI::App& app, const std::string& option)
{
    if (option == "--dry-run" && app.get_parent())
        return NoDryRun(app.get_name());
    return WithProposal(fmt::format("there is no option {} for {}", option, app.get_name()),
                        base::LikelyMeant(option, OptionNames(app)));
}

std::string NoCommand(const std::string& word, const std::vector<std::string>& names)
{
    const std::string meant = base::LikelyMeant(word, names);
    const std::string what = fmt::format("there is no subcommand \"{}\"", word);
    return meant.empty() ? what + "; --help lists those that there are" : WithProposal(what, meant);
}

/// Of words in front of the subcommand.
std::string NoOptionOfAll(const CLI::App& program, const CLI::App& command, const std::string& option)
{
    const std::vector<std::string> names = OptionNames(command);
    if (std::find(names.begin(), names.end(), option) != names.end())
        return fmt::format("{} is an option of {}, behind which it belongs", option, command.get_name());
    return NoOption(program, option);
}

/// With what is missing there may be a word that was meant to be it.
bool MayBeMisspelt(const CLI::ParseError& error)
{
    // The name of an error is sometimes that of the program.
    for (const CLI::ExitCodes code :
         {CLI::ExitCodes::ExtrasError, CLI::ExitCodes::RequiredError, CLI::ExitCodes::RequiresError})
        if (error.get_exit_code() == static_cast<int>(code))
            return true;
    return false;
}

} // namespace

std::string DescribeCount(const CLI::ParseError& error)
{
    const std::string text = error.what();
    static const std::regex several("(--[a-z-]+): At Most 1 required but received ([0-9]+)\\.?"),
        none("(--[a-z-]+): 1 required (\\S+) missing\\.?");
    static const std::regex oneOf(
        "Exactly 1 option from \\[(\\S+),(\\S+)\\] is required( and [0-9]+ were given)?");
    std::smatch match;
    if (std::regex_match(text, match, oneOf))
        return match[3].matched
                   ? fmt::format("{} and {} cannot both be given", match[1].str(), match[2].str())
                   : fmt::format("{} or {} is required", match[1].str(), match[2].str());
    if (std::regex_match(text, match, several))
        return fmt::format("{} is given {} times, and takes one value", match[1].str(), match[2].str());
    if (std::regex_match(text, match, none))
        return fmt::format("{} needs a value behind it: {}", match[1].str(), match[2].str());
    return text;
}

std::string DescribeWrongUse(const CLI::App& program, const CLI::ParseError& error)
{
    const std::vector<std::string> own = program.remaining(false);
    const std::vector<CLI::App*> commands = program.get_subcommands();
    if (!MayBeMisspelt(error))
        return DescribeCount(error);
    if (commands.empty()) {
        if (own.empty())
            return error.what();
        return IsOption(own.front()) ? NoOption(program, WithoutValue(own.front()))
                                     : NoCommand(own.front(), CommandNames(program));
    }
    const CLI::App& command = *commands.front();
    if (!own.empty() && own.front() == "help")
        return fmt::format("there is no subcommand \"help\"; {0} --help tells of {0}", command.get_name());
    if (const auto option = FirstOption(own))
        return NoOptionOfAll(program, command, *option);
    if (const auto option = FirstOption(program.remaining(true)))
        return NoOption(command, *option);
    return DescribeCount(error);
}

} // namespace cli
