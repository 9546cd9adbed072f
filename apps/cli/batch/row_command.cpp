// The commands that rows of a batch can be.
// SPDX-License-Identifier: MIT

#include "batch/row_command.h"

#include "command.h"
#include "conversions/convert_options.h"
#include "morphs/morph_options.h"
#include "shell_command.h"
#include "wrong_use.h"

#include <algorithm>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cli {

namespace {

const char* const convertCommand = "convert";
const char* const morphsCommand = "convert-morphs";
const char* const commandColumn = "command";

bool IsFlag(const CLI::Option& option)
{
    return option.get_items_expected_max() == 0;
}

/// Of names of morphs; folders have none, and nothing else means any.
bool MayHaveOuterBlanks(const CLI::Option& option)
{
    return option.check_lname("name") || option.check_lname("suffix");
}

JobColumn ColumnOf(const CLI::Option& option)
{
    JobColumn::Kind kind = JobColumn::Kind::Text;
    if (IsFlag(option))
        kind = JobColumn::Kind::Flag;
    else if (option.get_items_expected_max() > 1)
        kind = JobColumn::Kind::List;
    else if (MayHaveOuterBlanks(option))
        kind = JobColumn::Kind::Words;
    return {option.get_lnames().empty() ? std::string() : option.get_lnames().front(), kind};
}

void AddColumns(const CLI::App& app, std::vector<JobColumn>& columns)
{
    for (const CLI::Option* const option : app.get_options())
        columns.push_back(ColumnOf(*option));
    for (const CLI::App* const group : app.get_subcommands([](const CLI::App*) { return true; }))
        AddColumns(*group, columns);
}

std::vector<JobColumn> ColumnsOfConvert()
{
    CLI::App app;
    app.set_help_flag();
    ConvertArguments arguments;
    AddConvertOptions(app, arguments, OptionUse::Whole);
    std::vector<JobColumn> columns;
    AddColumns(app, columns);
    return columns;
}

std::vector<JobColumn> ColumnsOfMorphs()
{
    CLI::App app;
    app.set_help_flag();
    ConvertMorphsArguments arguments;
    AddConvertMorphsOptions(app, arguments);
    std::vector<JobColumn> columns;
    AddColumns(app, columns);
    return columns;
}

const std::vector<JobColumn>& ColumnsOf(const std::string& command)
{
    static const std::vector<JobColumn> convert = ColumnsOfConvert(), morphs = ColumnsOfMorphs();
    return command == morphsCommand ? morphs : convert;
}

bool HasColumn(const std::vector<JobColumn>& columns, const std::string& name)
{
    return std::any_of(columns.begin(), columns.end(),
                       [&](const JobColumn& column) { return column.name == name; });
}

std::string CommandOf(const JobRow& row, const JobRow& defaults)
{
    if (const std::vector<std::string>* const named = row.find(commandColumn))
        return named->front();
    const bool saysWhich = row.find("morphs") || row.find("list") || defaults.find("morphs");
    return saysWhich ? morphsCommand : convertCommand;
}

/// Whole columns are filled with "no" where a few rows say "yes".
bool SaysNothing(const JobRow::Cell& cell, const std::vector<JobColumn>& columns)
{
    const auto column = std::find_if(columns.begin(), columns.end(),
                                     [&](const JobColumn& one) { return one.name == cell.first; });
    return column != columns.end() && column->kind == JobColumn::Kind::Flag && cell.second.front() == "no";
}

void CheckCells(const JobRow& row, const std::string& command, std::vector<TableProblem>& problems)
{
    const std::vector<JobColumn>&own = ColumnsOf(command), all = RowColumns();
    for (const JobRow::Cell& cell : row.cells)
        if (cell.first != commandColumn && !HasColumn(own, cell.first) && !SaysNothing(cell, all))
            problems.push_back({row.line, fmt::format("{} is nothing that {} knows, which this row is of",
                                                      cell.first, command)});
    if (row.find("morphs") && row.find("list"))
        problems.push_back({row.line, "morphs and list exclude each other"});
}

const std::vector<std::string>* Values(const JobRow& row, const JobRow& defaults, const std::string& column)
{
    const std::vector<std::string>* const own = row.find(column);
    const bool isOtherChoice = column == "morphs" && row.find("list");
    return own || isOtherChoice ? own : defaults.find(column);
}

template <class Arguments, class AddOptions>
Arguments Parsed(const std::vector<std::string>& arguments, const AddOptions& addOptions)
{
    CLI::App app;
    app.set_help_flag();
    Arguments parsed;
    addOptions(app, parsed);
    std::vector<const char*> texts; // the first is the command, where a program's name would be
    for (const std::string& argument : arguments)
        texts.push_back(argument.c_str());
    try {
        app.parse(static_cast<int>(texts.size()), texts.data());
    } catch (const CLI::ParseError& error) {
        throw UsageError(DescribeCount(error));
    }
    return parsed;
}

} // namespace

std::vector<JobColumn> RowColumns()
{
    std::vector<JobColumn> columns = ColumnsOf(convertCommand);
    for (const JobColumn& column : ColumnsOf(morphsCommand))
        if (!HasColumn(columns, column.name))
            columns.push_back(column);
    columns.push_back({commandColumn, JobColumn::Kind::Text});
    return columns;
}

JobRow DefaultsOf(const CLI::App& command)
{
    JobRow defaults;
    for (const JobColumn& column : RowColumns()) {
        const CLI::Option* const option = command.get_option_no_throw("--" + column.name);
        const bool isFlag = column.kind == JobColumn::Kind::Flag;
        // --list means the rows, and the batch's own report is one of all of them.
        if (!option || option->count() == 0 || IsFlag(*option) != isFlag || column.name == "report")
            continue;
        defaults.cells.push_back({column.name, isFlag ? std::vector<std::string>{"yes"} : option->results()});
    }
    return defaults;
}

std::vector<std::string> ArgumentsOf(const JobRow& row, const JobRow& defaults,
                                     std::vector<TableProblem>& problems)
{
    const std::string command = CommandOf(row, defaults);
    if (command != convertCommand && command != morphsCommand)
        problems.push_back({row.line, fmt::format("the command is \"{}\"; it can be {} or {}", command,
                                                  convertCommand, morphsCommand)});
    else
        CheckCells(row, command, problems);
    std::vector<std::string> arguments{command};
    for (const JobColumn& column : ColumnsOf(command)) {
        const std::vector<std::string>* const values = Values(row, defaults, column.name);
        if (values && column.kind == JobColumn::Kind::Flag) {
            if (values->front() == "yes")
                arguments.push_back("--" + column.name);
        } else if (values) {
            for (const std::string& value : *values)
                arguments.push_back("--" + column.name + '=' + value);
        }
    }
    return arguments;
}

bool IsOfMorphs(const std::vector<std::string>& arguments)
{
    return arguments.front() == morphsCommand;
}

std::string ValueIn(const std::vector<std::string>& arguments, const std::string& option)
{
    const std::string begin = "--" + option + '=';
    for (const std::string& argument : arguments)
        if (argument.compare(0, begin.size(), begin) == 0)
            return argument.substr(begin.size());
    return {};
}

RowRequest ParseRow(const std::vector<std::string>& arguments)
{
    if (IsOfMorphs(arguments)) {
        MorphConversionRequest request =
            MakeRequest(Parsed<ConvertMorphsArguments>(arguments, AddConvertMorphsOptions));
        request.command = ShellCommand(arguments);
        return request;
    }
    ConversionRequest request =
        MakeRequest(Parsed<ConvertArguments>(arguments, [](CLI::App& app, ConvertArguments& parsed) {
            AddConvertOptions(app, parsed, OptionUse::Whole);
        }));
    request.command = ShellCommand(arguments);
    return request;
}

} // namespace cli
