// Completion in fish.
// SPDX-License-Identifier: MIT

#include "completion.h"
#include "texts.h"

#include <fmt/format.h>

namespace documents {

namespace {

std::string Quoted(const std::string& text)
{
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    return quoted + "'";
}

std::string Files(const Value& value)
{
    return value.endings.empty() ? "-F"
                                 : "-k -x -a '(__fish_complete_suffix ." + Joined(value.endings, " .") + ")'";
}

/// What stands behind "complete" for a value.
std::string Offer(const Value& value)
{
    switch (value.kind) {
    case Value::Kind::Nothing:
        return {};
    case Value::Kind::Word:
        return " -x -a " + Quoted(Joined(value.words, " "));
    case Value::Kind::WordList:
        return " -x -a '(__fish_append , " + Joined(value.words, " ") + ")'";
    case Value::Kind::WordAndText:
        return " -x -a " + Quoted(Joined(value.words, "= ") + "=");
    case Value::Kind::File:
    case Value::Kind::FileOrFolder:
        return " -r " + Files(value);
    case Value::Kind::Folder:
        return " -x -a '(__fish_complete_directories)'";
    case Value::Kind::NamedFile:
    case Value::Kind::Text:
        break;
    }
    return " -x";
}

std::string Names(const Argument& option)
{
    std::string text;
    for (const std::string& name : option.names)
        text += name.rfind("--", 0) == 0 ? " -l " + name.substr(2) : " -s " + name.substr(1);
    return text;
}

/// @param begin  with the program, and the condition under which the lines count
std::string Lines(const std::string& begin, const Command& command)
{
    std::string lines;
    for (const Argument& option : command.options)
        lines += begin + Names(option) + Offer(option.value) + " -d " + Quoted(option.description) + '\n';
    std::string given; // words of a positional that is known to be given
    for (const Argument& positional : command.positionals) {
        const Value& value = positional.value;
        const std::string words = value.kind == Value::Kind::Word ? Joined(value.words, " ") : "";
        std::string condition = given;
        if (!words.empty() && positional.positional != command.positionals.back().positional)
            condition += " -n 'not __fish_seen_subcommand_from " + words + "'";
        if (value.kind != Value::Kind::Text)
            lines += begin + condition + Offer(value) + '\n';
        if (words.empty())
            break;
        given += " -n '__fish_seen_subcommand_from " + words + "'";
    }
    return lines;
}

} // namespace

std::string FishCompletion(const Command& program)
{
    const std::string complete = "complete -c " + program.name;
    const bool isPlain = program.subcommands.empty();
    std::string text = fmt::format("# Completion of {} in fish, made of the program's own options.\n{} -f\n",
                                   program.name, complete) +
                       Lines(complete + (isPlain ? "" : " -n __fish_use_subcommand"), program);
    for (const Command& command : program.subcommands)
        text += fmt::format("{} -n __fish_use_subcommand -a {} -d {}\n", complete, command.name,
                            Quoted(command.description)) +
                Lines(complete + " -n '__fish_seen_subcommand_from " + command.name + "'", command);
    return text;
}

} // namespace documents
