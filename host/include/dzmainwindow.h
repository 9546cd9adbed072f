// The main window.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMainWindow>

class DzActionMgr;
class DzPaneMgr;
class DzViewportMgr;

/// Exists hidden when the host runs without display, so that actions can be found and triggered there.
class DzMainWindow : public QMainWindow {
    Q_OBJECT
public:
    DzMainWindow();
    ~DzMainWindow();

    Q_INVOKABLE DzActionMgr* getActionMgr() const { return _actionMgr; }
    Q_INVOKABLE DzPaneMgr* getPaneMgr() const { return _paneMgr; }
    /// Null as long as no viewport has been made.
    Q_INVOKABLE DzViewportMgr* getViewportMgr() const { return _viewportMgr; }
    void setViewportMgr(DzViewportMgr* viewportMgr) { _viewportMgr = viewportMgr; }

private:
    DzActionMgr* _actionMgr;
    DzPaneMgr* _paneMgr;
    DzViewportMgr* _viewportMgr;
};
