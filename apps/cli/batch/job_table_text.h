// What is the same in all tables of work, however they are written.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/job_table.h"

namespace cli {

/// Bytes up to the end of the line, which is among them; of "\n", "\r\n" and "\r".
std::size_t LineLength(std::string_view text);

std::string_view WithoutByteOrderMark(std::string_view text);

/// Lines that are no text.
std::vector<TableProblem> FindUnreadable(std::string_view text);

/// In quotation marks, cut where it is long.
std::string Shown(const std::string& text);

/// By its name in any spelling.
/// @return null when there is none, which is told
const JobColumn* FindColumn(const std::vector<JobColumn>& columns, const std::string& name, std::size_t line,
                            std::vector<TableProblem>& problems);

/// Takes what a text says in a column, or tells why it cannot be.
void AddCell(JobRow& row, const JobColumn& column, const std::string& text,
             std::vector<TableProblem>& problems);

} // namespace cli
