// The menu of what the viewport shows and how.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>

#include <memory>

class Dz3DViewport;
class DzMainWindow;
class QActionGroup;

namespace desktop {

class ComparisonView;

/// The draw styles of the active viewport, and what is brought into its sight.
class ViewMenu : public QMenu {
    Q_OBJECT

public:
    /// @param window  borrowed; it has to outlive the menu
    explicit ViewMenu(DzMainWindow& window);
    ~ViewMenu() override;

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

    DzMainWindow& _window;
    QActionGroup* _styles;
    QAction* _frameAll;
    QAction* _frameSelection;
    std::unique_ptr<ComparisonView> _comparison;
};

} // namespace desktop
