// Making the sample library from within the window.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QWidget;

namespace desktop {

/// Asks for a folder and writes the library there, with a progress that can be cancelled; nothing is left of
/// a library that is cancelled. A failure is told in a box.
/// @return the folder; empty where there is no library
QString MakeSampleLibrary(QWidget& window);

} // namespace desktop
