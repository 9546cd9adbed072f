// The viewports of the main window, their tools and draw styles.
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

#include <memory>

class DzCamera;
class DzUserDrawStyle;
class DzViewTool;
class DzViewport;

/// Owns its one viewport, the tools and styles, and the perspective view: the camera that is not in the
/// scene.
class DzViewportMgr : public QWidget {
    Q_OBJECT
public:
    explicit DzViewportMgr(QWidget* parent);
    ~DzViewportMgr();

    /// By class name: "DzPickTool", "DzUniversalTool", "DzPolygonGroupEditorTool". Null for any other.
    Q_INVOKABLE DzViewTool* findTool(const QString& className) const;
    Q_INVOKABLE int getNumTools() const;
    Q_INVOKABLE DzViewTool* getTool(int index) const; ///< null out of range
    Q_INVOKABLE DzViewTool* getActiveTool() const;
    /// A tool of this manager; null and foreign ones change nothing.
    Q_INVOKABLE void setActiveTool(DzViewTool* tool);

    Q_INVOKABLE int getNumViewports() const;
    Q_INVOKABLE DzViewport* getViewport(int index) const; ///< null out of range
    Q_INVOKABLE DzViewport* getActiveViewport() const;
    /// A viewport of this manager; null and foreign ones change nothing.
    Q_INVOKABLE void setActiveViewport(DzViewport* viewport);

    /// By description, ignoring case; null for none.
    Q_INVOKABLE DzUserDrawStyle* findUserDrawStyle(const QString& description) const;
    Q_INVOKABLE int getNumUserDrawStyles() const;
    Q_INVOKABLE DzUserDrawStyle* getUserDrawStyle(int index) const; ///< null out of range

    Q_INVOKABLE DzCamera* getPerspectiveView() const;

signals:
    void activeToolChanged(DzViewTool* tool);
    void activeViewportChanged(DzViewport* viewport);

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
