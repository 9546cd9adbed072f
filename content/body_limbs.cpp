// The canonical body's arms, hands, legs and feet; left side.
// SPDX-License-Identifier: MIT

#include "body_landmarks.h"
#include "body_solid.h"
#include "clay.h"

namespace content {

namespace {

using namespace landmarks;

/// An ellipsoid drawn out along a limb: length runs from a to b, the other two radii are equal.
float MuscleDistance(Vec3f p, Vec3f a, Vec3f b, float radius)
{
    const Vec3f center = (a + b) * 0.5f, axis = b - a;
    const float half = Length(axis) * 0.5f;
    const Vec3f unit = axis * (0.5f / half), offset = p - center;
    const float along = Dot(offset, unit), across = Length(offset - unit * along);
    return EllipsoidDistance({along, across, 0.0f}, {}, {half, radius, radius});
}

float ToesDistance(Vec3f p)
{
    float d = 1e3f;
    for (const Toe& toe : Toes())
        d = Join(d, ConeDistance(p, toe.root, toe.tip, toe.rootRadius, toe.tipRadius), 0.6f);
    return d;
}

} // namespace

float ArmDistance(Vec3f p)
{
    float d = ConeDistance(p, shoulder, elbow, 4.3f, 3.5f);
    d = Join(d, ConeDistance(p, elbow, wrist, 3.6f, 2.5f), 2.0f);
    // Deltoid, biceps and triceps, the forearm's bulk below the elbow, the wrist's flat sides.
    d = Join(d, TurnedEllipsoidDistance(p, {18.6f, 136.2f, -2.8f}, {4.7f, 8.2f, 5.3f}, 34.0f), 3.0f);
    d = Join(d,
             MuscleDistance(p, Mix(shoulder, elbow, 0.18f) + Vec3f{0, 0, 1.4f},
                            Mix(shoulder, elbow, 0.98f) + Vec3f{0, 0, 0.6f}, 3.7f),
             2.5f);
    d = Join(d,
             MuscleDistance(p, Mix(shoulder, elbow, 0.1f) + Vec3f{0.4f, 0.4f, -1.4f},
                            Mix(shoulder, elbow, 0.92f) + Vec3f{0.3f, 0.3f, -0.8f}, 3.8f),
             2.5f);
    d = Join(d,
             MuscleDistance(p, Mix(elbow, wrist, -0.1f) + Vec3f{0.2f, 0.2f, 1.2f},
                            Mix(elbow, wrist, 0.72f) + Vec3f{0, 0, 0.5f}, 3.5f),
             2.2f);
    d = Join(d,
             MuscleDistance(p, Mix(elbow, wrist, -0.06f) + Vec3f{0.4f, 0.4f, -0.9f},
                            Mix(elbow, wrist, 0.66f) + Vec3f{0, 0, -0.3f}, 3.3f),
             2.2f);
    d = Join(d, ConeDistance(p, wrist + Vec3f{-0.6f, 0.6f, 0.9f}, HandPoint(2.0f, 1.2f, 0.0f), 1.9f, 1.6f),
             1.5f);
    d = Join(d, ConeDistance(p, wrist + Vec3f{-0.6f, 0.6f, -0.9f}, HandPoint(2.0f, -1.2f, 0.0f), 1.8f, 1.5f),
             1.5f);
    return d;
}

float HandDistance(Vec3f p)
{
    // Bones of the palm, then the balls of thumb and little finger.
    const auto& fingers = Fingers();
    const auto& radii = FingerRadii();
    float palm = 1e3f;
    for (int f = 1; f < fingerCount; ++f) {
        const float across = 1.5f - 0.9f * static_cast<float>(f - 1);
        palm = Join(palm,
                    ConeDistance(p, HandPoint(0.6f, across, 0.1f), fingers[f][0], 1.45f, radii[f][0] + 0.12f),
                    1.3f);
    }
    palm = Join(palm, ConeDistance(p, HandPoint(3.5f, 1.4f, 0.3f), HandPoint(7.2f, 1.7f, 0.2f), 1.25f, 1.1f),
                1.5f);
    palm = Join(
        palm, ConeDistance(p, HandPoint(3.0f, -1.6f, 0.4f), HandPoint(6.2f, -2.1f, 0.3f), 1.35f, 1.2f), 1.5f);
    palm = Join(palm, ConeDistance(p, HandPoint(1.6f, 1.5f, 0.7f), HandPoint(4.2f, 3.2f, 1.0f), 1.35f, 1.35f),
                1.2f);
    float all = 1e3f;
    for (int f = 0; f < fingerCount; ++f) {
        float finger = 1e3f;
        for (int i = 0; i < 3; ++i)
            finger =
                Join(finger, ConeDistance(p, fingers[f][i], fingers[f][i + 1], radii[f][i], radii[f][i + 1]),
                     0.25f);
        all = Join(all, finger, 0.2f);
    }
    return Join(palm, all, 0.7f);
}

float LegDistance(Vec3f p)
{
    float d = ConeDistance(p, {8.9f, 86.0f, -0.6f}, {9.3f, 50.0f, 0.2f}, 8.2f, 5.0f);
    d = Join(d, MuscleDistance(p, {10.6f, 92.0f, 1.0f}, {9.7f, 47.0f, 2.4f}, 6.6f), 3.0f);
    d = Join(d, MuscleDistance(p, {6.6f, 90.0f, -0.8f}, {8.2f, 52.0f, 0.0f}, 5.4f), 3.0f);
    d = Join(d, MuscleDistance(p, {8.8f, 88.0f, -3.6f}, {9.2f, 46.0f, -1.4f}, 5.8f), 3.0f);
    // Knee: the cap, and the two heads of the shin below it.
    d = Join(d, ConeDistance(p, {9.3f, 52.0f, 0.2f}, {9.4f, 42.0f, 0.0f}, 4.8f, 4.3f), 4.0f);
    d = Join(d, EllipsoidDistance(p, {9.3f, 48.6f, 4.2f}, {2.3f, 2.9f, 2.0f}), 1.8f);
    d = Join(d, EllipsoidDistance(p, {9.3f, 43.0f, 2.6f}, {2.0f, 3.4f, 1.6f}), 2.4f);
    // The hollows beside the cap.
    d = Raise(d, p, {6.7f, 50.0f, 3.4f}, {6.9f, 46.0f, 3.2f}, 3.0f, -0.45f);
    d = Raise(d, p, {12.0f, 50.0f, 3.2f}, {11.8f, 46.0f, 3.0f}, 3.0f, -0.45f);
    // Shin and the two heads of the calf, the inner one lower.
    d = Join(d, ConeDistance(p, {9.4f, 44.0f, 0.4f}, {9.7f, 10.0f, -2.4f}, 4.3f, 2.9f), 3.0f);
    d = Join(d, MuscleDistance(p, {7.8f, 50.0f, -1.8f}, {8.9f, 17.0f, -3.4f}, 4.4f), 3.0f);
    d = Join(d, MuscleDistance(p, {11.0f, 50.0f, -1.8f}, {10.6f, 20.0f, -3.2f}, 4.2f), 3.0f);
    d = Join(d, ConeDistance(p, {9.7f, 20.0f, -4.0f}, {9.8f, 5.0f, -5.6f}, 1.8f, 1.7f), 2.2f);
    d = Join(d, EllipsoidDistance(p, {11.8f, 8.2f, -3.4f}, {1.1f, 1.8f, 1.4f}), 2.2f);
    d = Join(d, EllipsoidDistance(p, {7.7f, 9.0f, -2.8f}, {1.1f, 1.8f, 1.4f}), 2.2f);
    return d;
}

float FootDistance(Vec3f p)
{
    float d = EllipsoidDistance(p, {9.8f, 3.2f, -5.2f}, {3.1f, 3.6f, 3.4f});
    d = Join(d, ConeDistance(p, {9.7f, 6.8f, -2.2f}, {9.4f, 3.4f, 7.0f}, 2.7f, 2.0f), 2.0f);
    d = Join(d, ConeDistance(p, {10.4f, 2.8f, -4.0f}, {12.8f, 1.8f, 7.0f}, 2.6f, 1.8f), 2.0f);
    d = Join(d, ConeDistance(p, {8.5f, 2.1f, 9.4f}, {13.6f, 1.7f, 7.8f}, 1.9f, 1.4f), 1.8f);
    d = Join(d, ConeDistance(p, {9.4f, 3.0f, 3.0f}, {10.6f, 2.2f, 9.5f}, 2.6f, 1.7f), 1.8f);
    d = Join(d, ToesDistance(p), 0.7f);
    // The arch, and a flat sole.
    d = Carve(d, EllipsoidDistance(p, {6.2f, 0.0f, 1.5f}, {2.6f, 1.5f, 5.0f}), 1.2f);
    return Carve(d, p.y, 0.8f);
}

} // namespace content
