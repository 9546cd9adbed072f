// The pane of the content directories.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzpane.h"

class DzAsset;
class QTreeWidget;
class QTreeWidgetItem;

namespace openhost {
class AssetList;
class FileFinder;
class PaneRefresh;
} // namespace openhost

/// The folders of every content directory as a tree, and the user files of the chosen one; or those that are
/// looked for in all of them.
class DzContentLibraryPane : public DzPane {
    Q_OBJECT
public:
    DzContentLibraryPane();
    ~DzContentLibraryPane();

    void refresh() override;

    /// As DzAsset objects, which live as long as the pane; in the order of the list.
    Q_INVOKABLE QObjectList getSelectedAssets();
    /// Opens the asset's folder and selects the asset. The browse methods return false, and leave everything
    /// as it is, for null and for what is in no content directory.
    Q_INVOKABLE bool browseToAsset(DzAsset* asset);
    /// @param category  a folder's path below its content directory, such as "/People/Genesis 9"
    Q_INVOKABLE bool browseToCategory(const QString& category);
    /// @param product  the name of a folder at the second level of a content directory
    Q_INVOKABLE bool browseToProduct(const QString& product);

private slots:
    void addSubfolders(QTreeWidgetItem* item);
    void showFiles();
    void showFolderOf(const QString& file);
    void markStale();

private:
    void build();
    void fillTree();
    QTreeWidgetItem* addFolder(QTreeWidgetItem& parent, const QString& name, const QString& path);
    QTreeWidgetItem* childOf(QTreeWidgetItem& item, const QString& path);
    bool browseTo(const QString& folder);
    bool chooseFolder(const QString& folder);

    openhost::PaneRefresh* _refresh;
    QTreeWidget* _tree = nullptr; ///< null until it is needed, as the list
    openhost::AssetList* _list = nullptr;
    openhost::FileFinder* _finder = nullptr;
};
