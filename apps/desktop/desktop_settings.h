// What the desktop application keeps between runs.
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QMainWindow;

namespace desktop {

/// In the user's order.
QStringList RememberedContentFolders();
void RememberContentFolders(const QStringList& folders);

/// Size, place and docks. False when there is nothing to restore.
bool RestoreLayout(QMainWindow& window);
void RememberLayout(const QMainWindow& window);

} // namespace desktop
