// What became of the rows of a batch.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/batch_plan.h"
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

/// Of a report only its warnings, and no picture: rows may be many.
void KeepLittle(RowResult& result);

/// A file that grows by a line with each result.
class BatchLog {
public:
    enum class Beginning { Anew, AtEnd };
    /// @throws std::runtime_error  it cannot be written
    BatchLog(const std::filesystem::path& file, Beginning beginning);
    ~BatchLog();
    BatchLog(const BatchLog&) = delete;
    BatchLog& operator=(const BatchLog&) = delete;

    /// A line that the disk refuses is written again with those that follow.
    void write(const RowResult& result);
    /// Tries a last time.
    /// @return why lines are missing; empty when none are
    std::string finish();

private:
    void writeWaiting();

    std::filesystem::path _file;
    int _descriptor;
    std::string _waiting; ///< whole lines
    bool _isTorn = false; ///< the file ends within a line
    std::string _reason;
};

} // namespace cli
