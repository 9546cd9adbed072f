// Turning the members of a DSON file into values: what the file is, nodes and modifiers.
// SPDX-License-Identifier: MIT

#include "channel_parts.h"
#include "dson/uri.h"
#include "parts.h"

#include <cmath>

#include <fmt/format.h>

namespace dson {

namespace {

void ParseRigVector(const Element& node, std::string_view member, std::array<double, 3>& values)
{
    ForEachAxis(node, member, [&](int axis, const Element& item) {
        values[static_cast<std::size_t>(axis)] = ValueOf(item, 0.0);
    });
}

void ParseChannels(const Element& node, std::string_view member, std::array<Channel, 3>& channels)
{
    ForEachAxis(node, member, [&](int axis, const Element& item) {
        Channel& channel = channels[static_cast<std::size_t>(axis)];
        if (!item.is_object()) {
            channel.value = ValueOf(item, channel.value);
            return;
        }
        const std::string name = channel.name;
        const double value = channel.value;
        channel = ParseChannel(item);
        if (channel.name.empty())
            channel.name = name;
        // A scale that is not spelled out is 1, not a channel's usual 0.
        if (!Find(item, "value"))
            channel.value = value;
    });
}

} // namespace

std::uint32_t ParseCount(const Element& object, std::string_view key, const std::string& asset,
                         ParseContext& context)
{
    const auto member = Find(object, key);
    if (!member)
        return 0;
    constexpr double mostVertices = 4294967295.0;
    const double count = AsNumber(*member).value_or(NAN);
    if (count >= 0.0 && count <= mostVertices && count == std::floor(count))
        return static_cast<std::uint32_t>(count);
    if (count != -1.0) // the usual way to say that any will do
        context.warn(asset, fmt::format("has a {} that is no number of things and is not checked", key));
    return 0;
}

AssetInfo ParseAssetInfo(const Element& json)
{
    AssetInfo info;
    info.id = PercentDecode(Text(json, "id"));
    info.type = Text(json, "type");
    if (const auto contributor = FindObject(json, "contributor")) {
        info.author = Text(*contributor, "author");
        info.email = Text(*contributor, "email");
        info.website = Text(*contributor, "website");
    }
    info.revision = Text(json, "revision", "1.0");
    info.modified = Text(json, "modified");
    return info;
}

bool RepeatsNode(const Element& node)
{
    bool repeats = false;
    ForEach(node, "extra",
            [&repeats](const Element& extra) { repeats |= Text(extra, "type") == "studio/node/instance"; });
    return repeats;
}

Node ParseNode(const Element& json, ParseContext& context)
{
    const PartBeingRead part(json);
    const std::string id = Text(json, "id");
    Node node = MakeNode(id, Text(json, "label", Text(json, "name", id)), Text(json, "type", "node"));
    TellNodeType(json, context);
    node.name = Text(json, "name", id);
    node.parent = ParseUri(NodeReference(json, "parent", context)).id;
    if (const std::string order = RotationOrder(json, "XYZ", context); !order.empty())
        node.rotationOrder = order;
    node.inheritsScale = InheritsScale(json).value_or(true);
    TellInheritsScale(json, context);
    bool hasGeometries = false;
    ForEach(json, "geometries", [&hasGeometries](const Element&) { hasGeometries = true; });
    if (hasGeometries)
        context.odd.add(OddParts::Kind::Node, "geometries in the definition, which have no effect there", id);
    ParseRigVector(json, "center_point", node.centerPoint);
    ParseRigVector(json, "end_point", node.endPoint);
    ParseRigVector(json, "orientation", node.orientation);
    ParseChannels(json, "rotation", node.rotation);
    ParseChannels(json, "translation", node.translation);
    ParseChannels(json, "scale", node.scale);
    if (const auto general = Find(json, "general_scale"))
        node.generalScale.value = ValueOf(*general, 1.0);
    if (const auto presentation = FindObject(json, "presentation"))
        node.presentationType = Text(*presentation, "type");
    node.formulas = ParseFormulas(json, context);
    node.dform = ParseDFormPart(json, context);
    node.repeatsNode = RepeatsNode(json);
    return node;
}

Modifier ParseModifier(const Element& json, ParseContext& context)
{
    const PartBeingRead part(json);
    Modifier modifier;
    modifier.id = Text(json, "id");
    modifier.name = Text(json, "name");
    if (modifier.name.empty())
        modifier.name = modifier.id;
    modifier.parent = Text(json, "parent");
    if (const auto presentation = FindObject(json, "presentation"))
        modifier.presentationType = Text(*presentation, "type");
    if (const auto channel = FindObject(json, "channel"))
        modifier.channel = ParseChannel(*channel);
    else
        modifier.hasChannel = false;
    if (modifier.channel.label.empty())
        modifier.channel.label = Text(json, "label", modifier.name);
    modifier.region = Text(json, "region");
    modifier.group = Text(json, "group", "/");
    if (modifier.group.empty() || modifier.group.front() != '/')
        modifier.group.insert(0, 1, '/');
    modifier.formulas = ParseFormulas(json, context);
    if (const auto morph = FindObject(json, "morph")) {
        modifier.morph.emplace();
        const std::uint32_t vertexCount = ParseCount(*morph, "vertex_count", modifier.id, context);
        modifier.morph->vertexCount = vertexCount > 0 ? std::int64_t{vertexCount} : -1;
        modifier.morph->hdUrl = Text(*morph, "hd_url");
        modifier.morph->hdChecksum = Text(*morph, "hd_checksum");
        if (context.options.deltas)
            modifier.morph->deltas = ParseDeltas(*morph, modifier.id, context);
    } else {
        modifier.effect = ParseEffect(json, modifier, context);
    }
    return modifier;
}

} // namespace dson
