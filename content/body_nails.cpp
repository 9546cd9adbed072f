// The canonical body's finger nails.
// SPDX-License-Identifier: MIT

#include "body_nails.h"

#include "body_landmarks.h"

#include <cmath>

namespace content {

using namespace landmarks;

namespace {

Nail MakeNail(const FingerChain& chain, const std::array<float, 4>& radii)
{
    constexpr float towardsTip = 0.72f;
    const Vec3f palmward = HandPoint(0.0f, 0.0f, 1.0f) - HandPoint(0.0f, 0.0f, 0.0f);
    Nail nail;
    nail.along = Normalized(chain[3] - chain[2]);
    nail.up = Normalized(nail.along * Dot(palmward, nail.along) - palmward);
    nail.across = Cross(nail.up, nail.along);
    const float radius = radii[2] + (radii[3] - radii[2]) * towardsTip;
    nail.center =
        Mix(chain[2], chain[3], towardsTip) + nail.along * (0.25f * radius) + nail.up * (0.97f * radius);
    nail.halfLength = 0.8f * radius;
    nail.halfWidth = 0.66f * radius;
    return nail;
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

const std::array<Nail, fingerCount>& Nails()
{
    static const std::array<Nail, fingerCount> nails = [] {
        std::array<Nail, fingerCount> result;
        for (int f = 0; f < fingerCount; ++f)
            result[f] = MakeNail(Fingers()[f], FingerRadii()[f]);
        return result;
    }();
    return nails;
}

float AddNails(Vec3f p, float d)
{
    for (const Nail& nail : Nails()) {
        const Vec3f offset = p - nail.center;
        if (LengthSquared(offset) > 1.5f || std::abs(Dot(offset, nail.up)) > 0.6f)
            continue;
        // A plate in a groove, which closes in front of it where the nail stands free.
        const float border = nail.border(p);
        const float groove = (1.0f - SmoothStep(0.0f, 0.22f, std::abs(border - 1.0f)));
        d += 0.055f * groove - 0.045f * SmoothStep(1.0f, 0.85f, border);
    }
    return d;
}

} // namespace content
