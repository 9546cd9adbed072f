// Completion in bash.
// SPDX-License-Identifier: MIT

#include "completion.h"
#include "texts.h"

#include <fmt/format.h>

namespace documents {

namespace {

std::string FunctionName(const Command& program)
{
    std::string name = "_" + program.name;
    for (char& c : name)
        if (c == '-')
            c = '_';
    return name;
}

std::string Files(const Value& value)
{
    return value.endings.empty() ? "_filedir" : "_filedir '@(" + Joined(value.endings, "|") + ")'";
}

/// The lines that fill the answer for a value; none for a text.
std::string Offer(const Value& value)
{
    const std::string words = Joined(value.words, " ");
    switch (value.kind) {
    case Value::Kind::Word:
        return fmt::format("COMPREPLY=($(compgen -W '{}' -- \"$cur\"))", words);
    case Value::Kind::WordList: // what stands before the last comma stays
        return fmt::format("local before=; [[ $cur != *,* ]] || before=${{cur%,*}},; "
                           "COMPREPLY=($(compgen -P \"$before\" -W '{}' -- \"${{cur##*,}}\"))",
                           words);
    case Value::Kind::WordAndText:
        return fmt::format("[[ $cur == *=* ]] || {{ compopt -o nospace; COMPREPLY=($(compgen -S = -W '{}' -- "
                           "\"$cur\")); }}",
                           words);
    case Value::Kind::NamedFile: // a shell breaks the word at the sign
        return "[[ $cur != *=* ]] || { cur=${cur#*=}; " + Files(value) + "; }";
    case Value::Kind::File:
    case Value::Kind::FileOrFolder:
        return Files(value);
    case Value::Kind::Folder:
        return "_filedir -d";
    case Value::Kind::Nothing:
    case Value::Kind::Text:
        break;
    }
    return ":";
}

std::string ValueCases(const Command& command)
{
    std::string cases;
    for (const Argument& option : command.options)
        if (option.value.kind != Value::Kind::Nothing)
            cases +=
                fmt::format("        {}) {}; return ;;\n", Joined(option.names, "|"), Offer(option.value));
    return cases.empty() ? cases : "    case $prev in\n" + cases + "    esac\n";
}

/// Values that stand one behind the other belong to the option before all of them.
std::string FindOptionOfSeveral(const Command& command)
{
    std::vector<std::string> names;
    for (const Argument& option : command.options)
        if (option.takesSeveral && !option.names.empty())
            names.insert(names.end(), option.names.begin(), option.names.end());
    if (names.empty())
        return {};
    return fmt::format(
        "    local before=$((cword - 1))\n"
        "    while ((before > 0)) && [[ ${{words[before]}} != -* ]]; do ((before--)); done\n"
        "    case ${{words[before]}} in {}) [[ $cur == -* ]] || prev=${{words[before]}} ;; esac\n",
        Joined(names, "|"));
}

std::string OptionNames(const Command& command)
{
    std::vector<std::string> names;
    for (const Argument& option : command.options)
        names.insert(names.end(), option.names.begin(), option.names.end());
    return Joined(names, " ");
}

/// One of words is known to be given where it stands in front; then it is the next one's turn.
std::string OfferOfPositionals(const Command& command)
{
    if (command.positionals.empty())
        return ":";
    std::string cases;
    for (std::size_t i = 0; i + 1 < command.positionals.size(); ++i)
        if (command.positionals[i].value.kind == Value::Kind::Word)
            cases += fmt::format("{}) {} ;; ", Joined(command.positionals[i].value.words, "|"),
                                 Offer(command.positionals[i + 1].value));
    const std::string first = Offer(command.positionals.front().value);
    return cases.empty() ? first : fmt::format("case $prev in {}*) {} ;; esac", cases, first);
}

std::string Arguments(const std::string& function, const Command& command)
{
    const std::string offer = OfferOfPositionals(command);
    return fmt::format("{}()\n{{\n{}{}    $split && return\n"
                       "    if [[ $cur == -* ]]; then\n"
                       "        COMPREPLY=($(compgen -W '{}' -- \"$cur\"))\n"
                       "    else\n        {}\n    fi\n}}\n\n",
                       function, FindOptionOfSeveral(command), ValueCases(command), OptionNames(command),
                       offer);
}

std::string ChooseSubcommand(const Command& program)
{
    const std::string function = FunctionName(program);
    std::string names, cases;
    for (const Command& command : program.subcommands) {
        names += command.name + ' ';
        cases += fmt::format("        {0}) {1}_{0} ;;\n", command.name, function);
    }
    return fmt::format("    local at command=\n"
                       "    for ((at = 1; at < cword; at++)); do\n"
                       "        [[ ${{words[at]}} == -* ]] || {{ command=${{words[at]}}; break; }}\n"
                       "    done\n"
                       "    case $command in\n{}        '') COMPREPLY=($(compgen -W '{}{}' -- \"$cur\")) ;;\n"
                       "    esac\n",
                       cases, names, OptionNames(program));
}

} // namespace

std::string BashCompletion(const Command& program)
{
    const std::string function = FunctionName(program);
    std::string text =
        fmt::format("# Completion of {} in bash, made of the program's own options.\n\n", program.name);
    for (const Command& command : program.subcommands)
        text += Arguments(function + '_' + command.name, command);
    std::string choose = ChooseSubcommand(program);
    if (program.subcommands.empty()) {
        text += Arguments(function + "_arguments", program);
        choose = "    " + function + "_arguments\n";
    }
    return text + fmt::format("{0}()\n{{\n    local cur prev words cword split\n"
                              "    _init_completion -s || return\n{1}}} &&\n    complete -F {0} {2}\n",
                              function, choose, program.name);
}

} // namespace documents
