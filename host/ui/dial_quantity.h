// What a property's number counts.
// SPDX-License-Identifier: MIT

#pragma once

#include "slider_text.h"

class DzProperty;

namespace openhost {

/// A node's place is a length, its turn an angle; of anything else nothing is known.
Quantity QuantityOf(const DzProperty& property);

} // namespace openhost
