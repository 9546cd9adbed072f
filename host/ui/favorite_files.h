// The content files that the user likes best.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// From the user's settings; until then there are none.
void ReadFavoriteFiles();
bool IsFavoriteFile(const QString& file);
/// Also in the settings. Files of folders that are not there at the moment stay in it.
void SetFavoriteFile(const QString& file, bool isFavorite);

} // namespace openhost
