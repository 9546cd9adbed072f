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

    Q_INVOKABLE int getNumItems() const;
    Q_INVOKABLE QString getItem(int index) const;              ///< empty out of range
    Q_INVOKABLE int findItemString(const QString& item) const; ///< -1 if none
    /// A negative index appends. Returns the item's index.
    Q_INVOKABLE int addItem(const QString& item, int index = -1);
    Q_INVOKABLE QString getStringValue() const;
    Q_INVOKABLE bool setValueFromString(const QString& item);

protected:
    double toKind(double value) const override;

private:
    QStringList _items;
};
