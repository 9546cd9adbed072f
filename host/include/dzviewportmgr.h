// The viewports of the main window.
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class DzViewTool;
class DzViewport;

class DzViewportMgr : public QWidget {
    Q_OBJECT
public:
    explicit DzViewportMgr(QWidget* parent);
    ~DzViewportMgr();

    /// Null for an unknown tool.
    virtual DzViewTool* findTool(const QString& className) const;
    virtual DzViewTool* getActiveTool() const;
    virtual void setActiveTool(DzViewTool* tool);
    virtual int getNumViewports() const;
    virtual DzViewport* getViewport(int index) const;
    virtual DzViewport* getActiveViewport() const;
    virtual void setActiveViewport(DzViewport* viewport);
};
