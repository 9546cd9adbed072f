// Binding a widget to a setting.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_setting.h"

#include <functional>
#include <utility>

#include <QObject>

namespace kst {

/// Shows a setting in a widget. The widget's changes are reported at once; the setting takes the value only
/// when the dialog accepts, so a cancelled dialog leaves every setting as it was. Widget and setting are
/// borrowed and must outlive the controller's use of them.
class ControllerBase : public QObject {
    Q_OBJECT

public:
    ControllerBase();
    ~ControllerBase() override;

    /// Stores the widget's value in the setting and tells the setting's listeners, unless it is the present
    /// one.
    virtual void acceptValue() = 0;
    /// Enables or disables the widget.
    virtual void setEnabled(bool enabled) = 0;
};

/// A controller of a widget W for a setting of T.
template <class W, class T>
class ControllerWithWidget : public ControllerBase {
public:
    virtual T getWidgetValue() const = 0;
    /// Counts as a change by the user: it is reported, and stored only on acceptance.
    virtual void setWidgetValue(const T& value) = 0;

    void acceptValue() override { _setting.setAndNotify(getWidgetValue()); }

    virtual W& getWidget() const = 0;

protected:
    /// @param onChange  called with every new value of the widget; may be empty
    ControllerWithWidget(SettingBase<T>& setting, std::function<void(const T&)> onChange)
        : _onChange(std::move(onChange)), _setting(setting)
    {
    }

    void reportChange(const T& value) const
    {
        if (_onChange)
            _onChange(value);
    }

private:
    std::function<void(const T&)> _onChange;
    SettingBase<T>& _setting;
};

} // namespace kst
