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
    float getRawValue() const;
    void setRawValue(float value);
    float getDefaultValue() const;
    void setDefaultValue(float value);
    float getMin() const;
    float getMax() const;
    void setMin(float min);
    void setMax(float max);
    void setMinMax(float min, float max);
    float getSensitivity() const;
    void setSensitivity(float sensitivity);
};
