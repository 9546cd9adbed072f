// Completion in zsh.
// SPDX-License-Identifier: MIT

#include "completion.h"
#include "texts.h"

#include <fmt/format.h>

namespace documents {

namespace {

/// Inside of a description in single quotes.
std::string Escaped(const std::string& text)
{
    std::string escaped;
    for (const char c : text)
        if (c == '\'')
            escaped += "'\\''";
        else if (c == '[' || c == ']' || c == ':' || c == '\\')
            escaped += std::string("\\") + c;
        else
            escaped += c;
    return escaped;
}

std::string Files(const Value& value)
{
    return value.endings.empty() ? "_files" : "_files -g \"*.(" + Joined(value.endings, "|") + ")(-.)\"";
}

std::string Action(const Value& value)
{
    const std::string words = Joined(value.words, " ");
    switch (value.kind) {
    case Value::Kind::Word:
        return "(" + words + ")";
    case Value::Kind::WordList:
        return "{_sequence -s , compadd - " + words + "}";
    case Value::Kind::WordAndText:
        return "{compset -P \"*=\" || compadd -S = - " + words + "}";
    case Value::Kind::NamedFile:
        return "{compset -P \"*=\" && " + Files(value) + "}";
    case Value::Kind::File:
    case Value::Kind::FileOrFolder:
        return Files(value);
    case Value::Kind::Folder:
        return "_files -/";
    case Value::Kind::Nothing:
    case Value::Kind::Text:
        break;
    }
    return " ";
}

std::string Message(const Argument& argument)
{
    return Escaped(argument.value.placeholder.empty() ? argument.positional : argument.value.placeholder);
}

std::string OptionLine(const Argument& option)
{
    std::string names = option.names.front();
    if (option.names.size() > 1)
        names = "'{" + Joined(option.names, ",") + "}'";
    const bool hasValue = option.value.kind != Value::Kind::Nothing;
    std::string line = "'" + std::string(option.canRepeat ? "*" : "") + names +
                       (hasValue && option.names.size() == 1 ? "=" : "") + "[" + Escaped(option.description) +
                       "]";
    if (hasValue)
        line += ":" + Message(option) + ":" + Action(option.value);
    return line + "'";
}

std::string PositionalLine(const Argument& positional)
{
    return "'" + std::string(positional.canRepeat ? "*" : "") + ":" + Message(positional) + ":" +
           Action(positional.value) + "'";
}

/// What `_arguments` is told, a line each.
std::string ArgumentLines(const Command& command, const std::string& indent)
{
    std::string lines;
    for (const Argument& option : command.options)
        lines += " \\\n" + indent + OptionLine(option);
    for (const Argument& positional : command.positionals)
        lines += " \\\n" + indent + PositionalLine(positional);
    return lines;
}

std::string Subcommands(const Command& program)
{
    std::string names, cases;
    for (const Command& command : program.subcommands) {
        names += fmt::format("                '{}:{}'\n", command.name, Escaped(command.description));
        cases += fmt::format("                {}) _arguments{} ;;\n", command.name,
                             ArgumentLines(command, "                    "));
    }
    return fmt::format(
        "    case $state in\n        subcommand)\n            local -a subcommands=(\n{}            )\n"
        "            _describe subcommand subcommands\n            ;;\n"
        "        arguments)\n            case $words[1] in\n{}            esac\n            ;;\n    esac\n",
        names, cases);
}

} // namespace

std::string ZshCompletion(const Command& program)
{
    std::string text =
        fmt::format("#compdef {0}\n# Completion of {0} in zsh, made of the program's own options.\n\n"
                    "local curcontext=$curcontext state line\ntypeset -A opt_args\n",
                    program.name);
    if (program.subcommands.empty())
        return text + "_arguments" + ArgumentLines(program, "    ") + "\n";
    return text + "_arguments -C" + ArgumentLines(program, "    ") +
           " \\\n    '1:subcommand:->subcommand' '*::argument:->arguments'\n" + Subcommands(program);
}

} // namespace documents
