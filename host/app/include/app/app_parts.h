// What the application hands out.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <memory>

class DzAssetIOMgr;
class DzAssetMgr;
class DzContentMgr;
class DzExportMgr;
class DzImportMgr;
class DzMainWindow;
class DzPluginMgr;
class DzRenderMgr;
class DzScene;
class DzStyle;
class DzUndoStack;

namespace openhost {

class ProgressDisplay;

/// Kept here and made by whoever starts the application, since the rooms that they live in lie above this
/// one.
struct AppParts {
    AppParts();
    ~AppParts();
    AppParts(const AppParts&) = delete;
    AppParts& operator=(const AppParts&) = delete;

    /// Deletes what a fresh start makes anew, the window first. Loaded modules stay loaded, and the look
    /// stays.
    void clear();
    /// Deletes a manager, the window, or one of the window's own managers.
    /// @return false when there is none of that class
    bool remove(const QString& className);

    std::unique_ptr<DzStyle> style;
    std::unique_ptr<ProgressDisplay> progressDisplay; ///< none headless
    std::unique_ptr<DzPluginMgr> pluginMgr;
    std::unique_ptr<DzScene> scene;
    std::unique_ptr<DzUndoStack> undoStack;
    std::unique_ptr<DzExportMgr> exportMgr;
    std::unique_ptr<DzImportMgr> importMgr;
    std::unique_ptr<DzAssetMgr> assetMgr;
    std::unique_ptr<DzContentMgr> contentMgr;
    std::unique_ptr<DzAssetIOMgr> assetIOMgr;
    std::unique_ptr<DzRenderMgr> renderMgr;
    std::unique_ptr<DzMainWindow> mainWindow;
};

} // namespace openhost
