// Mirroring morph deltas across a plane through the origin.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/vec3.h"

namespace geometry {

enum class MirrorSide { Swap, PositiveToNegative, NegativeToPositive };

struct Mirroring {
    int axis = 0; ///< 0 X, 1 Y, 2 Z: the one at right angles to the plane
    MirrorSide side = MirrorSide::Swap;
};

/// Each vertex takes the mirrored delta of the vertex at its mirrored place. Vertices without a counterpart
/// within 0.01 cm keep their own. When one side is copied, vertices on the plane keep what lies within the
/// plane.
/// @param deltas   cm, one per vertex
/// @param neutral  cm, one per vertex; where counterparts are looked for
/// @throws TopologyError  the two differ in length
void MirrorDeltas(base::Span<Vec3f> deltas, base::Span<const Vec3f> neutral, const Mirroring& how);

} // namespace geometry
