// A place beside other windows of the same kind.
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

class QWidget;

/// Windows that remember where they stood would all open at the one place, each hiding the one before. This
/// moves a window down and to the right of those.
///
/// Call it when the window has its size and the place that it is meant to have, before it is seen.
/// @param others  those that are seen; without the window itself
void GntMakeWay(QWidget& window, const std::vector<const QWidget*>& others);
