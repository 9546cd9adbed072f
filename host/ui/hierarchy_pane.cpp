// The pane of the scene's tree.
// SPDX-License-Identifier: MIT

#include "hierarchy_pane.h"

#include "dzscene.h"
#include "openhost/plain_tip.h"
#include "pane_refresh.h"
#include "scene/node_walk.h"

#include <QEvent>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

enum Column { Label, Visible };

/// Sets a flag for as long as it lives.
class Raised {
public:
    explicit Raised(bool& flag) : _flag(flag), _was(flag) { flag = true; }
    ~Raised() { _flag = _was; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

private:
    bool& _flag;
    bool _was;
};

} // namespace

DzHierarchyPane::DzHierarchyPane()
    : DzPane(QLatin1String(QT_TRANSLATE_NOOP("openhost::Panes", "Scene"))),
      _refresh(new openhost::PaneRefresh(*this, [this] { fillTree(); }))
{
    connect(dzScene, SIGNAL(nodeListChanged()), SLOT(markStale()));
    connect(dzScene, SIGNAL(nodeSelectionListChanged()), SLOT(followSelection()));
}

DzHierarchyPane::~DzHierarchyPane() = default;

void DzHierarchyPane::refresh()
{
    _refresh->mark();
    _refresh->settle();
}

void DzHierarchyPane::markStale()
{
    _refresh->mark();
}

void DzHierarchyPane::build()
{
    if (_tree)
        return;
    _tree = new QTreeWidget;
    _tree->setAccessibleName(tr("Nodes of the scene"));
    _tree->setHeaderLabels({tr("Node"), tr("Visible")});
    _tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    _tree->setEditTriggers(QAbstractItemView::EditKeyPressed);
    _tree->setUniformRowHeights(true);
    _tree->setTextElideMode(Qt::ElideMiddle); // names often differ at their end
    _tree->header()->setStretchLastSection(false);
    _tree->header()->setSectionResizeMode(Label, QHeaderView::Fixed);
    _tree->header()->setSectionResizeMode(Visible, QHeaderView::ResizeToContents);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(_tree);
    _tree->viewport()->installEventFilter(this);
    connect(_tree, SIGNAL(itemExpanded(QTreeWidgetItem*)), SLOT(fitColumns()));
    connect(_tree, SIGNAL(itemCollapsed(QTreeWidgetItem*)), SLOT(fitColumns()));
    connect(_tree, SIGNAL(itemSelectionChanged()), SLOT(takeSelection()));
    connect(_tree, SIGNAL(itemChanged(QTreeWidgetItem*, int)), SLOT(takeChange(QTreeWidgetItem*, int)));
}

bool DzHierarchyPane::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        fitColumns();
    return DzPane::eventFilter(object, event);
}

/// As wide as there is room, but never so narrow that deep rows have no name.
void DzHierarchyPane::fitColumns()
{
    constexpr int readableCharacters = 12;
    int deepest = 0;
    for (const QTreeWidgetItem* item = _tree->topLevelItem(0); item; item = _tree->itemBelow(item)) {
        int depth = 1;
        for (const QTreeWidgetItem* above = item->parent(); above; above = above->parent())
            ++depth;
        deepest = std::max(deepest, depth);
    }
    const int needed =
        deepest * _tree->indentation() + readableCharacters * _tree->fontMetrics().averageCharWidth();
    const int room = _tree->viewport()->width() - _tree->header()->sectionSize(Visible);
    _tree->header()->resizeSection(Label, std::max(needed, room));
}

void DzHierarchyPane::fillTree()
{
    build();
    const Raised showing(_isShowing);
    QHash<const DzNode*, bool> expanded;
    for (auto it = _nodes.constBegin(); it != _nodes.constEnd(); ++it)
        if (it.value())
            expanded.insert(it.value(), it.key()->isExpanded());
    _tree->clear();
    _items.clear();
    _nodes.clear();
    _watch = std::make_unique<QObject>();
    for (int i = 0; i < dzScene->getNumNodes(); ++i) {
        DzNode* const root = dzScene->getNode(i);
        if (!root->isRootNode())
            continue;
        addItem(*root, *_tree->invisibleRootItem());
        openhost::WalkBelow(*root, [this](DzNode& node) {
            addItem(node, *_items.value(node.getNodeParent()));
            return openhost::Walk::On;
        });
    }
    for (auto it = _items.constBegin(); it != _items.constEnd(); ++it)
        it.value()->setExpanded(expanded.value(it.key(), false));
    fitColumns();
    showSelection();
}

void DzHierarchyPane::addItem(DzNode& node, QTreeWidgetItem& parent)
{
    auto* const item = new QTreeWidgetItem(&parent);
    item->setFlags(item->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
    _items.insert(&node, item);
    _nodes.insert(item, &node);
    showNode(node);
    const auto show = [this, shown = &node] { showNode(*shown); };
    const auto mark = [this] { markStale(); };
    connect(&node, &DzElement::labelChanged, _watch.get(), show);
    connect(&node, &DzBase::nameChanged, _watch.get(), show); // which stands for a label that is not set
    connect(&node, &DzNode::visibilityChanged, _watch.get(), show);
    connect(&node, &DzNode::childAdded, _watch.get(), mark);
    connect(&node, &DzNode::childRemoved, _watch.get(), mark);
    connect(&node, &QObject::destroyed, _watch.get(), mark);
}

void DzHierarchyPane::showNode(const DzNode& node)
{
    const Raised showing(_isShowing);
    QTreeWidgetItem& item = *_items.value(&node);
    item.setText(Label, node.getLabel());
    item.setToolTip(Label, openhost::PlainTip(node.getName()));
    item.setCheckState(Visible, node.isVisible() ? Qt::Checked : Qt::Unchecked);
}

DzNode* DzHierarchyPane::nodeOf(const QTreeWidgetItem& item) const
{
    DzNode* const node = _nodes.value(&item);
    return node && dzScene->findNodeIndex(node) >= 0 ? node : nullptr;
}

void DzHierarchyPane::followSelection()
{
    if (_tree && !_isShowing)
        showSelection();
}

void DzHierarchyPane::showSelection()
{
    const Raised showing(_isShowing);
    for (auto it = _nodes.constBegin(); it != _nodes.constEnd(); ++it)
        if (it.value())
            _items.value(it.value())->setSelected(it.value()->isSelected());
    if (QTreeWidgetItem* const primary = _items.value(dzScene->getPrimarySelection()))
        _tree->scrollToItem(primary);
}

void DzHierarchyPane::takeSelection()
{
    if (_isShowing)
        return;
    const Raised showing(_isShowing);
    for (auto it = _nodes.constBegin(); it != _nodes.constEnd(); ++it) {
        DzNode* const node = nodeOf(*it.key());
        if (node && node->isSelected() != it.key()->isSelected())
            node->select(it.key()->isSelected());
    }
    const QTreeWidgetItem* const current = _tree->currentItem();
    if (DzNode* const node = current && current->isSelected() ? nodeOf(*current) : nullptr)
        dzScene->setPrimarySelection(node);
    showSelection(); // a node may have been refused
}

void DzHierarchyPane::takeChange(QTreeWidgetItem* item, int column)
{
    DzNode* const node = _isShowing ? nullptr : nodeOf(*item);
    if (!node)
        return;
    if (column == Visible)
        node->setVisible(item->checkState(Visible) == Qt::Checked);
    else if (!item->text(Label).trimmed().isEmpty())
        node->setLabel(item->text(Label).trimmed());
    showNode(*node);
}
