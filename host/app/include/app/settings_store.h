// The user's settings on disk.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVariant>

namespace openhost {

/// Where settings are kept from now on; the folder is made when first written to.
void SetSettingsFolder(const QString& folder);

/// Keys are paths with '/' between groups. Text, int, bool and double only.
QVariant ReadSetting(const QString& key);
/// In the file, atomically, when it returns; false if it cannot be written. An invalid value removes the key.
bool WriteSetting(const QString& key, const QVariant& value);
/// Removes all keys below a group; false if there are none.
bool RemoveSettings(const QString& group);

} // namespace openhost
