// Settings bound to a number of the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "shared/ks_setting.h"

class DzFloatProperty;
class DzIntProperty;

namespace kst {

/// Keeps a property's value, default and limits as they were when the setting was made. The property is
/// borrowed and is not written by set(); who owns the conversation with the user does that.
template <class T, class Property>
class NumericPropertySetting : public NumericSetting<T> {
public:
    Property& getProperty() const { return _property; }
    T getInitialValue() const { return _initialValue; } ///< when the setting was made

protected:
    NumericPropertySetting(Property& property, T defaultValue, T value, T min, T max)
        : NumericSetting<T>(defaultValue, value, min, max), _property(property), _initialValue(value)
    {
    }

private:
    Property& _property;
    T _initialValue;
};

class IntPropertySetting : public NumericPropertySetting<int, DzIntProperty> {
public:
    explicit IntPropertySetting(DzIntProperty& property);
};

class FloatPropertySetting : public NumericPropertySetting<float, DzFloatProperty> {
public:
    explicit FloatPropertySetting(DzFloatProperty& property);
};

} // namespace kst
