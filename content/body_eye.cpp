// The canonical body's lids and sockets.
// SPDX-License-Identifier: MIT

#include "body_face.h"
#include "body_landmarks.h"
#include "clay.h"

namespace content {

using namespace landmarks;

namespace {

/// The opening seen from the front: negative between the lids' edges, cm.
float SlitDistance(float x, float y)
{
    const LidLine line = LidLineAt(x);
    const float height = y - line.middle;
    const float above = (height - line.up) / std::sqrt(1.0f + line.upSlope * line.upSlope);
    const float below = (-height - line.down) / std::sqrt(1.0f + line.downSlope * line.downSlope);
    return std::max(above, below);
}

} // namespace

float Lids(Vec3f p, float d)
{
    if (LengthSquared(p - eye) > 16.0f)
        return d;
    // A lid is a shell over the ball; its fold above, the bag below.
    d = Join(d, EllipsoidDistance(p, eye, {1.5f, eyeRadius + lidThickness, eyeRadius + lidThickness}), 0.7f);
    const float bow = 0.16f * (p.x - 3.1f) * (p.x - 3.1f);
    const Vec3f q{p.x, p.y + bow, p.z};
    d = Raise(d, q, {2.0f, 159.55f, 7.0f}, {4.2f, 159.6f, 6.4f}, 0.5f, -0.22f);
    d = Raise(d, p, {2.1f, 157.6f, 7.1f}, {4.1f, 157.4f, 6.5f}, 0.55f, -0.07f);
    return d;
}

float OpenEye(Vec3f p, float d)
{
    if (LengthSquared(p - eye) > 9.0f)
        return d;
    const float ball = Length(p - eye) - (eyeRadius + socketGap);
    // The corners are shallow: what is deeper than a few millimetres is the socket alone.
    const float floor = 6.95f - 0.43f * (p.x - 1.7f) - p.z;
    const float slit = std::max(SlitDistance(p.x, p.y), floor);
    d = Carve(d, ball, 0.05f);
    return Carve(d, slit, 0.12f);
}

} // namespace content
