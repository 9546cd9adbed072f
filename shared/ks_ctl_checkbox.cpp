// A check box bound to a setting.
// SPDX-License-Identifier: MIT

#include "ks_ctl_checkbox.h"

#include "ks_gui_style.h"

namespace kst {

CheckBoxController::CheckBoxController(QCheckBox& box, SettingBase<bool>& setting, std::string_view tooltip,
                                       std::function<void(const bool&)> onChange)
    : ControllerWithWidget<QCheckBox, bool>(setting, std::move(onChange)),
      KsCheckOrRadioBase(CHECK_BOX_HEADING), _box(box)
{
    box.setChecked(setting.get());
    connectToggled(box);
    gui::SetHelp(box, tooltip);
}

CheckBoxController::~CheckBoxController() = default;

bool CheckBoxController::getWidgetValue() const
{
    return _box.isChecked();
}

void CheckBoxController::setWidgetValue(const bool& value)
{
    _box.setChecked(value);
}

void CheckBoxController::setEnabled(bool enabled)
{
    _box.setEnabled(enabled);
}

QCheckBox& CheckBoxController::getWidget() const
{
    return _box;
}

void CheckBoxController::onCheckBoxOrRadioToggled(bool checked)
{
    reportChange(checked);
}

} // namespace kst
