// Switches.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzintproperty.h"

/// 0 or 1.
class DzBoolProperty : public DzIntProperty {
    Q_OBJECT
public:
    DzBoolProperty(const QString& name, bool canAnimate, bool isUserProperty, bool defaultValue = false);
    ~DzBoolProperty();

    Q_INVOKABLE bool getBoolValue() const;
    Q_INVOKABLE void setBoolValue(bool value);

protected:
    double toKind(double value) const override;
};
