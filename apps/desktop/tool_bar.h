// The tool bar of the main window.
// SPDX-License-Identifier: MIT

#pragma once

#include <QToolBar>

class QMenu;

namespace desktop {

enum class DrawnIcon;

/// What is used most, as pictures; names and keys are in the tool tips. Where it was put, and whether it is
/// shown, is remembered with the window's layout.
class ToolBar : public QToolBar {
    Q_OBJECT

public:
    /// @param window  owns it
    explicit ToolBar(QMainWindow& window);

    /// @param entry  a menu's; its picture is shown here alone
    void addEntry(QAction& entry, DrawnIcon icon);
    /// A button that opens a menu.
    /// @param menu  borrowed
    void addMenu(QMenu& menu, DrawnIcon icon);

private slots:
    void updateTip();
};

} // namespace desktop
