// The picture of the scene in a viewport: drawing it and moving its camera.
// SPDX-License-Identifier: MIT

#include "dz3dviewport.h"
#include "dzapp.h"
#include "dzcamera.h"
#include "dzdrawstyle.h"
#include "dzfloatproperty.h"
#include "dzmainwindow.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzviewport.h"
#include "dzviewportmgr.h"
#include "dzviewtool.h"
#include "openhost/viewport_extras.h"
#include "scene/camera_optics.h"
#include "viewport_picture.h"

#include <QCoreApplication>
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

} // namespace

struct Dz3DViewport::Impl {
    DzCamera* camera = nullptr;
    DzDrawStyle* style = nullptr;
    openhost::ViewportPicture picture;
    QPoint pressed, last;
    bool isDragging = false;
    bool hasFramed = false; ///< by the press that is not released yet
    DzVec3 held;            ///< what the camera turns about

    geometry::PictureCamera optics(const QSize& size) const
    {
        return openhost::OpticsOf(*camera, picture.aspect(size));
    }
    openhost::ViewportPicture::Place placeAt(const QPoint& position, const QSize& size)
    {
        return picture.placeAt(optics(size), position, size);
    }
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
    return _impl->placeAt(position, size()).node;
}

openhost::ViewportPicture& Dz3DViewport::picture() const
{
    return _impl->picture;
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
        painter.fillRect(rect(), openhost::CurrentViewColors().background);
        return;
    }
    const openhost::DrawMethod& method =
        openhost::FindDrawMethod(_impl->style ? _impl->style->getDescription() : QString());
    const QSize pixels = size() * devicePixelRatioF();
    painter.drawImage(rect(), _impl->picture.draw(_impl->optics(pixels), method, pixels));
    painter.setPen(openhost::CurrentViewColors().text);
    const QRect texts = rect().adjusted(8, 6, -8, -6);
    const QStringList captions = _impl->picture.captions();
    if (captions.isEmpty())
        painter.drawText(
            texts, Qt::AlignTop | Qt::AlignRight,
            QCoreApplication::translate("openhost::Views", _impl->camera->getLabel().toUtf8().constData()));
    const int each = width() / std::max(1, captions.size());
    for (int i = 0; i < captions.size(); ++i)
        painter.drawText(QRect(i * each + 8, 6, each - 16, height()), Qt::AlignTop | Qt::AlignLeft,
                         fontMetrics().elidedText(captions[i], Qt::ElideRight, each - 16));
}

void Dz3DViewport::mousePressEvent(QMouseEvent* event)
{
    _impl->pressed = _impl->last = event->pos();
    _impl->isDragging = _impl->hasFramed = false;
    if (DzViewportMgr* const manager = ManagerOf(*this))
        manager->setActiveViewport(qobject_cast<DzViewport*>(parentWidget()));
}

/// What is under the pointer stays there, however the camera moves; it turns about its focal point otherwise.
void Dz3DViewport::hold(const QPoint& position)
{
    DzCamera& camera = *_impl->camera;
    const openhost::ViewportPicture::Place place = _impl->placeAt(position, size());
    const geometry::PictureCamera optics = _impl->optics(size());
    // Without perspective, the focal distance is how much is seen.
    if (place.isValid() && optics.isPerspective)
        camera.getFocalDistanceControl()->setValue(Dot(place.position - optics.eye, optics.forward));
    _impl->held = place.isValid() ? DzVec3(place.position.x, place.position.y, place.position.z)
                                  : camera.getFocalPoint();
}

void Dz3DViewport::mouseMoveEvent(QMouseEvent* event)
{
    constexpr int slack = 4;     // pixels that a click may wander
    constexpr float turn = 0.4f; // degrees a pixel
    if (!_impl->camera)
        return;
    if (!_impl->isDragging && (event->pos() - _impl->pressed).manhattanLength() > slack) {
        _impl->isDragging = true;
        hold(_impl->pressed);
    }
    if (!_impl->isDragging)
        return;
    const QPoint moved = event->pos() - _impl->last;
    _impl->last = event->pos();
    DzCamera& camera = *_impl->camera;
    if (event->buttons() & Qt::LeftButton) {
        camera.orbitAbout(_impl->held, -turn * float(moved.x()), -turn * float(moved.y()));
        return;
    }
    // What lies at the focal distance stays under the pointer.
    const geometry::PictureCamera optics = _impl->optics(size());
    const float half = optics.halfHeight * (optics.isPerspective ? camera.getFocalDistance() : 1.0f);
    const float cmPerPixel = 2.0f * half / float(std::max(1, height()));
    camera.pan(-cmPerPixel * float(moved.x()), cmPerPixel * float(moved.y()));
}

void Dz3DViewport::mouseReleaseEvent(QMouseEvent* event)
{
    const DzViewportMgr* const manager = ManagerOf(*this);
    DzViewTool* const tool = manager ? manager->getActiveTool() : nullptr;
    // After framing something else is under the pointer than what was clicked.
    const bool isClick = !_impl->isDragging && !_impl->hasFramed;
    if (isClick && tool && event->button() == Qt::LeftButton)
        tool->clicked(*this, event->pos(), (event->modifiers() & Qt::ControlModifier) != 0);
}

void Dz3DViewport::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event); // which it comes instead of
    if (event->button() != Qt::LeftButton)
        return;
    if (const DzNode* const node = findNodeAt(event->pos())) {
        openhost::FrameInView(*this, openhost::BoxInView(*this, *node));
        _impl->hasFramed = true;
    }
}

void Dz3DViewport::wheelEvent(QWheelEvent* event)
{
    constexpr double notch = 120.0, nearer = 0.9;
    if (!_impl->camera || event->angleDelta().y() == 0) // turned sideways
        return;
    const auto factor = float(std::pow(nearer, double(event->angleDelta().y()) / notch));
    const QPoint pointer = event->position().toPoint();
    const geometry::PictureCamera optics = _impl->optics(size());
    const openhost::ViewportPicture::Place place = _impl->placeAt(pointer, size());
    if (!place.isValid()) {
        _impl->camera->dolly(factor);
        return;
    }
    // As far as that is now, which the camera comes nearer to or goes farther from.
    if (optics.isPerspective)
        _impl->camera->getFocalDistanceControl()->setValue(Dot(place.position - optics.eye, optics.forward));
    _impl->camera->dollyTo(DzVec3(place.position.x, place.position.y, place.position.z), factor);
}

DzViewport::DzViewport(QWidget* parent) : QWidget(parent), _view(new Dz3DViewport(this))
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_view);
}

DzViewport::~DzViewport() = default;
