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

} // namespace

QString JobStore::usualFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/gantrel/jobs");
}

JobStore::JobStore(const QString& folder) : _folder(folder)
{
    QDir().mkpath(path("reports"));
    _lock = std::make_unique<QLockFile>(path("lock"));
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
    QDir().mkpath(path("reports"));
}

QVector<Job> JobStore::load(QString& trouble) const
{
    QVector<Job> jobs;
    QFile file(path("list.json"));
    if (!file.exists())
        return jobs;
    QJsonParseError error{};
    const bool isOpen = file.open(QIODevice::ReadOnly);
    const QJsonDocument kept = QJsonDocument::fromJson(file.readAll(), &error);
    if (!isOpen || !kept.isArray()) {
        // Somebody may want to look into it.
        QFile::rename(file.fileName(), path("list-unreadable.json"));
        trouble = QCoreApplication::translate("desktop::JobStore",
                                              "The list of jobs could not be read: %1. It is kept as %2.")
                      .arg(isOpen ? error.errorString() : file.errorString(), path("list-unreadable.json"));
        return jobs;
    }
    for (const QJsonValue& one : kept.array())
        jobs.append(JobFrom(one.toObject()));
    return jobs;
}

QString JobStore::keep(const QVector<Job>& jobs) const
{
    QJsonArray kept;
    for (const Job& job : jobs)
        kept.append(KeptOf(job));
    try {
        Write(path("list.json"), QJsonDocument(kept).toJson(QJsonDocument::Compact));
        return QString();
    } catch (const std::exception& error) {
        return QCoreApplication::translate("desktop::JobStore", "The list of jobs cannot be kept: %1.")
            .arg(QString::fromStdString(error.what()));
    }
}

QString JobStore::writeTableOf(const Job& job) const
{
    const QString file = path("running.json");
    Write(file, TableOf({job}, file));
    return file;
}

QString JobStore::newReport() const
{
    return path("reports/") + QUuid::createUuid().toString(QUuid::WithoutBraces) + QStringLiteral(".html");
}

void JobStore::removeReport(const QString& report) const
{
    if (QFileInfo(report).absolutePath() == QFileInfo(path("reports")).absoluteFilePath())
        QFile::remove(report);
}

QString JobStore::path(const char* name) const
{
    return _folder + QLatin1Char('/') + QLatin1String(name);
}

} // namespace desktop
