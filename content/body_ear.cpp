// The canonical body's ears.
// SPDX-License-Identifier: MIT

#include "body_face.h"
#include "clay.h"

namespace content {

namespace {

/// Backwards, upwards and outwards of an ear that leans back and stands off the head.
struct EarAxes {
    Vec3f back = Normalized(Vec3f{0.45f, -0.1f, -0.89f});
    Vec3f out = Normalized(Cross(back, Vec3f{0.0f, 0.99f, -0.16f}));
    Vec3f up = Cross(out, back);
};
const EarAxes& Axes()
{
    static const EarAxes axes;
    return axes;
}

constexpr Vec3f earCenter{7.7f, 157.6f, -1.9f};

float ShellDistance(Vec3f q)
{
    static const TubePoint helix[] = {{{-0.75f, 0.15f, 0.1f}, 0.2f},   {{-1.25f, 1.2f, 0.25f}, 0.27f},
                                      {{-0.95f, 2.3f, 0.3f}, 0.3f},    {{-0.1f, 2.95f, 0.32f}, 0.32f},
                                      {{0.85f, 2.75f, 0.32f}, 0.33f},  {{1.5f, 1.95f, 0.32f}, 0.32f},
                                      {{1.7f, 0.8f, 0.3f}, 0.29f},     {{1.45f, -0.5f, 0.25f}, 0.25f},
                                      {{0.85f, -1.65f, 0.15f}, 0.27f}, {{0.3f, -2.35f, 0.05f}, 0.32f}};
    static const TubePoint antihelix[] = {{{0.1f, 2.0f, 0.05f}, 0.22f},
                                          {{0.75f, 1.0f, 0.2f}, 0.27f},
                                          {{0.85f, -0.1f, 0.25f}, 0.27f},
                                          {{0.45f, -1.1f, 0.25f}, 0.27f},
                                          {{-0.25f, -1.55f, 0.25f}, 0.28f}};
    float d = EllipsoidDistance(q, {0.15f, 0.6f, -0.15f}, {1.6f, 2.4f, 0.36f});
    d = Join(d, EllipsoidDistance(q, {-0.35f, -1.6f, -0.1f}, {0.95f, 1.1f, 0.4f}), 0.5f);
    d = Join(d, EllipsoidDistance(q, {-0.35f, -2.3f, 0.0f}, {0.8f, 0.85f, 0.34f}), 0.4f);
    d = Join(d, TubeDistance(q, antihelix), 0.35f);
    d = Join(d, TubeDistance(q, helix), 0.22f);
    return d;
}

} // namespace

Vec3f EarPlace(Vec3f p)
{
    const Vec3f offset = p - earCenter;
    return {Dot(offset, Axes().back), Dot(offset, Axes().up), Dot(offset, Axes().out)};
}

Vec3f FromEar(Vec3f q)
{
    return earCenter + Axes().back * q.x + Axes().up * q.y + Axes().out * q.z;
}

float AddEar(Vec3f p, float d)
{
    if (p.x < 5.0f || LengthSquared(p - earCenter) > 25.0f)
        return d;
    const Vec3f q = EarPlace(p);
    // What carries the shell slopes down from its rim, so that all of the ear is met from its open side.
    float ear = EllipsoidDistance(q, {0.1f, 0.4f, -0.8f}, {1.9f, 2.9f, 1.0f});
    ear = Join(ear, EllipsoidDistance(q, {-0.4f, -1.6f, -0.8f}, {1.15f, 1.5f, 1.0f}), 0.5f);
    ear = Join(ear, ShellDistance(q), 0.4f);
    ear = Join(ear, EllipsoidDistance(q, {-1.25f, -0.45f, 0.15f}, {0.32f, 0.5f, 0.42f}), 0.35f);
    d = Join(d, ear, 0.7f);
    return Carve(d, EllipsoidDistance(q, {-0.25f, -0.3f, 0.45f}, {0.75f, 1.05f, 0.85f}), 0.3f);
}

} // namespace content
