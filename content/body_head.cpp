// The canonical body's head: skull, jaw and cheeks.
// SPDX-License-Identifier: MIT

#include "body_face.h"
#include "body_solid.h"
#include "clay.h"

namespace content {

namespace {

float SkullDistance(Vec3f p)
{
    float d = EllipsoidDistance(p, {0.0f, 161.5f, -1.9f}, {7.35f, 8.5f, 8.9f});
    d = Join(d, EllipsoidDistance(p, {0.0f, 162.9f, 2.2f}, {6.2f, 5.7f, 5.9f}), 3.0f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 155.6f, 2.0f}, {5.65f, 7.2f, 6.1f}), 3.0f);
    return d;
}

float JawDistance(Vec3f p)
{
    float d = ConeDistance(p, {4.9f, 153.0f, -0.6f}, {1.3f, 149.3f, 6.7f}, 1.15f, 1.35f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 149.1f, 6.9f}, {1.9f, 1.45f, 1.75f}), 1.6f);
    // The floor of the mouth, between both halves of the jaw.
    return Join(d, EllipsoidDistance(p, {0.0f, 151.2f, 3.4f}, {4.3f, 2.9f, 4.2f}), 2.0f);
}

float Cheeks(Vec3f p, float d)
{
    // Cheekbone and its arch, the soft cheek in front, the hollow below.
    d = Raise(d, p, {4.5f, 156.3f, 5.2f}, {6.6f, 157.0f, 1.2f}, 3.0f, 0.3f);
    d = Raise(d, p, {3.5f, 155.4f, 6.6f}, 2.8f, 0.5f);
    d = Raise(d, p, {5.6f, 153.2f, 3.6f}, 3.8f, -0.14f);
    // The chewing muscle.
    d = Raise(d, p, {6.0f, 156.0f, 1.6f}, {5.4f, 152.8f, 1.2f}, 3.2f, 0.3f);
    // From the wing of the nose to the corner of the mouth.
    d = Raise(d, p, {1.9f, 154.5f, 8.0f}, {3.1f, 152.2f, 7.1f}, 0.9f, -0.12f);
    // Temple.
    return Raise(d, p, {6.6f, 161.2f, 3.9f}, 4.2f, -0.55f);
}

float Brow(Vec3f p, float d)
{
    d = RaiseBoth(d, p, {1.4f, 160.7f, 8.1f}, {4.3f, 161.1f, 6.6f}, 2.7f, 0.34f);
    // The hollow of the eye, deepest beside the nose.
    d = Raise(d, p, {2.3f, 159.2f, 7.4f}, {4.0f, 158.7f, 6.4f}, 2.5f, -0.75f);
    return Raise(d, p, {1.55f, 158.9f, 7.5f}, 1.3f, -0.45f);
}

} // namespace

float HeadDistance(Vec3f p)
{
    // Everything here stands in pairs; what crosses the middle is even in x, so folding leaves no crease.
    const Vec3f left{std::abs(p.x), p.y, p.z};
    float d = Join(SkullDistance(left), JawDistance(left), 2.4f);
    if (left.z > -2.0f) {
        d = Cheeks(left, d);
        d = Brow(left, d);
        d = Mouth(left, OpenNostril(left, Nose(left, Lids(left, d))));
    }
    return d;
}

} // namespace content
