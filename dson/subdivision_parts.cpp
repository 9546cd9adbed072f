// How files want meshes to be subdivided.
// SPDX-License-Identifier: MIT

#include "subdivision_parts.h"

#include "parts.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace dson {

namespace {

/// In the order of the setting "SubDEdgeInterpolateLevel".
constexpr const char* edgeInterpolationModes[] = {"no_interpolation", "edges_and_corners", "edges_only"};

std::string TellUnknownBorder(const std::string& wanted, const std::string& asset, ParseContext& context)
{
    context.subdivisions.add(
        fmt::format("to be subdivided with the border {}, which is unknown and has no effect", wanted),
        asset);
    return {};
}

} // namespace

void OddSubdivisions::tell(ParseContext& context) const
{
    for (const auto& [what, assets] : _assets) {
        if (assets.size() == 1)
            context.warn(assets.front(), "is " + what);
        else
            context.warn({},
                         fmt::format("{} meshes are {}, such as {}", assets.size(), what, assets.front()));
    }
}

int SubdivisionLevel(double wanted, const std::string& asset, ParseContext& context)
{
    const double level = std::clamp(std::floor(wanted), 0.0, double{finestSubdivisionLevel});
    if (level != wanted)
        context.warn(asset, fmt::format("is to be subdivided to level {}; {} is taken", wanted, level));
    return static_cast<int>(level);
}

void TellAlgorithm(std::optional<double> algorithm, const std::string& asset, ParseContext& context)
{
    // That of Catmull and Clark is listed a second time, as an earlier program had it.
    if (!algorithm || *algorithm == 0.0 || *algorithm == 3.0)
        return;
    const std::string wanted = *algorithm == 1.0   ? "the bilinear scheme"
                               : *algorithm == 2.0 ? "Loop's scheme"
                                                   : fmt::format("the unknown scheme {}", *algorithm);
    context.subdivisions.add(fmt::format("to be subdivided by {}; that of Catmull and Clark is used", wanted),
                             asset);
}

std::string EdgeInterpolationMode(const Element& member, const std::string& asset, ParseContext& context)
{
    const std::string text(member.is_string() ? member.get_string().value_unsafe() : std::string_view());
    for (const char* const mode : edgeInterpolationModes)
        if (text == mode)
            return text;
    if (member.is_string() && text.empty())
        return {};
    return TellUnknownBorder(simdjson::minify(member), asset, context);
}

std::string EdgeInterpolationMode(double setting, const std::string& asset, ParseContext& context)
{
    for (int i = 0; i < 3; ++i)
        if (setting == i)
            return edgeInterpolationModes[i];
    return TellUnknownBorder(fmt::format("setting {}", setting), asset, context);
}

} // namespace dson
