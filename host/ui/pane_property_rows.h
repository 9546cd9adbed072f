// A list of properties of any length.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzproperty.h"
#include <QAbstractScrollArea>
#include <QPointer>

#include <vector>

namespace openhost {

class PropertyRow;

/// Only the rows in sight exist, so that thousands of properties cost as little as a screenful.
class PropertyRows : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit PropertyRows(QWidget* parent);
    ~PropertyRows() override;

    /// The properties to show, in order. What is in sight and what is picked stay so where they can.
    void setProperties(std::vector<QPointer<DzProperty>> properties);
    int count() const { return int(_properties.size()); }
    /// Those that are left of what the user picked, in the order of the rows.
    QObjectList picked() const;
    /// Picks the property alone and scrolls to its row; false when it is not in the list.
    bool reveal(const DzProperty& property);
    /// The property's row; null when it is out of sight.
    PropertyRow* rowOf(const DzProperty& property) const;

    QSize minimumSizeHint() const override;

signals:
    void pickedChanged();
    /// Something was done to dials of the list that the user is to know.
    void told(const QString& text);

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private slots:
    void handlePicked(Qt::KeyboardModifiers modifiers);

private:
    void layOut();
    void arrangeForWidth();
    void updateScrollBar();
    PropertyRow& rowFor(DzProperty& property);
    void dropRowsBut(const std::vector<PropertyRow*>& kept);
    void pick(int index, Qt::KeyboardModifiers modifiers);
    int indexOf(const DzProperty* property) const;
    bool isPicked(const DzProperty* property) const;

    std::vector<QPointer<DzProperty>> _properties;
    std::vector<QPointer<DzProperty>> _picked;
    std::vector<PropertyRow*> _rows; ///< in sight
    bool _isStacked = false;         ///< too narrow for labels beside dials
    int _rowHeight;
    int _anchor = -1; ///< where a range of picked rows begins
};

} // namespace openhost
