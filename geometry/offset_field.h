// A smooth field of offsets that carries one surface onto another.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/incidence.h"

#include <vector>

namespace geometry {

/// Where one vertex should go, and how sure that is.
struct OffsetGoal {
    Vec3f offset; ///< cm, from the vertex to the surface
    Vec3f normal; ///< of the surface there; the surface is known along it, but only weakly along itself
    float weight = 0.0f; ///< 0: nothing is known
};

/// The offsets that come close to the goals while bending little from vertex to vertex: the least squares of
/// the goals and of the field's graph Laplacian, by conjugate gradients.
std::vector<Vec3f> SmoothOffsets(const IndexLists& neighbours, base::Span<const OffsetGoal> goals);

} // namespace geometry
