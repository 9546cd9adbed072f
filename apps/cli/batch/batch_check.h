// A batch that is only looked at: what its rows would write, and which of them would fail.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/batch_run.h"
#include "planned_files.h"
#include "report.h"

#include <vector>

namespace cli {

/// Each row as far as a dry run of its command goes, in workers as those of RunBatch(). Nothing is kept
/// beside the table.
/// @param own  files of the batch itself, told in front of those of the rows
/// @return the report, with "failed" as Summarize() has it
/// @throws base::Cancelled     the user asked to end
/// @throws std::runtime_error  no process can be started
Json CheckBatch(const std::vector<BatchRow>& rows, const BatchOptions& options, const PlannedFiles& own,
                bool asJson);

} // namespace cli
