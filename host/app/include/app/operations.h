// Asking before an operation whether it is to fail.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/operation.h"

class QString;

namespace openhost {

/// Whether anybody watches; ask before putting a detail together.
bool IsWatched();
/// What the one who watches says; true without one.
bool Allows(Operation operation, const QString& detail);

} // namespace openhost
