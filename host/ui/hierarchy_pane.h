// The pane of the scene's tree.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzpane.h"

#include <QHash>
#include <QPointer>

#include <memory>

class DzNode;
class QTreeWidget;
class QTreeWidgetItem;

namespace openhost {
class PaneRefresh;
}

/// One item for each node of the scene, with a box for its visibility. The selection is the scene's; F2
/// changes a label.
class DzHierarchyPane : public DzPane {
    Q_OBJECT
public:
    DzHierarchyPane();
    ~DzHierarchyPane();

    void refresh() override;

protected:
    /// The tree's resizing.
    bool eventFilter(QObject* object, QEvent* event) override;

private slots:
    void fitColumns();
    void markStale();
    void followSelection();
    void takeSelection();
    void takeChange(QTreeWidgetItem* item, int column);

private:
    void build();
    void fillTree();
    void addItem(DzNode& node, QTreeWidgetItem& parent);
    void showNode(const DzNode& node);
    void showSelection();
    DzNode* nodeOf(const QTreeWidgetItem& item) const;

    openhost::PaneRefresh* _refresh;
    QTreeWidget* _tree = nullptr; ///< null until it is needed
    QHash<const DzNode*, QTreeWidgetItem*> _items;
    QHash<const QTreeWidgetItem*, QPointer<DzNode>> _nodes;
    std::unique_ptr<QObject> _watch; ///< receives what the nodes tell
    bool _isShowing = false;         ///< the tree changes by the scene, not by the user
};
