// The tools that every viewport offers.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzviewtool.h"

/// Selects the node that is clicked.
class DzPickTool : public DzViewTool {
    Q_OBJECT
public:
    void clicked(Dz3DViewport& viewport, const QPoint& position, bool addToSelection) override;
};

/// The tool to begin with. A click picks; turning and shifting the view is the viewport's own.
class DzUniversalTool : public DzPickTool {
    Q_OBJECT
};

/// Picks the node whose groups are to be looked at.
class DzPolygonGroupEditorTool : public DzPickTool {
    Q_OBJECT
};
