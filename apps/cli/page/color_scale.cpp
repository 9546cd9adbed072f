// Colours that stand for distances, as pages have them.
// SPDX-License-Identifier: MIT

#include "page/color_scale.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

constexpr std::size_t tableSize = 128;

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

} // namespace

std::string Grouped(std::size_t count)
{
    std::string text = std::to_string(count);
    for (std::size_t at = text.size(); at > 3; at -= 3)
        text.insert(at - 3, "\u202f");
    return text;
}

Json ColorTable()
{
    Json table = Json::array();
    for (std::size_t i = 0; i < tableSize; ++i)
        table.push_back(HexText(ColorAt(static_cast<double>(i) / (tableSize - 1))));
    return table;
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
