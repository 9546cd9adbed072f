// The canonical body's trunk and neck.
// SPDX-License-Identifier: MIT

#include "body_landmarks.h"
#include "body_solid.h"
#include "clay.h"

namespace content {

namespace {

/// Muscles that stand in pairs; p is folded to the left side.
float PairedMuscles(Vec3f p, float d)
{
    // Shoulder girdle and back.
    d = Join(d, ConeDistance(p, {2.0f, 147.5f, -4.2f}, {14.5f, 140.0f, -4.2f}, 3.0f, 2.3f), 4.0f);
    d = Join(d, TurnedEllipsoidDistance(p, {12.2f, 121.0f, -4.2f}, {3.6f, 13.5f, 5.0f}, -8.0f), 4.0f);
    d = Join(d, TurnedEllipsoidDistance(p, {8.8f, 129.5f, -8.0f}, {5.2f, 8.0f, 2.8f}, 12.0f), 3.5f);
    d = Join(d, ConeDistance(p, {3.2f, 92.0f, -6.2f}, {3.2f, 124.0f, -8.0f}, 2.4f, 2.4f), 5.0f);
    // Chest: the pectoral runs from the breastbone up to the arm.
    d = Join(d, TurnedEllipsoidDistance(p, {7.4f, 128.4f, 4.6f}, {8.0f, 5.4f, 3.5f}, 16.0f), 4.0f);
    d = Join(d, EllipsoidDistance(p, {7.6f, 124.8f, 5.2f}, {5.0f, 4.6f, 3.9f}), 4.0f);
    d = Join(d, ConeDistance(p, {1.6f, 139.6f, 3.6f}, {14.5f, 141.0f, -1.6f}, 1.15f, 1.05f), 1.8f);
    // Hips and seat.
    d = Join(d, EllipsoidDistance(p, {7.0f, 89.5f, -6.4f}, {7.6f, 8.6f, 6.4f}), 3.0f);
    d = Join(d, EllipsoidDistance(p, {10.0f, 92.5f, -0.6f}, {6.0f, 11.5f, 7.4f}), 5.0f);
    d = Join(d, EllipsoidDistance(p, {9.0f, 84.0f, 0.0f}, {8.2f, 9.0f, 8.4f}), 4.0f);
    return d;
}

float NeckDistance(Vec3f p)
{
    float d = ConeDistance(p, {0.0f, 153.5f, -2.4f}, {0.0f, 141.0f, -3.4f}, 4.7f, 5.5f);
    const Vec3f left{std::abs(p.x), p.y, p.z};
    d = Join(d, ConeDistance(left, {4.6f, 152.5f, -2.8f}, {1.5f, 140.8f, 2.6f}, 1.1f, 0.8f), 2.2f);
    // The hollow between the collar bones and the slight arch of the throat.
    d = Join(d, EllipsoidDistance(p, {0.0f, 147.0f, 1.2f}, {1.8f, 2.6f, 1.6f}), 1.6f);
    return d;
}

} // namespace

float TorsoDistance(Vec3f p)
{
    float d = EllipsoidDistance(p, {0.0f, 124.0f, -1.4f}, {13.6f, 16.5f, 9.9f});
    d = Join(d, EllipsoidDistance(p, {0.0f, 134.5f, -2.6f}, {15.0f, 6.8f, 7.2f}), 4.0f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 108.0f, -0.6f}, {12.2f, 17.0f, 8.7f}), 6.0f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 95.0f, -0.8f}, {14.0f, 11.5f, 9.0f}), 6.0f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 100.0f, 2.0f}, {9.0f, 10.5f, 7.0f}), 4.0f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 86.0f, 1.2f}, {6.0f, 7.0f, 7.0f}), 3.0f);
    const Vec3f left{std::abs(p.x), p.y, p.z};
    d = PairedMuscles(left, d);
    if (left.x < 8.0f)
        d = Join(d, PairedMuscles(Mirrored(left), d + 3.0f), 1.5f);
    d = Join(d, NeckDistance(p), 3.5f);
    // Spine, breastbone, middle of the belly, cleft of the seat.
    d = Carve(d, ConeDistance(p, {0.0f, 98.0f, -10.3f}, {0.0f, 134.0f, -12.2f}, 0.5f, 0.5f), 4.0f);
    d = Carve(d, ConeDistance(p, {0.0f, 121.0f, 9.6f}, {0.0f, 134.0f, 7.4f}, 0.4f, 0.4f), 3.0f);
    d = Carve(d, ConeDistance(p, {0.0f, 102.0f, 10.3f}, {0.0f, 118.0f, 9.6f}, 0.3f, 0.3f), 2.6f);
    d = Carve(d, ConeDistance(p, {0.0f, 80.0f, -10.5f}, {0.0f, 93.0f, -13.2f}, 0.9f, 0.5f), 2.6f);
    return d;
}

float Navel(Vec3f p, float d)
{
    const Vec3f middle = landmarks::navel;
    // Skin hangs a little over it from above.
    d = Raise(d, p, middle + Vec3f{0.0f, 0.75f, -0.2f}, 1.0f, 0.15f);
    return Carve(d, EllipsoidDistance(p, middle, {0.48f, 0.62f, 0.8f}), 0.7f);
}

} // namespace content
