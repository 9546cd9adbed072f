// The host's panes, viewports, tools and render options, each returned or missed with its fixed message.
// SPDX-License-Identifier: MIT

#include "ks_daz-managers.h"

#include "ks_daz-adaptation.h"
#include "ks_daz-checked.h"
#include "ks_gui.h"
#include "ks_string.h"

#include <dz3dviewport.h>
#include <dzapp.h>
#include <dzcamera.h>
#include <dzmainwindow.h>
#include <dzpane.h>
#include <dzpanemgr.h>
#include <dzrendermgr.h>
#include <dzviewport.h>
#include <dzviewportmgr.h>
#include <dzviewtool.h>

namespace kst {
namespace daz {

namespace {

DzPane& FindPane_X(const char* className, const char* message)
{
    return Checked(GetPaneMgr_X(true)->findPane(QLatin1String(className)), message);
}

const char* ClassNameOf(Tool tool)
{
    switch (tool) {
    case Tool::Pick:
        return "DzPickTool";
    case Tool::Universal:
        return "DzUniversalTool";
    case Tool::PolygonGroupEditor:
        return "DzPolygonGroupEditorTool";
    case Tool::Sculpting:
        return "DzSculptingTool";
    case Tool::VertexPainting:
        return "DzVertexPaintingTool";
    }
    return "";
}

} // namespace

DzPaneMgr* GetPaneMgr_X(bool throwIfMissing)
{
    const DzMainWindow* const window = GetMainWindow(throwIfMissing);
    // The asset manager's text, as users have always seen it here.
    return window ? CheckedIf(window->getPaneMgr(), throwIfMissing, "failed to get Daz Studio asset manager")
                  : nullptr;
}

DzPane& GetHierarchyPane_X()
{
    return FindPane_X("DzHierarchyPane", "cannot find Daz Studio scene hierarchy pane");
}
DzPane& GetContentLibraryPane_X()
{
    return FindPane_X("DzContentLibraryPane", "failed to find the Daz Studio Content Library pane");
}
DzPane& GetSmartContentPane_X()
{
    return FindPane_X("DzSmartContentPane", "failed to find the Daz Studio Smart Content pane");
}
DzPane& GetParametersPane_X()
{
    return FindPane_X("DzParametersPane", "failed to find the Daz Studio Parameters pane");
}
DzPane& GetScriptIdePane_X()
{
    return FindPane_X("DzScriptPane", "failed to find the Daz Studio Script IDE pane");
}

DzViewportMgr* GetViewportMgr(bool throwIfMissing)
{
    const DzMainWindow* const window = GetMainWindow(false);
    return CheckedIf(window ? window->getViewportMgr() : nullptr, throwIfMissing,
                     "failed to get Daz Studio viewport manager");
}

Dz3DViewport& GetActive3dViewport_X()
{
    const DzViewport* const viewport = GetViewportMgr(true)->getActiveViewport();
    return Checked(viewport ? KsHelpersDaz::Get3dViewport(*viewport) : nullptr,
                   "failed to find active 3D viewport");
}

DzCamera& GetActiveViewportCamera_X()
{
    return Checked(GetActive3dViewport_X().getCamera(), "failed to find active camera in scene");
}

DzCamera& GetPerspectiveView_X()
{
    return Checked(KsHelpersDaz::GetPerspectiveView(*GetViewportMgr(true)), "cannot get perspective view");
}

DzViewport& GetMainViewport_X()
{
    return Checked(GetViewportMgr(true)->getViewport(0), "failed to find viewport 0");
}

void SetMainViewportActive_X()
{
    GetViewportMgr(true)->setActiveViewport(&GetMainViewport_X());
}

DzCamera& GetViewportCamera_X(const DzViewport& viewport)
{
    gui::AssertGuiThread();
    const Dz3DViewport* const view = KsHelpersDaz::Get3dViewport(viewport);
    return Checked(view ? view->getCamera() : nullptr, "cannot get viewport camera");
}

DzUserDrawStyle& FindDrawStyle_X(std::string_view name)
{
    DzUserDrawStyle* const style = GetViewportMgr(true)->findUserDrawStyle(str::ToQ(name));
    if (!style)
        throw Exception("failed to find view style {}", name);
    return *style;
}

DzViewTool* FindTool(Tool tool, bool throwIfMissing)
{
    const DzViewportMgr* const manager = GetViewportMgr(throwIfMissing);
    DzViewTool* const found = manager ? manager->findTool(QLatin1String(ClassNameOf(tool))) : nullptr;
    if (!found && throwIfMissing)
        throw Exception("failed to find tool {}", ClassNameOf(tool));
    return found;
}

DzRenderMgr* GetRenderMgr(bool throwIfMissing)
{
    return CheckedIf(dzApp->getRenderMgr(), throwIfMissing, "failed to access Daz Studio render manager");
}

QSize GetGlobalRenderDimensions_X()
{
    const DzRenderOptions& options =
        Checked(GetRenderMgr(true)->getRenderOptions(), "failed to access Daz Studio render options");
    return KsHelpersDaz::GetImageSize(options);
}

} // namespace daz
} // namespace kst
