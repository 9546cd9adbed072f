// The picture of the scene in a viewport: drawing it and moving its camera.
// SPDX-License-Identifier: MIT

#include "dz3dviewport.h"
#include "dzapp.h"
#include "dzcamera.h"
#include "dzdrawstyle.h"
#include "dzmainwindow.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzviewport.h"
#include "dzviewportmgr.h"
#include "dzviewtool.h"
#include "scene/camera_optics.h"
#include "viewport_picture.h"

#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

/// The viewport manager that a view belongs to; null for a view of its own.
DzViewportMgr* ManagerOf(const QWidget& view)
{
    for (QWidget* widget = view.parentWidget(); widget; widget = widget->parentWidget())
        if (auto* const manager = qobject_cast<DzViewportMgr*>(widget))
            return manager;
    return nullptr;
}

float Aspect(const QSize& size)
{
    return float(std::max(1, size.width())) / float(std::max(1, size.height()));
}

} // namespace

struct Dz3DViewport::Impl {
    DzCamera* camera = nullptr;
    DzDrawStyle* style = nullptr;
    openhost::ViewportPicture picture;
    QPoint pressed, last;
    bool isDragging = false;
};

Dz3DViewport::Dz3DViewport(QWidget* parent) : QWidget(parent), _impl(new Impl)
{
    setMinimumSize(160, 120);
    setFocusPolicy(Qt::WheelFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(dzScene, SIGNAL(nodeAdded(DzNode*)), SLOT(handleNodeAdded(DzNode*)));
    connect(dzScene, SIGNAL(nodeRemoved(DzNode*)), SLOT(handleSceneChanged()));
    connect(dzScene, SIGNAL(drawnDataChanged()), SLOT(handleSceneChanged()));
    connect(dzScene, SIGNAL(nodeSelectionListChanged()), SLOT(update()));
}

Dz3DViewport::~Dz3DViewport() = default;

DzCamera* Dz3DViewport::getCamera() const
{
    return _impl->camera;
}

void Dz3DViewport::setCamera(DzCamera* camera)
{
    if (!camera || camera == _impl->camera)
        return;
    if (_impl->camera)
        disconnect(_impl->camera, nullptr, this, nullptr);
    _impl->camera = camera;
    connect(camera, SIGNAL(destroyed(QObject*)), SLOT(handleCameraDestroyed(QObject*)));
    connect(camera, SIGNAL(transformChanged()), SLOT(update()));
    emit cameraChanged(camera);
    update();
}

void Dz3DViewport::handleCameraDestroyed(QObject* camera)
{
    if (static_cast<QObject*>(_impl->camera) != camera)
        return;
    _impl->camera = nullptr;
    if (const DzViewportMgr* const manager = ManagerOf(*this))
        setCamera(manager->getPerspectiveView());
}

DzDrawStyle* Dz3DViewport::getDrawStyle() const
{
    return _impl->style;
}

void Dz3DViewport::setDrawStyle(DzDrawStyle* style)
{
    if (!style || style == _impl->style)
        return;
    _impl->style = style;
    emit drawStyleChanged();
    update();
}

bool Dz3DViewport::setUserDrawStyle(const QString& description)
{
    const DzViewportMgr* const manager = ManagerOf(*this);
    DzUserDrawStyle* const style = manager ? manager->findUserDrawStyle(description) : nullptr;
    setDrawStyle(style);
    return style != nullptr;
}

DzNode* Dz3DViewport::findNodeAt(const QPoint& position) const
{
    if (!_impl->camera || !rect().contains(position))
        return nullptr;
    return _impl->picture.nodeAt(openhost::OpticsOf(*_impl->camera, Aspect(size())), position, size());
}

void Dz3DViewport::handleNodeAdded(DzNode* node)
{
    connect(node, SIGNAL(visibilityChanged()), SLOT(handleSceneChanged()), Qt::UniqueConnection);
    connect(node, SIGNAL(objectChanged(DzNode*, DzObject*, DzObject*)),
            SLOT(handleObjectChanged(DzNode*, DzObject*, DzObject*)), Qt::UniqueConnection);
    handleObjectChanged(node, nullptr, node->getObject());
}

void Dz3DViewport::handleObjectChanged(DzNode*, DzObject*, DzObject* object)
{
    if (object)
        connect(object, SIGNAL(cachedGeomInvalidated()), SLOT(handleSceneChanged()), Qt::UniqueConnection);
    handleSceneChanged();
}

void Dz3DViewport::handleSceneChanged()
{
    _impl->picture.sceneChanged();
    update();
}

void Dz3DViewport::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!_impl->camera) {
        painter.fillRect(rect(), Qt::black);
        return;
    }
    const openhost::DrawMethod& method =
        openhost::FindDrawMethod(_impl->style ? _impl->style->getDescription() : QString());
    const QSize pixels = size() * devicePixelRatioF();
    painter.drawImage(
        rect(), _impl->picture.draw(openhost::OpticsOf(*_impl->camera, Aspect(pixels)), method, pixels));
    painter.setPen(QColor(200, 204, 210));
    painter.drawText(rect().adjusted(8, 6, -8, -6), Qt::AlignTop | Qt::AlignRight, _impl->camera->getLabel());
}

void Dz3DViewport::mousePressEvent(QMouseEvent* event)
{
    _impl->pressed = _impl->last = event->pos();
    _impl->isDragging = false;
    if (DzViewportMgr* const manager = ManagerOf(*this))
        manager->setActiveViewport(qobject_cast<DzViewport*>(parentWidget()));
}

void Dz3DViewport::mouseMoveEvent(QMouseEvent* event)
{
    constexpr int slack = 4;     // pixels that a click may wander
    constexpr float turn = 0.4f; // degrees a pixel
    if ((event->pos() - _impl->pressed).manhattanLength() > slack)
        _impl->isDragging = true;
    if (!_impl->isDragging || !_impl->camera)
        return;
    const QPoint moved = event->pos() - _impl->last;
    _impl->last = event->pos();
    DzCamera& camera = *_impl->camera;
    if (event->buttons() & Qt::LeftButton) {
        camera.orbit(-turn * float(moved.x()), -turn * float(moved.y()));
        return;
    }
    // What lies at the focal distance stays under the pointer.
    const geometry::PictureCamera optics = openhost::OpticsOf(camera, Aspect(size()));
    const float half = optics.halfHeight * (optics.isPerspective ? camera.getFocalDistance() : 1.0f);
    const float cmPerPixel = 2.0f * half / float(std::max(1, height()));
    camera.pan(-cmPerPixel * float(moved.x()), cmPerPixel * float(moved.y()));
}

void Dz3DViewport::mouseReleaseEvent(QMouseEvent* event)
{
    const DzViewportMgr* const manager = ManagerOf(*this);
    DzViewTool* const tool = manager ? manager->getActiveTool() : nullptr;
    if (!_impl->isDragging && tool && event->button() == Qt::LeftButton)
        tool->clicked(*this, event->pos(), (event->modifiers() & Qt::ControlModifier) != 0);
}

void Dz3DViewport::wheelEvent(QWheelEvent* event)
{
    constexpr double notch = 120.0, nearer = 0.9;
    if (_impl->camera)
        _impl->camera->dolly(float(std::pow(nearer, double(event->angleDelta().y()) / notch)));
}

DzViewport::DzViewport(QWidget* parent) : QWidget(parent), _view(new Dz3DViewport(this))
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_view);
}

DzViewport::~DzViewport() = default;
