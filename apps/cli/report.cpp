// What a subcommand tells on stdout: one JSON object, or the same for people.
// SPDX-License-Identifier: MIT

#include "report.h"

#include "base/reason.h"
#include "color.h"
#include "printable.h"
#include "progress.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <exception>
#include <set>
#include <utility>
#include <vector>

#include <sys/resource.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

constexpr int indentWidth = 2;

std::atomic<bool> isQuiet{false}, hasProgress{true}, isOutputGiven{false};

std::string Words(std::string key)
{
    std::replace(key.begin(), key.end(), '_', ' ');
    return key;
}

std::string ScalarText(const Json& value)
{
    if (value.is_string())
        return value.get_ref<const std::string&>().empty() ? "-" : app::Printable(value.get<std::string>());
    if (value.is_boolean())
        return value.get<bool>() ? "yes" : "no";
    if (value.is_null())
        return "-";
    if (value.is_number_float())
        return fmt::format("{:.6g}", value.get<double>());
    return value.dump();
}

bool IsListOfObjects(const Json& value)
{
    return value.is_array() && !value.empty() && value.front().is_object();
}

bool IsListOfScalars(const Json& value)
{
    return value.is_array() &&
           std::none_of(value.begin(), value.end(), [](const Json& item) { return item.is_structured(); });
}

/// Numbers on one line; texts, which may be long, one a line.
bool FitsOnOneLine(const Json& value)
{
    return value.is_primitive() || value.empty() ||
           (IsListOfScalars(value) &&
            std::all_of(value.begin(), value.end(), [](const Json& item) { return item.is_number(); }));
}

std::string LineText(const Json& value)
{
    if (value.is_primitive())
        return ScalarText(value);
    if (value.empty())
        return "-";
    std::string text;
    for (const Json& item : value)
        text += (text.empty() ? "" : ", ") + ScalarText(item);
    return text;
}

/// Counts code points, which is near enough to columns for the names that content has.
std::size_t Columns(const std::string& text)
{
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string Padded(const std::string& text, std::size_t columns)
{
    const std::size_t used = Columns(text);
    return text + std::string(columns > used ? columns - used : 0, ' ');
}

void AppendRow(std::string& text, const std::vector<std::string>& cells,
               const std::vector<std::size_t>& widths, int indent)
{
    std::string line(static_cast<std::size_t>(indent), ' ');
    for (std::size_t column = 0; column < cells.size(); ++column)
        line += Padded(cells[column], widths[column]) + "  ";
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
}

/// The first object decides on the columns. A list in an object, empty or not, has a block of its own.
bool IsTable(const Json& list)
{
    const auto isCell = [](const Json& value) {
        return value.is_primitive() || (FitsOnOneLine(value) && !value.empty());
    };
    return std::all_of(list.begin(), list.end(), [&](const Json& row) {
        return row.is_object() && std::all_of(row.begin(), row.end(), isCell);
    });
}

void AppendTable(std::string& text, const Json& list, int indent)
{
    std::vector<std::vector<std::string>> rows(1);
    std::vector<std::string> keys;
    for (const auto& cell : list.front().items()) {
        keys.push_back(cell.key());
        rows.front().push_back(Words(cell.key()));
    }
    for (const Json& item : list) {
        std::vector<std::string> row;
        for (const std::string& key : keys)
            row.push_back(item.contains(key) ? LineText(item.at(key)) : "-");
        rows.push_back(std::move(row));
    }
    std::vector<std::size_t> widths(keys.size(), 0);
    for (const std::vector<std::string>& row : rows)
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], Columns(row[column]));
    for (const std::vector<std::string>& row : rows)
        AppendRow(text, row, widths, indent);
}

void AppendObject(std::string& text, const Json& object, int indent);

void AppendNested(std::string& text, const Json& value, int indent)
{
    if (value.is_object()) {
        AppendObject(text, value, indent);
    } else if (IsListOfScalars(value)) {
        for (const Json& item : value)
            text += std::string(static_cast<std::size_t>(indent), ' ') + ScalarText(item) + '\n';
    } else if (IsListOfObjects(value) && IsTable(value)) {
        AppendTable(text, value, indent);
    } else {
        for (const Json& item : value) {
            if (&item != &value.front())
                text += '\n';
            AppendNested(text, item, indent);
        }
    }
}

void AppendObject(std::string& text, const Json& object, int indent)
{
    std::size_t width = 0;
    for (const auto& member : object.items())
        if (FitsOnOneLine(member.value()))
            width = std::max(width, Columns(member.key()));
    const std::string margin(static_cast<std::size_t>(indent), ' ');
    for (const auto& member : object.items()) {
        if (FitsOnOneLine(member.value())) {
            text += margin + Padded(Words(member.key()), width) + "  " + LineText(member.value()) + '\n';
            continue;
        }
        text += margin + Words(member.key()) + '\n';
        AppendNested(text, member.value(), indent + indentWidth);
    }
}

base::Diagnostics& AllKeptForError()
{
    static base::Diagnostics kept;
    return kept;
}

/// @param reason  the system's number; 0 where it is no longer known
[[noreturn]] void RefuseOutput(int reason)
{
    if (reason == EPIPE)
        throw OutputClosed();
    throw std::runtime_error(
        fmt::format("cannot write to standard output{}",
                    reason == 0 ? std::string() : std::string(": ") + base::ReasonOf(reason)));
}

} // namespace

void WriteOutput(std::string_view text)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        RefuseOutput(errno);
}

void EndOutput(int formerReason)
{
    const bool isFlushed = std::fflush(stdout) == 0;
    if (!isFlushed || std::ferror(stdout) != 0)
        RefuseOutput(isFlushed ? formerReason : errno);
}

namespace {

/// Where people read.
void Tell(const std::string& text)
{
    if (isOutputGiven)
        std::fwrite(text.data(), 1, text.size(), stderr);
    else
        WriteOutput(text);
}

} // namespace

std::string ReportText(const Json& report)
{
    std::string text;
    AppendObject(text, report, 0);
    return text;
}

void WriteReport(const Json& report, bool asJson)
{
    Tell(asJson ? report.dump(indentWidth, ' ', false, Json::error_handler_t::replace) + '\n'
                : ReportText(report));
}

void BeQuiet()
{
    isQuiet = true;
}

bool IsQuiet()
{
    return isQuiet;
}

void GiveOutputAway()
{
    isOutputGiven = true;
}

void LeaveOutProgress()
{
    hasProgress = false;
}

bool HasProgress()
{
    return hasProgress && !isQuiet;
}

void WriteSummary(const Json& summary, bool asJson)
{
    if (asJson || !isQuiet)
        WriteReport(summary, asJson);
}

void WriteSummary(const std::string& text)
{
    if (!isQuiet)
        Tell(text);
}

void WriteResult(const Json& report, bool asJson, bool isDryRun)
{
    if (isDryRun)
        WriteReport(report, asJson);
    else
        WriteSummary(report, asJson);
}

void AddDiagnostics(Json& report, const base::Diagnostics& diagnostics, bool asJson)
{
    Json lines = Json::array(), all = Json::array();
    const auto addOnce = [](Json& list, Json entry) {
        if (std::find(list.begin(), list.end(), entry) == list.end())
            list.push_back(std::move(entry));
    };
    for (const base::Diagnostic& diagnostic : diagnostics) {
        if (diagnostic.severity == base::Severity::Note)
            continue;
        addOnce(lines, base::ToLine(diagnostic));
        addOnce(all, {{"severity", base::NameOf(diagnostic.severity)},
                      {"file", diagnostic.file},
                      {"asset", diagnostic.asset},
                      {"what", diagnostic.what}});
    }
    report["warnings"] = lines;
    if (asJson)
        report["diagnostics"] = all;
}

void TellWarnings(const base::Diagnostics& diagnostics)
{
    if (isQuiet)
        return;
    std::set<std::string> told;
    std::string text; // in one piece, as others may write there as well
    for (const base::Diagnostic& diagnostic : diagnostics) {
        const Color color = diagnostic.severity == base::Severity::Error ? Color::Error : Color::Warning;
        const std::string word = fmt::format("{}:", base::NameOf(diagnostic.severity));
        const std::string line = fmt::format("{} {}", Colored(word, color, Stream::Errors),
                                             app::Printable(base::ToLine(diagnostic)));
        if (diagnostic.severity != base::Severity::Note && told.insert(line).second)
            text += ProgramPrefix(color) + line + '\n';
    }
    std::fwrite(text.data(), 1, text.size(), stderr);
}

KeptForError::KeptForError(const base::Diagnostics& met) : _met(met), _exceptions(std::uncaught_exceptions())
{
}

KeptForError::~KeptForError()
{
    if (std::uncaught_exceptions() > _exceptions)
        AllKeptForError().insert(AllKeptForError().end(), _met.begin(), _met.end());
}

base::Diagnostics TakeKeptForError()
{
    return std::exchange(AllKeptForError(), {});
}

void WriteError(const std::string& sentence)
{
    Json report{{"error", sentence}};
    AddDiagnostics(report, TakeKeptForError(), true);
    try {
        WriteReport(report, true);
    } catch (const std::runtime_error&) {
    }
}

double Rounded(double value, int decimals)
{
    const double factor = std::pow(10.0, decimals);
    return std::round(value * factor) / factor;
}

Json SecondsOf(const Progress& progress)
{
    Json steps = Json::array();
    for (const auto& stage : progress.seconds())
        steps.push_back({{"step", stage.first}, {"seconds", Rounded(stage.second, 4)}});
    return {{"total", Rounded(progress.totalSeconds(), 4)}, {"steps", steps}};
}

double PeakMemoryMebibytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

} // namespace cli
