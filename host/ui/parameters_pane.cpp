// The pane of the selected nodes' properties.
// SPDX-License-Identifier: MIT

#include "parameters_pane.h"

#include "dial_menu.h"
#include "dznode.h"
#include "dzproperty.h"
#include "dzpropertygroup.h"
#include "dzpropertygrouptree.h"
#include "dzscene.h"
#include "pane_property_row.h"
#include "pane_property_rows.h"
#include "pane_refresh.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSet>
#include <QSplitter>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

namespace openhost {

namespace {

constexpr int pathRole = Qt::UserRole;

/// The node that the property is shown under; null for a property without one.
DzNode* NodeOf(const DzProperty& property)
{
    DzElement* element = property.getOwner();
    while (element && !qobject_cast<DzNode*>(element))
        element = element->getElementParent();
    return static_cast<DzNode*>(element);
}

/// Appends the properties that people may see, of the group and of those below.
void Collect(const DzPropertyGroup& group, std::vector<QPointer<DzProperty>>* properties)
{
    for (int i = 0; i < group.getNumProperties(); ++i) {
        DzProperty* const property = group.getProperty(i);
        if (!property->isHidden())
            properties->emplace_back(property);
    }
    for (const DzPropertyGroup* child = group.getFirstChild(); child; child = child->getNextSibling())
        Collect(*child, properties);
}

bool HasVisible(const DzPropertyGroup& group)
{
    for (int i = 0; i < group.getNumProperties(); ++i)
        if (!group.getProperty(i)->isHidden())
            return true;
    for (const DzPropertyGroup* child = group.getFirstChild(); child; child = child->getNextSibling())
        if (HasVisible(*child))
            return true;
    return false;
}

QString KeyOf(const DzNode& node, const QString& path)
{
    return QString::number(node.getElementID()) + path;
}

/// Whether every word is in the property's label or name.
bool Suits(const DzProperty& property, const QStringList& words)
{
    return std::all_of(words.begin(), words.end(), [&](const QString& word) {
        return property.getLabel().contains(word, Qt::CaseInsensitive) ||
               property.getName().contains(word, Qt::CaseInsensitive);
    });
}

} // namespace

ParametersWidget::ParametersWidget(QWidget* parent)
    : QWidget(parent), _refresh(new PaneRefresh(*this, [this] { fillTree(); }))
{
    setObjectName(QStringLiteral("ParametersWgt"));
    connect(dzScene, SIGNAL(nodeSelectionListChanged()), SLOT(markStale()));
    connect(dzScene, SIGNAL(nodeListChanged()), SLOT(markStale()));
}

ParametersWidget::~ParametersWidget() = default;

void ParametersWidget::build()
{
    if (_tree)
        return;
    _search = new QLineEdit;
    _search->setPlaceholderText(tr("Search"));
    _search->setClearButtonEnabled(true);
    _favorites = new QToolButton;
    _favorites->setText(tr("Favorites"));
    _favorites->setCheckable(true);
    _favorites->setIcon(OnOffStar());
    _favorites->setToolTip(tr("Favorites only"));
    _favorites->setAccessibleName(_favorites->text());
    auto* const bar = new QHBoxLayout;
    bar->addWidget(_search, 1);
    bar->addWidget(_favorites);
    bar->addWidget(makeMenuButton());
    _tree = new QTreeWidget;
    _tree->setHeaderHidden(true);
    _tree->setAccessibleName(tr("Groups of dials"));
    _search->setAccessibleName(tr("Search dials"));
    _rows = new PropertyRows(nullptr);
    _splitter = new QSplitter(Qt::Vertical);
    _splitter->addWidget(_tree);
    _splitter->addWidget(_rows);
    _splitter->setStretchFactor(0, 2);
    _splitter->setStretchFactor(1, 3);
    _splitter->setChildrenCollapsible(false);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addLayout(bar);
    layout->addWidget(_splitter, 1);
    _notice = new QLabel;
    _notice->setTextFormat(Qt::PlainText);
    _notice->setWordWrap(true);
    _notice->setTextInteractionFlags(Qt::TextSelectableByMouse);
    _notice->hide();
    layout->addWidget(_notice);
    connect(_rows, SIGNAL(told(QString)), SLOT(tell(QString)));
    connect(_menu, SIGNAL(told(QString)), SLOT(tell(QString)));
    connect(_menu, SIGNAL(filterChanged()), SLOT(showRows()));
    connect(_tree, SIGNAL(currentItemChanged(QTreeWidgetItem*, QTreeWidgetItem*)), SLOT(showRows()));
    connect(_search, SIGNAL(textChanged(QString)), SLOT(showRows()));
    connect(_favorites, SIGNAL(toggled(bool)), SLOT(showRows()));
}

QToolButton* ParametersWidget::makeMenuButton()
{
    _menu = new DialMenu([this] { return _shown; },
                         [this] { return _tree ? nodeOf(_tree->currentItem()) : nullptr; }, this);
    auto* const button = new QToolButton;
    button->setObjectName(QStringLiteral("DialMenu"));
    button->setText(tr("Dials"));
    button->setToolTip(tr("All dials that are shown"));
    button->setPopupMode(QToolButton::InstantPopup);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setMenu(_menu);
    return button;
}

void ParametersWidget::tell(const QString& text)
{
    _notice->setText(text);
    _notice->setVisible(!text.isEmpty());
    QAccessibleEvent alert(_notice, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QSize ParametersWidget::sizeHint() const
{
    return QSize(36, 60) * fontMetrics().averageCharWidth();
}

void ParametersWidget::refresh()
{
    _refresh->mark();
    _refresh->settle();
}

void ParametersWidget::markStale()
{
    _refresh->mark();
}

QObjectList ParametersWidget::getPropertySelections() const
{
    _refresh->settle();
    return _rows->picked();
}

QObjectList ParametersWidget::getNodeSelections() const
{
    _refresh->settle();
    QObjectList nodes;
    for (const QPointer<DzNode>& node : _nodes)
        if (node)
            nodes.append(node);
    return nodes;
}

void ParametersWidget::fillTree()
{
    build();
    QSet<QString> expanded;
    for (QTreeWidgetItemIterator it(_tree); *it; ++it)
        if (const DzNode* const node = (*it)->isExpanded() ? nodeOf(*it) : nullptr)
            expanded.insert(KeyOf(*node, (*it)->data(0, pathRole).toString()));
    const QTreeWidgetItem* const current = _tree->currentItem();
    const QPointer<DzNode> chosenNode = nodeOf(current);
    const QString chosenPath = current ? current->data(0, pathRole).toString() : QString();

    _tree->blockSignals(true);
    _tree->clear();
    _nodes.clear();
    _watch = std::make_unique<QObject>();
    for (int i = 0; i < dzScene->getNumSelectedNodes(); ++i) {
        DzNode& node = *dzScene->getSelectedNode(i);
        _nodes.emplace_back(&node);
        auto* const top = new QTreeWidgetItem(_tree, {node.getLabel()});
        addGroups(node, *top, expanded);
        top->setExpanded(true);
        watch(node);
    }
    choose(chosenNode, chosenPath);
    _tree->blockSignals(false);
    showRows();
}

/// A property that is shown or hidden, and a group that comes or goes, change the tree.
void ParametersWidget::watch(DzNode& node)
{
    const auto mark = [this] { markStale(); };
    connect(&node, &DzElement::propertyTreeChanged, _watch.get(), mark);
    connect(&node, &DzElement::labelChanged, _watch.get(), mark);
    for (QObject* object : node.getPropertyGroups()->getAllProperties())
        connect(static_cast<DzProperty*>(object), &DzProperty::hiddenChanged, _watch.get(), mark);
}

void ParametersWidget::addGroups(DzNode& node, QTreeWidgetItem& top, const QSet<QString>& expanded)
{
    const auto add = [&](const auto& self, const DzPropertyGroup* group, QTreeWidgetItem& parent) -> void {
        for (; group; group = group->getNextSibling()) {
            if (!HasVisible(*group))
                continue;
            auto* const item = new QTreeWidgetItem(&parent, {group->getName()});
            item->setData(0, pathRole, group->getPath());
            self(self, group->getFirstChild(), *item);
            item->setExpanded(expanded.contains(KeyOf(node, group->getPath())));
        }
    };
    add(add, node.getPropertyGroups()->getFirstChild(), top);
}

DzNode* ParametersWidget::nodeOf(const QTreeWidgetItem* item) const
{
    if (!item)
        return nullptr;
    while (item->parent())
        item = item->parent();
    return _nodes[std::size_t(_tree->indexOfTopLevelItem(const_cast<QTreeWidgetItem*>(item)))];
}

/// The item of the node's group; of the nearest one above it that there is.
QTreeWidgetItem* ParametersWidget::findItem(const DzNode& node, const QString& path) const
{
    const auto found = std::find(_nodes.begin(), _nodes.end(), &node);
    if (found == _nodes.end())
        return nullptr;
    QTreeWidgetItem* item = _tree->topLevelItem(int(found - _nodes.begin()));
    for (const QString& name : path.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        QTreeWidgetItem* next = nullptr;
        for (int i = 0; i < item->childCount() && !next; ++i)
            if (item->child(i)->text(0) == name)
                next = item->child(i);
        if (!next)
            break;
        item = next;
    }
    return item;
}

/// Another node's group of the same path does when the first node is gone: people compare figures.
void ParametersWidget::choose(const DzNode* node, const QString& path)
{
    if (_nodes.empty())
        return;
    QTreeWidgetItem* item = node ? findItem(*node, path) : nullptr;
    if (!item)
        item = findItem(*_nodes.back(), path);
    for (QTreeWidgetItem* above = item->parent(); above; above = above->parent())
        above->setExpanded(true);
    _tree->setCurrentItem(item);
}

std::vector<QPointer<DzProperty>> ParametersWidget::propertiesOf(const QTreeWidgetItem& item) const
{
    std::vector<QPointer<DzProperty>> properties;
    const DzNode* const node = nodeOf(&item);
    if (!node)
        return properties;
    const DzPropertyGroupTree& groups = *node->getPropertyGroups();
    const QString path = item.data(0, pathRole).toString();
    if (!path.isEmpty()) {
        if (const DzPropertyGroup* const group = groups.findChild(path))
            Collect(*group, &properties);
        return properties;
    }
    for (const DzPropertyGroup* group = groups.getFirstChild(); group; group = group->getNextSibling())
        Collect(*group, &properties);
    return properties;
}

void ParametersWidget::showRows()
{
    std::vector<QPointer<DzProperty>> properties;
    if (const QTreeWidgetItem* const item = _tree->currentItem())
        properties = propertiesOf(*item);
    const QStringList words = _search->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const bool favoritesOnly = _favorites->isChecked(), changedOnly = _menu->showsChangedOnly();
    properties.erase(std::remove_if(properties.begin(), properties.end(),
                                    [&](const auto& property) {
                                        return !Suits(*property, words) ||
                                               (favoritesOnly && !property->isFavorite()) ||
                                               (changedOnly && !IsChanged(*property));
                                    }),
                     properties.end());
    _shown = properties;
    _rows->setProperties(std::move(properties));
    tell(QString());
}

void ParametersWidget::jumpTo(DzProperty* property)
{
    DzNode* const node = property ? NodeOf(*property) : nullptr;
    if (!node || dzScene->findNodeIndex(node) < 0)
        return;
    if (!node->isSelected())
        dzScene->selectAllNodes(false);
    dzScene->setPrimarySelection(node);
    _refresh->settle();
    QTreeWidgetItem* const item = findItem(*node, property->getPath());
    if (!item)
        return; // the selection was refused
    _search->clear();
    _favorites->setChecked(false);
    _menu->showAll();
    for (QTreeWidgetItem* above = item->parent(); above; above = above->parent())
        above->setExpanded(true);
    _tree->setCurrentItem(item);
    _tree->scrollToItem(item);
    _rows->reveal(*property);
}

} // namespace openhost

DzParametersPane::DzParametersPane()
    : DzPane(QLatin1String(QT_TRANSLATE_NOOP("openhost::Panes", "Parameters"))),
      _widget(new openhost::ParametersWidget(this))
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_widget);
}

DzParametersPane::~DzParametersPane() = default;

void DzParametersPane::refresh()
{
    _widget->refresh();
}

void DzParametersPane::jumpToProperty(DzProperty* property)
{
    _widget->jumpTo(property);
}
