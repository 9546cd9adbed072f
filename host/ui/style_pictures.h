// The style's own pictures.
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QString>

namespace openhost {

/// Drawn in black on nothing; only the opacity counts.
/// @param name  "add", "remove", "close", "left", "right", "up", "down" or "restore"
/// @param size  of the square picture, in pixels
/// @return a null pixmap for another name
QPixmap DrawStylePicture(const QString& name, int size);

} // namespace openhost
