// What became of the rows of a batch.
// SPDX-License-Identifier: MIT

#include "batch/batch_results.h"

#include "base/reason.h"
#include "command.h"
#include "shell_command.h"

#include <algorithm>
#include <cerrno>
#include <fstream>

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

/// Of a run that was cut off.
bool EndsWithinLine(const std::filesystem::path& file)
{
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(file, unknown))
        return false;
    std::ifstream text(file);
    text.seekg(-1, std::ios::end);
    return text && text.get() != '\n';
}

} // namespace

RowResult BeginResult(const BatchRow& row, const char* status)
{
    RowResult result{{"row", row.number},
                     {"line", row.line},
                     {"command", ShellCommand(row.arguments)},
                     {"source", FileText(row.source)},
                     {"target", FileText(row.target)},
                     {"status", status}};
    const std::string name = "--name=";
    for (const std::string& argument : row.arguments)
        if (argument.compare(0, name.size(), name) == 0)
            result["name"] = argument.substr(name.size());
    return result;
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

void KeepLittle(RowResult& result)
{
    result.erase("picture");
    if (const auto report = result.find("report"); report != result.end())
        *report = {{"warnings", report->value("warnings", Json::array())}};
}

BatchLog::BatchLog(const std::filesystem::path& file, Beginning beginning)
    : _file(file),
      _descriptor(open(
          file.c_str(),
          O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | (beginning == Beginning::Anew ? O_TRUNC : 0), 0666))
{
    if (_descriptor < 0)
        throw std::runtime_error(fmt::format("cannot write {}: {}", FileText(file), base::ReasonOf(errno)));
    _isTorn = EndsWithinLine(file);
}

BatchLog::~BatchLog()
{
    close(_descriptor);
}

void BatchLog::write(const RowResult& result)
{
    _waiting += result.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
    writeWaiting();
}

std::string BatchLog::finish()
{
    writeWaiting();
    return _waiting.empty() ? std::string() : _reason;
}

void BatchLog::writeWaiting()
{
    while (!_waiting.empty()) {
        // In one piece, since others may write into the same file; a part of a line stands for itself.
        const std::string bytes = (_isTorn ? "\n" : "") + _waiting.substr(0, _waiting.find('\n') + 1);
        const ssize_t count = ::write(_descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            _reason = fmt::format("cannot write {}: {}", FileText(_file), base::ReasonOf(errno));
            return;
        }
        if (static_cast<std::size_t>(count) == bytes.size())
            _waiting.erase(0, _waiting.find('\n') + 1);
        _isTorn = bytes[static_cast<std::size_t>(count) - 1] != '\n';
    }
}

} // namespace cli
