// The content files that the user likes best.
// SPDX-License-Identifier: MIT

#include "favorite_files.h"

#include "dzappsettings.h"

#include <QSet>
#include <QStringList>

namespace openhost {

namespace {

const QLatin1String group("Content Library"), key("favorites");
const QLatin1Char between('\n'); // in no sensible path

/// As they were read last: lists ask for each of their files.
QSet<QString>& Favorites()
{
    static QSet<QString> favorites;
    return favorites;
}

} // namespace

void ReadFavoriteFiles()
{
    const QStringList files = DzAppSettings(group).getStringValue(key).split(between, Qt::SkipEmptyParts);
    Favorites() = QSet<QString>(files.begin(), files.end());
}

bool IsFavoriteFile(const QString& file)
{
    return Favorites().contains(file);
}

void SetFavoriteFile(const QString& file, bool isFavorite)
{
    ReadFavoriteFiles(); // another window may have changed it
    if (isFavorite)
        Favorites().insert(file);
    else
        Favorites().remove(file);
    QStringList files = Favorites().values();
    files.sort();
    DzAppSettings(group).setStringValue(key, files.join(between));
}

} // namespace openhost
