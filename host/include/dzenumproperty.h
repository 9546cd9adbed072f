// Choices from a list of texts.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzintproperty.h"

#include <QStringList>

/// The value is the index of the chosen item.
class DzEnumProperty : public DzIntProperty {
    Q_OBJECT
public:
    DzEnumProperty(const QString& name, bool canAnimate, bool isUserProperty, int defaultValue = 0);
    ~DzEnumProperty();

    int getNumItems() const;
    QString getItem(int index) const;              ///< empty out of range
    int findItemString(const QString& item) const; ///< -1 if none
    /// A negative index appends. Returns the item's index.
    int addItem(const QString& item, int index = -1);
    QString getStringValue() const;
    bool setValueFromString(const QString& item);

protected:
    double toKind(double value) const override;

private:
    QStringList _items;
};
