// The menu of what the viewport shows and how.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>

class Dz3DViewport;
class DzBox3;
class DzMainWindow;
class QActionGroup;

namespace desktop {

/// The draw styles of the active viewport, and what is brought into its sight.
class ViewMenu : public QMenu {
    Q_OBJECT

public:
    /// @param window  borrowed; it has to outlive the menu
    explicit ViewMenu(DzMainWindow& window);

private slots:
    void watchViewport();
    void setStyle(QAction* entry);
    void showStyle();
    void updateFrames();
    void frameAll();
    void frameSelection();

private:
    void addStyles();
    Dz3DViewport* view() const;
    void frame(const DzBox3& box);

    DzMainWindow& _window;
    QActionGroup* _styles;
    QAction* _frameAll;
    QAction* _frameSelection;
};

} // namespace desktop
