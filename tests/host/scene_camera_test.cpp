// Cameras of the scene, and rendering through them.
// SPDX-License-Identifier: MIT

#include "dz3dviewport.h"
#include "dzbasiccamera.h"
#include "dzboolproperty.h"
#include "dzdrawstyle.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfloatproperty.h"
#include "dzmainwindow.h"
#include "dzobject.h"
#include "dzrendermgr.h"
#include "dzrenderoptions.h"
#include "dzviewport.h"
#include "dzviewportmgr.h"
#include "dzviewtool.h"
#include "scene/camera_optics.h"
#include "tests/host/host_fixture.h"

#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QSignalSpy>

#include <cmath>

namespace {

class CameraTest : public HostTest {
protected:
    /// Where the camera sees a point of the world: x and y from -1 to 1.
    geometry::Vec3f seen(const DzVec3& point, float aspect = 1.0f) const
    {
        return openhost::OpticsOf(camera, aspect).project({point.m_x, point.m_y, point.m_z}, aspect);
    }
    void expectInTheMiddle(const DzVec3& point) const
    {
        EXPECT_NEAR(seen(point).x, 0.0f, 1e-4f);
        EXPECT_NEAR(seen(point).y, 0.0f, 1e-4f);
        EXPECT_GT(seen(point).z, 0.0f);
    }
    static void expectNear(const DzVec3& a, const DzVec3& b, float tolerance = 1e-3f)
    {
        EXPECT_NEAR(a.m_x, b.m_x, tolerance);
        EXPECT_NEAR(a.m_y, b.m_y, tolerance);
        EXPECT_NEAR(a.m_z, b.m_z, tolerance);
    }
    void standAt(float x, float y, float z)
    {
        camera.getXPosControl()->setValue(x);
        camera.getYPosControl()->setValue(y);
        camera.getZPosControl()->setValue(z);
    }
    DzBasicCamera camera;
};

TEST_F(CameraTest, sees_as_wide_as_its_lens)
{
    EXPECT_NEAR(camera.getFieldOfView(), 2.0f * std::atan(18.0f / 65.0f) * 180.0f / 3.14159265f, 1e-4f);
    camera.getFocalLengthControl()->setValue(18.0f);
    EXPECT_NEAR(camera.getFieldOfView(), 90.0f, 1e-4f);
    // The lens covers the longer side.
    EXPECT_NEAR(openhost::OpticsOf(camera, 2.0f).halfHeight, 0.5f, 1e-5f);
    EXPECT_NEAR(openhost::OpticsOf(camera, 0.5f).halfHeight, 1.0f, 1e-5f);
}

TEST_F(CameraTest, aims_at_a_point_and_stays_upright)
{
    standAt(30.0f, 150.0f, 300.0f);
    for (const DzVec3& point : {DzVec3(0, 90, 0), DzVec3(400, 10, 700), DzVec3(-5, 300, -80)}) {
        camera.aimAt(point);
        expectInTheMiddle(point);
        expectNear(camera.getFocalPoint(), point, 0.01f);
        EXPECT_NEAR(openhost::OpticsOf(camera, 1.0f).right.y, 0.0f, 1e-6f) << "upright";
        EXPECT_GT(openhost::OpticsOf(camera, 1.0f).up.y, 0.0f);
    }
    const DzVec3 before = camera.getFocalPoint();
    camera.aimAt(camera.getWSPos());
    expectNear(camera.getFocalPoint(), before);
}

TEST_F(CameraTest, aims_below_a_parent_that_is_turned)
{
    auto* const parent = new DzNode;
    dzScene->addNode(parent);
    auto* const child = new DzBasicCamera;
    parent->addNodeChild(child);
    parent->getYRotControl()->setValue(70.0f);
    parent->getXPosControl()->setValue(40.0f);
    child->aimAt(DzVec3(10, 20, 30));
    expectNear(child->getFocalPoint(), DzVec3(10, 20, 30), 0.01f);
}

TEST_F(CameraTest, goes_back_until_a_box_is_in_the_picture)
{
    const DzBox3 box(DzVec3(-60, 0, -20), DzVec3(60, 180, 20));
    standAt(10.0f, 40.0f, 30.0f);
    camera.aimAt(DzVec3(-40.0f, 0.0f, -30.0f));
    for (const bool isPerspective : {true, false}) {
        camera.getPerspectiveControl()->setBoolValue(isPerspective);
        for (const float aspect : {0.6f, 1.0f, 1.8f}) {
            camera.frame(box, aspect);
            float widest = 0.0f;
            for (const float x : {-60.0f, 60.0f})
                for (const float y : {0.0f, 180.0f})
                    for (const float z : {-20.0f, 20.0f}) {
                        const geometry::Vec3f at = seen(DzVec3(x, y, z), aspect);
                        EXPECT_GT(at.z, 0.0f);
                        widest = std::max({widest, std::abs(at.x), std::abs(at.y)});
                    }
            EXPECT_LT(widest, 1.0f);
            EXPECT_GT(widest, 0.6f) << "no farther than needed";
        }
    }
    const DzVec3 before = camera.getWSPos();
    camera.frame(DzBox3(), 1.0f);
    expectNear(camera.getWSPos(), before);
}

TEST_F(CameraTest, turns_about_its_focal_point)
{
    standAt(0.0f, 100.0f, 300.0f);
    camera.aimAt(DzVec3(0, 100, 0));
    camera.orbit(90.0f, 0.0f);
    expectNear(camera.getWSPos(), DzVec3(300, 100, 0), 0.01f);
    expectInTheMiddle(DzVec3(0, 100, 0));
    camera.orbit(0.0f, -500.0f);
    expectInTheMiddle(DzVec3(0, 100, 0));
    EXPECT_GT(openhost::OpticsOf(camera, 1.0f).up.y, 0.0f) << "never over the top";
    camera.dolly(0.5f);
    EXPECT_NEAR(camera.getFocalDistance(), 150.0f, 0.01f);
    expectNear(camera.getFocalPoint(), DzVec3(0, 100, 0), 0.01f);
}

TEST_F(CameraTest, shifts_along_the_picture)
{
    standAt(0.0f, 0.0f, 100.0f);
    camera.pan(10.0f, -5.0f);
    expectNear(camera.getWSPos(), DzVec3(10, -5, 100));
}

/// A square of a metre before the perspective view.
class ViewportTest : public CameraTest {
protected:
    void SetUp() override
    {
        CameraTest::SetUp();
        manager = dzApp->getInterface()->getViewportMgr();
        view = manager->getActiveViewport()->get3DViewport();
        view->resize(200, 200);
        auto* const mesh = new DzFacetMesh;
        for (const auto& [x, y] :
             {std::pair(-50.0f, 40.0f), {50.0f, 40.0f}, {50.0f, 140.0f}, {-50.0f, 140.0f}})
            mesh->addVertex(x, y, 0.0f);
        const int corners[4] = {0, 1, 2, 3};
        mesh->addFacet(corners);
        auto* const shape = new DzFacetShape;
        shape->setFacetMesh(mesh);
        auto* const object = new DzObject;
        object->addShape(shape);
        square = new DzNode;
        square->setLabel(QStringLiteral("Square"));
        square->setObject(object);
        dzScene->addNode(square);
        dzScene->selectAllNodes(false);
    }

    QImage picture() const { return view->grab().toImage(); }

    DzViewportMgr* manager = nullptr;
    Dz3DViewport* view = nullptr;
    DzNode* square = nullptr;
};

TEST_F(ViewportTest, shows_what_moves_comes_and_goes)
{
    const QImage first = picture();
    EXPECT_EQ(picture(), first) << "nothing has changed";
    square->getXPosControl()->setValue(40.0f);
    const QImage moved = picture();
    EXPECT_NE(moved, first);
    square->setVisible(false);
    const QImage hidden = picture();
    EXPECT_NE(hidden, moved);
    square->setVisible(true);
    EXPECT_EQ(picture(), moved);
    dzScene->removeNode(square);
    EXPECT_EQ(picture(), hidden);
}

TEST_F(ViewportTest, draws_as_the_style_says)
{
    std::vector<QImage> pictures;
    ASSERT_GE(manager->getNumUserDrawStyles(), 5);
    for (int i = 0; i < manager->getNumUserDrawStyles(); ++i) {
        QSignalSpy changes(view, SIGNAL(drawStyleChanged()));
        view->setDrawStyle(nullptr);
        EXPECT_EQ(view->setUserDrawStyle(manager->getUserDrawStyle(i)->getDescription()), true);
        EXPECT_EQ(view->getDrawStyle(), manager->getUserDrawStyle(i));
        EXPECT_EQ(changes.size(), i == 0 ? 0 : 1) << "the first is in use";
        pictures.push_back(picture());
    }
    // A single square has the same lines and box, whether the hidden ones show or not.
    EXPECT_NE(pictures[0], pictures[1]);
    EXPECT_NE(pictures[1], pictures[2]);
    EXPECT_NE(pictures[2], pictures[0]);
    EXPECT_FALSE(view->setUserDrawStyle(QStringLiteral("Watercolour")));
    EXPECT_EQ(view->getDrawStyle(), manager->getUserDrawStyle(manager->getNumUserDrawStyles() - 1));
}

TEST_F(ViewportTest, boxes_what_is_selected)
{
    const QImage plain = picture();
    square->select();
    EXPECT_NE(picture(), plain);
    square->select(false);
    EXPECT_EQ(picture(), plain);
}

TEST_F(ViewportTest, knows_whom_a_pixel_shows)
{
    EXPECT_EQ(view->findNodeAt(QPoint(100, 100)), square);
    EXPECT_EQ(view->findNodeAt(QPoint(1, 1)), nullptr);
    EXPECT_EQ(view->findNodeAt(QPoint(-1, 500)), nullptr);
    square->setVisible(false);
    EXPECT_EQ(view->findNodeAt(QPoint(100, 100)), nullptr);
}

TEST_F(ViewportTest, lets_tools_take_turns)
{
    DzViewTool* const first = manager->getActiveTool();
    DzViewTool* const pick = manager->findTool(QStringLiteral("DzPickTool"));
    ASSERT_NE(first, nullptr);
    ASSERT_NE(pick, first);
    EXPECT_TRUE(first->isActive());
    QSignalSpy left(first, SIGNAL(deactivated())), entered(pick, SIGNAL(activated()));
    manager->setActiveTool(pick);
    EXPECT_EQ(manager->getActiveTool(), pick);
    EXPECT_FALSE(first->isActive());
    EXPECT_TRUE(pick->isActive());
    EXPECT_EQ(left.size() + entered.size(), 2);
    manager->setActiveTool(nullptr);
    DzViewTool foreign;
    manager->setActiveTool(&foreign);
    EXPECT_EQ(manager->getActiveTool(), pick);
}

TEST_F(ViewportTest, picks_by_click_and_empties_the_selection_beside)
{
    DzViewTool& pick = *manager->findTool(QStringLiteral("DzPickTool"));
    pick.clicked(*view, QPoint(100, 100), false);
    EXPECT_EQ(dzScene->getPrimarySelection(), square);
    pick.clicked(*view, QPoint(1, 1), true);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 1) << "added nothing";
    pick.clicked(*view, QPoint(1, 1), false);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 0);
}

TEST_F(ViewportTest, is_rendered_into_a_picture_file)
{
    DzRenderMgr& render = *dzApp->getRenderMgr();
    render.getRenderOptions()->setImageSize(QSize(64, 48));
    const QString file = TestFolder() + QStringLiteral("/render.png");
    ASSERT_TRUE(render.doRender(file));
    const QImage image(file);
    EXPECT_EQ(image.size(), QSize(64, 48));
    EXPECT_NE(image.pixel(32, 24), image.pixel(1, 1));
    EXPECT_FALSE(render.doRender(TestFolder() + QStringLiteral("/no/such/folder/render.png")));
    EXPECT_TRUE(LogText().contains(QLatin1String("no/such/folder")));
    const QString jpeg = TestFolder() + QStringLiteral("/render.JPG");
    ASSERT_TRUE(render.doRender(jpeg));
    EXPECT_EQ(QImageReader::imageFormat(jpeg), QByteArray("jpeg"));
    EXPECT_EQ(QImage(jpeg).size(), QSize(64, 48));
    const QString other = TestFolder() + QStringLiteral("/render.bmp");
    EXPECT_FALSE(render.doRender(other));
    EXPECT_FALSE(QFile::exists(other));
    EXPECT_TRUE(LogText().contains(QLatin1String("a picture is a .png, .jpg or .jpeg file")));
    render.getRenderOptions()->setImageSize(QSize(0, 99999));
    EXPECT_EQ(render.getRenderOptions()->getImageSize(), QSize(1, 16384));
}

} // namespace
