// Tables of work to do, a row a piece of it, as spreadsheets and scripts write them.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cli {

/// What a table may say of each row.
struct JobColumn {
    enum class Kind {
        Text,
        Words, ///< text in which outer blanks mean something, as in names
        List,  ///< several values, divided by ";" in a text
        Flag   ///< yes or no
    };
    std::string name; ///< in small letters, with hyphens
    Kind kind = Kind::Text;
};

/// One piece of work. A cell that is empty says nothing and is not here; one of a flag has "yes" or "no".
struct JobRow {
    using Cell = std::pair<std::string, std::vector<std::string>>; ///< the column's name, and values

    const std::vector<std::string>* find(const std::string& column) const; ///< null for nothing said

    std::size_t line = 0; ///< of the text, the first is 1
    std::vector<Cell> cells;
};

/// Something wrong with the table, at a line of its text.
struct TableProblem {
    std::size_t line;
    std::string what;
};

struct JobTable {
    std::vector<JobRow> rows;
    std::vector<TableProblem> problems; ///< in the order of their lines; none means that all was understood
};

/// Comma-separated values as RFC 4180 has them, with a line of column names first, or a list of objects in
/// JSON, which begins with "[". Taken as well: a byte order mark, semicolons or tabs as dividers, any line
/// ends, column names in other case and with blanks or underscores, blanks around cells without quotes, which
/// belong to words and to nothing else.
JobTable ReadJobTable(std::string_view text, const std::vector<JobColumn>& columns);

/// A cell of comma-separated values, in quotes where that is needed.
std::string CsvCell(const std::string& text);

} // namespace cli
