// Choosing a property-group path from the tree of a node's paths.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_dlg_base.h"

#include <memory>
#include <string>
#include <vector>

class DzNode;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace kst {

/// Builds the tree of property-group paths. Items stay in the order in which they were first inserted; the
/// helper owns them until toTreeWidget() gives them to the widget. Lives shorter than the widget.
class MorphPathTree {
public:
    explicit MorphPathTree(QTreeWidget& tree);
    ~MorphPathTree();
    MorphPathTree(const MorphPathTree&) = delete;
    MorphPathTree& operator=(const MorphPathTree&) = delete;

    /// Inserts the path of every property group of the node.
    void insertPathsFromNode(DzNode& node);
    /// Inserts one path; what is there already is shared.
    /// @param parts  UTF-8, from the top group down
    /// @return the item of the last part; null for no parts
    QTreeWidgetItem* insertOne(const std::vector<std::string>& parts);
    /// Puts all items into the widget, in front of those that it has.
    void toTreeWidget();

private:
    class Impl;
    QTreeWidget& _tree;
    std::unique_ptr<Impl> _pImpl;
};

/// What dialogs with such a tree have in common: selecting an item writes its path into a line edit, where it
/// can be changed.
class MorphPathDialogBase : public DialogBase {
    Q_OBJECT

public:
    explicit MorphPathDialogBase(QWidget* parent);
    ~MorphPathDialogBase() override;

    /// Connects the two and gives them their help. Call it once, before insertPropertyPaths.
    void initializePropertyPaths(QTreeWidget& tree, QLineEdit& edit);
    /// Fills the tree with the node's paths and selects the initial one, whether the node has it or not.
    /// @param initialParts  UTF-8; empty when nothing is to be selected
    void insertPropertyPaths(DzNode& node, const std::vector<std::string>& initialParts);
    /// At least six characters that begin with "/".
    bool isPropertyPathValid() const;
    static QString propertyPathRule(); ///< the same as a sentence for the user

protected:
    /// Called after each change of the path.
    virtual void enableDisableWidgets() = 0;

private slots:
    void slotTreeWidgetPathsCurrentItemChanged(QTreeWidgetItem* current, QTreeWidgetItem* previous);
    void slotMorphPropertyPathTextChanged(const QString& text);

private:
    QTreeWidget* _pTree = nullptr;
    QLineEdit* _pEdit = nullptr;
};

} // namespace kst
