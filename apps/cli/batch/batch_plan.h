// What a batch is to do, checked before any of it begins.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/row_command.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dson {
struct Document;
} // namespace dson

namespace cli {

/// One row of the table.
struct BatchRow {
    std::size_t number = 0;             ///< among the rows, from 1
    std::size_t line = 0;               ///< of the table
    std::vector<std::string> arguments; ///< of the program; see ArgumentsOf()
    std::filesystem::path source, target;
    std::filesystem::path list; ///< of names of single morphs; empty for none
    /// What it writes, which no other row does, so that it is known again when the rest of it has changed; of
    /// one that writes nothing all that it says.
    std::string identity;
};

/// From the first to the last, both of them in it.
struct RowRange {
    std::size_t first = 1, last = 1;
};

/// "7", or "7-12".
/// @throws UsageError  it is neither
RowRange ParseRowRange(const std::string& text);

/// All rows of a table, each with the defaults filled in.
/// @param name      of the table, for messages
/// @throws UsageError  rows cannot be meant, or two of them would write the same file; nothing is left untold
std::vector<BatchRow> PlanBatch(const JobTable& table, const std::string& name, const JobRow& defaults);

/// Some rows of a table that has been found right as a whole; the others are not looked at.
/// @throws UsageError  the table has fewer rows, or those cannot be meant
std::vector<BatchRow> PlanRows(const JobTable& table, const RowRange& range, const std::string& name,
                               const JobRow& defaults);

/// What a source's file calls the figure that would be converted; nothing where it has none.
std::optional<std::string> LabelOfSource(const dson::Document& document);

} // namespace cli
