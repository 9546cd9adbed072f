// Tables of work as spreadsheets and scripts write them.
// SPDX-License-Identifier: MIT

#include "apps/cli/batch/job_table.h"

#include "fuzz/target.h"

#include <algorithm>

namespace {

using Kind = cli::JobColumn::Kind;

std::vector<std::string> Seeds()
{
    return {"source,target,name,dial\r\na,b,\"V\"\"x\"\"\",\"Wide=1; Bulge=0.5\"\r\n",
            "\xEF\xBB\xBFSource;Name;flag\nx;\"of two\nlines\";yes\n;;\n", "name\tflag\rx y\tno\r",
            R"([{"source": "a", "dial": {"Wide": 1}, "flag": true}, {"name": "b", "dial": ["X=1"]}])",
            "[{\"name\": \"[{\\\"\", \"name\": 2},\r\n7]"};
}

std::size_t LinesOf(std::string_view text)
{
    return 1 + static_cast<std::size_t>(
                   std::count_if(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }));
}

void Feed(std::string_view bytes)
{
    const std::vector<cli::JobColumn> columns{
        {"source"}, {"target"}, {"name"}, {"dial", Kind::List}, {"flag", Kind::Flag}};
    const cli::JobTable table = cli::ReadJobTable(bytes, columns);
    const std::size_t lines = LinesOf(bytes);
    for (const cli::TableProblem& problem : table.problems)
        fuzz::Demand(problem.line >= 1 && problem.line <= lines, "a problem is in the text");
    if (!table.problems.empty())
        return;
    std::string written = "source,target,name,dial,flag\n";
    std::vector<std::string> texts;
    for (const cli::JobRow& row : table.rows) {
        fuzz::Demand(row.line >= 1 && row.line <= lines, "a row is in the text");
        std::string line;
        for (const char* const column : {"source", "target", "name"}) {
            const std::vector<std::string>* const values = row.find(column);
            line += (values ? cli::CsvCell(values->front()) : std::string()) + ',';
            texts.push_back(values ? values->front() : std::string());
        }
        // A row that says nothing else would be a blank line.
        written += line + ",yes\n";
    }
    const cli::JobTable again = cli::ReadJobTable(written, columns);
    fuzz::Demand(again.problems.empty(), "a written table is read again");
    fuzz::Demand(again.rows.size() == table.rows.size(), "a written table has as many rows");
    for (std::size_t i = 0; i < again.rows.size(); ++i)
        for (std::size_t c = 0; c < 3; ++c) {
            const std::vector<std::string>* const values = again.rows[i].find(columns[c].name);
            fuzz::Demand((values ? values->front() : std::string()) == texts[3 * i + c],
                         "a written cell is read again");
        }
}

const fuzz::Registration registration({"job_table", Seeds, Feed});

} // namespace
