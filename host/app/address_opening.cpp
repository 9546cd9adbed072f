// Showing files and addresses with the system's own programs.
// SPDX-License-Identifier: MIT

#include "address_opening.h"

#include "app/current_attendant.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QProcess>

namespace openhost {

namespace {

/// False only where the system's own register says so. What hands files on ends well without a viewer too, so
/// that its result tells nothing.
bool MayHaveProgram(const QString& file)
{
    QProcess query;
    query.start(QStringLiteral("xdg-mime"), {QStringLiteral("query"), QStringLiteral("default"),
                                             QMimeDatabase().mimeTypeForFile(file).name()});
    constexpr int patience = 5000; // ms
    const bool isAnswered = query.waitForFinished(patience) && query.exitStatus() == QProcess::NormalExit;
    return !isAnswered || !query.readAllStandardOutput().trimmed().isEmpty();
}

/// The file, and its page where it has one beside it.
QStringList Editions(const QString& file)
{
    const QFileInfo info(file);
    const QString page = info.dir().filePath(info.completeBaseName() + QLatin1String(".html"));
    const bool hasPage =
        info.suffix().compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0 && QFileInfo::exists(page);
    return hasPage ? QStringList{file, page} : QStringList{file};
}

} // namespace

void OpenAddress(const QUrl& url)
{
    if (!url.isLocalFile()) {
        if (!QDesktopServices::openUrl(url))
            CurrentAttendant().tellOpenError(url.toString(), QLatin1String("no program shows it"));
        return;
    }
    const QString file = QDir::cleanPath(url.toLocalFile()); // one slash at its beginning is enough
    for (const QString& edition : Editions(file))
        if (MayHaveProgram(edition) &&
            QDesktopServices::openUrl(edition == file ? url : QUrl::fromLocalFile(edition)))
            return;
    CurrentAttendant().tellOpenError(file,
                                     QLatin1String("there is no program on this computer that shows it"));
}

} // namespace openhost
