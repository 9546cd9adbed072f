// The canonical body's nose.
// SPDX-License-Identifier: MIT

#include "body_face.h"
#include "clay.h"

namespace content {

float Nose(Vec3f p, float d)
{
    if (p.x > 4.0f || p.y < 152.0f || p.y > 164.0f || p.z < 4.0f)
        return d;
    // Bone and sides, tip, wings, and the bridge between the nostrils.
    d = Join(d, ConeDistance(p, {0.0f, 160.2f, 7.5f}, {0.0f, 155.7f, 9.75f}, 0.6f, 0.62f), 1.3f);
    d = Join(d, ConeDistance(p, {0.45f, 158.6f, 7.3f}, {0.95f, 155.1f, 8.6f}, 0.5f, 0.65f), 1.1f);
    d = Join(d, EllipsoidDistance(p, {0.0f, 155.2f, 10.05f}, {0.85f, 0.78f, 0.8f}), 0.9f);
    d = Join(d, EllipsoidDistance(p, {1.08f, 154.8f, 9.15f}, {0.6f, 0.64f, 0.95f}), 0.75f);
    d = Join(d, ConeDistance(p, {0.0f, 154.55f, 10.0f}, {0.0f, 154.15f, 8.9f}, 0.36f, 0.45f), 0.5f);
    d = Raise(d, p, {1.3f, 155.55f, 9.3f}, {1.75f, 154.9f, 8.8f}, 0.55f, -0.14f);
    return d;
}

float OpenNostril(Vec3f p, float d)
{
    if (p.x > 1.6f || p.y < 152.8f || p.y > 156.2f)
        return d;
    const float x = p.x - 0.68f + 0.15f * (9.6f - p.z);
    const float hole = EllipsoidDistance({x, p.y, p.z}, {0.0f, 154.25f, 9.3f}, {0.32f, 0.95f, 0.62f});
    return Carve(d, hole, 0.2f);
}

} // namespace content
