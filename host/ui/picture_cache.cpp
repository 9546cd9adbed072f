// Pictures of files in a folder of the user's cache.
// SPDX-License-Identifier: MIT

#include "picture_cache.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <utility>

namespace openhost {

QImage ReadSmallPicture(const QString& file, int edge)
{
    constexpr int largest = 8192; // pixels; more would take seconds and memory for a stamp
    QImageReader reader(file);
    reader.setAutoTransform(true);
    const QSize whole = reader.size();
    if (!whole.isValid() || whole.width() > largest || whole.height() > largest)
        return QImage();
    const bool isSmall = whole.width() <= edge && whole.height() <= edge;
    if (!isSmall) // formats that can be read coarsely are; twice as large, so that it stays smooth
        reader.setScaledSize(whole.scaled(2 * edge, 2 * edge, Qt::KeepAspectRatio).boundedTo(whole));
    const QImage picture = reader.read();
    if (picture.isNull() || isSmall)
        return picture;
    return picture.scaled(edge, edge, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

PictureCache::PictureCache(QString folder, qint64 mostBytes)
    : _folder(std::move(folder)), _mostBytes(mostBytes)
{
}

QString PictureCache::placeOf(const QString& file) const
{
    QDir().mkpath(_folder);
    const QFileInfo info(file);
    const QString key = QStringLiteral("%1\n%2\n%3")
                            .arg(info.absoluteFilePath(), QString::number(info.size()),
                                 QString::number(info.lastModified().toMSecsSinceEpoch()));
    const QByteArray name = QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha1).toHex();
    return _folder + QLatin1Char('/') + QString::fromLatin1(name) + QLatin1String(".png");
}

QImage PictureCache::find(const QString& file, int edge) const
{
    const QString place = placeOf(file);
    if (!QFileInfo(place).isFile())
        return QImage();
    const QImage picture = ReadSmallPicture(place, edge);
    QFile kept(place);
    if (picture.isNull())
        kept.remove();
    else if (kept.open(QIODevice::ReadWrite))
        kept.setFileTime(QDateTime::currentDateTime(), QFileDevice::FileModificationTime); // of its last use
    return picture;
}

void PictureCache::trim() const
{
    const QFileInfoList newestFirst =
        QDir(_folder).entryInfoList({QStringLiteral("*.png")}, QDir::Files, QDir::Time);
    qint64 bytes = 0;
    for (const QFileInfo& one : newestFirst) {
        bytes += one.size();
        if (bytes > _mostBytes)
            QFile::remove(one.absoluteFilePath());
    }
}

} // namespace openhost
