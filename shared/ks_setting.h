// Small typed values that tell their listeners when they change.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kst {

/// Base of what has one place and no copies.
class ProhibitCopy {
public:
    ProhibitCopy() = default;
    ProhibitCopy(const ProhibitCopy&) = delete;
    ProhibitCopy& operator=(const ProhibitCopy&) = delete;
};

/// The listeners of a setting. They live as long as the setting and are called in the order of adding.
class SettingRoot {
public:
    void addListener(std::function<void()> callback)
    {
        if (!_listeners)
            _listeners = std::make_shared<std::vector<std::function<void()>>>();
        _listeners->push_back(std::move(callback));
    }

    /// A listener that is added meanwhile is not called yet.
    /// @throws std::bad_function_call  a listener is empty
    void notifyListeners() const
    {
        if (!_listeners)
            return;
        // A listener may add others, or bring down the setting with its list.
        const std::vector<std::function<void()>> listeners = *_listeners;
        for (const std::function<void()>& listener : listeners)
            listener();
    }

private:
    std::shared_ptr<std::vector<std::function<void()>>> _listeners;
};

/// A value with a default. A derived setting may keep it elsewhere too, which is why get() is not const.
template <class T>
class SettingBase : public SettingRoot {
public:
    explicit SettingBase(T defaultValue) : _defaultValue(defaultValue), _value(std::move(defaultValue)) {}
    SettingBase(T defaultValue, T value) : _defaultValue(std::move(defaultValue)), _value(std::move(value)) {}

    virtual const T& get() { return _value; }
    virtual void set(const T& value) { _value = value; } ///< silent: no listener is called
    virtual ~SettingBase() = default;

    const T& getDefault() const { return _defaultValue; }

    /// Sets and tells the listeners, unless the value is the present one.
    /// @return whether it changed
    bool setAndNotify(const T& value)
    {
        if (get() == value)
            return false;
        set(value);
        notifyListeners();
        return true;
    }

protected:
    T _defaultValue;
    T _value;
};

/// A number held within limits.
template <class T>
class NumericSetting : public SettingBase<T> {
public:
    NumericSetting(T defaultValue, T value, T min, T max)
        : SettingBase<T>(defaultValue, value), _min(min), _max(max)
    {
    }

    /// Tests the lower limit first; a float that is not a number passes both tests and is kept as it is.
    void set(const T& value) override
    {
        this->_value = value < _min ? _min : value;
        if (this->_value > _max)
            this->_value = _max;
    }

    virtual T getMin() { return _min; }
    virtual T getMax() { return _max; }

protected:
    T _min;
    T _max;
};

} // namespace kst
