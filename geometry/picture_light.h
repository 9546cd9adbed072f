// The lamps of a studio, and what surfaces send of their light to the eye.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture_stage.h"

#include <array>

namespace geometry {

using Rgb = std::array<float, 3>; ///< linear

inline void Add(const Rgb& more, Rgb& sum)
{
    for (std::size_t k = 0; k < 3; ++k)
        sum[k] += more[k];
}

struct Lamp {
    Vec3f direction; ///< towards it, unit
    Rgb color;
};
constexpr std::size_t lampCount = 3;
/// Of a lamp as wide as a studio's soft box, at distance 1.
constexpr float lampRadius = 0.14f;

/// What some places of a surface send to the eye, summed up, before it is known which light reaches them.
struct Response {
    Rgb albedo{};
    std::array<Rgb, lampCount> diffuse{};
    std::array<float, lampCount> gloss{};
};

/// A key, a fill and a rim light, and light from all around. Fixed to the camera, so that every view is lit
/// alike.
class StudioLight {
public:
    explicit StudioLight(const PictureCamera& camera);

    const std::array<Lamp, lampCount>& lamps() const { return _lamps; }
    void add(const PictureStage::Hit& hit, Vec3f toEye, Response& sum) const;
    /// @param open  the share of what is all around that can be seen from there
    /// @param lit   the share of each lamp
    Rgb light(const Response& response, float open, const std::array<float, lampCount>& lit) const;

private:
    std::array<Lamp, lampCount> _lamps;
};

/// One lamp at the eye and much of all around.
Rgb PlainLight(const PictureStage::Hit& hit, Vec3f toEye);

} // namespace geometry
