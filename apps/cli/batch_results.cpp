// What became of the rows of a batch.
// SPDX-License-Identifier: MIT

#include "batch_results.h"

#include "base/reason.h"
#include "batch_table_file.h"
#include "command.h"

#include <algorithm>
#include <cerrno>
#include <map>

#include <fcntl.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace cli {

namespace {

std::size_t Count(const std::vector<RowResult>& results, const char* status)
{
    return static_cast<std::size_t>(
        std::count_if(results.begin(), results.end(),
                      [status](const RowResult& result) { return result.value("status", "") == status; }));
}

bool HasWarnings(const RowResult& result)
{
    const auto report = result.find("report");
    return report != result.end() && !report->value("warnings", Json::array()).empty();
}

Json Failures(const std::vector<RowResult>& results)
{
    Json failures = Json::array();
    for (const RowResult& result : results)
        if (result.value("status", "") == "failed")
            failures.push_back({{"row", result.at("row")},
                                {"line", result.at("line")},
                                {"source", result.value("source", "")},
                                {"error", result.value("error", "")}});
    return failures;
}

bool IsResult(const Json& line)
{
    return line.is_object() && line.contains("row") && line["row"].is_number_unsigned() &&
           line.contains("line") && line.contains("status") && line["status"].is_string() &&
           (!line.contains("error") || line["error"].is_string()) &&
           (!line.contains("source") || line["source"].is_string()) &&
           (!line.contains("seconds") || line["seconds"].is_number()) &&
           (!line.contains("report") || line["report"].is_object());
}

} // namespace

RowResult BeginResult(const BatchRow& row, const char* status)
{
    return {{"row", row.number},
            {"line", row.line},
            {"command", CommandText(row.arguments)},
            {"source", FileText(row.source)},
            {"target", FileText(row.target)},
            {"status", status}};
}

Json Summarize(std::vector<RowResult> results, double seconds, bool asJson)
{
    std::sort(results.begin(), results.end(), [](const RowResult& a, const RowResult& b) {
        return a.at("row").get<std::size_t>() < b.at("row").get<std::size_t>();
    });
    const std::size_t done = Count(results, "done"), failed = Count(results, "failed");
    const auto warned = std::count_if(results.begin(), results.end(), HasWarnings);
    Json summary{
        {"rows", results.size()},
        {"done", done},
        {"skipped", Count(results, "skipped")},
        {"failed", failed},
        {"with_warnings", warned},
        {"seconds", Rounded(seconds, 2)},
        {"rows_per_second", seconds > 0 ? Rounded(static_cast<double>(done + failed) / seconds, 3) : 0.0}};
    if (failed > 0 || asJson)
        summary["failures"] = Failures(results);
    if (asJson)
        summary["results"] = std::move(results);
    return summary;
}

void ThrowIfAnyFailed(const Json& summary)
{
    const auto failed = summary.at("failed").get<std::size_t>(), all = summary.at("rows").get<std::size_t>();
    if (failed > 0)
        throw ReportedError(fmt::format("{} of {} {} failed", failed, all, all == 1 ? "row" : "rows"));
}

std::vector<RowResult> ReadLogs(const std::vector<std::string>& files, base::Diagnostics& diagnostics)
{
    std::map<std::size_t, RowResult> byRow;
    for (const std::string& file : files) {
        const std::string text = ReadTableFile(file);
        std::size_t line = 0;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find('\n', at), text.size());
            ++line;
            Json result = Json::parse(text.substr(at, end - at), nullptr, false);
            at = end + 1;
            if (!IsResult(result)) {
                diagnostics.push_back({base::Severity::Warning,
                                       file,
                                       {},
                                       fmt::format("line {} is not the result of a row, left out", line)});
                continue;
            }
            RowResult& known = byRow[result["row"].get<std::size_t>()];
            // What a later run skips stays done.
            const bool staysDone =
                result["status"] == "skipped" && known.is_object() && known["status"] == "done";
            if (!staysDone)
                known = std::move(result);
        }
    }
    std::vector<RowResult> results;
    for (auto& [row, result] : byRow)
        results.push_back(std::move(result));
    return results;
}

BatchLog::BatchLog(const std::filesystem::path& file, Beginning beginning)
    : _file(file),
      _descriptor(open(
          file.c_str(),
          O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | (beginning == Beginning::Anew ? O_TRUNC : 0), 0666))
{
    if (_descriptor < 0)
        throw std::runtime_error(fmt::format("cannot write {}: {}", FileText(file), base::ReasonOf(errno)));
}

BatchLog::~BatchLog()
{
    close(_descriptor);
}

std::string BatchLog::write(const RowResult& result) const
{
    const std::string line = result.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
    for (std::size_t at = 0; at < line.size();) {
        const ssize_t count = ::write(_descriptor, line.data() + at, line.size() - at);
        if (count < 0 && errno != EINTR)
            return fmt::format("cannot write {}: {}", FileText(_file), base::ReasonOf(errno));
        at += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return {};
}

} // namespace cli
