// Expressions of the face.
// SPDX-License-Identifier: MIT

#include "body_landmarks.h"
#include "body_lashes.h"
#include "body_solid.h"
#include "shape_blends.h"
#include "shape_fields.h"

namespace content {

using namespace landmarks;

namespace {

Vec3f TurnedAboutX(Vec3f offset, float radians)
{
    const float c = std::cos(radians), s = std::sin(radians);
    return {offset.x, c * offset.y - s * offset.z, s * offset.y + c * offset.z};
}

/// By how much a place on the lids comes down, seen from the front.
float LidDrop(Vec3f p)
{
    const LidLine line = LidLineAt(p.x);
    const float upper = line.middle + std::max(line.up, 0.0f),
                lower = line.middle - std::max(line.down, 0.0f);
    // The lids meet below the middle. Their edges are round, so they come to touch, also around larger eyes,
    // when the lines along them are past each other.
    const float meeting = lower + 0.25f * (upper - lower), part = 1.09f;
    if (p.y > 0.5f * (upper + lower))
        return part * (upper - meeting) * SmoothStep(upper + 0.6f, upper, p.y);
    return -part * (meeting - lower) * SmoothStep(lower - 0.5f, lower, p.y);
}

/// The lids slide over the ball: they keep their distance from its axis.
Vec3f SlidOver(Vec3f offset, float drop)
{
    const float squared = offset.y * offset.y + offset.z * offset.z;
    const float up = offset.y - drop, front = std::sqrt(std::max(squared - up * up, 0.0f));
    return {0.0f, up - offset.y, front - std::abs(offset.z)};
}

/// A lash stays as it is and turns with the piece of lid that it stands on.
Vec3f LashTurned(Vec3f p)
{
    LashPlace place = LashAt(p);
    place.rise = 0.0f;
    const Vec3f root = FromLash(place), before = root - eye, after = before + SlidOver(before, LidDrop(root));
    const float turn = std::atan2(before.y, before.z) - std::atan2(after.y, after.z);
    const Vec3f offset{0.0f, p.y - eye.y, p.z - eye.z};
    return TurnedAboutX(offset, turn) - offset;
}

/// How far a place in front of the lids counts as a lash's: 0 in the skin.
float LashInfluence(Vec3f p)
{
    const Vec3f offset = p - eye;
    const float distance = std::hypot(offset.y, offset.z);
    if (offset.z < 0.3f || distance > 2.6f || std::abs(offset.x) > 2.0f ||
        Length(offset) < eyeRadius + 0.5f * lidThickness)
        return 0.0f;
    return SmoothStep(0.0f, 0.06f, BodyDistance(p)) * SmoothStep(2.6f, 2.4f, distance);
}

Vec3f LeftEyeClosed(Vec3f p)
{
    const Vec3f offset = p - eye;
    const float distance = Length(offset);
    if (distance > 3.4f)
        return {};
    const float lash = LashInfluence(p);
    if (lash == 1.0f)
        return LashTurned(p);
    // The ball itself stays.
    const float strength = SmoothStep(eyeRadius + 0.005f, eyeRadius + socketGap - 0.005f, distance) *
                           SmoothStep(2.8f, 2.2f, distance) * SmoothStep(-0.3f, 0.3f, offset.z);
    const Vec3f lid = strength > 0.0f ? SlidOver(offset, LidDrop(p) * strength) : Vec3f{};
    return lash > 0.0f ? Mix(lid, LashTurned(p), lash) : lid;
}

/// 1 on what lies loose within the mouth, 0 on its wall.
float InPocket(Vec3f p)
{
    const Vec3f offset = p - pocketCenter;
    const float reach =
        Length(Vec3f{offset.x / pocketRadii.x, offset.y / pocketRadii.y, offset.z / pocketRadii.z});
    return SmoothStep(0.98f, 0.95f, reach);
}

/// How much a place goes with the lower jaw. Between the lips and between the rows of teeth it jumps, where
/// there is nothing; in the corners of the mouth and at the pocket's back both sides go half.
float JawInfluence(Vec3f p)
{
    const float x = std::abs(p.x), height = p.y - LipLine(x);
    const float loose = InPocket(p);
    // The upper teeth bite over the lower ones.
    const float parting = height + toothOverlap * loose;
    const float whole =
        std::max(SmoothStep(0.8f, 1.1f, x / mouthHalfWidth), SmoothStep(6.5f, 4.8f, p.z)) * (1.0f - loose);
    const float sharp = SmoothStep(lipGap, -lipGap, parting), wide = SmoothStep(0.7f, -1.3f, height);
    const float corner = std::min(x / mouthHalfWidth, 1.0f), both = corner * corner * corner * (1.0f - loose);
    float jaw = sharp + (wide - sharp) * whole;
    jaw += (0.4f - jaw) * both * std::exp(-height * height / 0.5f);
    return jaw * SmoothStep(-1.0f, 4.5f, p.z) * SmoothStep(143.5f, 147.2f, p.y);
}

} // namespace

namespace shapes {

Vec3f EyesClosed(Vec3f p)
{
    return OnBothSides(p, LeftEyeClosed);
}

Vec3f MouthOpen(Vec3f p)
{
    constexpr Vec3f joint{0.0f, 156.8f, -0.5f};
    constexpr float angle = 16.0f * 0.017453293f;
    const Vec3f offset{0.0f, p.y - joint.y, p.z - joint.z};
    return (TurnedAboutX(offset, angle) - offset) * JawInfluence(p);
}

Vec3f Smile(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) {
        const Vec3f corner = Vec3f{0.65f, 0.75f, -0.35f} * Bump(q, {2.6f, 151.9f, 7.8f}, {1.2f, 1.1f, 1.4f});
        const Vec3f cheek = Vec3f{0.25f, 0.45f, 0.35f} * Bump(q, {4.0f, 154.8f, 6.6f}, {1.4f, 1.3f, 1.6f});
        return (corner + cheek) * (1.0f - InPocket(q));
    });
}

Vec3f BrowsUp(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) {
        return Vec3f{0.0f, 0.75f, 0.1f} * Bump(q, {3.0f, 161.3f, 7.6f}, {2.2f, 1.0f, 2.2f});
    });
}

Vec3f Frown(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) {
        const Vec3f brow = Vec3f{-0.35f, -0.5f, 0.3f} * Bump(q, {1.5f, 160.9f, 8.3f}, {1.1f, 0.9f, 1.6f});
        const Vec3f corner = Vec3f{0.05f, -0.5f, 0.0f} * Bump(q, {2.6f, 151.6f, 7.9f}, {1.0f, 0.9f, 1.2f});
        return brow + corner * (1.0f - InPocket(q));
    });
}

} // namespace shapes

} // namespace content
