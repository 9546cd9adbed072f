// From light to the bytes of a picture.
// SPDX-License-Identifier: MIT

#pragma once

#include "picture_light.h"

#include <array>
#include <cstdint>
#include <vector>

namespace geometry {

/// A plain studio wall, lighter around the middle and darker towards the floor.
class Backdrop {
public:
    /// @param columns, rows  of samples
    Backdrop(int columns, int rows);
    Rgb at(int column, int row) const
    {
        const float level =
            0.16f + 0.26f * _columns[static_cast<std::size_t>(column)] * _rows[static_cast<std::size_t>(row)];
        return {level * 0.97f, level, level * 1.05f};
    }

private:
    std::vector<float> _columns, _rows; ///< the glow is the product of two
};

/// Rolls off what is too bright and encodes for a screen (sRGB).
class ToneCurve {
public:
    ToneCurve();
    std::uint8_t toByte(float linear) const;

private:
    static constexpr int binsPerUnit = 1024, units = 4;
    std::array<float, 255> _limits;                       ///< from which on the next byte stands
    std::array<std::uint8_t, binsPerUnit * units> _bytes; ///< at each bin's beginning
};

} // namespace geometry
