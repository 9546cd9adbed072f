// The pane of the content that suits what is selected.
// SPDX-License-Identifier: MIT

#include "smart_content_pane.h"

#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dzscene.h"
#include "openhost/plain_tip.h"
#include "pane_asset_list.h"
#include "pane_refresh.h"
#include "pane_user_files.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QSplitter>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace {

/// Files that are looked at before events are handled again.
constexpr int scanStep = 100;
constexpr int pathRole = Qt::UserRole;
constexpr int categoryRole = Qt::UserRole + 1;

/// Content directories may come and go; the manager is made after the panes.
void FollowDirectories(const QObject* receiver, const char* slot)
{
    if (const DzContentMgr* const content = dzApp->getContentMgr())
        QObject::connect(content, SIGNAL(contentDirectoryListChanged()), receiver, slot);
}

QString WithoutSlashes(QString text)
{
    while (text.startsWith(QLatin1Char('/')))
        text.remove(0, 1);
    while (text.endsWith(QLatin1Char('/')))
        text.chop(1);
    return text;
}

/// Whether a file is meant by one of the texts.
bool IsMeant(const QString& file, const QString& relative, const QString& category, const QStringList& assets)
{
    const QString folder = WithoutSlashes(category) + QLatin1Char('/');
    if (folder.size() > 1 && !relative.startsWith(folder, Qt::CaseInsensitive))
        return false;
    for (const QString& asset : assets)
        if (asset == file || WithoutSlashes(asset).compare(relative, Qt::CaseInsensitive) == 0 ||
            asset.compare(QFileInfo(file).completeBaseName(), Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

} // namespace

DzFileContentTab::DzFileContentTab(QWidget* parent)
    : QWidget(parent), _refresh(new openhost::PaneRefresh(*this, [this] { showFiles(); })),
      _scanTimer(new QTimer(this))
{
    connect(dzScene, SIGNAL(nodeSelectionListChanged()), SLOT(markStale()));
    connect(_scanTimer, SIGNAL(timeout()), SLOT(scanOn()));
}

DzFileContentTab::~DzFileContentTab() = default;

void DzFileContentTab::markStale()
{
    _refresh->mark();
}

void DzFileContentTab::build()
{
    if (_list)
        return;
    _search = new QLineEdit;
    _search->setPlaceholderText(tr("Search"));
    _search->setAccessibleName(tr("Search files"));
    _search->setClearButtonEnabled(true);
    _list = new openhost::AssetList;
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(_search);
    layout->addWidget(_list);
    connect(_search, SIGNAL(textChanged(QString)), SLOT(showFiles()));
    FollowDirectories(this, SLOT(rescan()));
}

void DzFileContentTab::rescan()
{
    _scan.reset();
    _refresh->mark();
}

void DzFileContentTab::refresh()
{
    rescan();
    finishScan();
}

void DzFileContentTab::scanOn()
{
    if (_scan && _scan->step(scanStep))
        return;
    _scanTimer->stop();
    _refresh->mark();
}

void DzFileContentTab::finishScan()
{
    _refresh->settle();
    if (!_scanTimer->isActive())
        return;
    while (_scan->step(scanStep)) {
    }
    _scanTimer->stop();
    showFiles();
}

void DzFileContentTab::showFiles()
{
    build();
    if (!_scan) {
        _scan = std::make_unique<openhost::UserFileScan>();
        _scanTimer->start(0);
    }
    const bool isAnythingSelected = dzScene->getNumSelectedNodes() > 0;
    const QStringList words = _search->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QStringList files;
    for (const openhost::UserFile& file : _scan->files()) {
        bool suits = openhost::SuitsSelection(file.type, isAnythingSelected);
        for (const QString& word : words)
            suits = suits && file.path.contains(word, Qt::CaseInsensitive);
        if (suits)
            files.append(file.path);
    }
    _list->setFiles(files);
}

QObjectList DzFileContentTab::getSelectedAssets()
{
    finishScan();
    return _list->selectedAssets();
}

bool DzFileContentTab::selectAssets(const QString& category, const QStringList& assets)
{
    finishScan();
    _search->clear();
    const DzContentMgr* const content = dzApp->getContentMgr();
    QStringList meant;
    for (const QString& file : _list->files()) {
        const QString relative = content ? content->getRelativePath(file, false) : file;
        if (IsMeant(file, WithoutSlashes(relative), category, assets))
            meant.append(file);
    }
    return _list->selectFiles(meant);
}

DzProductContentTab::DzProductContentTab(QWidget* parent)
    : QWidget(parent), _refresh(new openhost::PaneRefresh(*this, [this] { fillProducts(); }))
{
}

DzProductContentTab::~DzProductContentTab() = default;

void DzProductContentTab::markStale()
{
    _refresh->mark();
}

void DzProductContentTab::refresh()
{
    _refresh->mark();
    _refresh->settle();
}

void DzProductContentTab::build()
{
    if (_products)
        return;
    _products = new QListWidget;
    _products->setAccessibleName(tr("Products"));
    _products->setSelectionMode(QAbstractItemView::ExtendedSelection);
    _list = new openhost::AssetList;
    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(_products);
    splitter->addWidget(_list);
    splitter->setChildrenCollapsible(false);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(splitter);
    connect(_products, SIGNAL(itemSelectionChanged()), SLOT(showFiles()));
    FollowDirectories(this, SLOT(markStale()));
}

void DzProductContentTab::fillProducts()
{
    build();
    const QStringList selected = [this] {
        QStringList paths;
        for (const QListWidgetItem* item : _products->selectedItems())
            paths.append(item->data(pathRole).toString());
        return paths;
    }();
    _products->clear();
    for (const openhost::ProductFolder& product : openhost::ProductFolders()) {
        auto* const item =
            new QListWidgetItem(QStringLiteral("%1 (%2)").arg(product.name, product.category), _products);
        item->setData(pathRole, product.path);
        item->setData(categoryRole, product.category);
        item->setToolTip(openhost::PlainTip(product.path));
        item->setSelected(selected.contains(product.path));
    }
}

void DzProductContentTab::showFiles()
{
    QStringList files;
    for (const QListWidgetItem* item : _products->selectedItems())
        files += openhost::UserFilesBelow(item->data(pathRole).toString());
    _list->setFiles(files);
}

QObjectList DzProductContentTab::getSelectedAssets()
{
    _refresh->settle();
    return _list->selectedAssets();
}

bool DzProductContentTab::selectProducts(const QString& category, const QStringList& products)
{
    _refresh->settle();
    _products->clearSelection();
    QListWidgetItem* first = nullptr;
    const QString wantedCategory = WithoutSlashes(category);
    for (int i = 0; i < _products->count(); ++i) {
        QListWidgetItem* const item = _products->item(i);
        const QString name = QFileInfo(item->data(pathRole).toString()).fileName();
        const bool isIn =
            wantedCategory.isEmpty() ||
            wantedCategory.compare(item->data(categoryRole).toString(), Qt::CaseInsensitive) == 0;
        if (!isIn || !products.contains(name, Qt::CaseInsensitive))
            continue;
        if (!first)
            first = item;
        item->setSelected(true);
    }
    if (first)
        _products->scrollToItem(first);
    return first;
}

QStringList DzProductContentTab::getSelectedProducts()
{
    _refresh->settle();
    QStringList names;
    for (const QListWidgetItem* item : _products->selectedItems())
        names.append(QFileInfo(item->data(pathRole).toString()).fileName());
    return names;
}

DzSmartContentPane::DzSmartContentPane()
    : DzPane(QLatin1String(QT_TRANSLATE_NOOP("openhost::Panes", "Smart Content"))),
      _tabs(new QTabWidget(this)), _files(new DzFileContentTab(_tabs)),
      _products(new DzProductContentTab(_tabs))
{
    _tabs->addTab(_files, tr("Files"));
    _tabs->addTab(_products, tr("Products"));
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 4, 0, 0);
    layout->addWidget(_tabs);
}

DzSmartContentPane::~DzSmartContentPane() = default;

void DzSmartContentPane::refresh()
{
    if (_files)
        _files->refresh();
    if (_products)
        _products->refresh();
}

QObject* DzSmartContentPane::getFileContentTab() const
{
    return _files;
}

QObject* DzSmartContentPane::getProductContentTab() const
{
    return _products;
}

int DzSmartContentPane::getCurrentTab() const
{
    return _products && _tabs->currentWidget() == _products ? ProductsTab : FilesTab;
}

void DzSmartContentPane::setCurrentTab(int tab)
{
    if (tab == FilesTab && _files)
        _tabs->setCurrentWidget(_files);
    else if (tab == ProductsTab && _products)
        _tabs->setCurrentWidget(_products);
}
