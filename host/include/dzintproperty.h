// Integer properties.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznumericproperty.h"

/// Evaluated numbers are rounded to the nearest integer.
class DzIntProperty : public DzNumericProperty {
    Q_OBJECT
public:
    DzIntProperty(const QString& name, bool canAnimate, bool isUserProperty, int defaultValue = 0);
    ~DzIntProperty();

    Q_INVOKABLE int getValue() const;
    int getValue(const DzTime& time) const;
    Q_INVOKABLE void setValue(int value);
    void setValue(const DzTime& time, int value);
    int getLocalValue() const;
    Q_INVOKABLE int getRawValue() const;
    Q_INVOKABLE void setRawValue(int value);
    Q_INVOKABLE int getDefaultValue() const;
    Q_INVOKABLE void setDefaultValue(int value);
    Q_INVOKABLE int getMin() const;
    Q_INVOKABLE int getMax() const;
    bool getMinMax(int& min, int& max) const;
    Q_INVOKABLE void setMin(int min);
    Q_INVOKABLE void setMax(int max);
    Q_INVOKABLE void setMinMax(int min, int max);
    int getSensitivity() const;
    void setSensitivity(int sensitivity);

protected:
    double toKind(double value) const override;
};
