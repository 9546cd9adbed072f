// The pane of the content directories.
// SPDX-License-Identifier: MIT

#include "content_library_pane.h"

#include "dzapp.h"
#include "dzasset.h"
#include "dzcontentmgr.h"
#include "file_finder.h"
#include "openhost/plain_tip.h"
#include "pane_asset_list.h"
#include "pane_refresh.h"
#include "pane_user_files.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int pathRole = Qt::UserRole;
constexpr int isReadRole = Qt::UserRole + 1;
constexpr QDir::Filters subfolders = QDir::Dirs | QDir::NoDotAndDotDot;

/// As soon as one is met, however much else the folder holds.
bool HasSubfolders(const QString& folder)
{
    return QDirIterator(folder, subfolders).hasNext();
}

} // namespace

DzContentLibraryPane::DzContentLibraryPane()
    : DzPane(QLatin1String(QT_TRANSLATE_NOOP("openhost::Panes", "Content Library"))),
      _refresh(new openhost::PaneRefresh(*this, [this] { fillTree(); }))
{
}

DzContentLibraryPane::~DzContentLibraryPane() = default;

void DzContentLibraryPane::refresh()
{
    _refresh->mark();
    _refresh->settle();
}

void DzContentLibraryPane::markStale()
{
    _refresh->mark();
}

void DzContentLibraryPane::build()
{
    if (_tree)
        return;
    _tree = new QTreeWidget;
    _tree->setHeaderHidden(true);
    _tree->setUniformRowHeights(true);
    _tree->setAccessibleName(tr("Content folders"));
    _finder = new openhost::FileFinder;
    _list = new openhost::AssetList;
    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(_tree);
    splitter->addWidget(_list);
    splitter->setChildrenCollapsible(false);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(_finder);
    layout->addWidget(splitter, 1);
    connect(_finder, SIGNAL(changed()), SLOT(showFiles()));
    connect(_list, SIGNAL(favoritesChanged()), _finder, SLOT(refilter()));
    connect(_list, SIGNAL(folderWanted(QString)), SLOT(showFolderOf(QString)));
    connect(_tree, SIGNAL(itemExpanded(QTreeWidgetItem*)), SLOT(addSubfolders(QTreeWidgetItem*)));
    connect(_tree, SIGNAL(currentItemChanged(QTreeWidgetItem*, QTreeWidgetItem*)), SLOT(showFiles()));
    // The manager is made after the panes.
    if (const DzContentMgr* const content = dzApp->getContentMgr())
        connect(content, SIGNAL(contentDirectoryListChanged()), SLOT(markStale()));
}

void DzContentLibraryPane::fillTree()
{
    build();
    const QString chosen =
        _tree->currentItem() ? _tree->currentItem()->data(0, pathRole).toString() : QString();
    const QStringList selected = _list->selectedFiles();
    _tree->clear();
    for (const QString& directory : openhost::ContentDirectories())
        addFolder(*_tree->invisibleRootItem(), QFileInfo(directory).fileName(), directory);
    if (_tree->topLevelItemCount() == 1)
        _tree->topLevelItem(0)->setExpanded(true);
    if (!chosen.isEmpty() && chooseFolder(chosen))
        _list->selectFiles(selected);
    else
        showFiles();
    _finder->rescan();
}

QTreeWidgetItem* DzContentLibraryPane::addFolder(QTreeWidgetItem& parent, const QString& name,
                                                 const QString& path)
{
    auto* const item = new QTreeWidgetItem(&parent, {name});
    item->setData(0, pathRole, path);
    item->setToolTip(0, openhost::PlainTip(path));
    // What is below is read when it is to be seen.
    if (HasSubfolders(path))
        item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return item;
}

void DzContentLibraryPane::addSubfolders(QTreeWidgetItem* item)
{
    if (item->data(0, isReadRole).toBool())
        return;
    item->setData(0, isReadRole, true);
    const QDir folder(item->data(0, pathRole).toString());
    for (const QString& name : folder.entryList(subfolders, QDir::Name | QDir::IgnoreCase))
        addFolder(*item, name, folder.filePath(name));
    item->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

void DzContentLibraryPane::showFiles()
{
    _tree->setVisible(!_finder->isActive());
    if (_finder->isActive()) {
        _list->setFiles(_finder->files());
        return;
    }
    const QTreeWidgetItem* const item = _tree->currentItem();
    _list->setFiles(item ? openhost::UserFilesIn(item->data(0, pathRole).toString()) : QStringList());
}

/// The folder itself, or the one on the way to it; null when there is none.
QTreeWidgetItem* DzContentLibraryPane::childOf(QTreeWidgetItem& item, const QString& path)
{
    for (int i = 0; i < item.childCount(); ++i) {
        const QString folder = item.child(i)->data(0, pathRole).toString();
        if (path == folder || path.startsWith(folder + QLatin1Char('/')))
            return item.child(i);
    }
    return nullptr;
}

bool DzContentLibraryPane::browseTo(const QString& folder)
{
    if (!chooseFolder(folder))
        return false;
    _finder->clear(); // shows the files
    return true;
}

bool DzContentLibraryPane::chooseFolder(const QString& folder)
{
    QTreeWidgetItem* item = childOf(*_tree->invisibleRootItem(), folder);
    while (item && item->data(0, pathRole).toString() != folder) {
        addSubfolders(item);
        item = childOf(*item, folder);
    }
    if (!item)
        return false;
    for (QTreeWidgetItem* above = item->parent(); above; above = above->parent())
        above->setExpanded(true);
    _tree->setCurrentItem(item);
    return true;
}

void DzContentLibraryPane::showFolderOf(const QString& file)
{
    if (browseTo(QFileInfo(file).absolutePath()))
        _list->selectFiles({file});
}

QObjectList DzContentLibraryPane::getSelectedAssets()
{
    _refresh->settle();
    return _list->selectedAssets();
}

bool DzContentLibraryPane::browseToAsset(DzAsset* asset)
{
    _refresh->settle();
    if (!asset || !QFileInfo(asset->getAsLocalFile()).isFile())
        return false;
    const QString file = asset->getAsLocalFile();
    return browseTo(QFileInfo(file).absolutePath()) && _list->selectFiles({file});
}

bool DzContentLibraryPane::browseToCategory(const QString& category)
{
    _refresh->settle();
    for (const QString& directory : openhost::ContentDirectories())
        if (browseTo(QDir::cleanPath(directory + QLatin1Char('/') + category)))
            return true;
    return false;
}

bool DzContentLibraryPane::browseToProduct(const QString& product)
{
    _refresh->settle();
    for (const openhost::ProductFolder& folder : openhost::ProductFolders())
        if (folder.name.compare(product, Qt::CaseInsensitive) == 0)
            return browseTo(folder.path);
    return false;
}
