// Rows of a batch's table as jobs.
// SPDX-License-Identifier: MIT

#include "job_table_opening.h"

#include <QFileInfo>
#include <QJsonArray>

namespace desktop {

namespace {

/// Where a text means several values, divided by semicolons.
bool IsList(const QString& column)
{
    for (const char* const list : {"base", "content", "dial", "morphs"})
        if (column == QLatin1String(list))
            return true;
    return false;
}

/// @param arguments  a command, and options as "--name=value" or "--name"
QJsonObject CellsOf(const QJsonArray& arguments)
{
    QJsonObject cells{{QStringLiteral("command"), arguments.first()}};
    for (int i = 1; i < arguments.size(); ++i) {
        const QString argument = arguments[i].toString().mid(2);
        const int end = argument.indexOf(QLatin1Char('='));
        const QString name = argument.left(end);
        const QJsonValue value = end < 0 ? QStringLiteral("yes") : argument.mid(end + 1);
        if (!cells.contains(name)) {
            const bool isDivided = IsList(name) && value.toString().contains(QLatin1Char(';'));
            cells.insert(name, isDivided ? QJsonArray{value} : value);
            continue;
        }
        QJsonArray all =
            cells.value(name).isArray() ? cells.value(name).toArray() : QJsonArray{cells.value(name)};
        all.append(value);
        cells.insert(name, all);
    }
    return cells;
}

} // namespace

JobTableOpening::JobTableOpening(const QString& program, const QString& table, const QStringList& options)
    : _table(QFileInfo(table).absoluteFilePath()), _options(options), _sum(SumOf(_table))
{
    connect(&_process, SIGNAL(ended()), SLOT(handleEnded()), Qt::QueuedConnection);
    _process.start(
        program,
        QStringList{QStringLiteral("batch"), _table, QStringLiteral("--list"), QStringLiteral("--json")} +
            options,
        QFileInfo(_table).absolutePath());
}

void JobTableOpening::handleEnded()
{
    const QString reason = _process.failure();
    if (!reason.isEmpty()) {
        emit failed(reason);
        return;
    }
    QVector<Job> jobs;
    for (const QJsonValue& value : _process.report().value(QLatin1String("rows")).toArray()) {
        const QJsonObject row = value.toObject();
        Job job;
        job.cells = CellsOf(row.value(QLatin1String("arguments")).toArray());
        job.table = _table;
        job.row = row.value(QLatin1String("row")).toInt();
        job.tableSum = _sum;
        job.options = _options;
        jobs.append(job);
    }
    emit read(jobs);
}

} // namespace desktop
