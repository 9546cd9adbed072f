// Check boxes, radio buttons and checkable group boxes whose toggles run a callback.
// SPDX-License-Identifier: MIT

#include "ks_gui_check_radio.h"

#include "ks_critical-box.h"
#include "ks_gui.h"
#include "ks_gui_style.h"

#include <QCheckBox>
#include <QGroupBox>

const char* const KsCheckOrRadioBase::CHECK_BOX_HEADING = "Unhandled exception in check box handler";
const char* const KsCheckOrRadioBase::RADIO_BUTTON_HEADING = "Unhandled exception in radio button handler";

KsCheckOrRadioBase::KsCheckOrRadioBase(const char* heading) : _heading(heading) {}
KsCheckOrRadioBase::~KsCheckOrRadioBase() = default;

void KsCheckOrRadioBase::connectToggled(const QAbstractButton& button)
{
    kst::gui::ConnectSignal(button, SIGNAL(toggled(bool)), this, SLOT(slotCheckBoxOrRadioToggled(bool)));
}

void KsCheckOrRadioBase::slotCheckBoxOrRadioToggled(bool checked)
{
    kst::daz::CallOutermost(_heading, nullptr, [this, checked] { onCheckBoxOrRadioToggled(checked); });
}

namespace kst {

CheckBox::CheckBox() : KsCheckOrRadioBase(CHECK_BOX_HEADING) {}
CheckBox::~CheckBox() = default;

void CheckBox::connect(QCheckBox& box, bool initial, std::function<void(bool)> callback,
                       std::string_view help)
{
    box.setChecked(initial);
    _callback = std::move(callback);
    gui::SetHelp(box, help);
    connectToggled(box);
}

void CheckBox::onCheckBoxOrRadioToggled(bool checked)
{
    _callback(checked);
}

CheckableGroupBox::CheckableGroupBox() = default;
CheckableGroupBox::~CheckableGroupBox() = default;

void CheckableGroupBox::connect(QGroupBox& box, std::function<void(bool)> callback)
{
    _callback = std::move(callback);
    gui::ConnectGroupBoxToggled(box, this, SLOT(slotToggled(bool)));
}

void CheckableGroupBox::slotToggled(bool checked)
{
    daz::CallOutermost("Unhandled exception in group box handler", nullptr,
                       [this, checked] { _callback(checked); });
}

RadioGroupBase::RadioGroupBase() : KsCheckOrRadioBase(RADIO_BUTTON_HEADING) {}
RadioGroupBase::~RadioGroupBase() = default;

void RadioGroupBase::connectButton(QRadioButton& button, std::string_view help)
{
    gui::SetHelp(button, help);
    connectToggled(button);
}

} // namespace kst
