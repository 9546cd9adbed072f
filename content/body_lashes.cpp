// The rows of lashes on the canonical body's left lids.
// SPDX-License-Identifier: MIT

#include "body_lashes.h"

#include "body_landmarks.h"

#include <cmath>

namespace content {

using namespace landmarks;

namespace {

/// What a lash stands out from the lid, at most; cm.
float RowLength(bool isUpper)
{
    return isUpper ? 0.8f : 0.4f;
}

/// Lashes spread to both sides of one that points straight forward.
constexpr float straightRoot = 2.8f, fan = 0.28f;

/// Around the ball's axis from side to side: the distance of the lid's outer surface beside its edge.
float RootDistance(float root, bool isUpper)
{
    const float outward = std::max(root - eye.x, 0.0f) / 1.5f;
    const float shell = (eyeRadius + lidThickness) * std::sqrt(std::max(1.0f - outward * outward, 0.05f));
    // Below, the lid passes into the cheek towards the nose.
    return isUpper ? shell : shell + 0.23f * SmoothStep(3.8f, 2.2f, root);
}

/// Radians above the level of the ball's centre.
float RootAngle(float root, bool isUpper)
{
    constexpr float besideEdge = 0.09f;
    const LidLine line = LidLineAt(root);
    const float height = line.middle + (isUpper ? line.up + besideEdge : -line.down - besideEdge) - eye.y;
    return std::asin(std::clamp(height / RootDistance(root, isUpper), -1.0f, 1.0f));
}

/// The curl away from the other lid.
float Curl(float rise, bool isUpper)
{
    return (isUpper ? 0.3f : -0.18f) * rise * rise;
}

} // namespace

Vec3f FromLash(const LashPlace& place)
{
    const float distance = RootDistance(place.root, place.isUpper) + RowLength(place.isUpper) * place.rise;
    const float angle = RootAngle(place.root, place.isUpper) + Curl(place.rise, place.isUpper);
    return {place.root + fan * (place.root - straightRoot) * place.rise, eye.y + distance * std::sin(angle),
            eye.z + distance * std::cos(angle)};
}

LashPlace LashAt(Vec3f p)
{
    LashPlace place;
    place.isUpper = p.y > LidLineAt(p.x).middle;
    const float distance = std::hypot(p.y - eye.y, p.z - eye.z);
    // The farther out the root, the farther out is the lash at that distance.
    float low = lidInnerCorner, high = lidOuterCorner;
    for (int round = 0; round < 20; ++round) {
        place.root = 0.5f * (low + high);
        place.rise = std::clamp(
            (distance - RootDistance(place.root, place.isUpper)) / RowLength(place.isUpper), 0.0f, 1.5f);
        (place.root + fan * (place.root - straightRoot) * place.rise < p.x ? low : high) = place.root;
    }
    return place;
}

} // namespace content
