// The canonical body as a smooth solid.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_field.h"

namespace content {

/// Signed distance to the canonical body: an androgynous adult of 170 cm in an A pose, feet on y = 0,
/// mirror-symmetric. Every vertex of every sample mesh's skin lies on its zero set; all other shapes are
/// displacement fields over it.
float BodyDistance(Vec3f p);
/// The same with eyes and mouth closed, without ears, nails and navel: a surface that a coarse grid can
/// follow.
float ClosedBodyDistance(Vec3f p);

/// One of the two.
using Solid = float (*)(Vec3f);

/// Direction of steepest ascent by differences at a tetrahedron's corners; not normalised.
Vec3f Gradient(Solid solid, Vec3f p);

/// The nearby point on the surface, by Newton steps along the gradient.
Vec3f Project(Solid solid, Vec3f p);

/// The parts, each for the left half (x >= 0) unless it spans both.
float HeadDistance(Vec3f p);
float TorsoDistance(Vec3f p);
float Navel(Vec3f p, float d); ///< presses it into a trunk with distance d
float ArmDistance(Vec3f p);
float HandDistance(Vec3f p);
float LegDistance(Vec3f p);
float FootDistance(Vec3f p);

} // namespace content
