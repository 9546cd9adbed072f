// Mirroring morph deltas across a plane through the origin.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/vec3.h"

#include <vector>

namespace openhost {

enum class MirrorSide { Swap, PositiveToNegative, NegativeToPositive };

/// Each vertex takes the mirrored delta of the vertex at its mirrored place. Vertices without a counterpart
/// within 0.01 cm keep their own. When one side is copied, vertices on the plane keep what lies within the
/// plane.
/// @param axis    0 X, 1 Y, 2 Z: the axis across which it is mirrored
/// @param neutral cm, one per vertex; deltas likewise
void MirrorDeltas(std::vector<geometry::Vec3f>& deltas, base::Span<const geometry::Vec3f> neutral, int axis,
                  MirrorSide side);

} // namespace openhost
