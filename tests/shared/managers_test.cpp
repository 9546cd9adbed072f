// The host's managers, panes, viewports and tools, there and missing.
// SPDX-License-Identifier: MIT

#include "dz3dviewport.h"
#include "dzcamera.h"
#include "dzdrawstyle.h"
#include "dzmainwindow.h"
#include "dzpane.h"
#include "dzpanemgr.h"
#include "dzrendermgr.h"
#include "dzrenderoptions.h"
#include "dzviewport.h"
#include "dzviewportmgr.h"
#include "dzviewtool.h"
#include "ks_daz-helpers.h"
#include "ks_daz-managers.h"
#include "ks_path-resolver.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"

using namespace kst::daz;

namespace {

class ManagersTest : public HostTest {
protected:
    /// What a look-up says in a host that lacks one of its managers.
    template <class LookUp>
    static std::string without(const char* className, const LookUp& lookUp)
    {
        TestHost().reset();
        EXPECT_TRUE(openhost::RemoveManager(QLatin1String(className))) << className;
        return MessageOf(lookUp);
    }

    /// The same for a host without one pane.
    template <class LookUp>
    static std::string withoutPane(const char* className, const LookUp& lookUp)
    {
        TestHost().reset();
        DzPane* const pane = GetPaneMgr_X(true)->findPane(QLatin1String(className));
        EXPECT_NE(pane, nullptr) << className;
        delete pane;
        return MessageOf(lookUp);
    }
};

TEST_F(ManagersTest, are_all_there)
{
    EXPECT_NE(GetMainWindow(true), nullptr);
    EXPECT_EQ(&GetContentMgr_X(), dzApp->getContentMgr());
    EXPECT_EQ(&GetAssetMgr_X(), dzApp->getAssetMgr());
    EXPECT_EQ(&GetAssetIOMgr_X(), dzApp->getAssetIOMgr());
    EXPECT_EQ(GetActionMgr(true), dzApp->getInterface()->getActionMgr());
    EXPECT_EQ(GetPaneMgr_X(true), dzApp->getInterface()->getPaneMgr());
    EXPECT_EQ(GetViewportMgr(true), dzApp->getInterface()->getViewportMgr());
    EXPECT_EQ(GetRenderMgr(true), dzApp->getRenderMgr());
}

TEST_F(ManagersTest, are_told_by_name_when_missing)
{
    const std::string noWindow = "failed to get Daz Studio main window";
    EXPECT_EQ(without("DzMainWindow", [] { GetMainWindow(true); }), noWindow);
    EXPECT_EQ(without("DzMainWindow", [] { GetActionMgr(true); }), noWindow);
    EXPECT_EQ(without("DzMainWindow", [] { GetPaneMgr_X(true); }), noWindow);
    EXPECT_EQ(without("DzContentMgr", [] { GetContentMgr_X(); }), "failed to get Daz Studio content manager");
    EXPECT_EQ(without("DzAssetMgr", [] { GetAssetMgr_X(); }), "failed to get Daz Studio asset manager");
    EXPECT_EQ(without("DzAssetIOMgr", [] { GetAssetIOMgr_X(); }),
              "failed to get Daz Studio asset IO manager");
    EXPECT_EQ(without("DzExportMgr", [] { GetObjExporter_X(); }), "failed to find DzObjExporter");
    EXPECT_EQ(without("DzImportMgr", [] { GetObjImporter_X(); }), "failed to find DzObjImporter");
    EXPECT_EQ(without("DzActionMgr", [] { GetActionMgr(true); }), "failed to get Daz Studio action manager");
    EXPECT_EQ(without("DzPaneMgr", [] { GetPaneMgr_X(true); }), "failed to get Daz Studio asset manager");
    EXPECT_EQ(without("DzViewportMgr", [] { GetViewportMgr(true); }),
              "failed to get Daz Studio viewport manager");
    EXPECT_EQ(without("DzMainWindow", [] { GetViewportMgr(true); }),
              "failed to get Daz Studio viewport manager");
    EXPECT_EQ(without("DzRenderMgr", [] { GetRenderMgr(true); }),
              "failed to access Daz Studio render manager");
}

TEST_F(ManagersTest, are_null_when_missing_and_nobody_minds)
{
    openhost::RemoveManager(QLatin1String("DzRenderMgr"));
    EXPECT_EQ(GetRenderMgr(false), nullptr);
    openhost::RemoveManager(QLatin1String("DzActionMgr"));
    EXPECT_EQ(GetActionMgr(false), nullptr);
    EXPECT_EQ(FindActionOrThrow("DzDeleteAction", false), nullptr);
    openhost::RemoveManager(QLatin1String("DzPaneMgr"));
    EXPECT_EQ(GetPaneMgr_X(false), nullptr);
    openhost::RemoveManager(QLatin1String("DzViewportMgr"));
    EXPECT_EQ(GetViewportMgr(false), nullptr);
    EXPECT_EQ(FindTool(Tool::Pick, false), nullptr);
    openhost::RemoveManager(QLatin1String("DzMainWindow"));
    EXPECT_EQ(GetMainWindow(false), nullptr);
    EXPECT_EQ(GetActionMgr(false), nullptr);
    EXPECT_EQ(GetPaneMgr_X(false), nullptr);
    EXPECT_TRUE(IsHdMorphPluginPresent());
    openhost::RemoveManager(QLatin1String("DzPluginMgr"));
    EXPECT_FALSE(IsHdMorphPluginPresent());
    EXPECT_FALSE(openhost::RemoveManager(QLatin1String("DzMainWindow"))) << "it is gone";
}

TEST_F(ManagersTest, are_back_after_a_reset)
{
    for (const char* const name : {"DzMainWindow", "DzContentMgr", "DzPluginMgr", "DzRenderMgr"})
        EXPECT_TRUE(openhost::RemoveManager(QLatin1String(name)));
    TestHost().reset();
    EXPECT_NE(GetMainWindow(false), nullptr);
    EXPECT_NE(dzApp->getContentMgr(), nullptr);
    EXPECT_NE(dzApp->getPluginMgr(), nullptr);
    EXPECT_NE(GetRenderMgr(false), nullptr);
}

TEST_F(ManagersTest, tell_content_paths_that_there_is_no_content)
{
    const std::string message = "failed to get Daz Studio content manager";
    EXPECT_EQ(without("DzContentMgr", [] { GetAbsolutePathQ_X(QLatin1String("a")); }), message);
    EXPECT_EQ(without("DzContentMgr", [] { GetAbsolutePath_X("a"); }), message);
    EXPECT_EQ(without("DzContentMgr", [] { GetDazRelativePath_X("/a"); }), message);
    EXPECT_EQ(without("DzContentMgr", [] { GetBaseDirectory_X("/a"); }), message);
    EXPECT_EQ(without("DzContentMgr", [] { const KsPathResolver resolver; }), message);
}

TEST_F(ManagersTest, find_the_panes_that_people_work_with)
{
    EXPECT_STREQ(GetHierarchyPane_X().metaObject()->className(), "DzHierarchyPane");
    EXPECT_STREQ(GetContentLibraryPane_X().metaObject()->className(), "DzContentLibraryPane");
    EXPECT_STREQ(GetSmartContentPane_X().metaObject()->className(), "DzSmartContentPane");
    EXPECT_STREQ(GetParametersPane_X().metaObject()->className(), "DzParametersPane");
    EXPECT_STREQ(GetScriptIdePane_X().metaObject()->className(), "DzScriptPane");
}

TEST_F(ManagersTest, name_the_pane_that_is_missing)
{
    EXPECT_EQ(withoutPane("DzHierarchyPane", [] { GetHierarchyPane_X(); }),
              "cannot find Daz Studio scene hierarchy pane");
    EXPECT_EQ(withoutPane("DzContentLibraryPane", [] { GetContentLibraryPane_X(); }),
              "failed to find the Daz Studio Content Library pane");
    EXPECT_EQ(withoutPane("DzSmartContentPane", [] { GetSmartContentPane_X(); }),
              "failed to find the Daz Studio Smart Content pane");
    EXPECT_EQ(withoutPane("DzParametersPane", [] { GetParametersPane_X(); }),
              "failed to find the Daz Studio Parameters pane");
    EXPECT_EQ(withoutPane("DzScriptPane", [] { GetScriptIdePane_X(); }),
              "failed to find the Daz Studio Script IDE pane");
}

class ViewsTest : public HostTest {};

TEST_F(ViewsTest, show_the_scene_through_the_perspective_view)
{
    EXPECT_EQ(&GetActiveViewportCamera_X(), &GetPerspectiveView_X());
    EXPECT_EQ(&GetActive3dViewport_X(), GetMainViewport_X().get3DViewport());
    EXPECT_EQ(&GetViewportCamera_X(GetMainViewport_X()), &GetPerspectiveView_X());
    EXPECT_EQ(GetPerspectiveView_X().getLabel(), QLatin1String("Perspective View"));
    EXPECT_FALSE(GetPerspectiveView_X().isInScene());
    SetMainViewportActive_X();
    EXPECT_EQ(GetViewportMgr(true)->getActiveViewport(), &GetMainViewport_X());
}

TEST_F(ViewsTest, go_back_to_the_perspective_view_when_their_camera_is_deleted)
{
    auto* const camera = new DzCamera;
    GetActive3dViewport_X().setCamera(camera);
    EXPECT_EQ(&GetActiveViewportCamera_X(), camera);
    delete camera;
    EXPECT_EQ(&GetActiveViewportCamera_X(), &GetPerspectiveView_X());
}

TEST_F(ViewsTest, tell_that_nothing_is_there_to_look_through)
{
    DzViewport& viewport = GetMainViewport_X();
    delete &GetPerspectiveView_X();
    EXPECT_EQ(MessageOf([] { GetPerspectiveView_X(); }), "cannot get perspective view");
    EXPECT_EQ(MessageOf([&] { GetViewportCamera_X(viewport); }), "cannot get viewport camera");
    EXPECT_EQ(MessageOf([] { GetActiveViewportCamera_X(); }), "failed to find active camera in scene");
    delete viewport.get3DViewport();
    EXPECT_EQ(MessageOf([] { GetActive3dViewport_X(); }), "failed to find active 3D viewport");
    delete &viewport;
    EXPECT_EQ(MessageOf([] { GetMainViewport_X(); }), "failed to find viewport 0");
    EXPECT_EQ(MessageOf([] { SetMainViewportActive_X(); }), "failed to find viewport 0");
}

TEST_F(ViewsTest, name_a_draw_style_that_no_host_has)
{
    EXPECT_EQ(FindDrawStyle_X("Smooth Shaded").getDescription(), QLatin1String("Smooth Shaded"));
    EXPECT_EQ(FindDrawStyle_X("wire shaded").getDescription(), QLatin1String("Wire Shaded"));
    EXPECT_EQ(MessageOf([] { FindDrawStyle_X("Watercolour"); }), "failed to find view style Watercolour");
}

TEST_F(ViewsTest, find_tools_by_what_they_are_for)
{
    EXPECT_STREQ(FindTool(Tool::Pick, true)->metaObject()->className(), "DzPickTool");
    EXPECT_STREQ(FindTool(Tool::Universal, true)->metaObject()->className(), "DzUniversalTool");
    EXPECT_STREQ(FindTool(Tool::PolygonGroupEditor, true)->metaObject()->className(),
                 "DzPolygonGroupEditorTool");
    EXPECT_EQ(FindTool(Tool::Sculpting, false), nullptr) << "comes with another plug-in";
    EXPECT_EQ(MessageOf([] { FindTool(Tool::VertexPainting, true); }),
              "failed to find tool DzVertexPaintingTool");
    EXPECT_EQ(static_cast<int>(Tool::PolygonGroupEditor), 2);
}

TEST_F(ViewsTest, know_the_size_of_the_next_render)
{
    dzApp->getRenderMgr()->getRenderOptions()->setImageSize(QSize(640, 480));
    EXPECT_EQ(GetGlobalRenderDimensions_X(), QSize(640, 480));
    delete dzApp->getRenderMgr()->getRenderOptions();
    EXPECT_EQ(MessageOf([] { GetGlobalRenderDimensions_X(); }), "failed to access Daz Studio render options");
}

} // namespace
