// Studio lights on a surface.
// SPDX-License-Identifier: MIT

#include "picture_light.h"

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

float Power28(float x)
{
    const float x4 = x * x * x * x, x8 = x4 * x4;
    return x8 * x8 * x8 * x4;
}

} // namespace

StudioLight::StudioLight(const PictureCamera& camera)
{
    const Vec3f right = camera.right, up = camera.up, back = -camera.forward;
    _lamps = {{{Normalized(back * 0.9f + up * 0.9f - right * 0.8f), {1.55f, 1.48f, 1.40f}},
               {Normalized(back * 0.8f + up * 0.1f + right * 1.0f), {0.34f, 0.37f, 0.42f}},
               {Normalized(back * -0.8f + up * 0.8f + right * 0.7f), {0.75f, 0.78f, 0.85f}}}};
}

void StudioLight::add(const PictureStage::Hit& hit, Vec3f toEye, Response& sum) const
{
    Add(hit.color, sum.albedo);
    for (std::size_t l = 0; l < lampCount; ++l) {
        const float slant = Dot(hit.normal, _lamps[l].direction);
        if (slant <= 0.0f)
            continue;
        for (std::size_t k = 0; k < 3; ++k)
            sum.diffuse[l][k] += hit.color[k] * slant * 0.46f;
        const Vec3f halfway = Normalized(toEye + _lamps[l].direction);
        sum.gloss[l] += 0.06f * Power28(std::max(Dot(hit.normal, halfway), 0.0f));
    }
}

Rgb StudioLight::light(const Response& response, float open, const std::array<float, lampCount>& lit) const
{
    constexpr Rgb around{0.20f, 0.205f, 0.22f};
    Rgb sent;
    for (std::size_t k = 0; k < 3; ++k) {
        sent[k] = response.albedo[k] * around[k] * open;
        for (std::size_t l = 0; l < lampCount; ++l)
            sent[k] += _lamps[l].color[k] * lit[l] *
                       (response.diffuse[l][k] * (0.55f + 0.45f * open) + response.gloss[l]);
    }
    return sent;
}

Rgb PlainLight(const PictureStage::Hit& hit, Vec3f toEye)
{
    const float light = 0.5f + 0.45f * std::max(Dot(hit.normal, toEye), 0.0f);
    return {hit.color[0] * light, hit.color[1] * light, hit.color[2] * light};
}

} // namespace geometry
