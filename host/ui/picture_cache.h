// Pictures of files in a folder of the user's cache.
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QString>

namespace openhost {

/// Reads it no larger than an edge of that many pixels; null for what is no picture, or one that is larger
/// than anybody makes pictures of files.
QImage ReadSmallPicture(const QString& file, int edge);

/// One folder, whose pictures are named after the file that they show, its size and its time.
class PictureCache {
public:
    PictureCache(QString folder, qint64 mostBytes);

    /// Where the picture of the file as it is now belongs. The folder is made.
    QString placeOf(const QString& file) const;
    /// Null where there is none; a damaged one is removed.
    QImage find(const QString& file, int edge) const;
    /// Removes those that were used longest ago, until the rest is within the bounds.
    void trim() const;

private:
    QString _folder;
    qint64 _mostBytes;
};

} // namespace openhost
