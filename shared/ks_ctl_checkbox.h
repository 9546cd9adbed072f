// A check box bound to a setting.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_ctl_base.h"
#include "ks_gui_check_radio.h"

#include <string_view>

#include <QCheckBox>

namespace kst {

/// Both bases are toolkit objects; the second one receives the box's toggles, so name the base meant where
/// one of them is handed to the toolkit.
class CheckBoxController : public ControllerWithWidget<QCheckBox, bool>, public KsCheckOrRadioBase {
public:
    /// @param tooltip   as for gui::SetHelp; may be empty
    /// @param onChange  called with the box's new state; may be empty
    CheckBoxController(QCheckBox& box, SettingBase<bool>& setting, std::string_view tooltip,
                       std::function<void(const bool&)> onChange);
    ~CheckBoxController() override;

    bool getWidgetValue() const override;
    void setWidgetValue(const bool& value) override;
    void setEnabled(bool enabled) override;
    QCheckBox& getWidget() const override;

protected:
    void onCheckBoxOrRadioToggled(bool checked) override;

private:
    QCheckBox& _box;
};

} // namespace kst
