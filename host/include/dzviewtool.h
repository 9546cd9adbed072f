// Tools of the viewport.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

class Dz3DViewport;
class DzNode;
class QPoint;

/// What the mouse does in a viewport. At most one tool is active.
class DzViewTool : public DzBase {
    Q_OBJECT
public:
    DzViewTool();
    ~DzViewTool();

    Q_INVOKABLE bool isActive() const { return _isActive; }
    /// A click, without dragging, on a pixel of the viewport.
    virtual void clicked(Dz3DViewport& viewport, const QPoint& position, bool addToSelection);

signals:
    void activated();
    void deactivated();

private:
    friend class DzViewportMgr;
    void setActive(bool onOff);

    bool _isActive = false;
};
