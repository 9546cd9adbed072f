// The host's managers, each returned or missed with its fixed message.
// SPDX-License-Identifier: MIT

#include "ks_daz-managers.h"

#include "ks_daz-checked.h"
#include "ks_gui.h"
#include "ks_string.h"

#include <dzaction.h>
#include <dzactionmgr.h>
#include <dzapp.h>
#include <dzassetiomgr.h>
#include <dzassetmgr.h>
#include <dzcontentmgr.h>
#include <dzexporter.h>
#include <dzexportmgr.h>
#include <dzimporter.h>
#include <dzimportmgr.h>
#include <dzmainwindow.h>
#include <dzplugin.h>
#include <dzpluginmgr.h>

namespace kst {
namespace daz {

DzMainWindow* GetMainWindow(bool throwIfMissing)
{
    gui::AssertGuiThread();
    return CheckedIf(dzApp->getInterface(), throwIfMissing, "failed to get Daz Studio main window");
}

DzContentMgr& GetContentMgr_X()
{
    return Checked(dzApp->getContentMgr(), "failed to get Daz Studio content manager");
}

DzAssetMgr& GetAssetMgr_X()
{
    return Checked(dzApp->getAssetMgr(), "failed to get Daz Studio asset manager");
}

DzAssetIOMgr& GetAssetIOMgr_X()
{
    return Checked(dzApp->getAssetIOMgr(), "failed to get Daz Studio asset IO manager");
}

DzExporter& GetObjExporter_X()
{
    DzExportMgr* const manager = dzApp->getExportMgr();
    return *CheckedIf(manager ? manager->findExporterByClassName(QLatin1String("DzObjExporter")) : nullptr,
                      true, "failed to find DzObjExporter");
}

DzImporter& GetObjImporter_X()
{
    DzImportMgr* const manager = dzApp->getImportMgr();
    return *CheckedIf(manager ? manager->findImporterByClassName(QLatin1String("DzObjImporter")) : nullptr,
                      true, "failed to find DzObjImporter");
}

DzActionMgr* GetActionMgr(bool throwIfMissing)
{
    const DzMainWindow* const window = GetMainWindow(throwIfMissing);
    return window
               ? CheckedIf(window->getActionMgr(), throwIfMissing, "failed to get Daz Studio action manager")
               : nullptr;
}

DzAction* FindActionOrThrow(const char* className, bool throwIfMissing)
{
    const DzActionMgr* const manager = GetActionMgr(throwIfMissing);
    DzAction* const action = manager ? manager->findAction(QLatin1String(className)) : nullptr;
    if (!action && throwIfMissing)
        throw Exception("failed to find action {}", str::Quote(className));
    return action;
}

bool IsHdMorphPluginPresent()
{
    const DzPluginMgr* const manager = dzApp->getPluginMgr();
    if (!manager)
        return false;
    const DzPlugin* const plugin =
        manager->findPlugin(QLatin1String("Morph Loader Pro SubDivision Resolution"));
    return plugin && plugin->isActivated() && plugin->getStatus() == DzPlugin::Loaded;
}

} // namespace daz
} // namespace kst
