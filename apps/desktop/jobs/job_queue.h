// Conversions that wait for their turn.
// SPDX-License-Identifier: MIT

#pragma once

#include "job_process.h"
#include "job_store.h"

#include <QElapsedTimer>
#include <QTimer>

#include <memory>

namespace desktop {

/// Runs one job after the other, each in a process of its own with all processors that the settings give.
class JobQueue : public QObject {
    Q_OBJECT

public:
    /// @param program  the command line's; empty where there is none
    JobQueue(QString program, std::unique_ptr<JobStore> store);
    ~JobQueue() override;

    const QVector<Job>& jobs() const { return _jobs; }
    const JobStore& store() const { return *_store; }
    QString program() const { return _program; }
    void setContentFolders(const QStringList& folders) { _contentFolders = folders; }
    /// Options that give them to the command line's program.
    QStringList contentOptions() const;

    bool isRunning() const { return _running >= 0; }
    bool isStopping() const { return _isStopping; }
    int running() const { return _running; } ///< -1 for none
    int count(Job::State state) const;
    double seconds() const; ///< since the present one began
    /// Since the list was read: why it is not there, or could not be kept.
    QString trouble() const;

    void add(const QVector<Job>& jobs);
    /// But not one that runs.
    void remove(QVector<int> rows);
    /// @return  false, and nothing has changed, for one that runs, is a table's, or is there no more
    bool setCells(const QString& id, const QJsonObject& cells);
    void retry(const QVector<int>& rows); ///< those that are neither waiting nor running
    /// Ends what runs, also when that takes a while, and keeps the list.
    void end();

public slots:
    void start();
    void stopAfterThis();
    void cancel(); ///< what runs, and begins nothing more
    void retryFailed();

signals:
    void adding(int first, int last);
    void added();
    void removing(int first, int last);
    void removed();
    void listChanged(); ///< behind all of these
    void jobChanged(int row);
    void stateChanged(); ///< running or not, or what can be told of it

private slots:
    void startNext();
    void handleMoved(int percent, const QString& step);
    void handleEnded();
    void keep();

private:
    void removeRun(int first, int last);
    void run(int row);
    QStringList optionsFor(const Job& job) const;
    void takeNewReport(Job& job) const;
    void finish(int row);
    void changed();

    QString _program;
    std::unique_ptr<JobStore> _store;
    QStringList _contentFolders;
    QVector<Job> _jobs;
    QString _unread, _unkept; ///< why there is no list, and why it is not kept
    QByteArray _reportBefore; ///< the sum of what the running one had
    int _running = -1;
    bool _isStopping = false;
    QElapsedTimer _clock;
    QTimer _soon; ///< keeps the list, which may be long and changes often
    std::unique_ptr<JobProcess> _process;
};

} // namespace desktop
