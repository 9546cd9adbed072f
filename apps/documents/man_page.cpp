// Pages of the manual for `man`.
// SPDX-License-Identifier: MIT

#include "man_page.h"

#include <fmt/format.h>

namespace documents {

namespace {

/// Nothing in the text is taken for a request, and hyphens can be copied into a shell.
std::string Plain(const std::string& text)
{
    std::string plain;
    bool isLineStart = true;
    for (const char c : text) {
        if (isLineStart && (c == '.' || c == '\''))
            plain += "\\&";
        if (c == '\\')
            plain += "\\e";
        else if (c == '-')
            plain += "\\-";
        else
            plain += c;
        isLineStart = c == '\n';
    }
    return plain;
}

std::string Sentence(const std::string& text)
{
    return text.empty() || text.back() == '.' ? text : text + '.';
}

/// What stands behind the name at the head of a page; the name is not told twice.
std::string Summary(std::string text)
{
    const std::size_t colon = text.find(": ");
    if (colon != text.npos)
        text.erase(0, colon + 2);
    if (!text.empty() && text[0] >= 'A' && text[0] <= 'Z')
        text[0] = static_cast<char>(text[0] - 'A' + 'a');
    while (!text.empty() && text.back() == '.')
        text.pop_back();
    return text;
}

std::string Bold(const std::string& text)
{
    return "\\fB" + Plain(text) + "\\fR";
}

std::string Slanted(const std::string& text)
{
    return "\\fI" + Plain(text) + "\\fR";
}

std::string Joined(const std::vector<std::string>& names, const std::string& between)
{
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : between) + Bold(name);
    return text;
}

std::string Head(const std::string& name, const std::string& description, const PageFacts& facts)
{
    std::string upper = name;
    for (char& c : upper)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return fmt::format(".TH {} 1 {} \"{} {}\" \"User Commands\"\n.SH NAME\n{} \\- {}\n", Plain(upper),
                       Plain(facts.date), facts.program, facts.version, Plain(name),
                       Plain(Summary(description)));
}

std::string InSynopsis(const Argument& argument)
{
    std::string text = argument.names.empty()
                           ? Slanted(argument.positional)
                           : Bold(argument.names.back()) + ' ' + Slanted(argument.value.placeholder);
    if (argument.canRepeat)
        text += "...";
    return argument.isRequired ? text : "[" + text + "]";
}

/// What has to be there in full, the rest in brackets.
std::string Synopsis(const std::string& call, const Command& command)
{
    std::string text = ".SH SYNOPSIS\n.nh\n.HP\n" + Bold(call);
    for (const Argument& option : command.options)
        if (option.isRequired)
            text += " " + InSynopsis(option);
    text += " [" + Slanted("OPTION") + "]...";
    for (const Argument& positional : command.positionals)
        text += " " + InSynopsis(positional);
    if (!command.subcommands.empty())
        text += " " + Slanted("SUBCOMMAND") + " ...";
    return text + "\n.hy\n";
}

std::string Notes(const Argument& argument)
{
    std::string text;
    if (!argument.value.words.empty()) {
        std::string words;
        for (const std::string& word : argument.value.words)
            words += (words.empty() ? "" : ", ") + Bold(word);
        text += "\nOne of " + words + ".";
        if (argument.value.kind == Value::Kind::WordList)
            text.replace(1, 6, "Some of");
    }
    if (!argument.value.least.empty())
        text += "\nFrom " + Plain(argument.value.least) + " to " + Plain(argument.value.most) + ".";
    if (!argument.defaultText.empty())
        text += "\nWithout it: " + Bold(argument.defaultText) + ".";
    if (argument.isRequired)
        text += "\nRequired.";
    if (!argument.oneOf.empty())
        text += "\nExactly one of " + Joined(argument.oneOf, ", ") + " is required.";
    if (!argument.needs.empty())
        text += "\nWanted with it: " + Joined(argument.needs, ", ") + ".";
    if (!argument.excludes.empty())
        text += "\nNot together with " + Joined(argument.excludes, ", ") + ".";
    return text;
}

std::string Paragraph(const Argument& argument)
{
    std::string tag = argument.names.empty() ? Slanted(argument.positional) : Joined(argument.names, ", ");
    if (!argument.names.empty() && !argument.value.placeholder.empty())
        tag += " " + Slanted(argument.value.placeholder);
    if (argument.takesSeveral)
        tag += " ...";
    return ".TP\n" + tag + '\n' + Plain(Sentence(argument.description)) + Notes(argument) + '\n';
}

std::string Paragraphs(const char* heading, const std::vector<Argument>& arguments)
{
    if (arguments.empty())
        return {};
    std::string text = fmt::format(".SH {}\n", heading);
    for (const Argument& argument : arguments)
        text += Paragraph(argument);
    return text;
}

std::string Example(const Command& command)
{
    return command.example.empty() ? std::string()
                                   : ".SH EXAMPLES\n.EX\n" + Plain(command.example) + "\n.EE\n";
}

const char* const exitStatus =
    ".SH EXIT STATUS\n.TP\n.B 0\nAll went well.\n.TP\n.B 1\nSomething could not be done; one sentence on "
    "standard error says what.\n.TP\n.B 2\nThe arguments make no sense.\n.TP\n.BR 130 \", \" 143\n"
    "Ended by Ctrl+C, or by the system's wish to end (SIGTERM); nothing is left half written.\n";

std::string SeeAlso(const std::vector<std::string>& names)
{
    std::string text = ".SH SEE ALSO\n.nh\n.ad l\n";
    for (std::size_t i = 0; i < names.size(); ++i)
        text += Bold(names[i]) + "(1)" + (i + 1 < names.size() ? ",\n" : "\n");
    return text;
}

std::string PageName(const Command& program, const Command& command)
{
    return program.name + '-' + command.name;
}

std::string ListOfSubcommands(const Command& program)
{
    std::string text = ".SH SUBCOMMANDS\n";
    for (const Command& command : program.subcommands)
        text += ".TP\n" + Bold(PageName(program, command)) + "(1)\n" + Plain(Sentence(command.description)) +
                '\n';
    return text;
}

} // namespace

std::string ProgramPage(const Command& program, const PageFacts& facts)
{
    std::string text = Head(program.name, program.description, facts) + Synopsis(program.name, program) +
                       ".SH DESCRIPTION\n" + Plain(Sentence(program.description)) + '\n';
    std::vector<std::string> others;
    if (program.subcommands.empty()) {
        others.push_back(facts.program);
    } else {
        text += ListOfSubcommands(program);
        for (const Command& command : program.subcommands)
            others.push_back(PageName(program, command));
        others.push_back(program.name + "-desktop");
    }
    return text + Paragraphs("ARGUMENTS", program.positionals) + Paragraphs("OPTIONS", program.options) +
           Example(program) + exitStatus + SeeAlso(others);
}

std::string SubcommandPage(const Command& command, const Command& program, const PageFacts& facts)
{
    return Head(PageName(program, command), command.description, facts) +
           Synopsis(program.name + ' ' + command.name, command) + ".SH DESCRIPTION\n" +
           Plain(Sentence(command.description)) + '\n' + Paragraphs("ARGUMENTS", command.positionals) +
           Paragraphs("OPTIONS", command.options) + Example(command) + exitStatus + SeeAlso({program.name});
}

} // namespace documents
