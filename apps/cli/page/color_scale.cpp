// Colours that stand for distances.
// SPDX-License-Identifier: MIT

#include "page/color_scale.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

constexpr std::size_t tableSize = 128;
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

std::string HexText(const LinearRgb& color)
{
    std::string text = "#";
    for (const float part : color) {
        const double encoded =
            part <= 0.0031308f ? 12.92 * part : 1.055 * std::pow(double{part}, 1.0 / 2.4) - 0.055;
        text += fmt::format("{:02x}", std::lround(255.0 * std::clamp(encoded, 0.0, 1.0)));
    }
    return text;
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

std::string Grouped(std::size_t count)
{
    std::string text = std::to_string(count);
    for (std::size_t at = text.size(); at > 3; at -= 3)
        text.insert(at - 3, "\u202f");
    return text;
}

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

Json ColorTable()
{
    Json table = Json::array();
    for (std::size_t i = 0; i < tableSize; ++i)
        table.push_back(HexText(ColorAt(static_cast<double>(i) / (tableSize - 1))));
    return table;
}

LinearRgb ColorScale::color(float cm) const
{
    if (!std::isfinite(cm))
        return ColorOfNothing();
    const double mm = millimetresPerCentimetre * cm;
    return mm > topMm ? ColorBeyond() : ColorAt(mm / topMm);
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

Json DescribeScale(const ColorScale& scale, const std::string& text)
{
    const std::string end =
        scale.beyondCount == 0
            ? fmt::format("Nothing lies beyond the end of the scale; the largest is {:.3g} mm.",
                          scale.largestMm)
            : fmt::format("The end of the scale is a round number that at least 99 of 100 vertices do not "
                          "exceed; {} of {} lie beyond, the farthest at {:.3g} mm, in a colour of their own.",
                          Grouped(scale.beyondCount), Grouped(scale.count), scale.largestMm);
    return {{"top", scale.topMm},
            {"over", scale.beyondCount},
            {"overColor", HexText(ColorBeyond())},
            {"text", text + " " + end}};
}

} // namespace cli
