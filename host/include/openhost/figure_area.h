// Where the figures are in a viewport.
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

class Dz3DViewport;

namespace openhost {

/// The part of the viewport that the boxes around visible figures and props cover, in its pixels; empty where
/// none of them is seen. All of the viewport when the camera stands within or close beside one, and when
/// figures are side by side.
QRect FigureArea(const Dz3DViewport& viewport);

} // namespace openhost
