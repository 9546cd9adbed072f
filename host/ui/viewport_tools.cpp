// The tools that every viewport offers.
// SPDX-License-Identifier: MIT

#include "viewport_tools.h"

#include "dz3dviewport.h"
#include "dznode.h"
#include "dzscene.h"

DzViewTool::DzViewTool() = default;
DzViewTool::~DzViewTool() = default;

void DzViewTool::clicked(Dz3DViewport&, const QPoint&, bool) {}

void DzViewTool::setActive(bool onOff)
{
    if (onOff == _isActive)
        return;
    _isActive = onOff;
    if (onOff)
        emit activated();
    else
        emit deactivated();
}

void DzPickTool::clicked(Dz3DViewport& viewport, const QPoint& position, bool addToSelection)
{
    DzNode* const node = viewport.findNodeAt(position);
    if (!addToSelection)
        dzScene->selectAllNodes(false);
    if (node)
        dzScene->setPrimarySelection(node);
}
