// Rows of a batch's table as jobs.
// SPDX-License-Identifier: MIT

#pragma once

#include "job_process.h"

namespace desktop {

/// Has the command line's program read and check the table, so that it means the same here and there.
class JobTableOpening : public QObject {
    Q_OBJECT

public:
    /// @param options  for what the rows leave open
    JobTableOpening(const QString& program, const QString& table, const QStringList& options);

    QString table() const { return _table; }

signals:
    void read(const QVector<desktop::Job>& jobs);
    void failed(const QString& reason); ///< a sentence

private slots:
    void handleEnded();

private:
    QString _table;
    QStringList _options;
    QByteArray _sum;
    JobProcess _process;
};

} // namespace desktop
