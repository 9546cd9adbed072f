// Dialogs beside the figures rather than over them.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QRect>

class DzMainWindow;

namespace desktop {

/// Where a window covers least of the figures; where it is when it covers nothing of them. All of it lies on
/// the screen if it fits there. All in pixels of the screen.
QPoint PlaceBeside(const QRect& dialog, const QRect& figures, const QRect& screen);

/// Moves each dialog over the main window that opens without a place of its own, such as one that it
/// remembers, and keeps it as small as the screen. Questions stay where they are, and so do the dialogs of
/// plug-ins, which see to that themselves.
class DialogPlaces : public QObject {
    Q_OBJECT

public:
    /// @param window  borrowed
    explicit DialogPlaces(DzMainWindow& window);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QRect figures() const; ///< on the screen

    DzMainWindow& _window;
};

} // namespace desktop
