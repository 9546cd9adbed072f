// Icons that go with the look.
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QPalette>

#include <functional>

class QPainter;

namespace openhost {

/// Draws an icon into a rectangle.
using IconPainting =
    std::function<void(QPainter&, const QRect&, const QPalette&, QPalette::ColorGroup, QIcon::State)>;

/// Drawn whenever it is shown, in the colours that the application has then.
QIcon MakePaletteIcon(IconPainting painting);

} // namespace openhost
