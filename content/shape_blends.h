// Smooth bumps and limb fields that shapes are made of.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_field.h"

namespace content {

/// 1 at the centre, 0.61 at one sigma.
inline float Bump(Vec3f p, Vec3f center, float sigma)
{
    return std::exp(-0.5f * LengthSquared(p - center) / (sigma * sigma));
}

/// A bump with a different sigma on each axis.
inline float Bump(Vec3f p, Vec3f center, Vec3f sigma)
{
    const Vec3f d = p - center;
    return Bump({d.x / sigma.x, d.y / sigma.y, d.z / sigma.z}, {}, 1.0f);
}

inline float Bump(float value, float center, float sigma)
{
    return Bump(Vec3f{value - center, 0, 0}, {}, sigma);
}

/// A field given for the left side, on both sides; p and result in the body's space.
template <class Field>
Vec3f OnBothSides(Vec3f p, const Field& left)
{
    return left(p) + Mirrored(left(Mirrored(p)));
}

/// Outwards from a limb's axis: length 1 at the limb's radius, nothing on the axis or well beyond the
/// surface, ending smoothly before both joints.
inline Vec3f OutFromLimb(Vec3f p, Vec3f a, Vec3f b, float radius)
{
    const Vec3f axis = b - a;
    const float t = Dot(p - a, axis) / LengthSquared(axis);
    const Vec3f away = p - (a + axis * t);
    const float ratio = Length(away) / radius, squared = ratio * ratio / 3.0f;
    const float window = SmoothStep(-0.15f, 0.3f, t) * SmoothStep(1.12f, 0.72f, t);
    return away * (window * std::exp(-squared * squared * squared) / radius);
}

} // namespace content
