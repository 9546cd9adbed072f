// The icons of the tool bar.
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

namespace desktop {

enum class DrawnIcon { Open, Save, Convert, Undo, Redo, FrameAll, FrameSelection, Views, Styles };

/// Drawn in lines of the application's text colour at the time, at any size.
QIcon MakeIcon(DrawnIcon icon);

} // namespace desktop
