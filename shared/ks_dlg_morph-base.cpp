// Choosing a property-group path from the tree of a node's paths.
// SPDX-License-Identifier: MIT

#include "ks_dlg_morph-base.h"

#include "ks_assert.h"
#include "ks_gui.h"
#include "ks_help.h"
#include "ks_string.h"

#include <map>

#include <QLineEdit>
#include <QList>
#include <QStringList>
#include <QTreeWidget>
#include <QTreeWidgetItem>

#include <fmt/format.h>

#include <dznode.h>
#include <dzpropertygrouptree.h>

namespace kst {

namespace {

const int shortestPath = 6; // characters

const char* const pathHelp =
    "<p>Here you can select where the control slider of the morph should appear in the ``Parameters'' "
    "pane.</p><p>You can select an existing item from the tree (which shows the existing property paths of "
    "the scene node, or enter any path manually in the line below.</p>";

QString PathOf(const QTreeWidgetItem* item)
{
    QString path;
    for (; item; item = item->parent())
        path = QLatin1Char('/') + item->text(0) + path;
    return path;
}

} // namespace

class MorphPathTree::Impl {
public:
    ~Impl() { qDeleteAll(topLevelItems); }

    QList<QTreeWidgetItem*> topLevelItems;
    std::map<std::string, QTreeWidgetItem*> itemsByPath;
};

MorphPathTree::MorphPathTree(QTreeWidget& tree) : _tree(tree), _pImpl(new Impl) {}
MorphPathTree::~MorphPathTree() = default;

void MorphPathTree::insertPathsFromNode(DzNode& node)
{
    const DzPropertyGroupTree* const groups = node.getPropertyGroups();
    const QStringList paths = groups ? groups->getAllPaths() : QStringList();
    for (const QString& path : paths)
        insertOne(str::ExplodeVector(path, "/", false, false));
}

QTreeWidgetItem* MorphPathTree::insertOne(const std::vector<std::string>& parts)
{
    QTreeWidgetItem* item = nullptr;
    std::string prefix;
    for (const std::string& part : parts) {
        prefix += "/" + part;
        QTreeWidgetItem*& known = _pImpl->itemsByPath[prefix];
        if (!known) {
            known = item ? new QTreeWidgetItem(item) : new QTreeWidgetItem;
            known->setText(0, str::ToQ(part));
            if (!item)
                _pImpl->topLevelItems.append(known);
        }
        item = known;
    }
    return item;
}

void MorphPathTree::toTreeWidget()
{
    _tree.insertTopLevelItems(0, _pImpl->topLevelItems);
    _pImpl->topLevelItems.clear();
}

MorphPathDialogBase::MorphPathDialogBase(QWidget* parent) : DialogBase(parent) {}
MorphPathDialogBase::~MorphPathDialogBase() = default;

void MorphPathDialogBase::initializePropertyPaths(QTreeWidget& tree, QLineEdit& edit)
{
    _pTree = &tree;
    _pEdit = &edit;
    gui::ConnectSignal(tree, SIGNAL(currentItemChanged(QTreeWidgetItem*, QTreeWidgetItem*)), this,
                       SLOT(slotTreeWidgetPathsCurrentItemChanged(QTreeWidgetItem*, QTreeWidgetItem*)));
    gui::ConnectLineEditTextChanged(edit, this, SLOT(slotMorphPropertyPathTextChanged(const QString&)));
    const QString help = daz::FormatHelpQ(str::ToQ(pathHelp));
    tree.setToolTip(help);
    edit.setToolTip(help);
}

void MorphPathDialogBase::insertPropertyPaths(DzNode& node, const std::vector<std::string>& initialParts)
{
    assert(_pTree);
    MorphPathTree paths(*_pTree);
    paths.insertPathsFromNode(node);
    QTreeWidgetItem* const initial = paths.insertOne(initialParts);
    _pTree->setCurrentItem(initial);
    paths.toTreeWidget();
    // A top-level item has no place before the widget has it, and can become the current one only now.
    _pTree->setCurrentItem(initial);
}

bool MorphPathDialogBase::isPropertyPathValid() const
{
    const QString path = _pEdit->text();
    return path.size() >= shortestPath && path.startsWith(QLatin1Char('/'));
}

QString MorphPathDialogBase::propertyPathRule()
{
    return str::ToQ(fmt::format("A morph path begins with {} and has at least {} characters.",
                                str::Quote("/"), shortestPath));
}

void MorphPathDialogBase::slotTreeWidgetPathsCurrentItemChanged(QTreeWidgetItem* current, QTreeWidgetItem*)
{
    _pEdit->setText(PathOf(current));
}

void MorphPathDialogBase::slotMorphPropertyPathTextChanged(const QString&)
{
    enableDisableWidgets();
}

} // namespace kst
