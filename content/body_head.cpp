// The canonical body's head.
// SPDX-License-Identifier: MIT

#include "body_solid.h"

namespace content {

namespace {

float SkullDistance(Vec3f p)
{
    float d = EllipsoidDistance({p.x, p.y, p.z}, {0.0f, 161.2f, -1.4f}, {7.3f, 8.7f, 9.2f});
    d = Join(d, EllipsoidDistance(p, {0.0f, 163.2f, 2.4f}, {6.2f, 5.4f, 5.9f}), 2.5f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 155.2f, 2.6f}, {5.6f, 7.5f, 5.9f}), 2.5f);
    return d;
}

float FaceBones(Vec3f p, float d)
{
    d = Join(d, ConeDistance(p, {4.6f, 153.4f, 0.0f}, {1.4f, 149.2f, 6.3f}, 1.35f, 1.45f), 2.2f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 149.0f, 7.2f}, {1.9f, 1.6f, 1.7f}), 1.8f);
    d = Join(d, EllipsoidDistance(p, {4.3f, 156.0f, 5.3f}, {1.9f, 1.7f, 2.1f}), 2.4f);
    d = Join(d, ConeDistance(p, {1.4f, 160.6f, 7.5f}, {4.6f, 161.0f, 6.1f}, 0.6f, 0.5f), 1.8f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 152.2f, 7.3f}, {2.9f, 2.6f, 1.9f}), 1.5f);
    return d;
}

float Eyes(Vec3f p, float d)
{
    d = Carve(d, TurnedEllipsoidDistance(p, {3.0f, 158.7f, 8.9f}, {1.8f, 1.15f, 1.6f}, -4.0f), 1.3f);
    d = Carve(d, EllipsoidDistance(p, {1.35f, 158.6f, 8.8f}, {0.6f, 0.8f, 0.8f}), 0.9f);
    // The lids over the ball: a full upper lid, a narrow lower one, the slit between them.
    d = Join(d, EllipsoidDistance(p, {3.1f, 158.5f, 6.75f}, {1.75f, 1.45f, 1.4f}), 0.4f);
    const float bow = 0.09f * (p.x - 3.05f) * (p.x - 3.05f);
    const float slit = EllipsoidDistance({p.x, p.y + bow, p.z}, {3.1f, 158.2f, 8.3f}, {1.7f, 0.32f, 0.5f});
    d = Carve(d, slit, 0.3f);
    const float fold = EllipsoidDistance({p.x, p.y + bow, p.z}, {3.1f, 159.75f, 8.0f}, {1.7f, 0.2f, 0.5f});
    return Carve(d, fold, 0.5f);
}

float Nose(Vec3f p, float d)
{
    d = Join(d, ConeDistance(p, {0.0f, 159.4f, 7.9f}, {0.0f, 155.6f, 10.1f}, 0.62f, 0.75f), 1.0f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 155.4f, 9.0f}, {0.75f, 1.4f, 1.2f}), 0.8f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 154.9f, 10.3f}, {0.85f, 0.8f, 0.9f}), 0.7f);
    d = Join(d, EllipsoidDistance(p, {1.1f, 154.65f, 9.2f}, {0.7f, 0.72f, 1.05f}), 0.8f);
    d = Join(d, ConeDistance(p, {0.0f, 154.3f, 9.8f}, {0.0f, 153.9f, 8.8f}, 0.5f, 0.5f), 0.5f);
    return Carve(d, EllipsoidDistance(p, {0.72f, 153.5f, 9.3f}, {0.3f, 0.4f, 0.5f}), 0.4f);
}

float Mouth(Vec3f p, float d)
{
    // Lips follow the arch of the teeth: their depth falls off towards the corners.
    const Vec3f q{p.x, p.y, p.z + 0.16f * p.x * p.x};
    d = Join(d, EllipsoidDistance(q, {0.75f, 152.45f, 9.05f}, {1.75f, 0.68f, 0.75f}), 0.55f);
    d = Join(d, EllipsoidDistance(q, {0.0f, 151.0f, 9.0f}, {2.0f, 0.82f, 0.82f}), 0.55f);
    d = Carve(d, EllipsoidDistance(q, {0.0f, 151.75f, 9.9f}, {2.7f, 0.22f, 0.75f}), 0.4f);
    d = Carve(d, EllipsoidDistance(q, {0.0f, 149.85f, 9.7f}, {1.5f, 0.4f, 0.7f}), 1.1f);
    return Carve(d, EllipsoidDistance(q, {0.0f, 153.25f, 9.75f}, {0.28f, 0.6f, 0.5f}), 0.5f);
}

float EarDistance(Vec3f p)
{
    // Turned a little outwards at the back, leaning backwards, narrowing towards the lobe.
    const Vec3f local{p.x - 7.2f, p.y - 157.7f, p.z + 1.6f};
    const Vec3f turned{local.x * 0.94f + local.z * 0.34f, local.y * 0.98f - local.z * 0.2f,
                       local.z * 0.94f - local.x * 0.34f};
    float d = EllipsoidDistance(turned, {0.25f, 0.75f, -0.1f}, {0.7f, 2.3f, 1.8f});
    d = Join(d, EllipsoidDistance(turned, {0.0f, -1.5f, 0.3f}, {0.7f, 1.4f, 1.1f}), 0.8f);
    return Carve(d, EllipsoidDistance(turned, {1.0f, 0.7f, 0.2f}, {0.55f, 1.5f, 0.95f}), 0.5f);
}

} // namespace

float HeadDistance(Vec3f p)
{
    // Everything here stands in pairs; what crosses the middle is even in x, so folding leaves no crease.
    const Vec3f left{std::abs(p.x), p.y, p.z};
    float d = FaceBones(left, SkullDistance(left));
    // Temples and the hollow of the cheek.
    d = Carve(d, EllipsoidDistance(left, {8.6f, 161.5f, 4.6f}, {1.6f, 3.0f, 3.0f}), 2.0f);
    d = Carve(d, EllipsoidDistance(left, {7.3f, 152.9f, 5.9f}, {1.4f, 2.6f, 2.4f}), 2.6f);
    if (left.z > 3.0f) {
        d = Eyes(left, d);
        d = Nose(left, d);
        d = Mouth(left, d);
    }
    return Join(d, EarDistance(left), 0.7f);
}

} // namespace content
