// Backdrop and tone curve, computed once and looked up.
// SPDX-License-Identifier: MIT

#include "picture_tone.h"

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

std::vector<float> Glow(int count, float middle)
{
    std::vector<float> glow(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const float away = 2.0f * (static_cast<float>(i) + 0.5f) / static_cast<float>(count) - 1.0f - middle;
        glow[static_cast<std::size_t>(i)] = std::exp(-0.9f * away * away);
    }
    return glow;
}

float Encoded(float linear)
{
    const float mapped = linear <= 0.7f ? linear : 0.7f + 0.3f * (1.0f - std::exp(-(linear - 0.7f) / 0.3f));
    return mapped <= 0.0031308f ? 12.92f * mapped : 1.055f * std::pow(mapped, 1.0f / 2.4f) - 0.055f;
}

} // namespace

Backdrop::Backdrop(int columns, int rows) : _columns(Glow(columns, 0.0f)), _rows(Glow(rows, -0.15f)) {}

ToneCurve::ToneCurve()
{
    for (std::size_t i = 0; i < _limits.size(); ++i) {
        float below = 0.0f, above = static_cast<float>(units);
        for (int halving = 0; halving < 30; ++halving) {
            const float middle = 0.5f * (below + above);
            (255.0f * Encoded(middle) < static_cast<float>(i) + 0.5f ? below : above) = middle;
        }
        _limits[i] = above;
    }
    for (std::size_t bin = 0; bin < _bytes.size(); ++bin) {
        const float at = static_cast<float>(bin) / static_cast<float>(binsPerUnit);
        _bytes[bin] =
            static_cast<std::uint8_t>(std::upper_bound(_limits.begin(), _limits.end(), at) - _limits.begin());
    }
}

std::uint8_t ToneCurve::toByte(float linear) const
{
    const float kept =
        linear > 0.0f ? std::min(linear, static_cast<float>(units) - 0.5f) : 0.0f; // no number is black
    std::size_t byte = _bytes[static_cast<std::size_t>(kept * static_cast<float>(binsPerUnit))];
    while (byte < _limits.size() && kept >= _limits[byte])
        ++byte;
    return static_cast<std::uint8_t>(byte);
}

} // namespace geometry
