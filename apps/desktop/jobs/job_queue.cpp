// Conversions that wait for their turn.
// SPDX-License-Identifier: MIT

#include "job_queue.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace desktop {

namespace {

constexpr int keepAfterMs = 300;

bool IsOver(const Job& job)
{
    return job.state != Job::State::Waiting && job.state != Job::State::Running;
}

} // namespace

JobQueue::JobQueue(QString program, std::unique_ptr<JobStore> store)
    : _program(std::move(program)), _store(std::move(store))
{
    _jobs = _store->load(_unread);
    _soon.setSingleShot(true);
    _soon.setInterval(keepAfterMs);
    connect(&_soon, SIGNAL(timeout()), SLOT(keep()));
}

JobQueue::~JobQueue()
{
    blockSignals(true); // who listens goes as well
    end();
}

QStringList JobQueue::contentOptions() const
{
    QStringList options;
    for (const QString& folder : _contentFolders)
        options << QStringLiteral("--content=") + folder;
    return options;
}

int JobQueue::count(Job::State state) const
{
    return int(
        std::count_if(_jobs.begin(), _jobs.end(), [state](const Job& job) { return job.state == state; }));
}

QString JobQueue::trouble() const
{
    QStringList sentences{_unread, _unkept};
    sentences.removeAll(QString());
    return sentences.join(QLatin1Char(' '));
}

double JobQueue::seconds() const
{
    return isRunning() ? double(_clock.elapsed()) / 1000.0 : 0.0;
}

void JobQueue::add(const QVector<Job>& jobs)
{
    if (jobs.isEmpty())
        return;
    emit adding(int(_jobs.size()), int(_jobs.size() + jobs.size()) - 1);
    for (Job job : jobs) {
        job.id = JobStore::newId();
        _jobs.append(job);
    }
    emit added();
    changed();
}

void JobQueue::remove(QVector<int> rows)
{
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    rows.removeAll(_running);
    QVector<Job> gone;
    for (const int row : rows)
        gone.append(_jobs[row]);
    _store->removeFilesOf(gone);
    for (int behind = int(rows.size()); behind > 0;) {
        int first = behind - 1;
        while (first > 0 && rows[first - 1] == rows[first] - 1)
            --first;
        removeRun(rows[first], rows[behind - 1]);
        behind = first;
    }
    changed();
}

void JobQueue::removeRun(int first, int last)
{
    emit removing(first, last);
    _jobs.remove(first, last - first + 1);
    if (_running > last)
        _running -= last - first + 1;
    emit removed();
}

void JobQueue::changed()
{
    emit listChanged();
    emit stateChanged();
    _soon.start();
}

bool JobQueue::setCells(const QString& id, const QJsonObject& cells)
{
    const auto found =
        std::find_if(_jobs.begin(), _jobs.end(), [&id](const Job& job) { return job.id == id; });
    if (found == _jobs.end() || found->state == Job::State::Running || !found->isOwn())
        return false;
    const int row = int(found - _jobs.begin());
    found->cells = cells;
    retry({row});
    emit jobChanged(row);
    _soon.start();
    return true;
}

void JobQueue::retry(const QVector<int>& rows)
{
    for (const int row : rows) {
        Job& job = _jobs[row];
        if (!IsOver(job))
            continue;
        job.state = Job::State::Waiting;
        job.message.clear();
        emit jobChanged(row);
    }
    emit stateChanged();
    _soon.start();
}

void JobQueue::retryFailed()
{
    QVector<int> rows;
    for (int row = 0; row < _jobs.size(); ++row)
        if (_jobs[row].state == Job::State::Failed || _jobs[row].state == Job::State::Stopped)
            rows.append(row);
    retry(rows);
    start();
}

void JobQueue::start()
{
    _isStopping = false;
    if (!isRunning())
        startNext();
    emit stateChanged();
}

void JobQueue::stopAfterThis()
{
    _isStopping = isRunning();
    emit stateChanged();
}

void JobQueue::cancel()
{
    stopAfterThis();
    if (_process)
        _process->cancel();
}

void JobQueue::end()
{
    if (_process) {
        _process->end();
        Job& job = _jobs[_running];
        job.seconds = seconds();
        TakeResult(job, *_process);
        takeNewReport(job);
        _process.reset();
        _running = -1;
    }
    if (_soon.isActive())
        keep();
}

void JobQueue::startNext()
{
    const auto next = std::find_if(_jobs.begin(), _jobs.end(),
                                   [](const Job& job) { return job.state == Job::State::Waiting; });
    if (_isStopping || next == _jobs.end() || isRunning()) {
        _isStopping = _isStopping && isRunning();
        emit stateChanged();
        return;
    }
    run(int(next - _jobs.begin()));
}

void JobQueue::run(int row)
{
    Job& job = _jobs[row];
    _running = row;
    job.state = Job::State::Running;
    job.percent = -1;
    job.step.clear();
    job.message.clear();
    // Should the program fall, it is no page of this run.
    job.report.clear();
    _reportBefore = SumOf(_store->reportOf(job));
    _clock.start();
    _process = std::make_unique<JobProcess>();
    connect(_process.get(), SIGNAL(moved(int, QString)), SLOT(handleMoved(int, QString)));
    // Later, since the one that tells it goes then.
    connect(_process.get(), SIGNAL(ended()), SLOT(handleEnded()), Qt::QueuedConnection);
    QString reason;
    try {
        if (_program.isEmpty())
            reason = tr("The program \"gantrel\", which converts, is not beside this one.");
        else if (!job.isOwn() && SumOf(job.table) != job.tableSum)
            reason = tr("The table %1 has changed since it was opened; open it again.").arg(job.table);
        else
            _process->start(_program, optionsFor(job),
                            job.isOwn() ? QDir::homePath() : QFileInfo(job.table).absolutePath());
    } catch (const std::exception& error) {
        reason = tr("The job cannot be handed on: %1.").arg(QString::fromStdString(error.what()));
    }
    if (!reason.isEmpty()) {
        job.state = Job::State::Failed;
        job.message = reason;
        job.dials.clear();
        finish(row);
        return;
    }
    emit jobChanged(row);
    emit stateChanged();
    _soon.start(); // so that it is known as one that was interrupted, should the program fall
}

QStringList JobQueue::optionsFor(const Job& job) const
{
    const QString report = _store->reportOf(job);
    QStringList options{QStringLiteral("batch"), QStringLiteral("--progress-lines"),
                        QStringLiteral("--json")};
    if (!job.isOwn())
        return options << job.table << QStringLiteral("--row=%1").arg(job.row)
                       << QStringLiteral("--report=") + report << job.options;
    Job told = job;
    told.cells.insert(QStringLiteral("report"), report);
    return options << _store->writeTableOf(told) << QStringLiteral("--row=1") << contentOptions();
}

void JobQueue::handleMoved(int percent, const QString& step)
{
    if (!isRunning())
        return;
    Job& job = _jobs[_running];
    job.percent = percent;
    job.step = step;
    emit jobChanged(_running);
}

void JobQueue::handleEnded()
{
    if (!isRunning() || sender() != _process.get())
        return;
    Job& job = _jobs[_running];
    job.seconds = seconds();
    TakeResult(job, *_process);
    finish(_running);
}

/// One that has failed may have left the page of an earlier run.
void JobQueue::takeNewReport(Job& job) const
{
    const QString report = _store->reportOf(job);
    const QByteArray sum = SumOf(report);
    if (!sum.isEmpty() && (job.state == Job::State::Done || sum != _reportBefore))
        job.report = report;
}

/// Of a job that is over; the next one begins when what is waiting has been told of it.
void JobQueue::finish(int row)
{
    takeNewReport(_jobs[row]);
    _process.reset();
    _running = -1;
    emit jobChanged(row);
    emit stateChanged();
    keep();
    QMetaObject::invokeMethod(this, "startNext", Qt::QueuedConnection);
}

void JobQueue::keep()
{
    _soon.stop();
    const QString trouble = _store->keep(_jobs);
    if (trouble != std::exchange(_unkept, trouble))
        emit stateChanged();
}

} // namespace desktop
