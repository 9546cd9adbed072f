// Settings bound to a number of the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_setting.h"

class DzFloatProperty;
class DzIntProperty;

namespace kst {

/// The host's property of a number's type: int or float.
template <class T>
struct NumericPropertyOf;
template <>
struct NumericPropertyOf<int> {
    typedef DzIntProperty Type;
};
template <>
struct NumericPropertyOf<float> {
    typedef DzFloatProperty Type;
};

/// Keeps a property's value, default and limits as they were when the setting was made. The property is
/// borrowed and is not written by set(); who owns the conversation with the user does that.
template <class T>
class NumericPropertySetting : public NumericSetting<T> {
public:
    typedef typename NumericPropertyOf<T>::Type Property;

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

class IntPropertySetting : public NumericPropertySetting<int> {
public:
    explicit IntPropertySetting(DzIntProperty& property);
};

class FloatPropertySetting : public NumericPropertySetting<float> {
public:
    explicit FloatPropertySetting(DzFloatProperty& property);
};

} // namespace kst
