// Commands as text.
// SPDX-License-Identifier: MIT

#include "shell_command.h"

#include <algorithm>
#include <string_view>

namespace cli {

namespace {

bool IsPlain(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-_=+./,:@%").find(c) != std::string_view::npos;
}

bool IsPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return IsPlain(c); });
}

std::string Quoted(std::string_view text)
{
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

/// Of "--name=value", where both are read more easily, the value alone.
std::string QuotedWhereNeeded(std::string_view argument)
{
    if (IsPlain(argument) && !argument.empty())
        return std::string(argument);
    const std::string_view option = argument.substr(0, argument.find('=') + 1); // none: nothing
    return option.substr(0, 2) == "--" && IsPlain(option)
               ? std::string(option) + Quoted(argument.substr(option.size()))
               : Quoted(argument);
}

} // namespace

std::string ShellCommand(const std::vector<std::string>& arguments)
{
    std::string text = "gantrel";
    for (const std::string& argument : arguments)
        text += ' ' + QuotedWhereNeeded(argument);
    return text;
}

} // namespace cli
