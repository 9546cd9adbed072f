// The logs of a batch's runs, also of those on other machines, as one.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/batch_results.h"

#include <functional>
#include <string>
#include <vector>

namespace cli {

/// The results that logs have, the last of each row: logs count in the order in which they are named. A row
/// is not less done when a later run skips it, or does not get at it since another one is.
/// @param keepsReports  otherwise as KeepLittle() leaves them
/// @param hears         gets each result that counts as it stands in the log, also when a later one of the
///                      row counts instead of it
/// @param diagnostics   hears of lines that are no results, and of rows that are others in different logs
/// @throws base::Error  a log cannot be read
std::vector<RowResult> ReadLogs(const std::vector<std::string>& files, bool keepsReports,
                                const std::function<void(const RowResult&)>& hears,
                                base::Diagnostics& diagnostics);

/// Tells of rows of the table that no log has, and of results that are of no row of it, which are taken out.
/// @param name  of the table
/// @return how many rows are missing
std::size_t CompareWithTable(std::vector<RowResult>& results, const std::vector<BatchRow>& rows,
                             const std::string& name, base::Diagnostics& diagnostics);

} // namespace cli
