// The viewport, by mouse.
// SPDX-License-Identifier: MIT

#include "dz3dviewport.h"
#include "dzcamera.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzmainwindow.h"
#include "dzobject.h"
#include "dzviewport.h"
#include "dzviewportmgr.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/picture.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

namespace {

/// A box of a hand's breadth before the perspective view.
class ViewportMouseTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        window = dzApp->getInterface();
        window->resize(1400, 700); // with room for the panes on both sides
        window->show();
        QApplication::processEvents();
        view = window->getViewportMgr()->getActiveViewport()->get3DViewport();
        camera = view->getCamera();
        auto* const mesh = new DzFacetMesh;
        for (int i = 0; i < 8; ++i)
            mesh->addVertex(i & 1 ? 20.0f : -20.0f, i & 2 ? 110.0f : 70.0f, i & 4 ? 20.0f : -20.0f);
        const int faces[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                 {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
        for (const int(&face)[4] : faces)
            mesh->addFacet(face);
        auto* const shape = new DzFacetShape;
        shape->setFacetMesh(mesh);
        auto* const object = new DzObject;
        object->addShape(shape);
        box = new DzNode;
        box->setLabel(QStringLiteral("Box"));
        box->setObject(object);
        dzScene->addNode(box);
        dzScene->selectAllNodes(false);
    }

    void send(QEvent::Type type, const QPoint& at, Qt::MouseButton button, Qt::MouseButtons buttons,
              Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QMouseEvent event(type, at, button, buttons, modifiers);
        QApplication::sendEvent(view, &event);
    }
    void drag(Qt::MouseButton button, const QPoint& by)
    {
        const QPoint from = view->rect().center();
        send(QEvent::MouseButtonPress, from, button, button);
        send(QEvent::MouseMove, from + by, Qt::NoButton, button);
        send(QEvent::MouseButtonRelease, from + by, button, Qt::NoButton);
    }
    void click(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        send(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, modifiers);
        send(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, modifiers);
    }
    static float distance(const DzVec3& a, const DzVec3& b) { return (a - b).length(); }

    DzMainWindow* window = nullptr;
    Dz3DViewport* view = nullptr;
    DzCamera* camera = nullptr;
    DzNode* box = nullptr;
};

TEST_F(ViewportMouseTest, turns_about_the_focal_point_with_the_left_button)
{
    const DzVec3 point = camera->getFocalPoint(), place = camera->getWSPos();
    drag(Qt::LeftButton, QPoint(100, 30));
    EXPECT_GT(distance(camera->getWSPos(), place), 50.0f);
    EXPECT_LT(distance(camera->getFocalPoint(), point), 0.05f);
    EXPECT_LT(camera->getWSPos().m_x, place.m_x) << "the scene turns with the hand";
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 0) << "dragging selects nothing";
    SavePicture(*window, "viewport-turned");
}

TEST_F(ViewportMouseTest, keeps_what_it_holds_under_the_pointer_with_the_right_button)
{
    ASSERT_EQ(view->findNodeAt(view->rect().center()), box);
    const QPoint by(90, -40);
    drag(Qt::RightButton, by);
    EXPECT_EQ(view->findNodeAt(view->rect().center() + by), box);
    EXPECT_EQ(view->findNodeAt(view->rect().center() - by), nullptr);
}

TEST_F(ViewportMouseTest, goes_nearer_with_the_wheel)
{
    const float far = camera->getFocalDistance();
    QWheelEvent wheel(QPointF(50, 50), view->mapToGlobal(QPoint(50, 50)), QPoint(), QPoint(0, 240),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view, &wheel);
    EXPECT_NEAR(camera->getFocalDistance(), far * 0.81f, 0.01f);
}

TEST_F(ViewportMouseTest, selects_what_is_clicked)
{
    click(view->rect().center());
    EXPECT_EQ(dzScene->getPrimarySelection(), box);
    SavePicture(*window, "viewport-selected");
    click(QPoint(3, 3), Qt::ControlModifier);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 1);
    click(QPoint(3, 3));
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 0);
}

TEST_F(ViewportMouseTest, takes_a_small_wobble_for_a_click)
{
    drag(Qt::LeftButton, QPoint(2, 1));
    EXPECT_EQ(dzScene->getPrimarySelection(), box);
}

} // namespace
