// The canonical body's lips and the pocket behind them.
// SPDX-License-Identifier: MIT

#include "body_face.h"
#include "body_landmarks.h"
#include "clay.h"

namespace content {

using namespace landmarks;

namespace {

/// Lips follow the arch of the teeth: their depth falls off towards the corners.
Vec3f Unbowed(Vec3f p)
{
    return {p.x, p.y, p.z + 0.13f * p.x * p.x};
}

float LipsDistance(Vec3f q, float d)
{
    static const TubePoint upper[] = {{{-0.7f, 152.5f, 8.92f}, 0.5f},
                                      {{0.0f, 152.36f, 9.0f}, 0.46f},
                                      {{0.7f, 152.5f, 8.92f}, 0.5f},
                                      {{1.6f, 152.3f, 8.72f}, 0.38f},
                                      {{2.45f, 152.0f, 8.35f}, 0.16f}};
    static const TubePoint lower[] = {{{-0.75f, 151.3f, 8.72f}, 0.64f},
                                      {{0.0f, 151.3f, 8.72f}, 0.62f},
                                      {{0.75f, 151.3f, 8.72f}, 0.64f},
                                      {{1.6f, 151.52f, 8.58f}, 0.45f},
                                      {{2.45f, 151.84f, 8.3f}, 0.16f}};
    d = Join(d, TubeDistance(q, upper), 0.28f);
    return Join(d, TubeDistance(q, lower), 0.3f);
}

} // namespace

float Mouth(Vec3f p, float d)
{
    if (p.x > 5.5f || p.y < 146.5f || p.y > 157.5f || p.z < 2.0f)
        return d;
    d = Join(d, EllipsoidDistance(p, {0.0f, 152.2f, 6.1f}, {3.1f, 3.1f, 2.6f}), 1.6f);
    const Vec3f q = Unbowed(p);
    d = LipsDistance(q, d);
    d = Raise(d, q, {-1.0f, 150.0f, 8.7f}, {1.0f, 150.0f, 8.7f}, 1.5f, -0.3f);
    d = Raise(d, q, {0.0f, 153.8f, 9.1f}, {0.0f, 153.0f, 9.1f}, 0.5f, -0.12f);
    // The corners lie deep.
    return Raise(d, p, {2.7f, 151.95f, 7.8f}, 0.7f, -0.16f);
}

float OpenMouth(Vec3f p, float d)
{
    if (p.x > 4.0f || p.y < 149.0f || p.y > 155.0f || p.z < 2.0f)
        return d;
    const float sheet = std::max({std::abs(p.y - LipLine(p.x)) - lipGap, p.x - mouthHalfWidth, 5.5f - p.z});
    const float pocket = EllipsoidDistance(p, pocketCenter, pocketRadii);
    d = Carve(d, pocket, 0.1f);
    return Carve(d, sheet, 0.14f);
}

} // namespace content
