// The host's sliders bound to numbers.
// SPDX-License-Identifier: MIT

#include "ks_ctl_slider.h"

#include "ks_critical-box.h"
#include "ks_gui.h"
#include "ks_gui_style.h"
#include "ks_qt-compat.h"
#include "ks_string.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QTextDocument>

#include <dzfloatslider.h>
#include <dzintslider.h>

#include <fmt/format.h>

namespace kst {

namespace {

QString PlainText(std::string_view richText)
{
    QTextDocument document;
    document.setHtml(str::ToQ(richText));
    return document.toPlainText();
}

} // namespace

template <class S, class T>
SliderControllerBase<S, T>::SliderControllerBase(QHBoxLayout& layout, QLabel* label,
                                                 NumericSetting<T>& setting, std::string_view name,
                                                 SliderControllerRoot::Flags flags,
                                                 std::function<void(const T&)> onChange,
                                                 std::string_view tooltip)
    : ControllerWithWidget<S, T>(setting, std::move(onChange)), _slider(*new S(layout.parentWidget()))
{
    setUpSlider(setting, flags);
    _slider.setDefaultValue(setting.getDefault());
    qt::SetAccessibleName(_slider, PlainText(name));
    if (label) {
        label->setText(str::ToQ(fmt::format("<b>{}</b>", name)));
        layout.addWidget(label);
    }
    layout.addWidget(&_slider);
    gui::SetHelp(_slider, tooltip);
}

template <class S, class T>
SliderControllerBase<S, T>::~SliderControllerBase() = default;

template <class S, class T>
void SliderControllerBase<S, T>::setUpSlider(NumericSetting<T>& setting, SliderControllerRoot::Flags flags)
{
    _slider.setClamped(true);
    _slider.setMinMax(setting.getMin(), setting.getMax());
    _slider.setTextEditable(flags.test(EditableText));
    _slider.setDisplayAsPercent(flags.test(DisplayAsPercent));
    _slider.setValue(setting.get());
    if (flags.test(HideText))
        _slider.setTextVisible(false);
}

template <class S, class T>
T SliderControllerBase<S, T>::getWidgetValue() const
{
    return _slider.getValue();
}

template <class S, class T>
void SliderControllerBase<S, T>::setWidgetValue(const T& value)
{
    _slider.setValue(value);
}

template <class S, class T>
void SliderControllerBase<S, T>::setEnabled(bool enabled)
{
    _slider.setEnabled(enabled);
}

template <class S, class T>
void SliderControllerBase<S, T>::handleValueChanged(T value)
{
    daz::CallOutermost("Unhandled exception in slider handler", nullptr,
                       [this, value] { this->reportChange(value); });
}

template class SliderControllerBase<DzIntSlider, int>;
template class SliderControllerBase<DzFloatSlider, float>;

IntSliderController::IntSliderController(QHBoxLayout& layout, QLabel* label, NumericSetting<int>& setting,
                                         std::string_view name, SliderControllerRoot::Flags flags,
                                         std::function<void(const int&)> onChange, std::string_view tooltip)
    : IntSliderControllerBase(layout, label, setting, name, flags, std::move(onChange), tooltip)
{
    gui::ConnectSignal(getWidget(), SIGNAL(valueChanged(int)), this, SLOT(slotSliderValueChanged(int)));
}

IntSliderController::~IntSliderController() = default;

void IntSliderController::slotSliderValueChanged(int value)
{
    handleValueChanged(value);
}

FloatSliderController::FloatSliderController(QHBoxLayout& layout, QLabel* label,
                                             NumericSetting<float>& setting, std::string_view name,
                                             SliderControllerRoot::Flags flags,
                                             std::function<void(const float&)> onChange,
                                             std::string_view tooltip)
    : FloatSliderControllerBase(layout, label, setting, name, flags, std::move(onChange), tooltip)
{
    gui::ConnectSignal(getWidget(), SIGNAL(valueChanged(float)), this, SLOT(slotSliderValueChanged(float)));
}

FloatSliderController::~FloatSliderController() = default;

void FloatSliderController::slotSliderValueChanged(float value)
{
    handleValueChanged(value);
}

} // namespace kst
