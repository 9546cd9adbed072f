// Files that come by drag and drop.
// SPDX-License-Identifier: MIT

#include "dropped_files.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace desktop {

namespace {

bool CanBeOpened(const QString& file)
{
    static const QStringList kinds{QStringLiteral("duf"), QStringLiteral("dsf"), QStringLiteral("obj")};
    return kinds.contains(QFileInfo(file).suffix(), Qt::CaseInsensitive);
}

} // namespace

QStringList DroppedFiles(const QMimeData& data)
{
    QStringList files;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile() && CanBeOpened(url.toLocalFile()))
            files.append(url.toLocalFile());
    return files;
}

bool TakeFiles(QDropEvent& event)
{
    if (DroppedFiles(*event.mimeData()).isEmpty())
        return false;
    event.setDropAction(Qt::CopyAction);
    event.accept();
    return true;
}

} // namespace desktop
