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
    int getRawValue() const;
    void setRawValue(int value);
    int getDefaultValue() const;
    void setDefaultValue(int value);
    int getMin() const;
    int getMax() const;
    bool getMinMax(int& min, int& max) const;
    void setMin(int min);
    void setMax(int max);
    void setMinMax(int min, int max);
    int getSensitivity() const;
    void setSensitivity(int sensitivity);

protected:
    double toKind(double value) const override;
};
