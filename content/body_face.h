// The features of the canonical body's face and the openings in it, left half.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_field.h"

namespace content {

/// Each adds a feature to the head with distance `d`; the openings are still closed.
float Lids(Vec3f p, float d);
float Nose(Vec3f p, float d);
float Mouth(Vec3f p, float d);

/// Each takes an opening out or adds what no coarse grid can follow.
float OpenEye(Vec3f p, float d);     ///< the slit between the lids and the socket behind them
float OpenNostril(Vec3f p, float d); ///< shallow
float OpenMouth(Vec3f p, float d);   ///< the slit between the lips and the pocket behind them
float AddEar(Vec3f p, float d);

/// Backwards, upwards and outwards of the left ear, which leans back and stands off the head; and back.
Vec3f EarPlace(Vec3f p);
Vec3f FromEar(Vec3f q);

} // namespace content
