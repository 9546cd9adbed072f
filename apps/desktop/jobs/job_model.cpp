// The list of jobs as a table.
// SPDX-License-Identifier: MIT

#include "job_model.h"

#include "job_queue.h"

#include <QFileInfo>
#include <QTimer>

#include <cmath>

namespace desktop {

namespace {

QString StateText(Job::State state)
{
    switch (state) {
    case Job::State::Running:
        return JobModel::tr("Running");
    case Job::State::Done:
        return JobModel::tr("Done");
    case Job::State::Failed:
        return JobModel::tr("Failed");
    case Job::State::Stopped:
        return JobModel::tr("Stopped");
    default:
        return JobModel::tr("Waiting");
    }
}

int PercentOf(const Job& job)
{
    return job.state == Job::State::Done ? 100 : job.state == Job::State::Running ? job.percent : -1;
}

} // namespace

QString TimeText(double seconds)
{
    const int all = int(std::ceil(seconds));
    const QString rest = QStringLiteral("%1:%2").arg(all / 60 % 60).arg(all % 60, 2, 10, QLatin1Char('0'));
    return all < 3600 ? rest : QStringLiteral("%1:%2").arg(all / 3600).arg(rest, 5, QLatin1Char('0'));
}

JobModel::JobModel(JobQueue& queue, QObject* parent) : QAbstractTableModel(parent), _queue(queue)
{
    connect(&queue, SIGNAL(adding(int, int)), SLOT(handleAdding(int, int)));
    connect(&queue, SIGNAL(added()), SLOT(handleAdded()));
    connect(&queue, SIGNAL(removing(int, int)), SLOT(handleRemoving(int, int)));
    connect(&queue, SIGNAL(removed()), SLOT(handleRemoved()));
    connect(&queue, SIGNAL(jobChanged(int)), SLOT(handleJobChanged(int)));
    auto* const clock = new QTimer(this);
    clock->start(1000);
    connect(clock, SIGNAL(timeout()), SLOT(updateTime()));
}

int JobModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(_queue.jobs().size());
}

int JobModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant JobModel::data(const QModelIndex& index, int role) const
{
    const auto column = Column(index.column());
    if (role == Qt::DisplayRole)
        return text(index.row(), column).section(QLatin1Char('\n'), 0, 0);
    if (role == Qt::ToolTipRole)
        return text(index.row(), column);
    if (role == percentRole)
        return PercentOf(_queue.jobs()[index.row()]);
    if (role == Qt::TextAlignmentRole && column == Time)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QString JobModel::text(int row, Column column) const
{
    const Job& job = _queue.jobs()[row];
    switch (column) {
    case Name:
        return NameOf(job);
    case Source:
        return FileOf(job, "source");
    case Target:
        return FileOf(job, "target");
    case State:
        return StateText(job.state);
    case Progress:
        return PercentOf(job) < 0 ? QString() : tr("%1 %").arg(PercentOf(job));
    case Time:
        if (job.state == Job::State::Waiting)
            return QString();
        return TimeText(job.state == Job::State::Running ? _queue.seconds() : job.seconds);
    case Message:
        return job.state == Job::State::Running ? job.step : job.message;
    default:
        return {};
    }
}

QVariant JobModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    const QString titles[] = {tr("Name"),     tr("Source"), tr("Target"), tr("State"),
                              tr("Progress"), tr("Time"),   tr("Message")};
    return titles[section];
}

void JobModel::handleAdding(int first, int last)
{
    beginInsertRows({}, first, last);
}

void JobModel::handleAdded()
{
    endInsertRows();
}

void JobModel::handleRemoving(int first, int last)
{
    beginRemoveRows({}, first, last);
}

void JobModel::handleRemoved()
{
    endRemoveRows();
}

void JobModel::handleJobChanged(int row)
{
    emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

void JobModel::updateTime()
{
    if (_queue.isRunning())
        emit dataChanged(index(_queue.running(), Time), index(_queue.running(), Time));
}

} // namespace desktop
