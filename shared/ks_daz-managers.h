// The host's managers, each returned or missed with its fixed message.
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

#include <QSize>

class Dz3DViewport;
class DzAction;
class DzActionMgr;
class DzAssetIOMgr;
class DzAssetMgr;
class DzCamera;
class DzContentMgr;
class DzExporter;
class DzImporter;
class DzMainWindow;
class DzPane;
class DzPaneMgr;
class DzRenderMgr;
class DzUserDrawStyle;
class DzViewTool;
class DzViewport;
class DzViewportMgr;

/// Managers, panes, viewports and tools are the host's and are borrowed; all throw kst::Exception where one
/// is missing and the flag, if any, is set. What is reached through the main window, and a viewport's camera,
/// assert that this is the GUI thread.
namespace kst {
namespace daz {

DzMainWindow* GetMainWindow(bool throwIfMissing);
DzContentMgr& GetContentMgr_X();
DzAssetMgr& GetAssetMgr_X();
DzAssetIOMgr& GetAssetIOMgr_X();
DzExporter& GetObjExporter_X(); ///< a new exporter; the caller deletes it
DzImporter& GetObjImporter_X(); ///< a new importer; the caller deletes it
DzActionMgr* GetActionMgr(bool throwIfMissing);
DzAction* FindActionOrThrow(const char* className, bool throwIfMissing);

// Panes.
DzPaneMgr* GetPaneMgr_X(bool throwIfMissing);
DzPane& GetHierarchyPane_X();
DzPane& GetContentLibraryPane_X();
DzPane& GetSmartContentPane_X();
DzPane& GetParametersPane_X();
DzPane& GetScriptIdePane_X();

// Viewports and what they show.
DzViewportMgr* GetViewportMgr(bool throwIfMissing);
Dz3DViewport& GetActive3dViewport_X();
DzCamera& GetActiveViewportCamera_X();
DzCamera& GetPerspectiveView_X(); ///< the camera that is not in the scene
DzViewport& GetMainViewport_X();  ///< viewport 0
void SetMainViewportActive_X();
DzCamera& GetViewportCamera_X(const DzViewport& viewport);
DzUserDrawStyle& FindDrawStyle_X(std::string_view name);

// Tools.
/// The last two come with other plug-ins.
enum class Tool : int { Pick, Universal, PolygonGroupEditor, Sculpting, VertexPainting };
DzViewTool* FindTool(Tool tool, bool throwIfMissing);

// Rendering.
DzRenderMgr* GetRenderMgr(bool throwIfMissing);
QSize GetGlobalRenderDimensions_X(); ///< pixels

/// The host's add-on that lets Morph Loader Pro make subdivided morphs is there, active and without error.
bool IsHdMorphPluginPresent();

} // namespace daz
} // namespace kst
