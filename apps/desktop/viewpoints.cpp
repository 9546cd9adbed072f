// Where the scene is looked at from.
// SPDX-License-Identifier: MIT

#include "viewpoints.h"

#include "overlay.h"

#include <dz3dviewport.h>
#include <dzcamera.h>
#include <dzmatrix3.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <geometry/picture_box.h>
#include <openhost/shapes.h>
#include <openhost/viewport_extras.h>

#include <QToolButton>
#include <QVBoxLayout>

namespace desktop {

namespace {

struct Viewpoint {
    const char* text; ///< with its mnemonic
    const char* description;
    float x, y, z; ///< the direction to look along; none for the face
};

const Viewpoint viewpoints[] = {
    {QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "&Front"),
     QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "View from the front"), 0, 0, -1},
    {QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "&Back"),
     QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "View from the back"), 0, 0, 1},
    {QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "&Left"),
     QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "View from the left"), 1, 0, 0},
    {QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "&Right"),
     QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "View from the right"), -1, 0, 0},
    // Not quite straight down, where a camera would not know its turn.
    {QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "&Top"),
     QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "View from the top"), 0, -1, -0.001f},
    {QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "T&hree-Quarter"),
     QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "View from between front and right"), -0.7f, -0.15f, -0.7f},
    {QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "Fa&ce"),
     QT_TRANSLATE_NOOP("desktop::ViewpointsMenu", "View of the face"), 0, 0, 0},
};

DzSkeleton* FigureToLookAt()
{
    const DzNode* const selected = dzScene->getPrimarySelection();
    DzSkeleton* const figure = selected ? selected->getSkeleton() : nullptr;
    if (figure && figure->getWSBoundingBox().isValid())
        return figure;
    for (int i = 0; i < dzScene->getNumSkeletons(); ++i)
        if (dzScene->getSkeleton(i)->getWSBoundingBox().isValid())
            return dzScene->getSkeleton(i);
    return nullptr;
}

/// Into the figure's face. A camera that looks straight up or down has the figure's head above.
DzVec3 DirectionToFace(const DzNode& figure)
{
    const DzMatrix3 turned = figure.getWSTransform();
    const DzVec3 direction = turned.multVec(DzVec3(0.0f, 0.0f, -1.0f)).normalized();
    const DzVec3 up = turned.multVec(DzVec3(0.0f, 1.0f, 0.0f)).normalized();
    return direction - up * (0.001f * direction.m_y);
}

} // namespace

ViewpointsMenu::ViewpointsMenu(Dz3DViewport& view) : QMenu(tr("&View From")), _view(&view)
{
    int number = 0;
    for (const Viewpoint& viewpoint : viewpoints) {
        QAction* const entry = addAction(tr(viewpoint.text));
        entry->setData(number);
        entry->setShortcut(Qt::ALT + Qt::Key_1 + number);
        entry->setStatusTip(tr(viewpoint.description));
        ++number;
    }
    connect(this, SIGNAL(triggered(QAction*)), SLOT(look(QAction*)));
}

void ViewpointsMenu::look(QAction* entry)
{
    if (!_view || !_view->getCamera())
        return;
    const Viewpoint& viewpoint = viewpoints[entry->data().toInt()];
    const DzVec3 direction(viewpoint.x, viewpoint.y, viewpoint.z);
    if (direction.length() > 0.0f)
        _view->getCamera()->lookAlong(direction);
    else
        lookAtFace();
}

void ViewpointsMenu::lookAtFace()
{
    const DzSkeleton* const figure = FigureToLookAt();
    if (!figure)
        return;
    const geometry::Box3f head = geometry::HeadToShow(openhost::WorldMesh(*figure));
    DzBox3 box(DzVec3(head.min.x, head.min.y, head.min.z), DzVec3(head.max.x, head.max.y, head.max.z));
    // Where the view shows the figure.
    box.translate(openhost::BoxInView(*_view, *figure).getMin() - figure->getWSBoundingBox().getMin());
    _view->getCamera()->lookAlong(DirectionToFace(*figure));
    openhost::FrameInView(*_view, box);
}

QWidget* MakeViewButtons(QWidget& view, const ViewpointsMenu& menu)
{
    auto* const buttons = new Overlay(view, Qt::AlignTop | Qt::AlignRight);
    buttons->setObjectName(QStringLiteral("ViewButtons"));
    buttons->setAccessibleName(ViewpointsMenu::tr("Views"));
    auto* const column = new QVBoxLayout(buttons);
    column->setContentsMargins(2, 2, 2, 2);
    column->setSpacing(1);
    for (QAction* const entry : menu.actions()) {
        auto* const button = new QToolButton;
        button->setText(entry->text().remove(QLatin1Char('&')));
        button->setAccessibleName(entry->statusTip());
        button->setToolTip(QStringLiteral("%1 (%2)").arg(
            entry->statusTip(), entry->shortcut().toString(QKeySequence::NativeText)));
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        QObject::connect(button, SIGNAL(clicked()), entry, SLOT(trigger()));
        column->addWidget(button);
    }
    return buttons;
}

} // namespace desktop
