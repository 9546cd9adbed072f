// Assets, and a list of their files.
// SPDX-License-Identifier: MIT

#include "pane_asset_list.h"

#include "dzapp.h"
#include "dzasset.h"
#include "dzcontentmgr.h"
#include "favorite_files.h"
#include "openhost/content_pictures.h"
#include "openhost/plain_tip.h"
#include "pane_property_row.h"

#include <QContextMenuEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QSet>
#include <QUrl>

#include <algorithm>

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

/// Asked for pictures and places only while it is in sight.
class AssetItem : public QListWidgetItem {
public:
    AssetItem(const QString& file, QListWidget* list)
        : QListWidgetItem(QFileInfo(file).completeBaseName(), list)
    {
        setData(fileRole, file);
    }

    QVariant data(int role) const override
    {
        if (role == Qt::ToolTipRole)
            return openhost::PlainTip(RelativePath(file()));
        if (role == Qt::DecorationRole)
            return picture();
        if (role == Qt::AccessibleDescriptionRole && IsFavoriteFile(file()))
            return AssetList::tr("Favorite");
        return QListWidgetItem::data(role);
    }

private:
    QString file() const { return QListWidgetItem::data(fileRole).toString(); }

    /// As large for all, so that names line up; with a star in its corner for a favourite.
    QPixmap picture() const
    {
        const QListWidget& list = *listWidget();
        const qreal ratio = list.devicePixelRatioF();
        QPixmap whole(list.iconSize() * ratio);
        whole.setDevicePixelRatio(ratio);
        whole.fill(Qt::transparent);
        QPainter painter(&whole);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        const QPixmap own = ContentPictures::Shared().picture(file());
        if (!own.isNull()) {
            const QSize size = own.size().scaled(list.iconSize(), Qt::KeepAspectRatio);
            const QSize rest = (list.iconSize() - size) / 2;
            painter.drawPixmap(QRect(QPoint(rest.width(), rest.height()), size), own);
        }
        if (IsFavoriteFile(file()))
            painter.drawPixmap(0, 0, Star(true).pixmap(list.fontMetrics().height()));
        return whole;
    }
};

} // namespace

AssetList::AssetList(QWidget* parent) : QListWidget(parent)
{
    setSelectionMode(ExtendedSelection);
    setUniformItemSizes(true);
    setTextElideMode(Qt::ElideMiddle); // names often differ at their end
    setAccessibleName(tr("Files"));
    setDragEnabled(true);
    setAcceptDrops(true); // of its own, to drop them
    fitPictures();
    ReadFavoriteFiles();
    connect(this, SIGNAL(itemActivated(QListWidgetItem*)), SLOT(openSelected()), Qt::QueuedConnection);
    connect(&ContentPictures::Shared(), SIGNAL(pictureReady(QString)), viewport(), SLOT(update()));
}

AssetList::~AssetList() = default;

void AssetList::setFiles(const QStringList& files)
{
    const QStringList selected = selectedFiles();
    clear();
    for (const QString& file : files)
        new AssetItem(file, this);
    if (!selected.isEmpty())
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

void AssetList::showFolder()
{
    const QString file = selectedFiles().value(0);
    if (!file.isEmpty())
        emit folderWanted(file);
}

void AssetList::toggleFavorite()
{
    const QStringList files = selectedFiles();
    const bool areAll = std::all_of(files.begin(), files.end(), IsFavoriteFile);
    for (const QString& file : files)
        SetFavoriteFile(file, !areAll);
    viewport()->update();
    emit favoritesChanged();
}

void AssetList::fitPictures()
{
    const int edge = 5 * fontMetrics().height() / 2;
    setIconSize(QSize(edge, edge));
}

void AssetList::changeEvent(QEvent* event)
{
    QListWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitPictures();
}

QStringList AssetList::mimeTypes() const
{
    return {QStringLiteral("text/uri-list")};
}

Qt::DropActions AssetList::supportedDropActions() const
{
    return Qt::CopyAction;
}

QMimeData* AssetList::mimeData(const QList<QListWidgetItem*> items) const
{
    QList<QUrl> urls;
    for (const QListWidgetItem* const item : items)
        urls.append(QUrl::fromLocalFile(item->data(fileRole).toString()));
    auto* const dragged = new QMimeData;
    dragged->setUrls(urls);
    return dragged;
}

// What is let go over the list itself has not gone anywhere; the window around would open it.
void AssetList::dragEnterEvent(QDragEnterEvent* event)
{
    dragMoveEvent(event);
}

void AssetList::dragMoveEvent(QDragMoveEvent* event)
{
    if (event->source() != this) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
}

void AssetList::dropEvent(QDropEvent* event)
{
    event->setAccepted(event->source() == this);
}

void AssetList::contextMenuEvent(QContextMenuEvent* event)
{
    if (selectedItems().isEmpty())
        return;
    QMenu menu;
    menu.addAction(tr("Open"), this, SLOT(openSelected()));
    menu.addAction(tr("Merge into Scene"), this, SLOT(mergeSelected()));
    menu.addSeparator();
    if (receivers(SIGNAL(folderWanted(QString))) > 0)
        menu.addAction(tr("Show Folder"), this, SLOT(showFolder()));
    const QStringList files = selectedFiles();
    QAction* const favorite = menu.addAction(tr("Favorite"), this, SLOT(toggleFavorite()));
    favorite->setCheckable(true);
    favorite->setChecked(std::all_of(files.begin(), files.end(), IsFavoriteFile));
    menu.exec(event->globalPos());
}

} // namespace openhost
