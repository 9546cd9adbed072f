// `gantrel batch`: a table of conversions.
// SPDX-License-Identifier: MIT

#include "command_batch.h"

#include "base/atomic_file.h"
#include "batch_init.h"
#include "batch_plan.h"
#include "batch_run.h"
#include "batch_table_file.h"
#include "convert_options.h"
#include "options.h"
#include "output_name.h"
#include "report.h"

#include <memory>
#include <optional>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

namespace fs = std::filesystem;

struct BatchArguments {
    std::string table, log, folder;
    std::vector<std::string> logs;
    std::optional<std::size_t> row;
    int workers = 0;
    bool list = false, resume = false, json = false;
    ConvertArguments ofRows; ///< checked with each row
};

void AddBatchOptions(CLI::App& command, BatchArguments& arguments)
{
    command
        .add_option("table", arguments.table,
                    "CSV with a line of column names, or a JSON list of objects; columns are called as the "
                    "options of conversions below are, which count for rows that say nothing; - reads "
                    "standard input")
        ->type_name("FILE");
    CLI::Option* const list =
        command.add_flag("--list", arguments.list, "Print each row as a command, and convert nothing");
    CLI::Option* const row =
        command
            .add_option("--row", arguments.row, "Convert this row alone, the first is 1, unless it is done")
            ->type_name("N");
    CLI::Option* const merge =
        command.add_option("--merge", arguments.logs, "Sum up what logs say, and convert nothing")
            ->type_name("LOG");
    CLI::Option* const init =
        command
            .add_option("--init", arguments.folder,
                        "Write the table, or print it where none is named: every character below the folder")
            ->type_name("DIR");
    list->excludes(row)->excludes(merge)->excludes(init);
    merge->excludes(row)->excludes(init);
    init->excludes(row);
    command.add_option("--workers", arguments.workers, "Processes that convert; as many as processors")
        ->type_name("N")
        ->check(CLI::Range(1, 1024));
    command.add_flag("--resume", arguments.resume, "Leave rows out that are done and unchanged");
    command.add_option("--log", arguments.log, "Write a line of JSON for each row; added to with --resume")
        ->type_name("FILE.jsonl");
    AddJsonOption(command, arguments.json);
}

std::string NameOfTable(const std::string& table)
{
    return table == standardInput ? "standard input" : table;
}

void ListRows(const std::vector<BatchRow>& rows, bool asJson)
{
    std::string text;
    Json commands = Json::array();
    for (const BatchRow& row : rows) {
        text += CommandText(row.arguments) + '\n';
        commands.push_back({{"row", row.number}, {"line", row.line}, {"arguments", row.arguments}});
    }
    if (asJson)
        WriteReport({{"rows", commands}}, true);
    else
        WriteOutput(text);
}

std::vector<BatchRow> OnlyRow(std::vector<BatchRow> rows, std::size_t number, const std::string& table)
{
    if (number < 1 || number > rows.size())
        throw UsageError(fmt::format("--row {}: {} has {} {}", number, table, rows.size(),
                                     rows.size() == 1 ? "row" : "rows"));
    return {std::move(rows[number - 1])};
}

void Tell(Json summary, const base::Diagnostics& diagnostics, bool asJson)
{
    if (asJson || !diagnostics.empty())
        AddDiagnostics(summary, diagnostics, asJson);
    WriteReport(summary, asJson);
    ThrowIfAnyFailed(summary);
}

void MergeLogs(const BatchArguments& arguments)
{
    base::Diagnostics diagnostics;
    std::vector<RowResult> results = ReadLogs(arguments.logs, diagnostics);
    double seconds = 0;
    for (const RowResult& result : results)
        seconds += result.value("seconds", 0.0);
    Tell(Summarize(std::move(results), seconds, arguments.json), diagnostics, arguments.json);
}

void WriteTable(const BatchArguments& arguments)
{
    base::Diagnostics diagnostics;
    std::error_code error;
    const bool isFile = !arguments.table.empty() && arguments.table != standardInput;
    if (isFile && fs::exists(arguments.table, error))
        throw std::runtime_error(arguments.table + ": is there already");
    const std::string text = TableOfCharacters(arguments.folder, arguments.ofRows.target, diagnostics);
    if (isFile)
        base::WriteFileAtomically(arguments.table, text);
    else
        WriteOutput(text);
    TellWarnings(diagnostics);
}

void ConvertRows(std::vector<BatchRow> rows, const BatchArguments& arguments, bool verbose)
{
    if (arguments.row)
        rows = OnlyRow(std::move(rows), *arguments.row, NameOfTable(arguments.table));
    if (!arguments.log.empty())
        CheckOutput(arguments.log, {arguments.table});
    BatchOptions options;
    options.table = arguments.table;
    options.workers = static_cast<std::size_t>(arguments.workers);
    options.skipsDone = arguments.resume || arguments.row;
    options.needsState = options.skipsDone;
    options.log = arguments.log;
    options.verbose = verbose;
    options.keepsReports = arguments.json;
    options.showsProgress = !arguments.json;
    BatchOutcome outcome = RunBatch(rows, options);
    Tell(Summarize(std::move(outcome.results), outcome.seconds, arguments.json), outcome.diagnostics,
         arguments.json);
}

void Work(const BatchArguments& arguments, const JobRow& defaults, bool verbose)
{
    if (!arguments.logs.empty())
        return MergeLogs(arguments);
    if (!arguments.folder.empty())
        return WriteTable(arguments);
    if (arguments.table.empty())
        throw UsageError("a table is required");
    if (arguments.table == standardInput && arguments.resume)
        throw UsageError("--resume needs a table that is a file, beside which it is kept what is done");
    const std::vector<BatchRow> rows =
        PlanBatch(ReadTableFile(arguments.table), NameOfTable(arguments.table), defaults);
    if (arguments.list)
        return ListRows(rows, arguments.json);
    ConvertRows(rows, arguments, verbose);
}

} // namespace

void AddBatchCommand(CLI::App& program, CommandContext& context)
{
    CLI::App* const command =
        program.add_subcommand("batch", "Convert what a table lists, a row a conversion");
    const auto arguments = std::make_shared<BatchArguments>();
    AddBatchOptions(*command, *arguments);
    AddConvertOptions(*command, arguments->ofRows, OptionUse::Defaults);
    command->callback([arguments, command, &context] {
        context.work = [arguments, command, &context] {
            Work(*arguments, DefaultsOf(*command), context.verbose);
        };
    });
}

} // namespace cli
