// The host's sliders bound to numbers.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_ctl_base.h"
#include "ks_flag-set.h"

#include <string_view>

class DzFloatSlider;
class DzIntSlider;
class QHBoxLayout;
class QLabel;

namespace kst {

/// How a slider shows its value.
class SliderControllerRoot {
public:
    enum Flag {
        EditableText = 2,     ///< the value can be typed
        DisplayAsPercent = 4, ///< 1.0 shows as 100 %
        HideText = 8          ///< no value beside the slider
    };
    typedef FlagSet<Flag> Flags;
};

/// Makes a host slider of type S for a number of type T. The slider obeys the setting's limits; it belongs to
/// the widget of the layout that it is put into.
template <class S, class T>
class SliderControllerBase : public ControllerWithWidget<S, T>, public SliderControllerRoot {
public:
    ~SliderControllerBase() override;

    T getWidgetValue() const override;
    void setWidgetValue(const T& value) override;
    void setEnabled(bool enabled) override;
    S& getWidget() const override { return _slider; }

    /// Gives the slider the setting's limits and value, and shows it as the flags say.
    void setUpSlider(NumericSetting<T>& setting, SliderControllerRoot::Flags flags);

protected:
    /// @param label    shows the name in bold and stands before the slider; may be null
    /// @param name     rich text; also names the slider to screen readers
    /// @param tooltip  as for gui::SetHelp; may be empty
    SliderControllerBase(QHBoxLayout& layout, QLabel* label, NumericSetting<T>& setting,
                         std::string_view name, SliderControllerRoot::Flags flags,
                         std::function<void(const T&)> onChange, std::string_view tooltip);

    /// Runs the change callback; what it throws is shown in the critical box.
    void handleValueChanged(T value);

private:
    S& _slider;
};

// Names without a comma: the older meta-object compiler and its macros split there.
typedef SliderControllerBase<DzIntSlider, int> IntSliderControllerBase;
typedef SliderControllerBase<DzFloatSlider, float> FloatSliderControllerBase;

class IntSliderController : public IntSliderControllerBase {
    Q_OBJECT

public:
    /// The parameters are those of SliderControllerBase.
    IntSliderController(QHBoxLayout& layout, QLabel* label, NumericSetting<int>& setting,
                        std::string_view name, SliderControllerRoot::Flags flags,
                        std::function<void(const int&)> onChange,
                        std::string_view tooltip = std::string_view());
    ~IntSliderController() override;

private slots:
    void slotSliderValueChanged(int value);
};

class FloatSliderController : public FloatSliderControllerBase {
    Q_OBJECT

public:
    /// The parameters are those of SliderControllerBase.
    FloatSliderController(QHBoxLayout& layout, QLabel* label, NumericSetting<float>& setting,
                          std::string_view name, SliderControllerRoot::Flags flags,
                          std::function<void(const float&)> onChange,
                          std::string_view tooltip = std::string_view());
    ~FloatSliderController() override;

private slots:
    void slotSliderValueChanged(float value);
};

} // namespace kst
