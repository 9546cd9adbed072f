// The menu of what the viewport shows and how.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>
#include <QPointer>

#include <memory>

class Dz3DViewport;
class DzMainWindow;
class QActionGroup;

namespace desktop {

class ComparisonView;
class LookMenu;
class ViewpointsMenu;

/// The draw styles of the active viewport, what is brought into its sight, and what stands in it besides the
/// scene.
class ViewMenu : public QMenu {
    Q_OBJECT

public:
    /// @param window  borrowed; it has to outlive the menu
    explicit ViewMenu(DzMainWindow& window);
    ~ViewMenu() override;

    QAction* frameAllEntry() const { return _frameAll; }
    QAction* frameSelectionEntry() const { return _frameSelection; }
    QMenu& viewpoints() const;
    /// The draw styles by themselves.
    QMenu& styles() { return _styleMenu; }

private slots:
    void watchViewport();
    void setStyle(QAction* entry);
    void showStyle();
    void updateFrames();
    void frameAll();
    void frameSelection();
    void showExtras();

private:
    void addExtras();
    void addStyles();
    void remember() const;
    void underlineStyles();
    Dz3DViewport* view() const;

    DzMainWindow& _window;
    QActionGroup* _styles;
    QMenu _styleMenu;
    QAction* _frameAll;
    QAction* _frameSelection;
    std::unique_ptr<ViewpointsMenu> _viewpoints;
    std::unique_ptr<ComparisonView> _comparison;
    std::unique_ptr<LookMenu> _look;
    QAction* _ground = nullptr;
    QAction* _buttons = nullptr;
    QPointer<QWidget> _viewButtons; ///< the view's
    QPointer<QWidget> _mouseHelp;   ///< likewise
};

} // namespace desktop
