// Modelling a solid's surface: strokes that raise or lower it, and tubes along curves.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_field.h"

#include <cstddef>

namespace content {

/// Raises the surface of the solid with distance `d` along a segment by `amount` (cm, negative lowers it),
/// fading out smoothly until `reach`. Compact, so that what lies farther off costs nothing and stays as it
/// is.
inline float Raise(float d, Vec3f p, Vec3f a, Vec3f b, float reach, float amount)
{
    const Vec3f away = p - Mix(a, b, SegmentParameter(p, a, b));
    const float rest = 1.0f - LengthSquared(away) / (reach * reach);
    return rest > 0.0f ? d - amount * rest * rest * rest : d;
}

/// Likewise on both sides of the middle, where the stroke reaches over it.
inline float RaiseBoth(float d, Vec3f p, Vec3f a, Vec3f b, float reach, float amount)
{
    return Raise(Raise(d, p, a, b, reach, amount), Mirrored(p), a, b, reach, amount);
}

/// Likewise around one place.
inline float Raise(float d, Vec3f p, Vec3f center, float reach, float amount)
{
    const float rest = 1.0f - LengthSquared(p - center) / (reach * reach);
    return rest > 0.0f ? d - amount * rest * rest * rest : d;
}

/// A place on a tube's axis.
struct TubePoint {
    Vec3f center;
    float radius;
};

/// A tube along a polygon. Its pieces meet in whole balls, so nothing bulges where it bends.
template <std::size_t count>
float TubeDistance(Vec3f p, const TubePoint (&points)[count])
{
    float d = 1e3f;
    for (std::size_t i = 0; i + 1 < count; ++i)
        d = std::min(d, ConeDistance(p, points[i].center, points[i + 1].center, points[i].radius,
                                     points[i + 1].radius));
    return d;
}

} // namespace content
