// One run of a batch: its rows through workers, with what is known of them kept.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/batch_index.h"
#include "batch/batch_plan.h"
#include "batch/batch_pool.h"
#include "batch/batch_results.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cli {

struct BatchOptions {
    std::string table;       ///< its file; state is kept beside it, but not beside standard input
    std::size_t workers = 0; ///< 0 for as many as there are processors
    std::size_t threads = 0; ///< of each; 0 for 1 where workers are given, else for what there is shared out
    double timeout = 0.0;    ///< seconds that a row may take; 0 for any time
    int megabytes = 0;       ///< that a worker may hold between two rows; 0 for its share of the machine
    bool skipsDone = false;  ///< rows that are done and unchanged; otherwise all are converted
    bool hasAllRows = true;  ///< of the table; otherwise others may have files that these would write
    bool needsState = false; ///< a place where none can be kept is an error rather than a warning
    std::string log;         ///< empty for none
    bool keepsReports = false;   ///< in the results; otherwise only their warnings, since there may be many
    bool drawsPictures = false;  ///< small ones, for an index
    BatchIndex* index = nullptr; ///< hears of all rows; null for none
    bool tellsProgress = false;  ///< of each row, in lines for a program that reads them
    bool verbose = false, showsProgress = false;
};

/// @param rows  how many there are, which is as many workers as can be busy
PoolOptions OptionsOfPool(std::size_t rows, const BatchOptions& options);

struct BatchOutcome {
    std::vector<RowResult> results;
    base::Diagnostics diagnostics; ///< of the run as such
    double seconds = 0.0;
};

/// @throws base::Cancelled     the user asked to end; what is done stays so
/// @throws std::runtime_error  state or log cannot be kept, or no process can be started
BatchOutcome RunBatch(const std::vector<BatchRow>& rows, const BatchOptions& options);

} // namespace cli
