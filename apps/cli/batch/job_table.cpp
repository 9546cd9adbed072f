// Tables of work to do, a row a piece of it, as spreadsheets and scripts write them.
// SPDX-License-Identifier: MIT

#include "batch/job_table.h"

#include "batch/job_table_json.h"
#include "batch/job_table_text.h"

#include <algorithm>

#include <csv.h>
#include <fmt/format.h>

namespace cli {

namespace {

struct CsvRow {
    std::size_t line = 0;
    std::vector<std::string> cells;
};

/// Stands for a blank at either end of a cell without quotes, which the parser would drop. No text has it.
constexpr char outerBlank = '\0';

/// Marks outer blanks in lines, of which cells with quotes may take several.
class BlankMarker {
public:
    explicit BlankMarker(char divider) : _divider(divider) {}

    std::string marked(std::string_view line)
    {
        std::string text(line);
        std::size_t at = _isInQuotes ? endOfQuotes(text, 0) : 0;
        while (at < text.size()) {
            const std::size_t first = std::min(text.find_first_not_of(' ', at), text.size());
            if (first < text.size() && text[first] == '"')
                at = endOfQuotes(text, first + 1);
            const std::size_t end = std::min(text.find_first_of({_divider, '\r', '\n'}, at), text.size());
            if (first < end && text[first] != '"') {
                std::fill(text.begin() + static_cast<std::ptrdiff_t>(at),
                          text.begin() + static_cast<std::ptrdiff_t>(first), outerBlank);
                for (std::size_t last = end; text[last - 1] == ' '; --last)
                    text[last - 1] = outerBlank;
            }
            at = end + 1;
        }
        return text;
    }

private:
    /// Behind the mark at their end, or at the line's.
    std::size_t endOfQuotes(const std::string& text, std::size_t at)
    {
        _isInQuotes = true;
        for (; at < text.size(); ++at)
            if (text[at] == '"') {
                if (text.compare(at, 2, "\"\"") == 0) {
                    ++at;
                    continue;
                }
                _isInQuotes = false;
                return at + 1;
            }
        return at;
    }

    char _divider;
    bool _isInQuotes = false;
};

/// Gives the parser one line after the other, so that it is known where a row began.
class CsvReader {
public:
    CsvReader(char divider, std::vector<TableProblem>& problems) : _marker(divider), _problems(problems)
    {
        if (csv_init(&_parser, CSV_STRICT | CSV_STRICT_FINI) != 0)
            throw std::bad_alloc();
        csv_set_delim(&_parser, static_cast<unsigned char>(divider));
    }
    ~CsvReader() { csv_free(&_parser); }
    CsvReader(const CsvReader&) = delete;
    CsvReader& operator=(const CsvReader&) = delete;

    std::vector<CsvRow> read(std::string_view text)
    {
        bool isWhole = true;
        while (isWhole && !text.empty()) {
            const std::string_view line = text.substr(0, LineLength(text));
            text.remove_prefix(line.size());
            isWhole = takeLine(line);
        }
        if (isWhole && csv_fini(&_parser, takeCell, endRow, this) != 0)
            fail("the quotation mark at the beginning of a cell has no other one at its end");
        return std::move(_rows);
    }

private:
    bool takeLine(std::string_view line)
    {
        ++_line;
        if (!_isWithinRow)
            _row.line = _line;
        _isWithinRow = _isWithinRow || line.find_first_not_of(" \t\r\n") != line.npos;
        const std::string marked = _marker.marked(line);
        if (csv_parse(&_parser, marked.data(), marked.size(), takeCell, endRow, this) == marked.size())
            return true;
        if (csv_error(&_parser) == CSV_ENOMEM)
            throw std::bad_alloc();
        fail("a quotation mark stands where none may; a cell with one has quotation marks around it, and "
             "two for each in it");
        return false;
    }

    void fail(const char* what) { _problems.push_back({_row.line, what}); }

    static void takeCell(void* bytes, std::size_t size, void* self)
    {
        static_cast<CsvReader*>(self)->_row.cells.emplace_back(static_cast<const char*>(bytes), size);
    }
    static void endRow(int, void* self)
    {
        CsvReader& reader = *static_cast<CsvReader*>(self);
        reader._rows.push_back(std::move(reader._row));
        reader._row = {};
        reader._row.line = reader._line + 1;
        reader._isWithinRow = false;
    }

    csv_parser _parser{};
    BlankMarker _marker;
    std::vector<TableProblem>& _problems;
    std::size_t _line = 0;
    bool _isWithinRow = false;
    CsvRow _row;
    std::vector<CsvRow> _rows;
};

/// The one that the line of names has most of.
char DividerOf(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \r\n"), text.size()));
    const std::string_view line = text.substr(0, LineLength(text));
    char best = ',';
    for (const char divider : {';', '\t'})
        if (std::count(line.begin(), line.end(), divider) > std::count(line.begin(), line.end(), best))
            best = divider;
    return best;
}

std::string WithoutOuterBlanks(std::string text)
{
    text.erase(std::remove(text.begin(), text.end(), outerBlank), text.end());
    return text;
}

/// Spreadsheets pad no cells: what stands around words was written there. Around files, numbers and the
/// values of lists it means nothing.
std::string CellOf(const JobColumn& column, std::string text)
{
    if (column.kind != JobColumn::Kind::Words)
        return WithoutOuterBlanks(std::move(text));
    std::replace(text.begin(), text.end(), outerBlank, ' ');
    return text;
}

/// Columns by their place in the lines; null for one that says nothing.
std::vector<const JobColumn*> ReadHeader(const CsvRow& header, const std::vector<JobColumn>& columns,
                                         std::vector<TableProblem>& problems)
{
    std::vector<const JobColumn*> found;
    for (const std::string& name : header.cells) {
        const JobColumn* column = nullptr;
        if (!name.empty()) // spreadsheets write dividers behind the last column
            column = FindColumn(columns, WithoutOuterBlanks(name), header.line, problems);
        if (column && std::count(found.begin(), found.end(), column) > 0)
            problems.push_back({header.line, fmt::format("there are two columns \"{}\"", column->name)});
        found.push_back(column);
    }
    return found;
}

bool IsBlank(const CsvRow& row)
{
    return std::all_of(row.cells.begin(), row.cells.end(),
                       [](const std::string& cell) { return cell.empty(); });
}

JobRow ReadRow(const CsvRow& row, const std::vector<const JobColumn*>& columns, bool namesAreKnown,
               std::vector<TableProblem>& problems)
{
    JobRow read;
    read.line = row.line;
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
        const std::string& cell = row.cells[i];
        if (cell.empty())
            continue;
        if (i >= columns.size() || (!columns[i] && namesAreKnown)) {
            problems.push_back({row.line, fmt::format("{} in cell {} is in no column that has a name",
                                                      Shown(WithoutOuterBlanks(cell)), i + 1)});
            break;
        }
        if (columns[i])
            AddCell(read, *columns[i], CellOf(*columns[i], cell), problems);
    }
    return read;
}

JobTable ReadCsv(std::string_view text, const std::vector<JobColumn>& columns)
{
    JobTable table;
    const std::vector<CsvRow> rows = CsvReader(DividerOf(text), table.problems).read(text);
    const auto header = std::find_if_not(rows.begin(), rows.end(), IsBlank);
    if (header == rows.end()) {
        if (table.problems.empty())
            table.problems.push_back({1, "there is no line with the names of columns"});
        return table;
    }
    std::vector<TableProblem> wrongNames;
    const std::vector<const JobColumn*> places = ReadHeader(*header, columns, wrongNames);
    table.problems.insert(table.problems.begin(), wrongNames.begin(), wrongNames.end());
    for (auto row = header + 1; row != rows.end(); ++row)
        if (!IsBlank(*row))
            table.rows.push_back(ReadRow(*row, places, wrongNames.empty(), table.problems));
    return table;
}

bool NeedsQuotes(const std::string& text)
{
    return text.find_first_of(",;\t\"\r\n") != text.npos ||
           (!text.empty() && (text.front() == ' ' || text.back() == ' '));
}

} // namespace

const std::vector<std::string>* JobRow::find(const std::string& column) const
{
    const auto found =
        std::find_if(cells.begin(), cells.end(), [&](const Cell& cell) { return cell.first == column; });
    return found == cells.end() ? nullptr : &found->second;
}

JobTable ReadJobTable(std::string_view text, const std::vector<JobColumn>& columns)
{
    JobTable table;
    if (const std::vector<TableProblem> unreadable = FindUnreadable(text); !unreadable.empty()) {
        table.problems = unreadable;
        return table;
    }
    text = WithoutByteOrderMark(text);
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    table = begin != text.npos && text[begin] == '[' ? ReadJsonTable(text, columns) : ReadCsv(text, columns);
    std::stable_sort(table.problems.begin(), table.problems.end(),
                     [](const TableProblem& a, const TableProblem& b) { return a.line < b.line; });
    return table;
}

std::string CsvCell(const std::string& text)
{
    if (!NeedsQuotes(text))
        return text;
    std::string cell = "\"";
    for (const char c : text)
        cell += c == '"' ? std::string("\"\"") : std::string(1, c);
    return cell + '"';
}

} // namespace cli
