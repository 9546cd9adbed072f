// Where the list of jobs is kept.
// SPDX-License-Identifier: MIT

#include "job_store.h"

#include "base/atomic_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QStandardPaths>
#include <QUuid>

namespace desktop {

namespace {

void Write(const QString& file, const QByteArray& bytes)
{
    // What is lost with the machine's power is the list's last change.
    base::WriteFileAtomically(file.toStdString(), {bytes.constData(), std::size_t(bytes.size())},
                              base::Durability::Temporary);
}

/// Of the job that a file belongs to, with whose id the file's name begins.
QString IdIn(const QString& file)
{
    return file.section(QLatin1Char('.'), 0, 0);
}

/// Those of lists that were kept before jobs had any, or of which one was copied, get others.
void GiveIds(QVector<Job>& jobs)
{
    QSet<QString> taken;
    for (Job& job : jobs) {
        if (job.id.isEmpty() || taken.contains(job.id))
            job.id = JobStore::newId();
        taken.insert(job.id);
    }
}

} // namespace

QString JobStore::usualFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/gantrel/jobs");
}

JobStore::JobStore(const QString& folder) : _folder(folder)
{
    makeFolders();
    _lock = std::make_unique<QLockFile>(path(QStringLiteral("lock")));
    _lock->setStaleLockTime(0); // a run may take days
    if (_lock->tryLock()) {
        _place = QCoreApplication::translate("desktop::JobStore", "The list and its reports are kept in %1.")
                     .arg(QDir::toNativeSeparators(_folder));
        return;
    }
    const bool isTaken = _lock->error() == QLockFile::LockFailedError;
    _place = isTaken ? QCoreApplication::translate("desktop::JobStore",
                                                   "Another window has the list that is kept; this one "
                                                   "goes with the program.")
                     : QCoreApplication::translate("desktop::JobStore",
                                                   "Nothing can be kept in %1; the list goes with the "
                                                   "program.")
                           .arg(QDir::toNativeSeparators(_folder));
    _temporary = std::make_unique<QTemporaryDir>();
    _folder = _temporary->path();
    makeFolders();
}

void JobStore::makeFolders() const
{
    for (const char* const name : {"reports", "tables"})
        QDir().mkpath(path(QLatin1String(name)));
}

QVector<Job> JobStore::load(QString& trouble) const
{
    QVector<Job> jobs;
    QFile file(path(QStringLiteral("list.json")));
    if (!file.exists()) {
        removeFilesOfOthers(jobs);
        return jobs;
    }
    QJsonParseError error{};
    const bool isOpen = file.open(QIODevice::ReadOnly);
    const QJsonDocument kept = QJsonDocument::fromJson(file.readAll(), &error);
    if (!isOpen || !kept.isArray()) {
        trouble = putAside(isOpen ? error.errorString() : file.errorString());
        return jobs;
    }
    for (const QJsonValue& one : kept.array())
        jobs.append(JobFrom(one.toObject()));
    GiveIds(jobs);
    removeFilesOfOthers(jobs);
    return jobs;
}

QString JobStore::putAside(const QString& reason) const
{
    // Somebody may want to look into it, and into those before it.
    QString aside = path(QStringLiteral("list-unreadable.json"));
    for (int number = 2; QFileInfo::exists(aside); ++number)
        aside = path(QStringLiteral("list-unreadable-%1.json").arg(number));
    if (QFile::rename(path(QStringLiteral("list.json")), aside))
        return QCoreApplication::translate("desktop::JobStore",
                                           "The list of jobs could not be read: %1. It is kept as %2.")
            .arg(reason, aside);
    return QCoreApplication::translate("desktop::JobStore",
                                       "The list of jobs could not be read: %1. It cannot be put aside, and "
                                       "the next change replaces it.")
        .arg(reason);
}

QString JobStore::keep(const QVector<Job>& jobs) const
{
    QJsonArray kept;
    for (const Job& job : jobs)
        kept.append(KeptOf(job));
    try {
        Write(path(QStringLiteral("list.json")), QJsonDocument(kept).toJson(QJsonDocument::Compact));
        return QString();
    } catch (const std::exception& error) {
        return QCoreApplication::translate("desktop::JobStore", "The list of jobs cannot be kept: %1.")
            .arg(QString::fromStdString(error.what()));
    }
}

QString JobStore::newId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QString JobStore::writeTableOf(const Job& job) const
{
    const QString file = path(QStringLiteral("tables/%1.json").arg(job.id));
    Write(file, TableOf({job}, file));
    return file;
}

QString JobStore::reportOf(const Job& job) const
{
    return path(QStringLiteral("reports/%1.html").arg(job.id));
}

/// @param isToGo  of a file's name
template <class Condition>
void JobStore::removeFiles(const Condition& isToGo) const
{
    for (const char* const name : {"reports", "tables"}) {
        const QDir folder(path(QLatin1String(name)));
        for (const QString& file : folder.entryList(QDir::Files | QDir::Hidden))
            if (isToGo(file))
                QFile::remove(folder.filePath(file));
    }
}

void JobStore::removeFilesOf(const QVector<Job>& jobs) const
{
    QSet<QString> ids;
    for (const Job& job : jobs)
        ids.insert(job.id);
    removeFiles([&ids](const QString& file) { return ids.contains(IdIn(file)); });
}

void JobStore::removeFilesOfOthers(const QVector<Job>& jobs) const
{
    if (_temporary || !QDir(_folder).entryList({QStringLiteral("list-unreadable*")}, QDir::Files).isEmpty())
        return;
    QSet<QString> ids, reports;
    for (const Job& job : jobs) {
        ids.insert(job.id);
        reports.insert(QFileInfo(job.report).fileName()); // named otherwise before jobs had ids
    }
    removeFiles([&](const QString& file) { return !ids.contains(IdIn(file)) && !reports.contains(file); });
    // The one table that all jobs once had, with what a batch kept beside it.
    for (const QString& file : QDir(_folder).entryList({QStringLiteral("running.json*")}, QDir::Files))
        QFile::remove(path(file));
}

QString JobStore::path(const QString& name) const
{
    return _folder + QLatin1Char('/') + name;
}

} // namespace desktop
