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
#include "geometry/picture_stage.h"
#include "openhost/scene_picture.h"
#include "openhost/viewport_extras.h"
#include "scene/camera_optics.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/picture.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cmath>
#include <map>

namespace {

/// About the middle of a figure.
DzObject* MakeBox(float half, float z)
{
    auto* const mesh = new DzFacetMesh;
    for (int i = 0; i < 8; ++i)
        mesh->addVertex(i & 1 ? half : -half, 90.0f + (i & 2 ? half : -half), z + (i & 4 ? half : -half));
    const int faces[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                             {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    for (const int(&face)[4] : faces)
        mesh->addFacet(face);
    auto* const shape = new DzFacetShape;
    shape->setFacetMesh(mesh);
    auto* const object = new DzObject;
    object->addShape(shape);
    return object;
}

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
        box = new DzNode;
        box->setLabel(QStringLiteral("Box"));
        box->setObject(MakeBox(20.0f, 0.0f));
        dzScene->addNode(box);
        dzScene->selectAllNodes(false);
    }

    void send(QEvent::Type type, const QPoint& at, Qt::MouseButton button, Qt::MouseButtons buttons,
              Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QMouseEvent event(type, at, button, buttons, modifiers);
        QApplication::sendEvent(view, &event);
    }
    void drag(Qt::MouseButton button, const QPoint& by) { drag(button, by, view->rect().center()); }
    void drag(Qt::MouseButton button, const QPoint& by, const QPoint& from)
    {
        send(QEvent::MouseButtonPress, from, button, button);
        send(QEvent::MouseMove, from + by, Qt::NoButton, button);
        send(QEvent::MouseButtonRelease, from + by, button, Qt::NoButton);
    }
    void click(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        send(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, modifiers);
        send(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, modifiers);
    }
    void wheel(const QPoint& at, int eighthsOfDegrees)
    {
        QWheelEvent event(QPointF(at), view->mapToGlobal(at), QPoint(), QPoint(0, eighthsOfDegrees),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view, &event);
    }
    geometry::Ray rayAt(const QPoint& pixel) const
    {
        const float aspect = float(view->width()) / float(view->height());
        return openhost::OpticsOf(*camera, aspect)
            .ray(2.0f * (float(pixel.x()) + 0.5f) / float(view->width()) - 1.0f,
                 1.0f - 2.0f * (float(pixel.y()) + 0.5f) / float(view->height()), aspect);
    }
    /// Of the front of the box, in its plane.
    DzVec3 placeAt(const QPoint& pixel) const
    {
        const geometry::Ray ray = rayAt(pixel);
        const geometry::Vec3f place = ray.origin + ray.direction * ((20.0f - ray.origin.z) / ray.direction.z);
        return DzVec3(place.x, place.y, place.z);
    }
    /// The point on the pixel's ray that is nearest to another one.
    DzVec3 seenAt(const QPoint& pixel, const DzVec3& near) const
    {
        const geometry::Ray ray = rayAt(pixel);
        const float along = Dot(geometry::Vec3f{near.m_x, near.m_y, near.m_z} - ray.origin, ray.direction);
        const geometry::Vec3f place = ray.origin + ray.direction * along;
        return DzVec3(place.x, place.y, place.z);
    }
    /// Darker than edges over the background.
    static int darkPixels(const QImage& image)
    {
        int dark = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                dark += image.pixelColor(x, y).lightness() < 35;
        return dark;
    }
    static float distance(const DzVec3& a, const DzVec3& b) { return (a - b).length(); }

    DzMainWindow* window = nullptr;
    Dz3DViewport* view = nullptr;
    DzCamera* camera = nullptr;
    DzNode* box = nullptr;
};

TEST_F(ViewportMouseTest, turns_about_the_focal_point_where_nothing_is_held)
{
    const DzVec3 point = camera->getFocalPoint(), place = camera->getWSPos();
    drag(Qt::LeftButton, QPoint(100, 30), QPoint(10, 10));
    EXPECT_GT(distance(camera->getWSPos(), place), 50.0f);
    EXPECT_LT(distance(camera->getFocalPoint(), point), 0.05f);
    EXPECT_LT(camera->getWSPos().m_x, place.m_x) << "the scene turns with the hand";
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 0) << "dragging selects nothing";
    SavePicture(*window, "viewport-turned");
}

TEST_F(ViewportMouseTest, turns_about_the_place_that_is_held)
{
    const QPoint corner = view->rect().center() + QPoint(30, -20);
    const DzVec3 held = placeAt(corner);
    EXPECT_NEAR(held.m_z, 20.0f, 0.1f) << "on the box's front";
    drag(Qt::LeftButton, QPoint(100, 30), corner);
    EXPECT_LT(distance(seenAt(corner, held), held), 0.1f) << "it is where it was in the picture";
    EXPECT_GT(std::abs(camera->getWSPos().m_x), 50.0f);
}

TEST_F(ViewportMouseTest, comes_nearer_to_what_is_under_the_pointer)
{
    const QPoint corner = view->rect().center() + QPoint(30, -20);
    const DzVec3 place = placeAt(corner);
    const float before = distance(camera->getWSPos(), place);
    wheel(corner, 240);
    EXPECT_NEAR(distance(camera->getWSPos(), place), 0.81f * before, 0.1f);
    EXPECT_LT(distance(placeAt(corner), place), 0.1f) << "it stays under the pointer";
}

TEST_F(ViewportMouseTest, frames_what_is_clicked_twice)
{
    camera->pan(15.0f, 5.0f);
    wheel(QPoint(5, 5), -600);
    const float far = camera->getFocalDistance();
    send(QEvent::MouseButtonDblClick, view->rect().center() - QPoint(8, -4), Qt::LeftButton, Qt::LeftButton);
    EXPECT_LT(camera->getFocalDistance(), far);
    EXPECT_LT(distance(camera->getFocalPoint(), box->getWSBoundingBox().getCenter()), 0.1f);
    const DzVec3 place = camera->getWSPos();
    send(QEvent::MouseButtonDblClick, QPoint(3, 3), Qt::LeftButton, Qt::LeftButton);
    EXPECT_LT(distance(camera->getWSPos(), place), 1e-3f) << "nothing is there to be framed";
}

TEST_F(ViewportMouseTest, keeps_the_selection_when_it_frames_what_is_clicked_twice)
{
    camera->dolly(4.0f);
    QPoint at = view->rect().center();
    for (int i = 0; i < 100 && at.x() > view->width() / 10; ++i) {
        camera->pan(10.0f, 0.0f);
        while (at.x() > 0 && view->findNodeAt(at) != box)
            at.rx() -= 1;
    }
    ASSERT_EQ(view->findNodeAt(at), box) << "near the left edge";
    click(at);
    ASSERT_EQ(dzScene->getPrimarySelection(), box);
    send(QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton);
    ASSERT_NE(view->findNodeAt(at), box) << "something else is there afterwards";
    send(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(dzScene->getPrimarySelection(), box);
    click(at);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 0) << "the next click is one again";
}

TEST_F(ViewportMouseTest, drags_on_from_where_it_was_clicked_twice)
{
    send(QEvent::MouseButtonDblClick, QPoint(10, 10), Qt::LeftButton, Qt::LeftButton);
    const DzVec3 place = camera->getWSPos();
    send(QEvent::MouseMove, QPoint(12, 11), Qt::NoButton, Qt::LeftButton);
    EXPECT_LT(distance(camera->getWSPos(), place), 1e-3f) << "a small wobble";
}

TEST_F(ViewportMouseTest, does_not_mind_a_wheel_that_is_turned_sideways)
{
    const float focus = camera->getFocalDistance();
    const QPoint at = view->rect().center();
    QWheelEvent event(QPointF(at), view->mapToGlobal(at), QPoint(), QPoint(120, 0), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view, &event);
    EXPECT_EQ(camera->getFocalDistance(), focus);
}

TEST_F(ViewportMouseTest, turns_on_from_the_steepest_view_without_a_jump)
{
    camera->lookAlong(DzVec3(0.0f, -1.0f, -0.001f));
    const DzVec3 place = camera->getWSPos();
    const auto moved = [&] { return distance(camera->getWSPos(), place) / camera->getFocalDistance(); };
    camera->orbit(0.0f, -0.4f);
    EXPECT_LT(moved(), 1e-3f) << "no steeper than it is";
    camera->orbit(0.0f, 0.4f);
    EXPECT_NEAR(moved(), 0.4f * 3.14159f / 180.0f, 1e-3f);
    camera->orbit(0.0f, 10.0f);
    camera->orbit(0.0f, -40.0f);
    EXPECT_GT(moved(), 0.9f * 3.14159f / 180.0f) << "by the mouse, no steeper than 89 degrees";
}

TEST_F(ViewportMouseTest, finds_under_each_pixel_what_a_traced_ray_meets)
{
    auto* const behind = new DzNode;
    behind->setLabel(QStringLiteral("Behind"));
    behind->setObject(MakeBox(60.0f, -80.0f));
    dzScene->addNode(behind);
    camera->orbit(25.0f, -15.0f);
    const openhost::ScenePicture scene = openhost::VisibleItems(*dzScene);
    const geometry::PictureStage stage(scene.items);
    std::map<const DzNode*, int> seen;
    for (int y = 5; y < view->height(); y += 23)
        for (int x = 5; x < view->width(); x += 23) {
            const geometry::PictureStage::Hit hit = stage.trace(rayAt(QPoint(x, y)));
            const DzNode* const node = hit.isValid ? scene.nodes[hit.item] : nullptr;
            EXPECT_EQ(view->findNodeAt(QPoint(x, y)), node) << x << ", " << y;
            ++seen[node];
        }
    EXPECT_EQ(seen.size(), 3u) << "both boxes, and what is beside them";
}

TEST_F(ViewportMouseTest, shows_the_ground_behind_what_stands_on_it)
{
    dzScene->selectAllNodes(false);
    const QImage without = view->grab().toImage();
    openhost::ShowGround(*view, true);
    const QImage with = view->grab().toImage();
    const QPoint middle = view->rect().center();
    EXPECT_NE(with, without);
    EXPECT_EQ(with.pixel(middle), without.pixel(middle));
    SavePicture(*window, "viewport-ground");
    view->setUserDrawStyle(QStringLiteral("Hidden Line"));
    EXPECT_EQ(view->grab().toImage().pixelColor(middle + QPoint(3, 3)), QColor(58, 60, 64))
        << "faces without shading hide it too";
    openhost::ShowGround(*view, false);
    view->setUserDrawStyle(QStringLiteral("Wire Shaded"));
    const QImage plain = view->grab().toImage();
    openhost::ShowGround(*view, true);
    EXPECT_EQ(darkPixels(view->grab().toImage()), darkPixels(plain)) << "no outline is darker than it was";
    openhost::ShowGround(*view, false);
    view->setUserDrawStyle(QStringLiteral("Smooth Shaded"));
    EXPECT_EQ(view->grab().toImage(), without);
}

TEST_F(ViewportMouseTest, lights_from_the_camera_so_that_no_side_is_dark)
{
    for (int turn = 0; turn < 8; ++turn) {
        camera->orbit(45.0f, 0.0f);
        const QColor seen = view->grab().toImage().pixelColor(view->rect().center());
        EXPECT_GT(seen.red(), 130) << turn;
        EXPECT_LT(seen.red(), 255) << turn << ": light is not lost in white";
    }
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
    wheel(QPoint(50, 50), 240);
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
