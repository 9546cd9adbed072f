// The pane of the selected nodes' properties.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzpane.h"
#include "dzproperty.h"

#include <QPointer>
#include <QSet>

#include <memory>
#include <vector>

class DzNode;
class QLabel;
class QLineEdit;
class QSplitter;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace openhost {

class DialMenu;
class PaneRefresh;
class PropertyRows;

/// What the pane holds: the selected nodes with their groups as a tree, and below it a row for each property
/// of the chosen group and of the groups below that one. The search field and the star leave some out.
class ParametersWidget : public QWidget {
    Q_OBJECT
public:
    explicit ParametersWidget(QWidget* parent);
    ~ParametersWidget() override;

    /// The properties whose rows the user picked.
    Q_INVOKABLE QObjectList getPropertySelections() const;
    /// The nodes whose properties are shown, in the order in which they were selected.
    Q_INVOKABLE QObjectList getNodeSelections() const;

    /// Shows what the scene has now.
    void refresh();
    /// Selects the property's node, opens its group, scrolls to its row and picks it. Does nothing for null
    /// and for what is not in the scene.
    void jumpTo(DzProperty* property);

    QSize sizeHint() const override; ///< wide enough for labels beside dials

private slots:
    void markStale();
    void showRows();
    void tell(const QString& text);

private:
    QToolButton* makeMenuButton();
    void build();
    void fillTree();
    void watch(DzNode& node);
    void addGroups(DzNode& node, QTreeWidgetItem& top, const QSet<QString>& expanded);
    QTreeWidgetItem* findItem(const DzNode& node, const QString& path) const;
    void choose(const DzNode* node, const QString& path);
    DzNode* nodeOf(const QTreeWidgetItem* item) const;
    std::vector<QPointer<DzProperty>> propertiesOf(const QTreeWidgetItem& item) const;

    PaneRefresh* _refresh;
    std::vector<QPointer<DzProperty>> _shown;
    std::vector<QPointer<DzNode>> _nodes; ///< one for each item at the top
    std::unique_ptr<QObject> _watch;      ///< receives what the shown nodes and their properties tell
    QLineEdit* _search = nullptr;         ///< this and the rest are null until there is something to show
    QToolButton* _favorites = nullptr;
    DialMenu* _menu = nullptr;
    QLabel* _notice = nullptr; ///< what was done last
    QSplitter* _splitter = nullptr;
    QTreeWidget* _tree = nullptr;
    PropertyRows* _rows = nullptr;
};

} // namespace openhost

class DzParametersPane : public DzPane {
    Q_OBJECT
public:
    DzParametersPane();
    ~DzParametersPane();

    void refresh() override;

public slots:
    /// See ParametersWidget::jumpTo.
    void jumpToProperty(DzProperty* property);

private:
    openhost::ParametersWidget* _widget;
};
