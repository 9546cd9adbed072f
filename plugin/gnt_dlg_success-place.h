// A place beside other windows of the same kind.
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

#include <QPoint>

class QWidget;

/// Windows that remember where they stood would all open at the one place, each hiding the one before. This
/// moves a window down and to the right of those, and tells the place that it left.
class GntCascade {
public:
    /// Call it when the window has its size and the place that it is meant to have, before it is seen.
    /// @param others  those that are seen; without the window itself
    void makeWay(QWidget& window, const std::vector<const QWidget*>& others);
    /// Moves the window back, for its geometry to be kept, unless the user has moved it since.
    void goBack(QWidget& window);

private:
    QPoint _shift;    ///< from the place that the window was meant to have; null when it has that
    QPoint _standing; ///< where it was moved to
};
