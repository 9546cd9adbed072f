// Rows of text for a terminal or for the next program.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace cli {

struct Table {
    std::vector<std::string> headings;
    std::vector<std::vector<std::string>> rows; ///< a cell for each heading
};

/// Columns of the terminal that stdout is; 0 where it is none.
std::size_t OutputColumns();

/// Aligned, with cells shortened where a line would not fit: names at their ends, paths at their beginnings.
/// Without columns for other programs: whole cells with tabs between them.
std::string TableText(const Table& table, std::size_t columns);

} // namespace cli
