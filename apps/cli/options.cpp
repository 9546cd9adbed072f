// Options that several subcommands share.
// SPDX-License-Identifier: MIT

#include "options.h"

#include "command.h"

#include <algorithm>
#include <functional>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cli {

namespace {

CLI::Validator WordsShown(const std::vector<std::string>& words,
                          const std::function<std::string(std::string&)>& check)
{
    return CLI::Validator(check, fmt::format("{{{}}}", fmt::join(words, ",")));
}

} // namespace

void AllowWords(CLI::Option& option, const std::vector<std::string>& words)
{
    option.check(WordsShown(words, [words](const std::string& text) {
        return std::find(words.begin(), words.end(), text) != words.end()
                   ? std::string()
                   : fmt::format("\"{}\" is none of {}", text, fmt::join(words, ", "));
    }));
}

void ListWords(CLI::Option& option, const std::vector<std::string>& words)
{
    option.check(WordsShown(words, [](const std::string&) { return std::string(); }));
}

CLI::Option* AddJsonOption(CLI::App& command, bool& json)
{
    return command.add_flag("--json", json, "Print one JSON object and nothing else");
}

CLI::Option* AddContentOption(CLI::App& command, std::vector<std::string>& directories)
{
    return command
        .add_option("--content", directories, "Content directory; again for each further one, in order")
        ->type_name("DIR")
        ->allow_extra_args(false);
}

CLI::Option* AddResolutionOption(CLI::App& command, std::string& resolution)
{
    CLI::Option* const option = command.add_option(
        "--resolution", resolution,
        "Resolution of the morphs: base, or subd for those with detail of the source's subdivision "
        "level, which take longer");
    AllowWords(*option, {"base", "subd"});
    return option->capture_default_str();
}

CLI::Option* AddRegisterOption(CLI::App& command, bool& registers)
{
    return command.add_flag(
        "--register", registers,
        "Register the target's neutral shape to the source's first, for one whose features "
        "lie beside the source's; takes longer");
}

CLI::Option* AddDialOption(CLI::App& command, std::vector<std::string>& dials)
{
    const auto check = [](const std::string& text) {
        try {
            ParseNameValue(text);
            return std::string();
        } catch (const UsageError& error) {
            return std::string(error.what());
        }
    };
    return command
        .add_option(
            "--dial", dials,
            "Dial to set, by name or label, such as Smile=0.5 or Smile=50%; again for each further one")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false)
        ->check(check);
}

std::vector<NameValue> ParseDials(const std::vector<std::string>& texts)
{
    std::vector<NameValue> dials;
    for (const std::string& text : texts)
        dials.push_back(ParseNameValue(text));
    return dials;
}

std::vector<std::filesystem::path> ToPaths(const std::vector<std::string>& texts)
{
    return {texts.begin(), texts.end()};
}

} // namespace cli
