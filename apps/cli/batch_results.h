// What became of the rows of a batch.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch_plan.h"
#include "report.h"

#include <filesystem>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace cli {

/// A line of the log, and an entry of the report: "row", "line", "command", "source", "target", "status" of
/// done, skipped and failed, "tries", "seconds", "peak_memory_mib", and "report" or "error".
using RowResult = Json;

RowResult BeginResult(const BatchRow& row, const char* status);

/// Counts, the rate, and a table of the rows that failed; as JSON all results, too.
/// @param seconds  that it took to get there
Json Summarize(std::vector<RowResult> results, double seconds, bool asJson);

/// @throws ReportedError  a row failed
void ThrowIfAnyFailed(const Json& summary);

/// The results that logs have, the last of each row.
/// @param diagnostics  hears of lines that are no results
/// @throws base::Error  a log cannot be read
std::vector<RowResult> ReadLogs(const std::vector<std::string>& files, base::Diagnostics& diagnostics);

/// A file that grows by a line with each result.
class BatchLog {
public:
    enum class Beginning { Anew, AtEnd };
    /// @throws std::runtime_error  it cannot be written
    BatchLog(const std::filesystem::path& file, Beginning beginning);
    ~BatchLog();
    BatchLog(const BatchLog&) = delete;
    BatchLog& operator=(const BatchLog&) = delete;

    /// Why it cannot be written; empty as long as it can.
    std::string write(const RowResult& result) const;

private:
    std::filesystem::path _file;
    int _descriptor;
};

} // namespace cli
