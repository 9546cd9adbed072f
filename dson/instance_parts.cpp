// Turning the members of a DSON file into values: instances in a scene.
// SPDX-License-Identifier: MIT

#include "channel_parts.h"
#include "kept_parts.h"
#include "parts.h"

#include <algorithm>

namespace dson {

namespace {

void ReadInstanceChannel(const Element& item, const std::string& id, NodeInstance& instance)
{
    if (const auto value = GivenValue(item))
        instance.channels[id] = *value;
    if (item.is_object())
        instance.changes[id] = ParseChannelChange(item);
}

void ReadInstanceVector(const Element& node, const std::string& member, NodeInstance& instance)
{
    ForEachAxis(node, member, [&](int axis, const Element& item) {
        ReadInstanceChannel(item, member + "/" + axisIds[axis], instance);
    });
}

/// The favourites' names; what stands behind the first slash is of no use here.
void ReadFavorites(const Element& owner, std::vector<std::string>& names)
{
    ForEach(owner, "extra", [&](const Element& extra) {
        ForEachText(extra, "favorites", [&](std::string_view text) {
            if (const std::string_view name = text.substr(0, text.find('/')); !name.empty())
                names.emplace_back(name);
        });
    });
}

/// What does not say its type may be a list or a text as well, which stays with the node as it is.
bool IsNoNumber(const Element& channel)
{
    if (Find(channel, "type"))
        return false;
    const ReadingTally unheard;
    bool isOther = false;
    for (const char* const member : {"current_value", "value"})
        if (const auto value = Find(channel, member)) {
            if (value->is_number() || AsNumber(*value))
                return false;
            isOther = true;
        }
    return isOther;
}

/// Channels that an `extra` object lists, by id.
void ReadExtraChannels(const Element& owner, ChannelValues& values)
{
    ForEach(owner, "extra", [&](const Element& extra) {
        ForEachObject(extra, "channels", [&](const Element& entry) {
            const auto channel = FindObject(entry, "channel");
            const auto value = channel && !IsNoNumber(*channel) ? GivenValue(*channel) : std::nullopt;
            if (value)
                values[Text(*channel, "id")] = *value;
        });
    });
}

/// What is no way to treat borders stays for those who may know it.
void ReadSubdivision(const Element& json, GeometryInstance& geometry, ParseContext& context)
{
    constexpr const char* member = "edge_interpolation_mode";
    const auto numberOf = [&geometry](const char* channel) {
        const auto found = geometry.channels.find(channel);
        return found == geometry.channels.end() ? std::nullopt : std::optional<double>(found->second);
    };
    if (const auto mode = Find(json, member)) {
        geometry.edgeInterpolation = EdgeInterpolationMode(*mode, geometry.id, context);
        if (geometry.edgeInterpolation.empty())
            geometry.kept.members.emplace_back(member, simdjson::minify(*mode));
    }
    // The setting in the dialog is what the figure's maker and user change; the member only repeats it.
    if (const auto setting = numberOf("SubDEdgeInterpolateLevel"))
        if (const std::string mode = EdgeInterpolationMode(*setting, geometry.id, context); !mode.empty())
            geometry.edgeInterpolation = mode;
    TellAlgorithm(numberOf("SubDAlgorithmControl"), geometry.id, context);
}

GeometryInstance ParseGeometryInstance(const Element& json, ParseContext& context)
{
    const PartBeingRead part(json);
    GeometryInstance geometry;
    geometry.id = Text(json, "id");
    geometry.url = Text(json, "url");
    geometry.name = Text(json, "name");
    geometry.label = Text(json, "label");
    TellGeometryType(json, context);
    if (const auto level = GivenLevel(json, context))
        geometry.subdivisionLevel = SubdivisionLevel(*level, geometry.id, context);
    ReadExtraChannels(json, geometry.channels);
    geometry.kept = KeptOfGeometry(json);
    ReadSubdivision(json, geometry, context);
    return geometry;
}

/// What does not say its type leaves open whether a text is a number.
void ReadOpenValue(const Element& channel, ModifierInstance& instance)
{
    const ReadingTally unheard;
    for (const char* const member : {"current_value", "value"}) {
        instance.value = Number(channel, member);
        if (!instance.value)
            continue;
        instance.numberText = QuietText(channel, member);
        return;
    }
}

/// Whether a value is there that is no number, so that another one counts.
bool IsPassedOver(const Element& channel, std::string_view member)
{
    const ReadingTally unheard;
    const auto value = Find(channel, member);
    return value && !AsNumber(*value);
}

void ReadModifierValue(const Element& channel, ModifierInstance& instance)
{
    if (!Find(channel, "current_value") && !Find(channel, "value"))
        return;
    instance.channelText = simdjson::minify(channel);
    const std::string type = Text(channel, "type");
    if (IsOneNumber(type)) {
        const auto current = Find(channel, "current_value"), usual = Find(channel, "value");
        instance.value = current ? AsNumber(*current) : std::nullopt;
        if (!instance.value)
            instance.value = usual ? AsNumber(*usual) : std::nullopt;
    } else if (MayHoldNumber(type)) {
        ReadOpenValue(channel, instance);
    }
    // That there is no number at all is told when it is known what the value would have been for.
    if (instance.value && IsPassedOver(channel, "current_value"))
        ReadingTally::addOdd(channel, "current_value", OddMembers::Wanted::Number);
}

} // namespace

NodeInstance ParseNodeInstance(const Element& json, ParseContext& context)
{
    const PartBeingRead part(json);
    NodeInstance instance;
    instance.id = Text(json, "id");
    instance.url = Text(json, "url");
    instance.name = Text(json, "name");
    instance.label = Text(json, "label");
    instance.parent = NodeReference(json, "parent", context);
    if (instance.parent.empty()) {
        instance.parent = NodeReference(json, "parent_in_place", context);
        instance.inPlace = !instance.parent.empty();
    }
    instance.conformTarget = QuietText(json, "conform_target");
    if (const auto target = Find(json, "conform_target"); target && !target->is_string())
        context.warn(instance.id,
                     "is to be fitted to what is no reference to a figure, and is fitted to nothing");
    instance.rotationOrder = RotationOrder(json, "its definition's", context);
    instance.inheritsScale = InheritsScale(json);
    TellInheritsScale(json, context);
    for (const char* const member :
         {"translation", "rotation", "scale", "center_point", "end_point", "orientation"})
        ReadInstanceVector(json, member, instance);
    if (const auto general = Find(json, "general_scale"))
        ReadInstanceChannel(*general, "general_scale", instance);
    ReadExtraChannels(json, instance.properties);
    ReadFavorites(json, instance.favorites);
    const std::vector<Element> geometries = PartsOf(json, "geometries", context.lists);
    for (const Element& item : geometries) {
        instance.geometries.push_back(ParseGeometryInstance(item, context));
        instance.geometries.back().text = simdjson::minify(item);
        ReadFavorites(item, instance.favorites);
    }
    instance.formulas = ParseFormulas(json, context);
    instance.dform = ParseDFormPart(json, context);
    instance.repeatsNode = RepeatsNode(json);
    instance.kept = KeptOfNodeInstance(json);
    return instance;
}

ModifierInstance ParseModifierInstance(const Element& json, ParseContext& context)
{
    const PartBeingRead part(json);
    ModifierInstance instance;
    instance.id = Text(json, "id");
    instance.url = Text(json, "url");
    instance.parent = Text(json, "parent");
    instance.name = Text(json, "name");
    instance.group = Text(json, "group");
    if (const auto channel = FindObject(json, "channel")) {
        ReadModifierValue(*channel, instance);
        instance.change = ParseChannelChange(*channel);
    }
    instance.formulas = ParseFormulas(json, context);
    instance.effect = ParseEffectInstance(json, context);
    return instance;
}

} // namespace dson
