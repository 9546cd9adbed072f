// Binding a widget to a setting.
// SPDX-License-Identifier: MIT

#include "shared/ks_ctl_base.h"

namespace kst {

ControllerBase::ControllerBase() = default;
ControllerBase::~ControllerBase() = default;

} // namespace kst
