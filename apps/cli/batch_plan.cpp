// What a batch is to do, checked before any of it begins.
// SPDX-License-Identifier: MIT

#include "batch_plan.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "command.h"
#include "convert_options.h"
#include "dials.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "ks_daz-helpers.h"
#include "report.h"

#include <algorithm>
#include <map>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

const char* const conversionCommand = "convert";

bool IsFlag(const CLI::Option& option)
{
    return option.get_items_expected_max() == 0;
}

/// The name of an option that rows can have; empty for others.
std::string ColumnOf(const CLI::Option& option)
{
    return option.get_lnames().empty() ? std::string() : option.get_lnames().front();
}

const std::vector<std::string>* Values(const JobRow& row, const JobRow& defaults, const std::string& column)
{
    const std::vector<std::string>* const own = row.find(column);
    return own ? own : defaults.find(column);
}

std::vector<std::string> ArgumentsOf(const JobRow& row, const JobRow& defaults,
                                     const std::vector<JobColumn>& columns)
{
    std::vector<std::string> arguments{conversionCommand};
    for (const JobColumn& column : columns) {
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

/// Names of one thing are spelled in several ways.
std::string Place(const fs::path& path)
{
    std::error_code error;
    const fs::path place = fs::weakly_canonical(path, error);
    return FileText(error ? path : place);
}

/// What a row writes, and which row writes it first.
class Outputs {
public:
    void add(BatchRow& row, const ConversionRequest& request, std::vector<TableProblem>& problems)
    {
        const std::vector<Output> outputs = outputsOf(request);
        row.identity = outputs.empty() ? CommandText(row.arguments) : outputs.front().spelled;
        for (const Output& output : outputs) {
            const auto [first, isNew] = _rows.emplace(output.place, row.line);
            if (isNew)
                continue;
            problems.push_back(
                {row.line, fmt::format("would write {}, as line {} does", output.shown, first->second)});
            return;
        }
    }

private:
    struct Output {
        std::string place;   ///< on this machine, however it is spelled
        std::string spelled; ///< the same wherever a folder of several machines is found
        std::string shown;
    };

    std::vector<Output> outputsOf(const ConversionRequest& request)
    {
        std::vector<Output> outputs;
        if (request.save) {
            const GntSaveOptions& save = *request.save;
            for (const std::string& name : namesOf(request)) {
                const std::string inFolder = '\n' + Folded(save.vendor + '\n' + save.product + '\n' + name);
                outputs.push_back({Place(save.contentDirectory) + inFolder, save.contentDirectory + inFolder,
                                   fmt::format("the morph \"{}\"", name)});
            }
        }
        for (const fs::path& path : {request.exportObj, request.pictures})
            if (!path.empty())
                outputs.push_back({Place(path), FileText(path),
                                   (path == request.pictures ? "pictures into " : "") + FileText(path)});
        return outputs;
    }

    std::vector<std::string> namesOf(const ConversionRequest& request)
    {
        std::vector<std::string> all = request.morphs.names;
        if (all.empty())
            all = GntProposedNames(GntConvertedLabel(labelOf(request.source)));
        std::vector<std::string> names;
        for (const GntJob& job : GNT_JOBS)
            if (request.morphs.jobs.test(job.flag))
                names.push_back(all[job.index]);
        return names;
    }

    /// A source that cannot be read stands for itself; its row will tell.
    const std::string& labelOf(const fs::path& source)
    {
        const std::string place = Place(source);
        auto found = _labels.find(place);
        if (found == _labels.end())
            found = _labels.emplace(place, readLabel(source).value_or(place)).first;
        return found->second;
    }

    static std::optional<std::string> readLabel(const fs::path& source)
    {
        std::error_code error;
        if (!fs::is_regular_file(source, error))
            return std::nullopt; // a pipe would be empty afterwards
        try {
            return LabelOfSource(dson::ReadDocument(source));
        } catch (const base::Error&) {
            return std::nullopt;
        }
    }

    std::map<std::string, std::size_t> _rows;
    std::map<std::string, std::string> _labels;
};

[[noreturn]] void Refuse(const std::string& name, const std::vector<TableProblem>& problems)
{
    base::Diagnostics told;
    for (const TableProblem& problem : problems)
        told.push_back(
            {base::Severity::Error, name, {}, fmt::format("line {}: {}", problem.line, problem.what)});
    const KeptForError kept(told);
    if (problems.size() == 1)
        throw UsageError(base::ToLine(told.front()));
    TellWarnings(told);
    throw UsageError(fmt::format("{}: {} things are wrong, so nothing was begun", name, problems.size()));
}

} // namespace

std::vector<JobColumn> ConversionColumns()
{
    CLI::App app;
    app.set_help_flag();
    ConvertArguments arguments;
    AddConvertOptions(app, arguments, OptionUse::Whole);
    std::vector<JobColumn> columns;
    for (const CLI::Option* const option : app.get_options())
        columns.push_back({ColumnOf(*option), IsFlag(*option) ? JobColumn::Kind::Flag
                                              : option->get_items_expected_max() > 1
                                                  ? JobColumn::Kind::List
                                                  : JobColumn::Kind::Text});
    return columns;
}

JobRow DefaultsOf(const CLI::App& command)
{
    JobRow defaults;
    for (const JobColumn& column : ConversionColumns()) {
        const CLI::Option* const option = command.get_option_no_throw("--" + column.name);
        if (!option || option->count() == 0)
            continue;
        defaults.cells.push_back({column.name, column.kind == JobColumn::Kind::Flag
                                                   ? std::vector<std::string>{"yes"}
                                                   : option->results()});
    }
    return defaults;
}

ConversionRequest ParseConversion(const std::vector<std::string>& arguments)
{
    CLI::App app;
    app.set_help_flag();
    ConvertArguments parsed;
    AddConvertOptions(app, parsed, OptionUse::Whole);
    std::vector<const char*> texts; // the first is the command, where a program's name would be
    for (const std::string& argument : arguments)
        texts.push_back(argument.c_str());
    try {
        app.parse(static_cast<int>(texts.size()), texts.data());
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
    return MakeRequest(parsed);
}

std::vector<BatchRow> PlanBatch(const std::string& text, const std::string& name, const JobRow& defaults)
{
    const std::vector<JobColumn> columns = ConversionColumns();
    JobTable table = ReadJobTable(text, columns);
    std::vector<BatchRow> rows;
    Outputs outputs;
    for (const JobRow& job : table.rows) {
        base::ThrowIfCancelled();
        BatchRow row;
        row.number = rows.size() + 1;
        row.line = job.line;
        row.arguments = ArgumentsOf(job, defaults, columns);
        try {
            const ConversionRequest request = ParseConversion(row.arguments);
            row.source = request.source;
            row.target = request.target;
            outputs.add(row, request, table.problems);
        } catch (const UsageError& error) {
            table.problems.push_back({row.line, error.what()});
        }
        rows.push_back(std::move(row));
    }
    if (table.problems.empty() && rows.empty())
        throw UsageError(name + ": has no rows");
    std::stable_sort(table.problems.begin(), table.problems.end(),
                     [](const TableProblem& a, const TableProblem& b) { return a.line < b.line; });
    if (!table.problems.empty())
        Refuse(name, table.problems);
    return rows;
}

std::string CommandText(const std::vector<std::string>& arguments)
{
    const auto isPlain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               std::string_view("-_=+./,:@%").find(c) != std::string_view::npos;
    };
    std::string text = "gantrel";
    for (const std::string& argument : arguments) {
        const std::size_t equals = argument.find('=');
        const std::string option = argument.substr(0, equals == argument.npos ? equals : equals + 1);
        const std::string value = argument.substr(option.size());
        text += ' ' + option;
        if (std::all_of(value.begin(), value.end(), isPlain)) {
            text += value;
            continue;
        }
        text += '\'';
        for (const char c : value)
            text += c == '\'' ? std::string("'\\''") : std::string(1, c);
        text += '\'';
    }
    return text;
}

std::optional<std::string> LabelOfSource(const dson::Document& document)
{
    for (const dson::NodeInstance& node : document.nodeInstances) {
        const dson::Uri uri = dson::ParseUri(node.url); // which can be spelled in several ways
        const kst::daz::BaseFigure kind = kst::daz::GetBaseFigure(dson::MakeUri(uri.path, uri.id));
        if (kind != kst::daz::BaseFigure::None && kind != kst::daz::BaseFigure::Genesis9)
            return node.label;
    }
    return std::nullopt;
}

} // namespace cli
