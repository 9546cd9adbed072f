// Making what the application hands out.
// SPDX-License-Identifier: MIT

#include "startup.h"

#include "app/app_parts.h"
#include "dzapp.h"
#include "dzassetiomgr.h"
#include "dzassetmgr.h"
#include "dzcontentmgr.h"
#include "dzdeleteaction.h"
#include "dzexportmgr.h"
#include "dzimportmgr.h"
#include "dzmainwindow.h"
#include "dzplugin.h"
#include "dzpluginmgr.h"
#include "dzrendermgr.h"
#include "dzscene.h"
#include "dzstyle.h"
#include "dzundostack.h"
#include "figure/held_memory.h"
#include "headless_dialogs.h"
#include "look.h"
#include "progress_window.h"

namespace openhost {

namespace {

/// Those of the plug-ins that are loaded, and of those that come and go from now on.
void AddActionsOfPlugins(DzPluginMgr& plugins, DzMainWindow& window)
{
    for (int i = 0; i < plugins.getNumPlugins(); ++i)
        window.getActionMgr()->addActions(*plugins.getPlugin(i));
    QObject::connect(&plugins, &DzPluginMgr::pluginLoaded, &window, [&plugins, &window](const QString& name) {
        window.getActionMgr()->addActions(*plugins.findPlugin(name));
    });
    QObject::connect(&plugins, &DzPluginMgr::aboutToUnload, &window,
                     [&plugins, &window](const QString& name) {
                         window.getActionMgr()->removeActions(*plugins.findPlugin(name));
                     });
}

} // namespace

void Dress(DzApp& app, AppParts& parts)
{
    if (app.isHeadless()) {
        app.installEventFilter(new HeadlessDialogs(&app));
    } else {
        DressWindows(app);
        parts.progressDisplay = std::make_unique<ProgressWindows>();
    }
    parts.style = std::make_unique<DzStyle>();
}

void Furnish(AppParts& parts)
{
    parts.scene = std::make_unique<DzScene>();
    parts.undoStack = std::make_unique<DzUndoStack>();
    parts.undoStack->setMeasure(&HeldMemory);
    parts.exportMgr = std::make_unique<DzExportMgr>();
    parts.importMgr = std::make_unique<DzImportMgr>();
    parts.assetMgr = std::make_unique<DzAssetMgr>();
    parts.contentMgr = std::make_unique<DzContentMgr>();
    parts.assetIOMgr = std::make_unique<DzAssetIOMgr>();
    parts.renderMgr = std::make_unique<DzRenderMgr>();
    parts.mainWindow = std::make_unique<DzMainWindow>();
    if (!parts.pluginMgr)
        parts.pluginMgr = std::make_unique<DzPluginMgr>();
    parts.mainWindow->getActionMgr()->addAction(new DzDeleteAction);
    AddActionsOfPlugins(*parts.pluginMgr, *parts.mainWindow);
}

} // namespace openhost
