// `gantrel batch`: a table of conversions.
// SPDX-License-Identifier: MIT

#include "command_batch.h"

#include "batch_plan.h"
#include "batch_table_file.h"
#include "convert_options.h"
#include "report.h"

#include <memory>

#include <CLI/CLI.hpp>

namespace cli {

namespace {

struct BatchArguments {
    std::string table;
    bool list = false;
    ConvertArguments ofRows; ///< checked with each row
};

std::string NameOfTable(const std::string& table)
{
    return table == standardInput ? "standard input" : table;
}

void ListRows(const std::vector<BatchRow>& rows)
{
    std::string text;
    for (const BatchRow& row : rows)
        text += CommandText(row.arguments) + '\n';
    WriteOutput(text);
}

void RunBatch(const BatchArguments& arguments, const JobRow& defaults)
{
    const std::vector<BatchRow> rows =
        PlanBatch(ReadTableFile(arguments.table), NameOfTable(arguments.table), defaults);
    ListRows(rows);
}

} // namespace

void AddBatchCommand(CLI::App& program, CommandContext& context)
{
    CLI::App* const command =
        program.add_subcommand("batch", "Convert what a table lists, a row a conversion");
    const auto arguments = std::make_shared<BatchArguments>();
    command
        ->add_option("table", arguments->table,
                     "CSV with a line of column names, or a JSON list of objects; columns are called as "
                     "the options of conversions below are, which count for rows that say nothing; - reads "
                     "standard input")
        ->type_name("FILE")
        ->required();
    command->add_flag("--list", arguments->list, "Print each row as a command, and convert nothing");
    AddConvertOptions(*command, arguments->ofRows, OptionUse::Defaults);
    command->callback([arguments, command, &context] {
        context.work = [arguments, command] { RunBatch(*arguments, DefaultsOf(*command)); };
    });
}

} // namespace cli
