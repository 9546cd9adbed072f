// Signed distances of simple solids and smooth ways to join them.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/vec3.h"

#include <algorithm>
#include <cmath>

/// The sample library: its bodies, shapes and files. Lengths are cm; Y is up and bodies face +Z.
namespace content {

using geometry::Vec3f;

/// Componentwise product.
constexpr Vec3f Times(Vec3f a, Vec3f b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
constexpr Vec3f Mirrored(Vec3f a)
{
    return {-a.x, a.y, a.z};
}
constexpr Vec3f Mix(Vec3f a, Vec3f b, float t)
{
    return a + (b - a) * t;
}

/// 0 below `low`, 1 above `high`, smooth in between; the limits may stand in either order.
inline float SmoothStep(float low, float high, float value)
{
    const float t = std::clamp((value - low) / (high - low), 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

/// Distances are negative inside. They are exact for capsules and cones and close to it near an ellipsoid's
/// surface.
inline float EllipsoidDistance(Vec3f p, Vec3f center, Vec3f radii)
{
    const Vec3f offset = p - center;
    const Vec3f scaled{offset.x / radii.x, offset.y / radii.y, offset.z / radii.z};
    const float k0 = Length(scaled);
    const float k1 = Length(Vec3f{scaled.x / radii.x, scaled.y / radii.y, scaled.z / radii.z});
    if (k1 < 1e-6f)
        return -std::min({radii.x, radii.y, radii.z});
    return k0 * (k0 - 1.0f) / k1;
}

/// An ellipsoid turned by `degrees` about the Z axis through its centre.
inline float TurnedEllipsoidDistance(Vec3f p, Vec3f center, Vec3f radii, float degrees)
{
    const float angle = degrees * 0.017453293f;
    const float c = std::cos(angle), s = std::sin(angle);
    const Vec3f offset = p - center;
    return EllipsoidDistance({c * offset.x + s * offset.y, c * offset.y - s * offset.x, offset.z}, {}, radii);
}

/// How far along a segment the closest point lies, 0 to 1.
inline float SegmentParameter(Vec3f p, Vec3f a, Vec3f b)
{
    const Vec3f axis = b - a;
    return std::clamp(Dot(p - a, axis) / LengthSquared(axis), 0.0f, 1.0f);
}

inline float SegmentDistance(Vec3f p, Vec3f a, Vec3f b)
{
    return Length(p - Mix(a, b, SegmentParameter(p, a, b)));
}

/// A capsule whose radius changes smoothly from one end to the other.
inline float ConeDistance(Vec3f p, Vec3f a, Vec3f b, float radiusA, float radiusB)
{
    const float t = SegmentParameter(p, a, b);
    return Length(p - Mix(a, b, t)) - (radiusA + (radiusB - radiusA) * t);
}

/// Union that rounds the seam where the two distances differ by less than `width`.
inline float Join(float a, float b, float width)
{
    const float h = std::max(width - std::abs(a - b), 0.0f) / width;
    return std::min(a, b) - h * h * width * 0.25f;
}

/// Takes the solid b away from a.
inline float Carve(float a, float b, float width)
{
    return -Join(-a, b, width);
}

} // namespace content
