// The picture of the scene in a viewport.
// SPDX-License-Identifier: MIT

#pragma once

#include <QPoint>
#include <QWidget>

#include <memory>

class DzCamera;
class DzDrawStyle;
class DzNode;
class DzObject;

namespace openhost {
class ViewportPicture;
}

/// Draws the scene through a camera. Dragging with the left button turns the camera about the place that is
/// held, or about its focal point where that is only background; with the right or middle button it shifts
/// it. The wheel goes nearer to what is under the pointer or farther from it, a double click frames that. A
/// click is the active tool's.
class Dz3DViewport : public QWidget {
    Q_OBJECT
public:
    explicit Dz3DViewport(QWidget* parent);
    ~Dz3DViewport();

    /// Null only when the camera was deleted and the perspective view is gone too.
    Q_INVOKABLE DzCamera* getCamera() const;
    /// The camera stays its owner's. Null changes nothing.
    Q_INVOKABLE void setCamera(DzCamera* camera);
    Q_INVOKABLE DzDrawStyle* getDrawStyle() const;
    /// Null changes nothing.
    Q_INVOKABLE void setDrawStyle(DzDrawStyle* style);
    /// @param description  as a user knows it
    /// @return false, changing nothing, when there is no such style
    Q_INVOKABLE bool setUserDrawStyle(const QString& description);
    /// The node that is seen at a pixel; null where only the background is.
    DzNode* findNodeAt(const QPoint& position) const;

    /// The open host's own: what it draws and keeps.
    openhost::ViewportPicture& picture() const;

signals:
    void cameraChanged(DzCamera* camera);
    void drawStyleChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private slots:
    void handleNodeAdded(DzNode* node);
    void handleObjectChanged(DzNode* node, DzObject* before, DzObject* object);
    void handleSceneChanged();
    void handleCameraDestroyed(QObject* camera);

private:
    void hold(const QPoint& position);

    struct Impl;
    std::unique_ptr<Impl> _impl;
};
