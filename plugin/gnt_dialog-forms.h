// The dialogs of a conversion that a user sees.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_forms.h"

/// Shows windows: for the GUI thread of a host that has a display.
class GntDialogForms : public GntForms {
public:
    std::unique_ptr<GntConvertForm> makeConvertForm(const GntConvertQuestion& question) override;
    void showSuccess(const GntSuccess& success) override;
};
