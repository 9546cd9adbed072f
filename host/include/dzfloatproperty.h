// Float properties.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznumericproperty.h"

class DzFloatProperty : public DzNumericProperty {
    Q_OBJECT
public:
    DzFloatProperty(const QString& name, bool canAnimate, bool isUserProperty, float defaultValue = 0.0f);
    ~DzFloatProperty();

    /// The raw value through all controllers.
    Q_INVOKABLE float getValue() const;
    float getValue(const DzTime& time) const;
    Q_INVOKABLE void setValue(float value);
    void setValue(const DzTime& time, float value);
    float getLocalValue() const;
    Q_INVOKABLE float getRawValue() const;
    Q_INVOKABLE void setRawValue(float value);
    Q_INVOKABLE float getDefaultValue() const;
    Q_INVOKABLE void setDefaultValue(float value);
    Q_INVOKABLE float getMin() const;
    Q_INVOKABLE float getMax() const;
    Q_INVOKABLE void setMin(float min);
    Q_INVOKABLE void setMax(float max);
    Q_INVOKABLE void setMinMax(float min, float max);
    float getSensitivity() const;
    void setSensitivity(float sensitivity);
};
