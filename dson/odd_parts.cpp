// What nodes and geometries say in a way that is not understood.
// SPDX-License-Identifier: MIT

#include "odd_parts.h"

#include "parts.h"

#include <algorithm>
#include <cctype>

#include <fmt/format.h>

namespace dson {

namespace {

constexpr const char* rotationOrders[] = {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"};

std::string Folded(std::string text, int (*fold)(int))
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [fold](unsigned char c) { return static_cast<char>(fold(c)); });
    return text;
}

void Tell(OddParts::Kind kind, const Element& part, const std::string& what, ParseContext& context)
{
    context.odd.add(kind, what, Text(part, "id"));
}

} // namespace

std::string Shown(const Element& element)
{
    constexpr std::size_t most = 40;
    if (!element.is_string() && !element.is_number() && !element.is_bool())
        return element.is_array() ? "that is a list" : "that is an object";
    const std::string text = simdjson::minify(element);
    std::size_t end = std::min(most, text.size());
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end; // never within a character
    return text.substr(0, end) + (end < text.size() ? "..." : "");
}

void OddParts::tell(ParseContext& context) const
{
    for (const auto& [about, ids] : _ids) {
        const auto& [kind, what] = about;
        if (ids.size() == 1) {
            context.warn(ids.front(), "has " + what);
            continue;
        }
        const auto named = std::find_if(ids.begin(), ids.end(), [](const auto& id) { return !id.empty(); });
        context.warn({},
                     fmt::format("{} {} have {}{}", ids.size(), kind == Kind::Node ? "nodes" : "geometries",
                                 what, named == ids.end() ? std::string() : ", such as " + *named));
    }
}

std::string RotationOrder(const Element& node, const char* instead, ParseContext& context)
{
    const auto member = Find(node, "rotation_order");
    if (!member || (member->is_string() && TextOf(*member).empty()))
        return {};
    const std::string text(TextOf(*member)), upper = Folded(text, std::toupper);
    const bool isKnown =
        std::find(std::begin(rotationOrders), std::end(rotationOrders), upper) != std::end(rotationOrders);
    if (!isKnown)
        Tell(OddParts::Kind::Node, node,
             fmt::format("the unknown rotation order {}; {} is used", Shown(*member), instead), context);
    else if (upper != text)
        Tell(OddParts::Kind::Node, node,
             fmt::format("the rotation order {}, read as {}", Shown(*member), upper), context);
    return isKnown ? upper : std::string();
}

std::optional<bool> InheritsScale(const Element& node)
{
    const auto member = Find(node, "inherits_scale");
    if (!member)
        return std::nullopt;
    if (const std::optional<double> number = AsNumber(*member))
        return *number != 0.0;
    return FlagInWord(TextOf(*member));
}

bool SaysInheritsScale(const Element& node)
{
    const ReadingTally unheard;
    return InheritsScale(node).has_value();
}

void TellInheritsScale(const Element& node, ParseContext& context)
{
    const auto member = Find(node, "inherits_scale");
    if (!member)
        return;
    {
        const ReadingTally unheard; // a number in a text is told with the others
        if (AsNumber(*member))
            return;
    }
    const std::optional<bool> read = FlagInWord(TextOf(*member));
    Tell(OddParts::Kind::Node, node,
         read ? fmt::format("an inherits_scale {}, read as {}", Shown(*member), *read)
              : fmt::format("an inherits_scale {}, which is neither true nor false and counts for nothing",
                            Shown(*member)),
         context);
}

std::string NodeReference(const Element& node, const char* member, ParseContext& context)
{
    const auto found = Find(node, member);
    if (found && !found->is_string())
        Tell(OddParts::Kind::Node, node,
             fmt::format("a {} {}, which is no reference and counts for nothing", member, Shown(*found)),
             context);
    return std::string(found ? TextOf(*found) : std::string_view());
}

void TellNodeType(const Element& node, ParseContext& context)
{
    constexpr std::string_view known[] = {"node", "bone", "figure", "legacy_figure", "camera", "light", ""};
    const auto type = Find(node, "type");
    if (type && type->is_string() &&
        std::find(std::begin(known), std::end(known), TextOf(*type)) == std::end(known))
        Tell(OddParts::Kind::Node, node, fmt::format("the unknown type {}, read as node", Shown(*type)),
             context);
}

void TellGeometryType(const Element& geometry, ParseContext& context)
{
    const auto type = Find(geometry, "type");
    if (!type)
        return;
    const std::string_view text = TextOf(*type);
    if (text != "polygon_mesh" && text != "subdivision_surface")
        Tell(OddParts::Kind::Geometry, geometry,
             fmt::format("the unknown type {}, read as polygon_mesh", Shown(*type)), context);
}

std::optional<double> GivenLevel(const Element& geometry, ParseContext& context)
{
    constexpr const char* member = "current_subdivision_level";
    const auto found = Find(geometry, member);
    const auto level = found ? AsNumber(*found) : std::nullopt;
    if (found && !level)
        Tell(OddParts::Kind::Geometry, geometry,
             fmt::format("a {} {}, which is no number; its definition's is used", member, Shown(*found)),
             context);
    return level;
}

} // namespace dson
