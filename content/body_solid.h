// The canonical body as a smooth solid.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_field.h"

namespace content {

/// Signed distance to the canonical body: an androgynous adult of 170 cm in an A pose, feet on y = 0,
/// mirror-symmetric. Every vertex of every sample mesh lies on its zero set; all other shapes are
/// displacement fields over it.
float BodyDistance(Vec3f p);

/// Direction of steepest ascent by central differences; not normalised.
Vec3f BodyGradient(Vec3f p);

/// The nearby point on the body, by Newton steps along the gradient.
Vec3f ProjectToBody(Vec3f p);

/// The parts, each for the left half (x >= 0) unless it spans both.
float HeadDistance(Vec3f p);
float TorsoDistance(Vec3f p);
float ArmDistance(Vec3f p);
float HandDistance(Vec3f p);
float LegDistance(Vec3f p);
float FootDistance(Vec3f p);

} // namespace content
