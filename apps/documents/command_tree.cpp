// What a program understands.
// SPDX-License-Identifier: MIT

#include "command_tree.h"

#include <algorithm>

#include <CLI/CLI.hpp>

namespace documents {

namespace {

std::vector<std::string> Split(const std::string& text, char at)
{
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t end; (end = text.find(at, begin)) != text.npos; begin = end + 1)
        parts.push_back(text.substr(begin, end - begin));
    parts.push_back(text.substr(begin));
    return parts;
}

bool Contains(const std::string& text, const char* part)
{
    return text.find(part) != text.npos;
}

/// "FILE.csv[.gz]" has two.
void AddEndings(const std::string& alternative, std::vector<std::string>& endings)
{
    const std::size_t dot = alternative.find('.');
    if (dot == alternative.npos)
        return;
    const std::size_t bracket = alternative.find('[');
    const std::string ending = alternative.substr(dot + 1, bracket - dot - 1);
    endings.push_back(ending);
    if (bracket != alternative.npos)
        endings.push_back(ending + alternative.substr(bracket + 1, alternative.find(']') - bracket - 1));
}

Value::Kind KindOfFile(const std::vector<std::string>& alternatives, const std::vector<std::string>& endings)
{
    const auto isFolder = [](const std::string& text) { return text == "DIR" || text == "FOLDER"; };
    const bool hasFolder = std::any_of(alternatives.begin(), alternatives.end(), isFolder);
    const bool hasFile =
        !endings.empty() || std::find(alternatives.begin(), alternatives.end(), "FILE") != alternatives.end();
    if (hasFile)
        return hasFolder ? Value::Kind::FileOrFolder : Value::Kind::File;
    return hasFolder ? Value::Kind::Folder : Value::Kind::Text;
}

Value::Kind KindOfWords(const std::string& placeholder)
{
    if (placeholder == "LIST")
        return Value::Kind::WordList;
    return Contains(placeholder, "=") ? Value::Kind::WordAndText : Value::Kind::Word;
}

/// "INT in [1 - 5]"
void ReadRange(const std::string& type, Value& value)
{
    const std::size_t open = type.find(" in ["), dash = type.find(" - ", open), close = type.find(']', dash);
    if (open == type.npos || dash == type.npos || close == type.npos)
        return;
    value.least = type.substr(open + 5, dash - open - 5);
    value.most = type.substr(dash + 3, close - dash - 3);
}

/// @param type  as the help has it: a placeholder, then what the checks say, such as "{base,subd}"
Value ReadValue(const std::string& type)
{
    Value value;
    value.placeholder = type.substr(0, type.find(':'));
    const std::size_t open = type.find('{');
    if (open != type.npos) {
        value.words = Split(type.substr(open + 1, type.find('}') - open - 1), ',');
        value.kind = KindOfWords(value.placeholder);
        return value;
    }
    ReadRange(type, value);
    const std::string name = "NAME=";
    const bool isNamed = value.placeholder.rfind(name, 0) == 0;
    const auto alternatives = Split(value.placeholder.substr(isNamed ? name.size() : 0), '|');
    for (const std::string& alternative : alternatives)
        AddEndings(alternative, value.endings);
    value.kind = KindOfFile(alternatives, value.endings);
    if (isNamed && value.kind == Value::Kind::File)
        value.kind = Value::Kind::NamedFile;
    return value;
}

/// The help sets examples off by two blanks.
std::string WithoutIndent(const std::string& text)
{
    std::string lines;
    for (const std::string& line : Split(text, '\n'))
        lines += (lines.empty() ? "" : "\n") + (line.rfind("  ", 0) == 0 ? line.substr(2) : line);
    return lines;
}

std::vector<std::string> NamesOf(const std::set<CLI::Option*>& options)
{
    std::vector<std::string> names;
    for (const CLI::Option* const option : options)
        names.push_back(option->get_name());
    std::sort(names.begin(), names.end());
    return names;
}

Argument ReadArgument(const CLI::Option& option)
{
    Argument argument;
    for (const std::string& name : option.get_snames())
        argument.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        argument.names.push_back("--" + name);
    argument.positional = argument.names.empty() ? option.get_name(true) : std::string();
    if (option.get_items_expected_max() > 0)
        argument.value = ReadValue(option.get_type_name());
    argument.description = option.get_description();
    argument.defaultText = option.get_default_str();
    argument.isRequired = option.get_required();
    argument.canRepeat = option.get_items_expected_max() > 1;
    argument.takesSeveral = argument.canRepeat && option.get_allow_extra_args();
    argument.needs = NamesOf(option.get_needs());
    argument.excludes = NamesOf(option.get_excludes());
    return argument;
}

/// @return the names of a group of which exactly one has to be given
std::vector<std::string> OneOf(const CLI::App& group)
{
    std::vector<std::string> names;
    if (group.get_require_option_min() == 1 && group.get_require_option_max() == 1)
        for (const CLI::Option* const option : group.get_options())
            names.push_back(option->get_name());
    return names;
}

/// With those of its groups of options.
void ReadArguments(const CLI::App& app, Command& command)
{
    const std::vector<std::string> oneOf = OneOf(app);
    for (const CLI::Option* const option : app.get_options()) {
        Argument argument = ReadArgument(*option);
        argument.oneOf = oneOf;
        (argument.names.empty() ? command.positionals : command.options).push_back(std::move(argument));
    }
    for (const CLI::App* const part : app.get_subcommands([](const CLI::App*) { return true; }))
        if (part->get_name().empty())
            ReadArguments(*part, command);
}

} // namespace

Command ReadCommand(const CLI::App& app)
{
    Command command;
    command.name = app.get_name();
    command.description = app.get_description();
    // Pages have a section of their own on exit codes.
    const std::string footer = app.get_footer().substr(0, app.get_footer().find("\n\nExit codes:"));
    const std::string heading = "Example:\n";
    if (footer.rfind(heading, 0) == 0)
        command.example = WithoutIndent(footer.substr(heading.size()));
    ReadArguments(app, command);
    for (const CLI::App* const part : app.get_subcommands([](const CLI::App*) { return true; }))
        if (!part->get_name().empty() && !part->get_group().empty())
            command.subcommands.push_back(ReadCommand(*part));
    return command;
}

} // namespace documents
