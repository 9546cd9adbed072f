// Binding a widget to a setting.
// SPDX-License-Identifier: MIT

#include "ks_ctl_base.h"

namespace kst {

ControllerBase::ControllerBase() = default;
ControllerBase::~ControllerBase() = default;

} // namespace kst
