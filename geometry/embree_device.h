// The one Embree device of the process.
// SPDX-License-Identifier: MIT

#pragma once

#include <embree3/rtcore.h>

namespace geometry {

/// Created at first use and kept to the end of the process: scenes may live in static storage, too.
RTCDevice EmbreeDevice();

} // namespace geometry
