// Paths in the cells of a table.
// SPDX-License-Identifier: MIT

#pragma once

#include <QStyledItemDelegate>

namespace desktop {

/// The end of a path says most.
class PathDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->textElideMode = Qt::ElideLeft;
    }
};

} // namespace desktop
