// Names that no file can have everywhere.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace base {

/// Whether one system keeps the name for a device, such as CON or LPT1, whatever follows after a full stop.
/// @param name  UTF-8, in composed form
bool IsDeviceName(const std::string& name);

} // namespace base
