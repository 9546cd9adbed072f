// Dialogs beside the figures rather than over them.
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QObject>
#include <QRect>

class DzMainWindow;
class QDialog;

namespace desktop {

/// Where a window covers least of the figures; where it is when it covers nothing of them. All of it lies on
/// the screen if it fits there. All in pixels of the screen.
QPoint PlaceBeside(const QRect& dialog, const QRect& figures, const QRect& screen);

/// Puts each dialog with a name where the user had moved it the last time, as large as it was then, if that
/// is on a screen. Moves each other one over the main window that opens without a place of its own beside the
/// figures, and keeps it as small as the screen. Questions stay where they are, and so do the dialogs of
/// plug-ins, which see to that themselves.
class DialogPlaces : public QObject {
    Q_OBJECT

public:
    /// @param window  borrowed
    explicit DialogPlaces(DzMainWindow& window);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void place(QDialog& dialog) const;
    void keep(const QDialog& dialog);
    QRect figures() const; ///< on the screen

    DzMainWindow& _window;
    QHash<const QObject*, QRect> _begun; ///< where those that are seen were at the beginning
};

} // namespace desktop
