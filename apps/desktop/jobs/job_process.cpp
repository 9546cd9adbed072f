// A conversion, or another run of the command line's program, in a process of its own.
// SPDX-License-Identifier: MIT

#include "job_process.h"

#include "program_folders.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSignalBlocker>

namespace desktop {

namespace {

const QLatin1String progressMark("progress: ");
const QLatin1String programMark("gantrel: ");
constexpr int patienceMs = 10000; ///< within which a conversion puts away what it has begun

/// Morphs whose dials show the whole shape: the full one, or its parts.
QStringList ShownDials(const QJsonArray& created)
{
    QStringList full, all;
    for (const QJsonValue& value : created) {
        const QJsonObject morph = value.toObject();
        const QString name = morph.value(QLatin1String("name")).toString();
        all.append(name);
        if (morph.value(QLatin1String("kind")).toString() == QLatin1String("full"))
            full.append(name);
    }
    return full.isEmpty() ? all : full;
}

QString NewMorphs(const QJsonArray& created)
{
    QStringList labels;
    for (const QJsonValue& morph : created)
        labels.append(morph.toObject().value(QLatin1String("label")).toString());
    return labels.join(QStringLiteral(", "));
}

/// Of single morphs, each by itself, or of a character.
bool IsOfMorphs(const QJsonObject& report)
{
    return report.contains(QLatin1String("created"));
}

QJsonArray CreatedIn(const QJsonObject& report)
{
    return report.value(IsOfMorphs(report) ? QLatin1String("created") : QLatin1String("created_morphs"))
        .toArray();
}

/// What was left out, and what else there is to know.
QStringList NotesIn(const QJsonObject& report)
{
    QStringList told;
    for (const QJsonValue& value : report.value(QLatin1String("skipped")).toArray()) {
        const QJsonObject morph = value.toObject();
        told.append(JobProcess::tr("%1 was left out: %2.")
                        .arg(morph.value(QLatin1String("name")).toString(),
                             morph.value(QLatin1String("reason")).toString()));
    }
    for (const QJsonValue& warning : report.value(QLatin1String("warnings")).toArray())
        told.append(warning.toString());
    return told;
}

QString Lines(QStringList told)
{
    told.removeAll(QString());
    told.removeDuplicates();
    return told.join(QLatin1Char('\n'));
}

void TakeReport(Job& job, const QJsonObject& report)
{
    const QJsonArray created = CreatedIn(report);
    // All of a figure's single morphs at once show no shape that anybody has made.
    job.dials = IsOfMorphs(report) ? QStringList() : ShownDials(created);
    job.message = Lines(QStringList{NewMorphs(created)} + NotesIn(report));
}

/// Also one that has failed may have saved something.
QString WhatIsLeftOf(const QJsonObject& result)
{
    const QJsonObject report = result.value(QLatin1String("report")).toObject();
    const QString created = NewMorphs(CreatedIn(report));
    QStringList told;
    if (!created.isEmpty())
        told.append(JobProcess::tr("Saved before that: %1.").arg(created));
    return Lines(told + NotesIn(report) + NotesIn(result));
}

} // namespace

QString CommandLineProgram()
{
    const std::filesystem::path folder = app::ProgramFolder();
    for (const char* const place : {"gantrel", "../cli/gantrel"}) {
        const QFileInfo file(QString::fromStdString((folder / place).lexically_normal().u8string()));
        if (file.isFile() && file.isExecutable())
            return file.absoluteFilePath();
    }
    return QString();
}

JobProcess::JobProcess(QObject* parent) : QObject(parent)
{
    _process.setInputChannelMode(QProcess::ManagedInputChannel);
    connect(&_process, SIGNAL(readyReadStandardError()), SLOT(readErrors()));
    connect(&_process, SIGNAL(finished(int, QProcess::ExitStatus)), SLOT(handleEnd()));
    connect(&_process, SIGNAL(errorOccurred(QProcess::ProcessError)),
            SLOT(handleError(QProcess::ProcessError)));
}

JobProcess::~JobProcess()
{
    end();
}

void JobProcess::start(const QString& program, const QStringList& arguments, const QString& folder)
{
    _process.setWorkingDirectory(folder);
    _process.begin(program, arguments, QIODevice::ReadOnly);
}

void JobProcess::cancel()
{
    if (!_wasCancelled) {
        _process.terminate();
        _sinceCancelled.start();
    } else if (_sinceCancelled.hasExpired(patienceMs)) {
        _process.kill();
    }
    _wasCancelled = true;
}

void JobProcess::end()
{
    _process.disconnect(this);
    if (_process.state() == QProcess::NotRunning)
        return;
    _wasCancelled = true;
    _process.terminate();
    if (!_process.waitForFinished(patienceMs)) {
        _process.kill();
        _process.waitForFinished();
    }
    const QSignalBlocker quiet(this);
    takeOutput();
}

void JobProcess::readErrors()
{
    _line += _process.readAllStandardError();
    int percent = -1;
    QString step;
    for (int end; (end = _line.indexOf('\n')) >= 0; _line.remove(0, end + 1)) {
        const QString line = QString::fromUtf8(_line.left(end));
        if (!line.startsWith(progressMark)) {
            _told.append(line);
            continue;
        }
        static const QRegularExpression form(QStringLiteral("^(?:(\\d+) %  )?(.*)$"));
        const QRegularExpressionMatch found = form.match(line.mid(progressMark.size()));
        percent = found.captured(1).isEmpty() ? -1 : found.captured(1).toInt();
        step = found.captured(2);
    }
    if (!step.isEmpty())
        emit moved(percent, step);
}

void JobProcess::takeOutput()
{
    readErrors();
    _report = QJsonDocument::fromJson(_process.readAllStandardOutput()).object();
}

void JobProcess::handleEnd()
{
    takeOutput();
    emit ended();
}

void JobProcess::handleError(QProcess::ProcessError error)
{
    if (error != QProcess::FailedToStart)
        return; // its end is told as well
    _notStarted = JobProcess::tr("%1 cannot be started: %2.").arg(_process.program(), _process.errorString());
    // Who starts it may not be ready yet to hear of its end.
    QMetaObject::invokeMethod(this, "ended", Qt::QueuedConnection);
}

QString JobProcess::failure() const
{
    if (!_notStarted.isEmpty())
        return _notStarted;
    if (!_report.isEmpty())
        return _report.value(QLatin1String("error")).toString();
    if (_process.exitStatus() == QProcess::CrashExit)
        return JobProcess::tr("The process that converts came to an unexpected end.");
    const QString last = lastWords();
    return last.isEmpty() ? JobProcess::tr("The process that converts said nothing.") : last;
}

QString JobProcess::lastWords() const
{
    const QString error = _report.value(QLatin1String("error")).toString();
    const QString last = _told.isEmpty() ? QString() : _told.last();
    return error.isEmpty() && last.startsWith(programMark) ? last.mid(programMark.size()) : error;
}

void TakeResult(Job& job, const JobProcess& process)
{
    const QJsonObject result = process.report().value(QLatin1String("results")).toArray().first().toObject();
    const QString status = result.value(QLatin1String("status")).toString();
    job.seconds = result.value(QLatin1String("seconds")).toDouble(job.seconds);
    if (status == QLatin1String("done") || status == QLatin1String("skipped")) {
        job.state = Job::State::Done;
        if (status == QLatin1String("done"))
            TakeReport(job, result.value(QLatin1String("report")).toObject());
        else
            job.message = JobProcess::tr("It was done before, and nothing has changed since.");
        return;
    }
    job.dials.clear();
    const QString reason = result.value(QLatin1String("error")).toString();
    if (process.wasCancelled()) {
        job.state = Job::State::Stopped;
        job.message = Lines({JobProcess::tr("It was stopped."),
                             reason.isEmpty() ? process.lastWords() : reason, WhatIsLeftOf(result)});
    } else {
        job.state = Job::State::Failed;
        job.message = Lines({reason.isEmpty() ? process.failure() : reason, WhatIsLeftOf(result)});
    }
}

} // namespace desktop
