// `gantrel batch`: a table of conversions.
// SPDX-License-Identifier: MIT

#include "command_batch.h"

#include "apart_cache.h"
#include "base/atomic_file.h"
#include "base/cancellation.h"
#include "base/counted.h"
#include "batch/batch_check.h"
#include "batch/batch_index.h"
#include "batch/batch_init.h"
#include "batch/batch_plan.h"
#include "batch/batch_run.h"
#include "batch/batch_state.h"
#include "batch/batch_table_file.h"
#include "batch/checked_table.h"
#include "batch/lost_files.h"
#include "batch/merged_logs.h"
#include "batch/row_command.h"
#include "conversions/convert_options.h"
#include "dson/reader.h"
#include "interrupt.h"
#include "morphs/morph_options.h"
#include "options.h"
#include "output_name.h"
#include "page/page_writer.h"
#include "planned_files.h"
#include "report.h"
#include "shell_command.h"
#include "standard_streams.h"

#include <memory>
#include <optional>
#include <set>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

namespace fs = std::filesystem;

struct BatchArguments {
    std::string table, log, folder, page, command;
    std::vector<std::string> logs;
    std::optional<std::string> rows; ///< of the table, those that are meant
    int workers = 0, threads = 0, megabytes = 0;
    double timeout = 0.0;
    bool list = false, resume = false, thumbnails = false, progressLines = false, json = false,
         isDryRun = false;
    ConvertArguments ofRows; ///< checked with each row
    ConvertMorphsArguments ofMorphRows;
};

void AddBatchOptions(CLI::App& command, BatchArguments& arguments)
{
    command
        .add_option("TABLE", arguments.table,
                    "CSV with a line of column names, or a JSON list of objects; columns are called as the "
                    "options of conversions below are, which count for rows that say nothing; a row with a "
                    "cell in morphs, or the name of a file in list, is of convert-morphs; - reads standard "
                    "input")
        ->type_name("FILE");
    CLI::Option* const list =
        command.add_flag("--list", arguments.list, "Print each row as a command, and convert nothing");
    CLI::Option* const row =
        command
            .add_option(
                "--row", arguments.rows,
                "Convert this row alone, the first is 1, or these, such as 11-20, unless they are done")
            ->type_name("N");
    CLI::Option* const merge = command
                                   .add_option("--merge", arguments.logs,
                                               "Sum up what logs say, and which rows of the table, where one "
                                               "is named, they lack; convert nothing")
                                   ->type_name("FILE.jsonl");
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
    command
        .add_option("--threads", arguments.threads,
                    "Processors that each of them keeps busy; 1 with --workers, else what there is is shared "
                    "out")
        ->type_name("N")
        ->check(CLI::Range(1, 1024));
    command
        .add_option("--timeout", arguments.timeout,
                    "Seconds after which a row is stopped and has failed; any time without it")
        ->type_name("S")
        ->check(CLI::PositiveNumber);
    command
        .add_option("--memory", arguments.megabytes,
                    "Megabytes that a process may hold between two rows, or a new one takes its place; its "
                    "share of half of the machine without it")
        ->type_name("MB")
        ->check(CLI::PositiveNumber);
    CLI::Option* const resume =
        command.add_flag("--resume", arguments.resume, "Leave rows out that are done and unchanged");
    AddDryRunOption(command, arguments.isDryRun,
                    "each row's figures are loaded and checked, and not converted; rows that are done are "
                    "looked at like the others")
        ->excludes(resume)
        ->excludes(list)
        ->excludes(merge);
    command.add_option("--log", arguments.log, "Write a line of JSON for each row; added to with --resume")
        ->type_name("FILE.jsonl");
    command
        .add_option("--report", arguments.page,
                    "Write a page to look at: all rows with small pictures, to sort and search")
        ->type_name("FILE.html")
        ->excludes(list)
        ->excludes(init);
    command.add_flag(
        "--thumbnails", arguments.thumbnails,
        "Draw a small picture of each row, as --report does, for a page of logs that are merged");
    command.add_flag(
        "--progress-lines", arguments.progressLines,
        "Tell on standard error, line by line, how far each row is, for a program that reads it");
    AddJsonOption(command, arguments.json);
}

std::string NameOfTable(const std::string& table)
{
    return table == standardStream ? "standard input" : table;
}

void ListRows(const std::vector<BatchRow>& rows, bool asJson)
{
    std::string text;
    Json commands = Json::array();
    for (const BatchRow& row : rows) {
        text += ShellCommand(row.arguments) + '\n';
        commands.push_back({{"row", row.number}, {"line", row.line}, {"arguments", row.arguments}});
    }
    if (asJson)
        WriteReport({{"rows", commands}}, true);
    else
        WriteOutput(text);
}

/// Where everything is that the batch leaves.
void AddPlaces(Json& summary, const std::vector<BatchRow>& rows, const BatchArguments& arguments,
               bool hasPage)
{
    Json libraries = Json::array();
    std::set<std::string> told;
    for (const BatchRow& row : rows)
        if (const std::string library = ValueIn(row.arguments, "save-library"); told.insert(library).second)
            libraries.push_back(library);
    if (libraries.size() == 1 && !arguments.json)
        summary["save_library"] = libraries.front();
    else
        summary["save_libraries"] = libraries;
    if (!arguments.log.empty())
        summary["log"] = arguments.log;
    if (hasPage)
        summary["report"] = arguments.page;
}

/// @param noPage  why there is none where one was wanted; it takes nothing from what is told of the rows
void Tell(Json summary, base::Diagnostics diagnostics, const std::string& noPage, bool asJson)
{
    if (!noPage.empty())
        diagnostics.push_back({base::Severity::Error, {}, {}, noPage});
    if (asJson || !diagnostics.empty())
        AddDiagnostics(summary, diagnostics, asJson);
    WriteSummary(summary, asJson);
    ThrowIfAnyFailed(summary);
    if (!noPage.empty())
        throw ReportedError(noPage);
}

/// How a batch went, for its page.
struct Course {
    double seconds = 0.0;
    base::Diagnostics diagnostics;
    std::size_t rowsNotBegun = 0;
    bool wasInterrupted = false;
};

std::vector<std::pair<std::string, std::string>> SettingsOf(const BatchArguments& arguments)
{
    std::vector<std::pair<std::string, std::string>> settings;
    if (!arguments.logs.empty()) {
        settings.emplace_back("Logs", fmt::format("{}", fmt::join(arguments.logs, "\n")));
        return settings;
    }
    settings.emplace_back("Workers", arguments.workers > 0 ? std::to_string(arguments.workers)
                                                           : "as many as processors");
    settings.emplace_back("Rows done before", arguments.resume ? "left as they are" : "converted again");
    if (!arguments.log.empty())
        settings.emplace_back("Log", arguments.log);
    return settings;
}

void WriteIndex(const BatchIndex& index, const BatchArguments& arguments, const Course& course)
{
    BatchFacts facts;
    facts.table = arguments.table.empty() ? std::string() : NameOfTable(arguments.table);
    facts.command = arguments.command;
    facts.seconds = course.seconds;
    facts.isOfRows = !arguments.logs.empty();
    facts.settings = SettingsOf(arguments);
    facts.diagnostics = course.diagnostics;
    facts.wasInterrupted = course.wasInterrupted;
    facts.rowsNotBegun = course.rowsNotBegun;
    index.write(arguments.page, facts);
}

/// @return why there is none where one is wanted
std::string TryToWriteIndex(const BatchIndex& index, const BatchArguments& arguments, const Course& course)
{
    try {
        if (!arguments.page.empty())
            WriteIndex(index, arguments, course);
        return {};
    } catch (const std::exception& error) {
        return error.what();
    }
}

void WriteTable(const BatchArguments& arguments)
{
    base::Diagnostics diagnostics;
    std::error_code error;
    const bool isFile = !arguments.table.empty() && arguments.table != standardStream;
    if (isFile && fs::exists(arguments.table, error))
        throw std::runtime_error(arguments.table + ": is there already");
    PlannedFiles planned;
    if (isFile && arguments.isDryRun)
        PlanFile(planned, arguments.table);
    else if (arguments.isDryRun)
        PlanStandardOutput(planned);
    const std::string text = TableOfCharacters(arguments.folder, arguments.ofRows.target, diagnostics);
    if (arguments.isDryRun)
        WriteReport(DescribePlan(planned, arguments.json), arguments.json);
    else if (isFile)
        base::WriteFileAtomically(arguments.table, text);
    else
        WriteOutput(text);
    TellWarnings(diagnostics);
    if (isFile && !arguments.isDryRun)
        WriteSummary(fmt::format("{}: {} of characters below {}\n", arguments.table,
                                 base::Counted(ReadJobTable(text, RowColumns()).rows.size(), "row", "rows"),
                                 arguments.folder));
}

/// What has been done until the user asked to end.
void WriteIndexOfSome(const BatchIndex& index, const BatchArguments& arguments, std::size_t rows)
{
    if (arguments.page.empty())
        return;
    try {
        Course course;
        course.wasInterrupted = true;
        course.rowsNotBegun = rows - index.size();
        WriteIndex(index, arguments, course);
        NoteWritten(arguments.page + " is written");
    } catch (const std::exception& error) {
        NoteForInterrupt(error.what());
    }
}

void CheckOwnFiles(const BatchArguments& arguments)
{
    if (!arguments.log.empty())
        CheckOutput(arguments.log, {arguments.table});
    if (!arguments.page.empty())
        CheckPageFile(arguments.page, {arguments.table, arguments.log});
}

BatchOptions OptionsOf(const BatchArguments& arguments, bool verbose)
{
    BatchOptions options;
    options.table = arguments.table;
    options.workers = static_cast<std::size_t>(arguments.workers);
    options.threads = static_cast<std::size_t>(arguments.threads);
    options.timeout = arguments.timeout;
    options.megabytes = arguments.megabytes;
    options.drawsPictures = arguments.thumbnails || !arguments.page.empty();
    options.skipsDone = arguments.resume || arguments.rows.has_value();
    options.hasAllRows = !arguments.rows.has_value();
    options.needsState = options.skipsDone;
    options.log = arguments.log;
    options.verbose = verbose;
    options.keepsReports = arguments.json;
    options.tellsProgress = arguments.progressLines;
    options.showsProgress = !arguments.json && !arguments.progressLines;
    return options;
}

/// Those of the batch itself. Where nothing can be kept beside the table, a batch goes on without.
PlannedFiles PlanOwnFiles(const BatchArguments& arguments, base::Diagnostics& diagnostics)
{
    PlannedFiles planned;
    for (const std::string& file : {arguments.log, arguments.page})
        if (!file.empty())
            PlanFile(planned, file);
    if (arguments.table == standardStream)
        return planned;
    try {
        PlanFile(planned, BatchState::PlaceFor(arguments.table));
        std::error_code error;
        if (const fs::path locks = RowLocks::PlaceFor(arguments.table); !fs::exists(locks, error))
            PlanFile(planned, locks); // which nobody writes into later
    } catch (const std::runtime_error& error) {
        diagnostics.push_back({base::Severity::Warning, {}, {}, error.what()});
    }
    return planned;
}

void CheckRows(const std::vector<BatchRow>& rows, const BatchArguments& arguments, bool verbose)
{
    const ApartCache apart;
    CheckOwnFiles(arguments);
    base::Diagnostics diagnostics = FindLostFiles(rows, NameOfTable(arguments.table));
    const PlannedFiles own = PlanOwnFiles(arguments, diagnostics);
    Json report = CheckBatch(rows, OptionsOf(arguments, verbose), own, arguments.json);
    AddDiagnostics(report, diagnostics, arguments.json);
    WriteReport(report, arguments.json);
    ThrowIfAnyFailed(report);
}

void ConvertRows(const std::vector<BatchRow>& rows, const BatchArguments& arguments, bool verbose)
{
    CheckOwnFiles(arguments);
    BatchOptions options = OptionsOf(arguments, verbose);
    BatchIndex index;
    options.index = arguments.page.empty() ? nullptr : &index;
    if (!arguments.rows) // of a few rows the first look is as soon
        TellWarnings(FindLostFiles(rows, NameOfTable(arguments.table)));
    BatchOutcome outcome;
    try {
        outcome = RunBatch(rows, options);
    } catch (const base::Cancelled&) {
        WriteIndexOfSome(index, arguments, rows.size());
        throw;
    }
    const std::string noPage = TryToWriteIndex(index, arguments, {outcome.seconds, outcome.diagnostics});
    Json summary = Summarize(std::move(outcome.results), outcome.seconds, arguments.json);
    AddPlaces(summary, rows, arguments, !arguments.page.empty() && noPage.empty());
    Tell(std::move(summary), outcome.diagnostics, noPage, arguments.json);
}

/// Those that are to be worked on. Small tables are checked as a whole each time.
std::vector<BatchRow> PlannedRows(const BatchArguments& arguments, const JobRow& defaults)
{
    constexpr std::size_t small = 500;
    const std::string name = NameOfTable(arguments.table);
    const std::optional<RowRange> range =
        arguments.rows ? std::optional<RowRange>(ParseRowRange(*arguments.rows)) : std::nullopt;
    const std::string text = ReadTableFile(arguments.table);
    const JobTable table = ReadJobTable(text, RowColumns());
    const CheckedTable checked(arguments.table, text, defaults);
    const bool isKeptInMind = arguments.table != standardStream && table.rows.size() > small;
    if (!range || !isKeptInMind || !checked.isKnown()) {
        std::vector<BatchRow> all = PlanBatch(table, name, defaults);
        if (isKeptInMind && !arguments.isDryRun)
            checked.remember();
        if (!range)
            return all;
    }
    return PlanRows(table, *range, name, defaults);
}

void MergeLogs(const BatchArguments& arguments, const JobRow& defaults)
{
    base::Diagnostics diagnostics;
    if (!arguments.page.empty())
        CheckPageFile(arguments.page, {arguments.logs.begin(), arguments.logs.end()});
    BatchIndex index;
    const auto hear = [&](const RowResult& result) {
        if (!arguments.page.empty())
            index.add(result);
    };
    std::vector<RowResult> results = ReadLogs(arguments.logs, arguments.json, hear, diagnostics);
    if (results.empty() && arguments.table.empty()) {
        TellWarnings(diagnostics);
        throw std::runtime_error("no log has the result of a row");
    }
    std::size_t missing = 0;
    if (!arguments.table.empty())
        missing = CompareWithTable(results, PlannedRows(arguments, defaults), NameOfTable(arguments.table),
                                   diagnostics);
    double seconds = 0;
    for (const RowResult& result : results)
        seconds += result.value("seconds", 0.0);
    index.keepOnly(results);
    const std::string noPage = TryToWriteIndex(index, arguments, {seconds, diagnostics, missing});
    Json summary = Summarize(std::move(results), seconds, arguments.json);
    if (!arguments.table.empty())
        summary["missing"] = missing;
    if (!arguments.page.empty() && noPage.empty())
        summary["report"] = arguments.page;
    Tell(std::move(summary), diagnostics, noPage, arguments.json);
    if (missing > 0)
        throw ReportedError(fmt::format("{} in no log", base::Counted(missing, "row is", "rows are")));
}

void Work(const BatchArguments& arguments, const JobRow& defaults, bool verbose)
{
    if (!arguments.logs.empty())
        return MergeLogs(arguments, defaults);
    if (!arguments.folder.empty())
        return WriteTable(arguments);
    if (arguments.table.empty())
        throw UsageError("a table is required");
    if (arguments.table == standardStream && arguments.resume)
        throw UsageError("--resume needs a table that is a file, beside which it is kept what is done");
    const std::vector<BatchRow> rows = PlannedRows(arguments, defaults);
    if (arguments.list)
        return ListRows(rows, arguments.json);
    if (arguments.isDryRun)
        CheckRows(rows, arguments, verbose);
    else
        ConvertRows(rows, arguments, verbose);
}

} // namespace

void AddBatchCommand(CLI::App& program, CommandContext& context)
{
    CLI::App* const command =
        program.add_subcommand("batch", "Convert what a table lists, a row a conversion");
    command->footer("Example:\n"
                    "  gantrel batch jobs.csv --init ~/library/People\n"
                    "  gantrel batch jobs.csv --content ~/library \\\n"
                    "      --target \"$HOME/library/People/Genesis 9/Genesis 9.duf\" \\\n"
                    "      --save-library ~/library --vendor Me --product \"My Shapes\" \\\n"
                    "      --report jobs.html");
    const auto arguments = std::make_shared<BatchArguments>();
    AddBatchOptions(*command, *arguments);
    AddConvertOptions(*command, arguments->ofRows, OptionUse::Defaults);
    AddMorphDefaults(*command, arguments->ofMorphRows);
    command->callback([arguments, command, &context] {
        context.work = [arguments, command, &context] {
            arguments->command = ShellCommand(context.arguments);
            Work(*arguments, DefaultsOf(*command), context.verbose);
        };
    });
}

} // namespace cli
