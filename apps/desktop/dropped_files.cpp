// Files that come by drag and drop.
// SPDX-License-Identifier: MIT

#include "dropped_files.h"

#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace desktop {

DroppedFiles FilesIn(const QMimeData& data, const QStringList& suffixes)
{
    DroppedFiles files;
    for (const QUrl& url : data.urls()) {
        const QString file = url.toLocalFile();
        if (url.isLocalFile() && suffixes.contains(QFileInfo(file).suffix(), Qt::CaseInsensitive))
            files.wanted.append(file);
        else
            files.others.append(url.isLocalFile() ? QFileInfo(QDir::cleanPath(file)).fileName()
                                                  : url.toDisplayString());
    }
    return files;
}

bool TakeFiles(QDropEvent& event, const QStringList& suffixes)
{
    if (FilesIn(*event.mimeData(), suffixes).wanted.isEmpty())
        return false;
    event.setDropAction(Qt::CopyAction);
    event.accept();
    return true;
}

} // namespace desktop
