// Assets, and a list of their files.
// SPDX-License-Identifier: MIT

#include "pane_asset_list.h"

#include "dzapp.h"
#include "dzasset.h"
#include "dzcontentmgr.h"

#include <QContextMenuEvent>
#include <QFileInfo>
#include <QMenu>
#include <QSet>

DzAsset::DzAsset(const QString& localFile, const QString& relativePath)
    : _localFile(localFile), _relativePath(relativePath)
{
    const QString file = localFile.mid(localFile.lastIndexOf(QLatin1Char('/')) + 1);
    setName(file.left(file.lastIndexOf(QLatin1Char('.'))));
}
DzAsset::~DzAsset() = default;

namespace openhost {

namespace {

constexpr int fileRole = Qt::UserRole;

QString RelativePath(const QString& file)
{
    const DzContentMgr* const content = dzApp->getContentMgr();
    return content ? content->getRelativePath(file, false) : file;
}

/// Opening may end in the list's own end, so the files are taken beforehand.
void Open(const QStringList& files, bool merge)
{
    for (const QString& file : files)
        if (DzContentMgr* const content = dzApp->getContentMgr())
            content->openFile(file, merge || content->shouldMerge(file));
}

} // namespace

AssetList::AssetList(QWidget* parent) : QListWidget(parent)
{
    setSelectionMode(ExtendedSelection);
    setUniformItemSizes(true);
    setTextElideMode(Qt::ElideMiddle); // names often differ at their end
    connect(this, SIGNAL(itemActivated(QListWidgetItem*)), SLOT(openSelected()), Qt::QueuedConnection);
}

AssetList::~AssetList() = default;

void AssetList::setFiles(const QStringList& files)
{
    const QStringList selected = selectedFiles();
    clear();
    for (const QString& file : files) {
        auto* const item = new QListWidgetItem(QFileInfo(file).completeBaseName(), this);
        item->setData(fileRole, file);
        item->setToolTip(RelativePath(file));
    }
    selectFiles(selected);
}

QStringList AssetList::files() const
{
    QStringList files;
    for (int i = 0; i < count(); ++i)
        files.append(item(i)->data(fileRole).toString());
    return files;
}

QStringList AssetList::selectedFiles() const
{
    QStringList files;
    for (int i = 0; i < count(); ++i)
        if (item(i)->isSelected())
            files.append(item(i)->data(fileRole).toString());
    return files;
}

bool AssetList::selectFiles(const QStringList& files)
{
    const QSet<QString> wanted(files.constBegin(), files.constEnd());
    clearSelection();
    bool isAny = false;
    for (int i = 0; i < count(); ++i) {
        if (!wanted.contains(item(i)->data(fileRole).toString()))
            continue;
        if (!isAny)
            setCurrentItem(item(i));
        item(i)->setSelected(true);
        isAny = true;
    }
    return isAny;
}

QObjectList AssetList::selectedAssets()
{
    QObjectList assets;
    for (const QString& file : selectedFiles()) {
        DzAsset*& asset = _assets[file];
        if (!asset) {
            asset = new DzAsset(file, RelativePath(file));
            asset->setParent(this);
        }
        assets.append(asset);
    }
    return assets;
}

void AssetList::openSelected()
{
    Open(selectedFiles(), false);
}

void AssetList::mergeSelected()
{
    Open(selectedFiles(), true);
}

void AssetList::contextMenuEvent(QContextMenuEvent* event)
{
    if (selectedItems().isEmpty())
        return;
    QMenu menu;
    menu.addAction(QStringLiteral("Open"), this, SLOT(openSelected()));
    menu.addAction(QStringLiteral("Merge into Scene"), this, SLOT(mergeSelected()));
    menu.exec(event->globalPos());
}

} // namespace openhost
