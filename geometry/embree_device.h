// The one Embree device of the process.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/vec3.h"

#include <embree3/rtcore.h>

namespace geometry {

/// Created at first use and kept to the end of the process: scenes may live in static storage, too.
RTCDevice EmbreeDevice();

/// Every scene's positions pass here.
/// @throws TopologyError  one is farther out than the ray tracer can take
void CheckReach(base::Span<const Vec3f> positions);

/// Makes the scene ready to be looked at.
/// @throws base::Cancelled  the work is to end
void CommitScene(RTCScene scene);

} // namespace geometry
