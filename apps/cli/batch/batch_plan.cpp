// What a batch is to do, checked before any of it begins.
// SPDX-License-Identifier: MIT

#include "batch/batch_plan.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "command.h"
#include "dials.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "ks_daz-helpers.h"
#include "report.h"
#include "shell_command.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <system_error>
#include <unordered_map>

#include <fmt/format.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// Names of one thing are spelled in several ways. Rows share folders, and to ask for one takes a look at
/// each folder above it.
class Places {
public:
    const std::string& of(const fs::path& path)
    {
        const auto [found, isNew] = _known.try_emplace(path.native());
        if (isNew) {
            std::error_code error;
            const fs::path place = fs::weakly_canonical(path, error);
            found->second = FileText(error ? path : place);
        }
        return found->second;
    }

private:
    std::unordered_map<std::string, std::string> _known;
};

/// What a row writes, and which row writes it first.
class Outputs {
public:
    void add(BatchRow& row, const RowRequest& request, std::vector<TableProblem>& problems)
    {
        std::vector<Output> outputs = std::visit([this](const auto& one) { return outputsOf(one); }, request);
        row.identity = identityOf(row, request, outputs);
        // The same morphs with or without a page, or with another one, are the same row.
        const auto* const morphs = std::get_if<MorphConversionRequest>(&request);
        if (morphs && !morphs->page.empty())
            outputs.push_back({_places.of(morphs->page), FileText(morphs->page), FileText(morphs->page)});
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
                outputs.push_back({_places.of(save.contentDirectory) + inFolder,
                                   save.contentDirectory + inFolder, fmt::format("the morph \"{}\"", name)});
            }
        }
        for (const fs::path& path : {request.exportObj, request.pictures, request.page})
            if (!path.empty())
                outputs.push_back({_places.of(path), FileText(path),
                                   (path == request.pictures ? "pictures into " : "") + FileText(path)});
        return outputs;
    }

    /// What single morphs are called, and whether rows share some, is known when the figure is loaded. The
    /// same words mean the same morphs of a source.
    std::vector<Output> outputsOf(const MorphConversionRequest& request)
    {
        const std::string inFolder =
            '\n' + Folded(request.save.vendor + '\n' + request.save.product + '\n') + request.suffix + '\n';
        const std::string place =
            _places.of(request.save.contentDirectory) + inFolder + _places.of(request.source) + '\n';
        const std::string spelled =
            request.save.contentDirectory + inFolder + FileText(request.source) + '\n';
        std::vector<Output> outputs;
        for (const std::string& pattern :
             std::set<std::string>(request.choice.patterns.begin(), request.choice.patterns.end()))
            outputs.push_back({place + pattern, spelled + pattern,
                               fmt::format("the morphs \"{}\" of {}", pattern, FileText(request.source))});
        const fs::path& list = request.choice.list;
        if (!list.empty()) // which is no pattern, and so has another divider in front
            outputs.push_back(
                {place + '\n' + _places.of(list), spelled + '\n' + FileText(list),
                 fmt::format("the morphs of {} in {}", FileText(request.source), FileText(list))});
        return outputs;
    }

    static std::string identityOf(const BatchRow& row, const RowRequest& request,
                                  const std::vector<Output>& outputs)
    {
        if (outputs.empty())
            return ShellCommand(row.arguments);
        if (std::holds_alternative<ConversionRequest>(request))
            return outputs.front().spelled; // the first morph is of no other row
        std::string all;
        for (const Output& output : outputs)
            all += output.spelled + '\n';
        return all;
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
        const std::string& place = _places.of(source);
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

    Places _places;
    std::unordered_map<std::string, std::size_t> _rows;
    std::unordered_map<std::string, std::string> _labels;
};

void Understand(BatchRow& row, Outputs& outputs, std::vector<TableProblem>& problems)
{
    try {
        const RowRequest request = ParseRow(row.arguments);
        std::visit(
            [&row](const auto& one) {
                row.source = one.source;
                row.target = one.target;
            },
            request);
        if (const auto* const morphs = std::get_if<MorphConversionRequest>(&request))
            row.list = morphs->choice.list;
        outputs.add(row, request, problems);
    } catch (const UsageError& error) {
        problems.push_back({row.line, error.what()});
    }
}

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

void CheckRange(const RowRange& range, std::size_t count, const std::string& name)
{
    if (range.last <= count)
        return;
    const std::string numbers = range.first == range.last ? std::to_string(range.first)
                                                          : fmt::format("{}-{}", range.first, range.last);
    throw UsageError(
        fmt::format("--row {}: {} has {} {}", numbers, name, count, count == 1 ? "row" : "rows"));
}

std::vector<BatchRow> Planned(const JobTable& table, const RowRange& range, const std::string& name,
                              const JobRow& defaults)
{
    std::vector<TableProblem> problems = table.problems;
    std::vector<BatchRow> rows;
    Outputs outputs;
    for (std::size_t number = range.first; number <= range.last; ++number) {
        base::ThrowIfCancelled();
        const JobRow& job = table.rows[number - 1];
        BatchRow row;
        row.number = number;
        row.line = job.line;
        const std::size_t known = problems.size();
        row.arguments = ArgumentsOf(job, defaults, problems);
        if (problems.size() == known)
            Understand(row, outputs, problems);
        rows.push_back(std::move(row));
    }
    if (problems.empty() && rows.empty())
        throw UsageError(name + ": has no rows");
    std::stable_sort(problems.begin(), problems.end(),
                     [](const TableProblem& a, const TableProblem& b) { return a.line < b.line; });
    if (!problems.empty())
        Refuse(name, problems);
    return rows;
}

} // namespace

RowRange ParseRowRange(const std::string& text)
{
    RowRange range;
    const char* const end = text.data() + text.size();
    std::from_chars_result read = std::from_chars(text.data(), end, range.first);
    range.last = range.first;
    if (read.ec == std::errc() && read.ptr != end && *read.ptr == '-')
        read = std::from_chars(read.ptr + 1, end, range.last);
    if (read.ec != std::errc() || read.ptr != end || range.first < 1 || range.last < range.first)
        throw UsageError(
            fmt::format("--row {}: it is to be a number such as 7, or a range such as 7-12", text));
    return range;
}

std::vector<BatchRow> PlanBatch(const JobTable& table, const std::string& name, const JobRow& defaults)
{
    return Planned(table, {1, table.rows.size()}, name, defaults);
}

std::vector<BatchRow> PlanRows(const JobTable& table, const RowRange& range, const std::string& name,
                               const JobRow& defaults)
{
    CheckRange(range, table.rows.size(), name);
    return Planned(table, range, name, defaults);
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
