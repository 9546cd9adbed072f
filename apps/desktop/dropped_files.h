// Files that come by drag and drop.
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QDropEvent;
class QMimeData;

namespace desktop {

/// Sorted by whether a window has a use for them.
struct DroppedFiles {
    QStringList wanted; ///< on this computer
    QStringList others; ///< by the names that people know them by
};

/// @param suffixes  of files that are wanted, in lower case
DroppedFiles FilesIn(const QMimeData& data, const QStringList& suffixes);

/// Accepts what brings such files, as a copy: whoever moves files here would delete them.
/// @return whether it does
bool TakeFiles(QDropEvent& event, const QStringList& suffixes);

} // namespace desktop
