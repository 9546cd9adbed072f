// Shapes of the whole body and the trunk.
// SPDX-License-Identifier: MIT

#include "shape_fields.h"

#include "body_landmarks.h"
#include "shape_blends.h"

namespace content {

using namespace landmarks;

Vec3f Displacement(base::Span<const ShapePart> parts, Vec3f canonical)
{
    Vec3f sum;
    for (const ShapePart& part : parts)
        sum += part.field(canonical) * part.amount;
    return sum;
}

float HeadInfluence(Vec3f canonical)
{
    // The border rises towards the nape, so that the chin is whole, and over the shoulders.
    const float height = canonical.y + 0.35f * (canonical.z + 2.0f) - 0.012f * canonical.x * canonical.x;
    return SmoothStep(142.5f, 150.5f, height);
}

float ArmInfluence(Vec3f canonical)
{
    return SmoothStep(18.0f, 27.0f, std::abs(canonical.x));
}

float LeftSide(Vec3f canonical)
{
    const float width = 0.7f + 4.5f * SmoothStep(74.0f, 88.0f, canonical.y);
    return SmoothStep(0.0f, width, canonical.x);
}

float LeftLegInfluence(Vec3f canonical)
{
    return SmoothStep(97.0f, 80.0f, canonical.y) * LeftSide(canonical) * (1.0f - ArmInfluence(canonical));
}

namespace {

/// Height along the trunk and legs; arms count as being at their shoulder.
float TrunkHeight(Vec3f p)
{
    return p.y + (std::max(p.y, 136.0f) - p.y) * ArmInfluence(p);
}

float TrunkInfluence(Vec3f p)
{
    return 1.0f - ArmInfluence(p);
}

Vec3f TurnedAboutZ(Vec3f offset, float degrees)
{
    const float angle = degrees * 0.017453293f;
    return {std::cos(angle) * offset.x - std::sin(angle) * offset.y,
            std::sin(angle) * offset.x + std::cos(angle) * offset.y, offset.z};
}

/// The left leg turned about the hip, its foot turned back about the ankle.
Vec3f LeftLegSpread(Vec3f p)
{
    const Vec3f turned = thigh + TurnedAboutZ(p - thigh, spreadDegrees);
    const Vec3f turnedAnkle = thigh + TurnedAboutZ(ankle - thigh, spreadDegrees);
    const float foot = SmoothStep(16.0f, 6.0f, p.y);
    const Vec3f flattened = turnedAnkle + TurnedAboutZ(turned - turnedAnkle, -spreadDegrees * foot);
    return (flattened - p) * LeftLegInfluence(p);
}

Vec3f OutFromArm(Vec3f p)
{
    return OutFromLimb(p, shoulder, elbow, 5.0f) + OutFromLimb(p, elbow, wrist, 4.0f);
}

Vec3f OutFromLeg(Vec3f p)
{
    return (OutFromLimb(p, thigh, knee, 8.0f) + OutFromLimb(p, knee, ankle, 5.0f)) * LeftSide(p);
}

/// Outwards from the spine, length 1 at the trunk's surface.
Vec3f OutFromSpine(Vec3f p)
{
    const Vec3f away{p.x, 0.0f, p.z + 1.0f};
    const float reach = std::max(Length(Vec3f{away.x / 13.0f, 0.0f, away.z / 9.5f}), 0.3f);
    return Vec3f{away.x / 13.0f, 0.0f, away.z / 9.5f} *
           (TrunkInfluence(p) / reach * SmoothStep(0.0f, 0.7f, reach));
}

} // namespace

namespace shapes {

Vec3f Taller(Vec3f p)
{
    return p * 0.1f;
}

Vec3f LegsSpread(Vec3f p)
{
    // The turned ankle rises; the whole body comes down by as much.
    static const float rise = LeftLegSpread(ankle).y;
    return OnBothSides(p, LeftLegSpread) - Vec3f{0.0f, rise, 0.0f};
}

Vec3f LongerLegs(Vec3f p)
{
    const float t = std::clamp((TrunkHeight(p) - 6.0f) / 84.0f, 0.0f, 1.0f);
    // Even in the middle, easing in above the foot and out below the hip.
    return {0.0f, 6.0f * (0.6f * t + 0.4f * SmoothStep(0.0f, 1.0f, t)), 0.0f};
}

Vec3f BroaderShoulders(Vec3f p)
{
    const float height = std::max(Bump(p.y, 134.0f, 9.0f) * SmoothStep(150.0f, 143.0f, p.y), ArmInfluence(p));
    return {2.0f * std::tanh(p.x / 9.0f) * height, 0.0f, 0.0f};
}

Vec3f WiderHips(Vec3f p)
{
    const float height = Bump(p.y, 89.0f, 10.0f) * TrunkInfluence(p);
    return {1.6f * std::tanh(p.x / 7.0f) * height, 0.0f, -0.5f * SmoothStep(2.0f, -9.0f, p.z) * height};
}

Vec3f NarrowerWaist(Vec3f p)
{
    const float height = Bump(p.y, 109.0f, 7.5f) * TrunkInfluence(p);
    return {-0.1f * p.x * height, 0.0f, -0.07f * p.z * height};
}

Vec3f FullerBreasts(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) {
        const float strength =
            Bump(q, {7.9f, 125.0f, 9.0f}, {4.6f, 4.8f, 6.0f}) * SmoothStep(1.0f, 7.0f, q.z);
        // Fuller below than above.
        return Vec3f{0.5f, -0.9f - 0.12f * (q.y - 125.0f), 3.9f} * strength;
    });
}

Vec3f FullerSeat(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) {
        return Vec3f{0.5f, 0.3f, -2.0f} *
               (Bump(q, {7.2f, 88.5f, -11.5f}, 5.5f) * SmoothStep(1.0f, -6.0f, q.z));
    });
}

Vec3f LargerBelly(Vec3f p)
{
    const float strength = Bump(p, {0.0f, 102.0f, 9.0f}, {8.5f, 8.5f, 9.0f}) * SmoothStep(-4.0f, 6.0f, p.z);
    return Vec3f{0.12f * p.x, -1.2f, 7.0f} * strength;
}

Vec3f Heavier(Vec3f p)
{
    const float girth = 3.2f * Bump(p.y, 104.0f, 16.0f) + 1.4f * Bump(p.y, 128.0f, 9.0f);
    Vec3f sum =
        OutFromSpine(p) * girth + LargerBelly(p) * 0.35f + FullerSeat(p) * 0.6f + FullerBreasts(p) * 0.3f;
    sum += OnBothSides(p, [](Vec3f q) { return OutFromArm(q) * 1.3f + OutFromLeg(q) * 1.7f; });
    return sum + FullerCheeks(p) * 0.7f + ThickerNeck(p) * 0.6f;
}

Vec3f MoreMuscle(Vec3f p)
{
    Vec3f sum = OnBothSides(p, [](Vec3f q) {
        const Vec3f chest = Vec3f{0.2f, 0.2f, 1.3f} *
                            (Bump(q, {7.5f, 129.0f, 8.0f}, {5.0f, 4.0f, 5.0f}) * SmoothStep(0.0f, 6.0f, q.z));
        const Vec3f flank = Vec3f{1.4f, 0.0f, -0.4f} * Bump(q, {14.5f, 124.0f, -4.0f}, {4.0f, 8.0f, 6.0f});
        const Vec3f neckSide = Vec3f{0.3f, 1.2f, -0.3f} * Bump(q, {8.0f, 144.5f, -4.5f}, 3.5f);
        return chest + flank + neckSide + OutFromArm(q) * 1.0f + OutFromLeg(q) * 0.8f;
    });
    return sum + BroaderShoulders(p) * 0.5f;
}

Vec3f ThickerNeck(Vec3f p)
{
    return OutFromLimb(p, {0.0f, 138.0f, -3.3f}, {0.0f, 154.0f, -2.6f}, 5.6f) * 0.9f;
}

Vec3f LargerHands(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) { return (q - wrist) * (0.2f * SmoothStep(51.0f, 58.0f, q.x)); });
}

Vec3f LargerFeet(Vec3f p)
{
    return OnBothSides(p, [](Vec3f q) {
        const Vec3f ground{ankle.x, 0.0f, ankle.z};
        return (q - ground) * (0.2f * SmoothStep(14.0f, 5.0f, q.y) * LeftSide(q));
    });
}

Vec3f TurnedTrunk(Vec3f p)
{
    const float side = SmoothStep(3.0f, 18.0f, p.x);
    const float height =
        std::max(SmoothStep(118.0f, 136.0f, p.y) * SmoothStep(150.0f, 142.0f, p.y), ArmInfluence(p));
    return Vec3f{0.3f, 1.6f, 0.5f} * (side * height) + OutFromArm(p) * 0.9f;
}

} // namespace shapes

} // namespace content
