// What is done to many dials at once.
// SPDX-License-Identifier: MIT

#pragma once

#include "dial_values.h"

#include <QMenu>
#include <QPointer>

#include <functional>

class DzNode;

namespace openhost {

/// The menu of the pane of properties: for those that it shows, and for the figure that they belong to.
class DialMenu : public QMenu {
    Q_OBJECT
public:
    /// @param dials  those that are shown
    /// @param node   whose shape is copied and replaced; null for none
    DialMenu(std::function<Dials()> dials, std::function<DzNode*()> node, QWidget* parent);

    bool showsChangedOnly() const { return _changedOnly->isChecked(); }
    void showAll();

signals:
    void filterChanged();
    void told(const QString& text); ///< what was done

private slots:
    void update();
    void memorize();
    void restore();
    void reset();
    void copyShape();
    void pasteShape();

private:
    std::function<Dials()> _dials;
    std::function<DzNode*()> _node;
    QAction* _changedOnly;
    QAction* _restore;
    QAction* _copy;
    QAction* _paste;
};

} // namespace openhost
