// Processes that share the rows of a batch.
// SPDX-License-Identifier: MIT

#pragma once

#include "report.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace cli {

/// One try of a row.
struct BatchTask {
    std::size_t row = 0; ///< index, which only the giver knows the meaning of
    std::vector<std::string> arguments;
    bool mayReplace = false;           ///< morphs that have the names were made by an earlier try of the row
    std::vector<std::string> ownFiles; ///< likewise, of a row that does not say its names
};

/// How a try ended.
struct BatchAnswer {
    std::string death;    ///< how the process ended that was at it; empty when it came to an end of its own
    bool wasLate = false; ///< it was ended because it took too long
    /// Otherwise what the worker says: "report", or "error" with "diagnostics", or both.
    Json said;
    double seconds = 0.0;
};

/// Who gives the tasks out and takes the answers. All calls come from the thread that runs the pool.
class BatchSource {
public:
    virtual ~BatchSource() = default;
    virtual std::optional<BatchTask> next() = 0; ///< nothing when there is none left at the moment
    /// A try is about to put files in place, which were not there or may be replaced.
    /// @param files  their names, where the row does not say them
    /// @return why it may not; empty when it may; nothing to be asked again when something has happened
    virtual std::optional<std::string> beforeSaving(const BatchTask& task,
                                                    const std::vector<std::string>& files) = 0;
    virtual void take(const BatchTask& task, BatchAnswer answer) = 0;
};

struct PoolOptions {
    std::size_t workers = 1;
    std::size_t threads = 1; ///< of each worker
    bool verbose = false;
    bool tellsProgress = false;               ///< of each row, in lines to standard error
    std::chrono::duration<double> timeout{0}; ///< of a try; 0 for none
    bool wantsPictures = false;               ///< a small one of each row
    bool isDryRun = false;                    ///< rows are only looked at
    double mostMebibytes = 0; ///< a worker that holds more between two rows makes place for a new one
};

/// Until nothing is left and all is answered. A process that ends takes its row with it and no other; rows
/// that follow get a new one.
/// @throws base::Cancelled     the user asked to end; what was under way is dropped
/// @throws std::runtime_error  the system starts no process at all
void RunPool(BatchSource& source, const PoolOptions& options);

} // namespace cli
