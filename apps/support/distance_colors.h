// Colours that stand for distances.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace app {

constexpr double millimetresPerCentimetre = 10.0;

using LinearRgb = std::array<float, 3>;

/// From light for nothing through orange and red to dark violet: lightness falls evenly, as the eye sees it,
/// so that the order shows without a legend and in grey. Even steps in Oklab (Ottosson, "A perceptual color
/// space for image processing", 2020), with as much colour as the screen has there.
/// @param position  0 to 1
LinearRgb ColorAt(double position);
/// For what lies beyond the end: blue-green, which is no colour of the scale.
LinearRgb ColorBeyond();
/// For what was not measured.
LinearRgb ColorOfNothing();

/// From zero to a round number at or above what 99 of 100 values do not exceed.
struct ColorScale {
    double topMm = 0.0;
    double largestMm = 0.0;
    std::size_t count = 0, beyondCount = 0;

    /// 0 for none, 1 for the end, more beyond it.
    double position(float cm) const;
    LinearRgb color(float cm) const;
    /// As "viewer.js" has it: 0 to 253, 255 beyond the end, 254 for what is no number.
    std::uint8_t step(float cm) const;
};
/// @param values  cm; those that are no numbers do not count
ColorScale ChooseScale(base::Span<const float> values);
/// To a round number at or above the largest (cm).
ColorScale ScaleTo(float largest);

} // namespace app
