// Options that several subcommands share.
// SPDX-License-Identifier: MIT

#include "options.h"

#include "command.h"

#include <CLI/CLI.hpp>

namespace cli {

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
    return command
        .add_option(
            "--resolution", resolution,
            "Resolution of the morphs: base, or subd for those with detail of the source's subdivision "
            "level, which take longer")
        ->check(CLI::IsMember({"base", "subd"}))
        ->capture_default_str();
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
    return command.add_option("--dial", dials, "Dial to set, by name or label; again for each further one")
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
