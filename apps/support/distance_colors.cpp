// Colours that stand for distances.
// SPDX-License-Identifier: MIT

#include "distance_colors.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace app {

namespace {

constexpr double smallestTopMm = 0.01; // below it there is nothing to see
constexpr double pi = 3.14159265358979;

LinearRgb FromOklab(double lightness, double a, double b)
{
    const double l = std::pow(lightness + 0.3963377774 * a + 0.2158037573 * b, 3.0);
    const double m = std::pow(lightness - 0.1055613458 * a - 0.0638541728 * b, 3.0);
    const double s = std::pow(lightness - 0.0894841775 * a - 1.2914855480 * b, 3.0);
    return {static_cast<float>(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
            static_cast<float>(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
            static_cast<float>(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s)};
}

bool IsOnScreen(const LinearRgb& color)
{
    return std::all_of(color.begin(), color.end(), [](float part) { return part >= 0.0f && part <= 1.0f; });
}

/// 1, 1.5, 2, 2.5, 3, 4, 5, 6 or 8 times a power of ten.
double RoundUp(double value)
{
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double step : {1.0, 1.5, 2.0, 2.5, 3.0, 4.0, 5.0, 6.0, 8.0})
        if (step * power >= value)
            return step * power;
    return 10.0 * power;
}

} // namespace

LinearRgb ColorAt(double position)
{
    const double t = std::clamp(position, 0.0, 1.0);
    const double lightness = 0.95 - 0.65 * t, hue = (100.0 - 165.0 * t) * pi / 180.0;
    double chroma = 0.035 + 0.09 * t + 0.50 * t * (1.0 - t);
    LinearRgb color = FromOklab(lightness, chroma * std::cos(hue), chroma * std::sin(hue));
    while (!IsOnScreen(color) && chroma > 0.0) {
        chroma -= 0.002;
        color = FromOklab(lightness, chroma * std::cos(hue), chroma * std::sin(hue));
    }
    return color;
}

LinearRgb ColorBeyond()
{
    return {0.0f, 0.42f, 0.40f};
}

LinearRgb ColorOfNothing()
{
    return {0.48f, 0.48f, 0.48f};
}

double ColorScale::position(float cm) const
{
    return millimetresPerCentimetre * cm / topMm;
}

LinearRgb ColorScale::color(float cm) const
{
    if (!std::isfinite(cm))
        return ColorOfNothing();
    const double at = position(cm);
    return at > 1.0 ? ColorBeyond() : ColorAt(at);
}

std::uint8_t ColorScale::step(float cm) const
{
    if (!std::isfinite(cm))
        return 254;
    const double mm = millimetresPerCentimetre * cm;
    return mm > topMm ? 255 : static_cast<std::uint8_t>(std::lround(253.0 * mm / topMm));
}

ColorScale ChooseScale(base::Span<const float> values)
{
    std::vector<float> counted;
    std::copy_if(values.begin(), values.end(), std::back_inserter(counted),
                 [](float value) { return std::isfinite(value); });
    ColorScale scale{smallestTopMm, 0.0, counted.size(), 0};
    if (counted.empty())
        return scale;
    const auto p99 = counted.begin() + static_cast<std::ptrdiff_t>((counted.size() - 1) * 99 / 100);
    std::nth_element(counted.begin(), p99, counted.end());
    scale.topMm = RoundUp(std::max(smallestTopMm, millimetresPerCentimetre * *p99));
    scale.largestMm = millimetresPerCentimetre * *std::max_element(p99, counted.end());
    scale.beyondCount = static_cast<std::size_t>(std::count_if(
        p99, counted.end(), [&](float cm) { return millimetresPerCentimetre * cm > scale.topMm; }));
    return scale;
}

ColorScale ScaleTo(float largest)
{
    const double mm = millimetresPerCentimetre * largest;
    return {RoundUp(std::max(smallestTopMm, mm)), mm, 0, 0};
}

} // namespace app
