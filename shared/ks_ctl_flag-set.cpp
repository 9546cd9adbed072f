// Check boxes bound to the flags of one setting.
// SPDX-License-Identifier: MIT

#include "ks_ctl_flag-set.h"

#include "ks_critical-box.h"
#include "ks_gui.h"
#include "ks_gui_style.h"

#include <QCheckBox>

namespace kst {

FlagSetControllerBase::FlagSetControllerBase() = default;
FlagSetControllerBase::~FlagSetControllerBase() = default;

void FlagSetControllerBase::addMapping(int flagBits, QCheckBox* pBox, std::string_view tooltip)
{
    _mappings.push_back(InternalMapping{flagBits, pBox});
    gui::SetHelp(*pBox, tooltip);
}

void FlagSetControllerBase::connectBoxes(std::function<void(bool)> onChange)
{
    _onChange = std::move(onChange);
    for (const InternalMapping& mapping : _mappings)
        gui::ConnectSignal(*mapping.pBox, SIGNAL(toggled(bool)), this, SLOT(slotToggled(bool)));
}

void FlagSetControllerBase::checkBoxes(int flagBits)
{
    for (const InternalMapping& mapping : _mappings)
        mapping.pBox->setChecked((mapping.flagBits & flagBits) != 0);
}

int FlagSetControllerBase::checkedBits() const
{
    int bits = 0;
    for (const InternalMapping& mapping : _mappings)
        if (mapping.pBox->isChecked())
            bits |= mapping.flagBits;
    return bits;
}

void FlagSetControllerBase::slotToggled(bool checked)
{
    daz::CallOutermost("Unhandled exception in check box handler", nullptr, [this, checked] {
        if (_onChange)
            _onChange(checked);
    });
}

} // namespace kst
