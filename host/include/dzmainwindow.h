// The main window.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzactionmgr.h"
#include "dzpanemgr.h"
#include "dzviewportmgr.h"

#include <QMainWindow>
#include <QPointer>

/// Exists hidden when the host runs without display, so that actions can be found and triggered there.
class DzMainWindow : public QMainWindow {
    Q_OBJECT
public:
    DzMainWindow();
    ~DzMainWindow();

    Q_INVOKABLE DzActionMgr* getActionMgr() const { return _actionMgr; }
    Q_INVOKABLE DzPaneMgr* getPaneMgr() const { return _paneMgr; }
    Q_INVOKABLE DzViewportMgr* getViewportMgr() const { return _viewportMgr; }

private slots:
    void handleActionListChanged();

private:
    // Guarded, since tests may take a manager away.
    QPointer<DzActionMgr> _actionMgr;
    QPointer<DzPaneMgr> _paneMgr;
    QPointer<DzViewportMgr> _viewportMgr;
};
