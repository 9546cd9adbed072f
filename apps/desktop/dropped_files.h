// Files that come by drag and drop.
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QDropEvent;
class QMimeData;

namespace desktop {

/// Those of the files that can be opened: scenes, figures and meshes on this computer.
QStringList DroppedFiles(const QMimeData& data);

/// Accepts what brings such files, as a copy: whoever moves files here would delete them.
/// @return whether it does
bool TakeFiles(QDropEvent& event);

} // namespace desktop
