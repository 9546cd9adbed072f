// Rows of text for a terminal or for the next program.
// SPDX-License-Identifier: MIT

#include "table.h"

#include "color.h"

#include <algorithm>
#include <numeric>

#include <QString>

#include <sys/ioctl.h>
#include <unistd.h>

namespace cli {

namespace {

using Row = std::vector<QString>;

constexpr int gap = 2;
/// No column gets narrower: what is left of its texts would tell nothing.
constexpr int narrowest = 6;

/// A cell's own tabs and line ends would be taken for those between cells.
QString Cell(const std::string& text)
{
    QString cell = QString::fromStdString(text);
    for (QChar& c : cell)
        if (c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    return cell;
}

Row Cells(const std::vector<std::string>& texts)
{
    Row row(texts.size());
    std::transform(texts.begin(), texts.end(), row.begin(), Cell);
    return row;
}

std::vector<int> Widths(const std::vector<Row>& rows)
{
    std::vector<int> widths(rows.front().size(), 0);
    for (const Row& row : rows)
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    return widths;
}

/// The widest columns give first.
void Narrow(std::vector<int>& widths, int columns)
{
    const int gaps = gap * static_cast<int>(widths.size() - 1);
    for (int used = std::accumulate(widths.begin(), widths.end(), gaps); used > columns; --used) {
        const auto widest = std::max_element(widths.begin(), widths.end());
        if (*widest <= narrowest)
            return;
        --*widest;
    }
}

QString Fitted(const QString& cell, int width)
{
    const QChar dots(0x2026);
    if (cell.size() <= width)
        return cell.leftJustified(width);
    return cell.startsWith(QLatin1Char('/')) ? dots + cell.right(width - 1) : cell.left(width - 1) + dots;
}

QString AlignedLine(const Row& row, const std::vector<int>& widths)
{
    QString line;
    for (std::size_t column = 0; column < row.size(); ++column)
        line += Fitted(row[column], widths[column]) + QString(gap, QLatin1Char(' '));
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

QString TabbedLine(const Row& row)
{
    QString line;
    for (std::size_t column = 0; column < row.size(); ++column)
        line += (column > 0 ? QStringLiteral("\t") : QString()) + row[column];
    return line;
}

} // namespace

std::size_t OutputColumns()
{
    if (!::isatty(STDOUT_FILENO))
        return 0;
    constexpr std::size_t usual = 80;
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

std::string TableText(const Table& table, std::size_t columns)
{
    std::vector<Row> rows{Cells(table.headings)};
    std::transform(table.rows.begin(), table.rows.end(), std::back_inserter(rows), Cells);
    std::vector<int> widths = Widths(rows);
    Narrow(widths, static_cast<int>(columns));
    std::string text;
    for (const Row& row : rows) {
        const std::string line = (columns > 0 ? AlignedLine(row, widths) : TabbedLine(row)).toStdString();
        text += (&row == &rows.front() ? Colored(line, Color::Heading, Stream::Output) : line) + '\n';
    }
    return text;
}

} // namespace cli
