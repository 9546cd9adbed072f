// The canonical body as a smooth solid: the parts put together.
// SPDX-License-Identifier: MIT

#include "body_solid.h"

#include "body_face.h"
#include "body_nails.h"

namespace content {

namespace {

/// A part is worth evaluating where its bounding ball is nearer than what was found so far.
float BallDistance(Vec3f p, Vec3f center, float radius)
{
    return Length(p - center) - radius;
}

/// The seams between parts are wider than any distance error of the bounding balls.
constexpr float seamReach = 6.0f;

float HalfLimbs(Vec3f p, float distance)
{
    if (BallDistance(p, {9.5f, 48.0f, -1.0f}, 52.0f) < distance + seamReach) {
        float leg = LegDistance(p);
        if (p.y < 20.0f)
            leg = Join(leg, FootDistance(p), 3.2f);
        distance = Join(distance, leg, 3.0f);
    }
    if (BallDistance(p, {38.0f, 117.0f, -2.5f}, 34.0f) < distance + seamReach)
        distance = Join(distance, ArmDistance(p), 3.5f);
    if (BallDistance(p, {60.5f, 93.0f, 0.5f}, 14.0f) < distance + seamReach)
        distance = Join(distance, HandDistance(p), 1.6f);
    return distance;
}

} // namespace

float ClosedBodyDistance(Vec3f p)
{
    float distance = TorsoDistance(p);
    if (BallDistance(p, {0.0f, 155.0f, 0.0f}, 18.0f) < distance + seamReach)
        distance = Join(distance, HeadDistance(p), 2.6f);
    // Near the middle both halves count, so that nothing creases there.
    const Vec3f left{std::abs(p.x), p.y, p.z};
    distance = HalfLimbs(left, distance);
    if (left.x < seamReach)
        distance = Join(distance, LegDistance(Mirrored(left)), 2.0f);
    return distance;
}

float BodyDistance(Vec3f p)
{
    float distance = ClosedBodyDistance(p);
    const Vec3f left{std::abs(p.x), p.y, p.z};
    const bool isAtToes = p.y < 4.0f && p.z > 9.0f;
    if (left.x > 55.0f || isAtToes)
        return AddNails(left, distance);
    if (p.y > 99.0f && p.y < 107.0f && p.z > 5.0f)
        return Navel(p, distance);
    if (p.y < 148.0f || p.z < -7.0f)
        return distance;
    if (left.x > 5.0f)
        distance = AddEar(left, distance);
    if (p.z < 2.0f || distance > 1.0f)
        return distance;
    distance = OpenEye(left, distance);
    return OpenMouth(left, distance);
}

Vec3f Gradient(Solid solid, Vec3f p)
{
    constexpr float step = 0.02f;
    const float a = solid(p + Vec3f{step, -step, -step}), b = solid(p + Vec3f{-step, step, -step}),
                c = solid(p + Vec3f{-step, -step, step}), d = solid(p + Vec3f{step, step, step});
    return Vec3f{a - b - c + d, b - a - c + d, c - a - b + d} * (0.25f / step);
}

Vec3f Project(Solid solid, Vec3f p)
{
    for (int round = 0; round < 6; ++round) {
        const float distance = solid(p);
        if (std::abs(distance) < 2e-5f)
            break;
        const Vec3f gradient = Gradient(solid, p);
        const float slope = std::max(LengthSquared(gradient), 0.1f);
        p -= gradient * std::clamp(distance / slope, -0.6f, 0.6f);
    }
    return p;
}

} // namespace content
