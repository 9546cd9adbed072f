// Text properties.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzproperty.h"

class DzStringProperty : public DzProperty {
    Q_OBJECT
public:
    DzStringProperty(const QString& name, bool canAnimate, bool isUserProperty,
                     const QString& defaultValue = QString());
    ~DzStringProperty();

    Q_INVOKABLE QString getValue() const;
    /// False when locked.
    Q_INVOKABLE bool setValue(const QString& value);
    QString getDefaultValue() const;
    void setDefaultValue(const QString& value);

private:
    void swapValue(QString& other);

    QString _value;
    QString _default;
};
