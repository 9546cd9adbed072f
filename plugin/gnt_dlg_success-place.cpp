// A place beside other windows of the same kind.
// SPDX-License-Identifier: MIT

#include "gnt_dlg_success-place.h"

#include <algorithm>

#include <QApplication>
#include <QDesktopWidget>
#include <QRect>
#include <QStyle>
#include <QWidget>

namespace {

int TitleBarHeight(const QWidget& window)
{
    return std::max(1, window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window));
}

/// Whether one of two windows hides the title bar of the other, or most of it.
bool AreNear(const QPoint& a, const QPoint& b, int titleBarHeight)
{
    return (a - b).manhattanLength() < titleBarHeight;
}

/// A window that is not seen yet does not know its frame, so either corner may be the one that was placed.
bool StandsAt(const QPoint& place, const QWidget& window, int titleBarHeight)
{
    return AreNear(place, window.geometry().topLeft(), titleBarHeight) ||
           AreNear(place, window.pos(), titleBarHeight);
}

bool IsTaken(const QPoint& place, const std::vector<const QWidget*>& others, int titleBarHeight)
{
    return std::any_of(others.begin(), others.end(), [&place, titleBarHeight](const QWidget* other) {
        return StandsAt(place, *other, titleBarHeight);
    });
}

/// One step down and to the right; from the edge of the screen on at its opposite edge.
QPoint NextPlace(const QRect& window, const QRect& screen, int step)
{
    const QRect next = window.translated(step, step);
    return QPoint(next.right() <= screen.right() ? next.left() : screen.left(),
                  next.bottom() <= screen.bottom() ? next.top() : screen.top());
}

} // namespace

void GntMakeWay(QWidget& window, const std::vector<const QWidget*>& others)
{
    const int step = TitleBarHeight(window);
    const QRect screen = QApplication::desktop()->availableGeometry(&window);
    QRect place = window.geometry();
    // A screen may be too small for a place of its own for each.
    for (std::size_t tries = 0; tries < others.size() && IsTaken(place.topLeft(), others, step); ++tries)
        place.moveTopLeft(NextPlace(place, screen, step));
    if (place.topLeft() != window.geometry().topLeft())
        window.move(window.pos() + place.topLeft() - window.geometry().topLeft());
}
