// Where the list of jobs is kept.
// SPDX-License-Identifier: MIT

#pragma once

#include "job.h"

#include <QLockFile>
#include <QTemporaryDir>

#include <memory>

namespace desktop {

/// A folder of the account, which one window at a time has; a second one keeps its list only as long as it
/// lives.
class JobStore {
public:
    explicit JobStore(const QString& folder = usualFolder());
    static QString usualFolder();

    QString place() const { return _place; } ///< where the list is, and how long: a sentence

    /// Files of jobs that the list has no more go, unless somebody may still want to look into another list.
    /// @param trouble  receives why there is no list where one was kept: a sentence
    QVector<Job> load(QString& trouble) const;
    /// @return why it could not be kept: a sentence; empty where it is
    QString keep(const QVector<Job>& jobs) const;

    static QString newId(); ///< of a job
    /// A table of this one job, beside which a batch keeps what it knows of the job's earlier runs. Another
    /// job has another one: what that has saved is not this one's to replace.
    /// @throws std::exception  it cannot be written
    QString writeTableOf(const Job& job) const;
    QString reportOf(const Job& job) const; ///< its page's name
    void removeFilesOf(const QVector<Job>& jobs) const;

private:
    void makeFolders() const;
    void removeFilesOfOthers(const QVector<Job>& jobs) const;
    template <class Condition>
    void removeFiles(const Condition& isToGo) const;
    QString putAside(const QString& reason) const; ///< the list; what is told of it
    QString path(const QString& name) const;

    QString _folder, _place;
    std::unique_ptr<QLockFile> _lock;
    std::unique_ptr<QTemporaryDir> _temporary;
};

} // namespace desktop
