// The canonical body's nails.
// SPDX-License-Identifier: MIT

#include "body_nails.h"

#include "body_landmarks.h"

#include <algorithm>
#include <cmath>

namespace content {

using namespace landmarks;

namespace {

/// Across the plate it is a right-handed frame on the left side.
Nail FrameOf(Vec3f along, Vec3f roughlyUp)
{
    Nail nail;
    nail.along = Normalized(along);
    nail.up = Normalized(roughlyUp - nail.along * Dot(roughlyUp, nail.along));
    nail.across = Cross(nail.up, nail.along);
    return nail;
}

Nail FingerNail(const FingerChain& chain, const std::array<float, 4>& radii)
{
    constexpr float towardsTip = 0.72f;
    const Vec3f palmward = HandPoint(0.0f, 0.0f, 1.0f) - HandPoint(0.0f, 0.0f, 0.0f);
    Nail nail = FrameOf(chain[3] - chain[2], -palmward);
    const float radius = radii[2] + (radii[3] - radii[2]) * towardsTip;
    nail.center =
        Mix(chain[2], chain[3], towardsTip) + nail.along * (0.25f * radius) + nail.up * (0.97f * radius);
    nail.halfLength = 0.8f * radius;
    nail.halfWidth = 0.66f * radius;
    return nail;
}

/// Lower and broader than a finger's, at the very end, and tilted over it.
Nail ToeNail(const Toe& toe)
{
    Nail nail = FrameOf(toe.tip - toe.root - Vec3f{0.0f, 0.2f * Length(toe.tip - toe.root), 0.0f},
                        {0.0f, 1.0f, 0.0f});
    nail.center = toe.tip + nail.along * (0.1f * toe.tipRadius) + nail.up * (0.97f * toe.tipRadius);
    nail.halfLength = 0.6f * toe.tipRadius;
    nail.halfWidth = 0.66f * toe.tipRadius;
    return nail;
}

bool IsNear(const Nail& nail, Vec3f p)
{
    const Vec3f offset = p - nail.center;
    return LengthSquared(offset) < 2.0f &&
           std::abs(Dot(offset, nail.up)) < std::max(0.6f, 1.1f * nail.halfWidth);
}

} // namespace

float Nail::border(Vec3f p) const
{
    const float l = Dot(p - center, along) / halfLength, w = Dot(p - center, across) / halfWidth;
    return std::sqrt(std::sqrt(l * l * l * l + w * w * w * w));
}

Vec3f Nail::place(float turn, float size) const
{
    const float angle = 6.2831853f * turn, c = std::cos(angle), s = std::sin(angle);
    const auto root = [](float value) { return std::copysign(std::sqrt(std::abs(value)), value); };
    return center + along * (root(c) * halfLength * size) + across * (root(s) * halfWidth * size);
}

const std::array<Nail, nailCount>& Nails()
{
    static const std::array<Nail, nailCount> nails = [] {
        std::array<Nail, nailCount> result;
        for (int f = 0; f < fingerCount; ++f)
            result[f] = FingerNail(Fingers()[f], FingerRadii()[f]);
        for (int t = 0; t < toeCount; ++t)
            result[fingerCount + t] = ToeNail(Toes()[t]);
        return result;
    }();
    return nails;
}

bool IsOnNail(Vec3f p)
{
    const Vec3f left{std::abs(p.x), p.y, p.z};
    return std::any_of(Nails().begin(), Nails().end(),
                       [&](const Nail& nail) { return IsNear(nail, left) && nail.border(left) < 0.95f; });
}

float AddNails(Vec3f p, float d)
{
    for (const Nail& nail : Nails()) {
        if (!IsNear(nail, p))
            continue;
        // A plate in a groove, which closes in front of it where the nail stands free.
        const float border = nail.border(p);
        const float groove = (1.0f - SmoothStep(0.0f, 0.22f, std::abs(border - 1.0f)));
        d += 0.055f * groove - 0.045f * SmoothStep(1.0f, 0.85f, border);
    }
    return d;
}

} // namespace content
