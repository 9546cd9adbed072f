// Shapes of the head.
// SPDX-License-Identifier: MIT

#include "body_landmarks.h"
#include "shape_blends.h"
#include "shape_fields.h"

namespace content::shapes {

Vec3f LargerHead(Vec3f p)
{
    return (p - Vec3f{0.0f, 149.0f, -2.0f}) * (0.125f * HeadInfluence(p));
}

Vec3f NarrowerFace(Vec3f p)
{
    const float front = SmoothStep(-3.0f, 5.0f, p.z) * HeadInfluence(p) * Bump(p.y, 154.0f, 6.0f);
    return {-0.13f * p.x * front, 0.0f, 0.25f * front};
}

Vec3f WiderJaw(Vec3f p)
{
    const float strength = Bump(p.y, 151.2f, 2.6f) * SmoothStep(-4.0f, 1.5f, p.z) * HeadInfluence(p);
    return {0.7f * std::tanh(p.x / 3.5f) * strength, -0.2f * strength, 0.0f};
}

Vec3f LongerChin(Vec3f p)
{
    return Vec3f{-0.1f * p.x, -1.1f, 0.7f} * Bump(p, {0.0f, 148.2f, 8.2f}, {2.6f, 2.0f, 3.0f});
}

Vec3f HeavierBrow(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) {
        return Vec3f{0.0f, -0.25f, 0.65f} * Bump(q, {2.6f, 161.0f, 8.2f}, {2.4f, 1.4f, 2.5f});
    });
}

Vec3f LargerEyes(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) {
        return (q - Vec3f{3.1f, 158.5f, 7.0f}) * (0.28f * Bump(q, {3.1f, 158.5f, 8.0f}, 1.5f));
    });
}

Vec3f FullerCheeks(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) {
        return Vec3f{0.8f, -0.1f, 0.6f} * Bump(q, {4.8f, 153.6f, 5.4f}, {2.2f, 2.5f, 3.2f});
    });
}

Vec3f LongerNose(Vec3f p)
{
    return Vec3f{0.0f, -0.35f, 1.6f} * Bump(p, {0.0f, 155.2f, 10.6f}, {1.1f, 1.5f, 2.0f});
}

Vec3f WiderNose(Vec3f p)
{
    const float strength = Bump(p, {0.0f, 154.7f, 9.6f}, {1.6f, 1.1f, 1.5f});
    return {0.45f * std::tanh(p.x / 0.7f) * strength, 0.0f, -0.35f * strength};
}

Vec3f FullerLips(Vec3f p)
{
    // Both lips swell away from the mouth's line.
    const float strength = Bump(p, {0.0f, 151.9f, 9.2f}, {1.9f, 0.85f, 1.0f});
    const float height = p.y - landmarks::LipLine(std::abs(p.x));
    return {0.0f, 0.22f * std::tanh(height / 0.4f) * strength, 0.5f * strength};
}

Vec3f PointedEars(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) {
        const float outside = SmoothStep(6.6f, 7.6f, q.x);
        return Vec3f{0.9f, 3.4f, -1.4f} * (Bump(q, {8.2f, 160.6f, -2.6f}, {1.6f, 1.5f, 1.7f}) * outside);
    });
}

Vec3f UnevenFace(Vec3f p)
{
    const float jaw = Bump(p.y, 149.5f, 3.0f) * SmoothStep(-2.0f, 5.0f, p.z) * HeadInfluence(p);
    const float brow = Bump(p, {-3.0f, 161.2f, 8.0f}, {2.2f, 1.4f, 2.5f});
    return Vec3f{0.8f, 0.0f, 0.0f} * jaw + Vec3f{0.0f, 0.6f, 0.1f} * brow;
}

} // namespace content::shapes
