// The folders that figures are looked for in.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace desktop {

/// Where a choice of a figure begins: the user's own folder where there is none.
QString FirstContentFolder();

} // namespace desktop
