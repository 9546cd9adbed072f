// What a batch is to do, checked before any of it begins.
// SPDX-License-Identifier: MIT

#pragma once

#include "job_table.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace dson {
struct Document;
} // namespace dson

namespace cli {

struct ConversionRequest;

/// One row of the table.
struct BatchRow {
    std::size_t number = 0; ///< among the rows, from 1
    std::size_t line = 0;   ///< of the table
    /// Of the program: the command's name, then options as "--name=value", or "--name" for a flag.
    std::vector<std::string> arguments;
    std::filesystem::path source, target;
    /// What it writes, which no other row does, so that it is known again when the rest of it has changed; of
    /// one that writes nothing all that it says.
    std::string identity;
};

/// What the options of conversions are called in a table. Everything a conversion knows is a column.
std::vector<JobColumn> ConversionColumns();
/// What the batch's own command line says for rows that say nothing, as a row says it.
JobRow DefaultsOf(const CLI::App& command);

/// All rows of a table, each with the defaults filled in.
/// @param name      of the table, for messages
/// @throws UsageError  rows cannot be meant, or two of them would write the same file; nothing is left untold
std::vector<BatchRow> PlanBatch(const std::string& text, const std::string& name, const JobRow& defaults);

/// @throws UsageError  the arguments cannot be meant
ConversionRequest ParseConversion(const std::vector<std::string>& arguments);

/// As a shell takes it.
std::string CommandText(const std::vector<std::string>& arguments);

/// What a source's file calls the figure that would be converted; nothing where it has none.
std::optional<std::string> LabelOfSource(const dson::Document& document);

} // namespace cli
