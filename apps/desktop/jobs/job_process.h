// A conversion, or another run of the command line's program, in a process of its own.
// SPDX-License-Identifier: MIT

#pragma once

#include "job.h"
#include "openhost/dependent_process.h"

#include <QElapsedTimer>
#include <QObject>

namespace desktop {

/// Where the command line's program is: beside this one, or where a build has it. Empty where it is nowhere.
QString CommandLineProgram();

/// Runs the command line's program once. What it does there falls without this one, and its memory is
/// returned to the last byte; the windows stay as quick as they are.
class JobProcess : public QObject {
    Q_OBJECT

public:
    explicit JobProcess(QObject* parent = nullptr);
    ~JobProcess() override;

    /// @param folder  that names count from
    void start(const QString& program, const QStringList& arguments, const QString& folder);
    /// Nothing is left half-written; asked again after some seconds, it ends at once.
    void cancel();
    /// Cancels, and ends it after a while in any case. What it said is there then; nothing is signalled.
    void end();

    bool wasCancelled() const { return _wasCancelled; }
    QJsonObject report() const { return _report; } ///< what it said; empty for nothing
    /// Why there is no report, or one of an error: a sentence.
    QString failure() const;
    /// What it said last of its own failure: a sentence; empty for nothing.
    QString lastWords() const;

signals:
    void moved(int percent, const QString& step); ///< -1 where the share is not known
    void ended();

private slots:
    void readErrors();
    void handleEnd();
    void handleError(QProcess::ProcessError error);

private:
    void takeOutput();

    openhost::DependentProcess _process;
    QByteArray _line;  ///< of standard error, the last one as far as it has come
    QStringList _told; ///< of standard error, what is no progress
    QJsonObject _report;
    QString _notStarted;
    bool _wasCancelled = false;
    QElapsedTimer _sinceCancelled;
};

/// Takes over what the report of a batch of one row says.
void TakeResult(Job& job, const JobProcess& process);

} // namespace desktop
