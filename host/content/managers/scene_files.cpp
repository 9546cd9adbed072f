// Saving and loading the scene as a whole.
// SPDX-License-Identifier: MIT

#include "dzapp.h"
#include "dzassetiomgr.h"
#include "dzfileiosettings.h"
#include "dzscene.h"
#include "saving/scene_asset_filters.h"

DzError DzScene::saveScene(const QString& filename)
{
    DzAssetIOMgr& manager = *dzApp->getAssetIOMgr();
    DzAssetIOFilter* const filter = manager.getAssetFilter(
        manager.findAssetFilterIndex(QLatin1String(DzSceneAssetFilter::staticMetaObject.className())));
    DzFileIOSettings options;
    filter->getDefaultOptions(&options);
    return manager.doSaveWithOptions(filter, &options, false, filename);
}

DzError DzScene::loadScene(const QString& filename, DzOpenMethod method)
{
    return dzApp->getAssetIOMgr()->doLoad(filename, method);
}
