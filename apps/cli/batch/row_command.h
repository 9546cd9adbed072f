// The commands that rows of a batch can be.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/job_table.h"
#include "conversions/conversion.h"
#include "morphs/morph_conversion.h"

#include <string>
#include <variant>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace cli {

/// A conversion of a character, or of single morphs.
using RowRequest = std::variant<ConversionRequest, MorphConversionRequest>;

/// What the options of all these commands are called in a table, and "command", which names one of them.
std::vector<JobColumn> RowColumns();
/// What the batch's own command line says for rows that say nothing, as a row says it.
JobRow DefaultsOf(const CLI::App& command);

/// The command's name, then options as "--name=value", or "--name" for a flag. A row is of the command that
/// it names; one that does not, of single morphs when it says which, or the defaults do.
/// @param problems  hear of cells that the row's command has no option for; defaults may be for other rows
std::vector<std::string> ArgumentsOf(const JobRow& row, const JobRow& defaults,
                                     std::vector<TableProblem>& problems);

bool IsOfMorphs(const std::vector<std::string>& arguments);
/// Of an option that stands once at most; empty without.
std::string ValueIn(const std::vector<std::string>& arguments, const std::string& option);

/// @throws UsageError  the arguments cannot be meant
RowRequest ParseRow(const std::vector<std::string>& arguments);

} // namespace cli
