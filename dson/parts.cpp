// Turning the members of a DSON file into values: channels, formulas, nodes and instances.
// SPDX-License-Identifier: MIT

#include "parts.h"

#include "dson/uri.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace dson {

namespace {

constexpr const char* axisIds[3] = {"x", "y", "z"};

/// "#id" to id.
std::string ReferencedId(const std::string& uri)
{
    return ParseUri(uri).id;
}

/// Calls visit(axis, value) for a vector member given as channel objects or as plain numbers.
template <class Visit>
void ForEachAxis(const Element& owner, std::string_view member, Visit visit)
{
    int index = 0;
    ForEach(owner, member, [&](const Element& item) {
        if (item.is_object()) {
            const std::string id = Text(item, "id");
            for (int axis = 0; axis < 3; ++axis)
                if (id == axisIds[axis])
                    visit(axis, item);
        } else if (index < 3) {
            visit(index, item);
        }
        ++index;
    });
}

double ValueOf(const Element& channelOrNumber, double fallback)
{
    if (!channelOrNumber.is_object())
        return AsNumber(channelOrNumber).value_or(fallback);
    if (const auto current = Number(channelOrNumber, "current_value"))
        return *current;
    return Number(channelOrNumber, "value").value_or(fallback);
}

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
            channel.value = AsNumber(item).value_or(channel.value);
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

std::optional<bool> GivenFlag(const Element& json, const char* member)
{
    return Find(json, member) ? std::optional<bool>(Flag(json, member, false)) : std::nullopt;
}

ChannelChange ParseChannelChange(const Element& channel)
{
    ChannelChange change;
    change.label = Text(channel, "label");
    change.min = Number(channel, "min");
    change.max = Number(channel, "max");
    change.clamped = GivenFlag(channel, "clamped");
    change.visible = GivenFlag(channel, "visible");
    change.locked = GivenFlag(channel, "locked");
    return change;
}

void ReadInstanceChannel(const Element& item, const std::string& id, NodeInstance& instance)
{
    const bool isGiven = !item.is_object() || Find(item, "current_value") || Find(item, "value");
    if (isGiven)
        instance.channels[id] = ValueOf(item, 0.0);
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
        ForEach(extra, "favorites", [&](const Element& item) {
            const std::string text(item.is_string() ? item.get_string().value_unsafe() : std::string_view());
            if (const std::string name = text.substr(0, text.find('/')); !name.empty())
                names.push_back(name);
        });
    });
}

/// Channels that an `extra` object lists, by id.
void ReadExtraChannels(const Element& owner, ChannelValues& values)
{
    ForEach(owner, "extra", [&](const Element& extra) {
        ForEach(extra, "channels", [&](const Element& entry) {
            if (const auto channel = Find(entry, "channel"))
                values[Text(*channel, "id")] = ValueOf(*channel, 0.0);
        });
    });
}

struct Key {
    double time, value;
};

/// Between keys along a straight line, before the first and behind the last as they are.
double ValueAtZero(std::vector<Key> keys)
{
    std::stable_sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) { return a.time < b.time; });
    const auto after = std::upper_bound(keys.begin(), keys.end(), 0.0,
                                        [](double time, const Key& k) { return time < k.time; });
    if (after == keys.begin())
        return after->value;
    const Key& before = *std::prev(after);
    if (after == keys.end() || before.time == 0.0)
        return before.value;
    return before.value + (after->value - before.value) * (0.0 - before.time) / (after->time - before.time);
}

std::optional<Operation> ParsePush(const Element& json)
{
    Operation operation;
    if (const auto url = Find(json, "url")) {
        operation.kind = Operation::Kind::PushUrl;
        operation.url = Text(json, "url");
        return operation;
    }
    const auto value = Find(json, "val");
    if (!value)
        return std::nullopt;
    if (!value->is_array()) {
        operation.value = AsNumber(*value).value_or(0.0);
        return operation;
    }
    operation.kind = Operation::Kind::PushKnot;
    std::size_t index = 0;
    ForEach(json, "val", [&](const Element& item) {
        if (index < operation.knot.size())
            operation.knot[index++] = AsNumber(item).value_or(0.0);
    });
    return operation;
}

std::optional<Operation> ParseOperation(const Element& json)
{
    using Kind = Operation::Kind;
    static const std::map<std::string, Kind> kinds{{"add", Kind::Add},
                                                   {"sub", Kind::Sub},
                                                   {"mult", Kind::Mult},
                                                   {"div", Kind::Div},
                                                   {"inv", Kind::Inv},
                                                   {"neg", Kind::Neg},
                                                   {"spline_linear", Kind::SplineLinear},
                                                   {"spline_constant", Kind::SplineConstant},
                                                   {"spline_tcb", Kind::SplineTcb}};
    const std::string name = Text(json, "op");
    if (name == "push")
        return ParsePush(json);
    const auto kind = kinds.find(name);
    if (kind == kinds.end())
        return std::nullopt;
    Operation operation;
    operation.kind = kind->second;
    return operation;
}

void CollectFrom(const Element& element, const std::string& owner, bool inDForm, int depth,
                 std::vector<InfluenceMap>& maps);

std::optional<InfluenceMap> ParseInfluenceMap(const Element& holder, const std::string& owner, bool inDForm)
{
    InfluenceMap map;
    map.owner = owner;
    map.isDForm = inDForm;
    map.vertexCount = Count(holder, "influence_vertex_count", Count(holder, "vertex_count", -1));
    bool isMap = true;
    ForEachValue(holder, "influence_weights", [&](const Element& row) {
        double pair[2] = {-1.0, 0.0};
        std::size_t numbers = 0;
        if (row.is_array())
            for (const Element item : Items(row))
                if (const auto number = AsNumber(item); number && numbers < 2)
                    pair[numbers++] = *number;
        isMap = isMap && numbers == 2 && pair[0] >= 0.0 && pair[0] < 4294967295.0 &&
                pair[0] == std::floor(pair[0]);
        if (isMap) {
            map.vertices.push_back(static_cast<std::uint32_t>(pair[0]));
            map.weights.push_back(static_cast<float>(std::clamp(pair[1], 0.0, 1.0)));
        }
    });
    if (!isMap || map.vertices.empty())
        return std::nullopt;
    return map;
}

void CollectFromObject(const Element& element, std::string owner, bool inDForm, int depth,
                       std::vector<InfluenceMap>& maps)
{
    for (const std::string_view key : {"name", "label"})
        if (const std::string name = Text(element, key); !name.empty()) {
            owner = name;
            break;
        }
    if (Find(element, "influence_weights"))
        if (auto map = ParseInfluenceMap(element, owner, inDForm))
            maps.push_back(std::move(*map));
    for (const auto member : Members(element))
        CollectFrom(member.value, owner, inDForm || member.key == "dform", depth + 1, maps);
}

void CollectFrom(const Element& element, const std::string& owner, bool inDForm, int depth,
                 std::vector<InfluenceMap>& maps)
{
    // Geometry and delta lists cannot hold maps; entering only objects and arrays of them keeps the walk
    // short.
    constexpr int deepest = 64;
    if (depth > deepest)
        return;
    if (element.is_object()) {
        CollectFromObject(element, owner, inDForm, depth, maps);
    } else if (element.is_array()) {
        for (const Element item : Items(element)) {
            if (!item.is_object())
                break;
            CollectFrom(item, owner, inDForm, depth + 1, maps);
        }
    }
}

} // namespace

AssetInfo ParseAssetInfo(const Element& json)
{
    AssetInfo info;
    info.id = PercentDecode(Text(json, "id"));
    info.type = Text(json, "type");
    if (const auto contributor = Find(json, "contributor")) {
        info.author = Text(*contributor, "author");
        info.email = Text(*contributor, "email");
        info.website = Text(*contributor, "website");
    }
    info.revision = Text(json, "revision", "1.0");
    info.modified = Text(json, "modified");
    return info;
}

Channel ParseChannel(const Element& json)
{
    Channel channel;
    channel.id = Text(json, "id");
    channel.type = Text(json, "type", "float");
    channel.name = Text(json, "name");
    channel.label = Text(json, "label");
    channel.value = Number(json, "value").value_or(0.0);
    channel.currentValue = Number(json, "current_value");
    channel.min = Number(json, "min");
    channel.max = Number(json, "max");
    channel.clamped = Flag(json, "clamped", false);
    channel.displayAsPercent = Flag(json, "display_as_percent", false);
    channel.visible = Flag(json, "visible", true);
    channel.locked = Flag(json, "locked", false);
    channel.autoFollow = Flag(json, "auto_follow", false);
    channel.stepSize = Number(json, "step_size").value_or(1.0);
    channel.targetChannel = Text(json, "target_channel");
    if (channel.type == "string")
        channel.text = Text(json, "current_value", Text(json, "value"));
    ForEach(json, "enum_values", [&](const Element& item) {
        if (item.is_string())
            channel.enumValues.emplace_back(item.get_string().value_unsafe());
    });
    return channel;
}

std::vector<Formula> ParseFormulas(const Element& owner, ParseContext& context)
{
    std::vector<Formula> formulas;
    ForEach(owner, "formulas", [&](const Element& json) {
        Formula formula;
        formula.output = Text(json, "output");
        const std::string stage = Text(json, "stage", "sum");
        formula.stage =
            stage == "mult" || stage == "multiply" ? Formula::Stage::Multiply : Formula::Stage::Sum;
        bool isComplete = !formula.output.empty();
        ForEach(json, "operations", [&](const Element& item) {
            const auto operation = ParseOperation(item);
            isComplete = isComplete && operation;
            if (operation)
                formula.operations.push_back(*operation);
        });
        if (isComplete && !formula.operations.empty())
            formulas.push_back(std::move(formula));
        else
            context.warn(
                Text(owner, "id"),
                fmt::format("a formula for {} cannot be understood and is left out", formula.output));
    });
    return formulas;
}

Node ParseNode(const Element& json, ParseContext& context)
{
    const std::string id = Text(json, "id");
    Node node = MakeNode(id, Text(json, "label", Text(json, "name", id)), Text(json, "type", "node"));
    node.name = Text(json, "name", id);
    node.parent = ReferencedId(Text(json, "parent"));
    node.rotationOrder = Text(json, "rotation_order", "XYZ");
    node.inheritsScale = Flag(json, "inherits_scale", node.type != "bone");
    ParseRigVector(json, "center_point", node.centerPoint);
    ParseRigVector(json, "end_point", node.endPoint);
    ParseRigVector(json, "orientation", node.orientation);
    ParseChannels(json, "rotation", node.rotation);
    ParseChannels(json, "translation", node.translation);
    ParseChannels(json, "scale", node.scale);
    if (const auto general = Find(json, "general_scale"))
        node.generalScale.value = ValueOf(*general, 1.0);
    if (const auto presentation = Find(json, "presentation"))
        node.presentationType = Text(*presentation, "type");
    node.formulas = ParseFormulas(json, context);
    return node;
}

Modifier ParseModifier(const Element& json, ParseContext& context)
{
    Modifier modifier;
    modifier.id = Text(json, "id");
    modifier.name = Text(json, "name");
    if (modifier.name.empty())
        modifier.name = modifier.id;
    modifier.parent = Text(json, "parent");
    if (const auto presentation = Find(json, "presentation"))
        modifier.presentationType = Text(*presentation, "type");
    if (const auto channel = Find(json, "channel"))
        modifier.channel = ParseChannel(*channel);
    if (modifier.channel.label.empty())
        modifier.channel.label = Text(json, "label", modifier.name);
    modifier.region = Text(json, "region");
    modifier.group = Text(json, "group", "/");
    if (modifier.group.empty() || modifier.group.front() != '/')
        modifier.group.insert(0, 1, '/');
    modifier.formulas = ParseFormulas(json, context);
    if (const auto morph = Find(json, "morph")) {
        modifier.morph.emplace();
        modifier.morph->vertexCount = Count(*morph, "vertex_count", -1);
        modifier.morph->hdUrl = Text(*morph, "hd_url");
        if (context.options.deltas)
            modifier.morph->deltas = ParseDeltas(*morph, modifier.id, context);
    }
    return modifier;
}

namespace {

GeometryInstance ParseGeometryInstance(const Element& json)
{
    GeometryInstance geometry;
    geometry.id = Text(json, "id");
    geometry.url = Text(json, "url");
    geometry.name = Text(json, "name");
    geometry.label = Text(json, "label");
    if (Find(json, "current_subdivision_level"))
        geometry.subdivisionLevel = static_cast<int>(
            std::clamp<std::int64_t>(Count(json, "current_subdivision_level", 1), 0, finestSubdivisionLevel));
    ReadExtraChannels(json, geometry.channels);
    return geometry;
}

} // namespace

NodeInstance ParseNodeInstance(const Element& json, ParseContext& context)
{
    NodeInstance instance;
    instance.id = Text(json, "id");
    instance.url = Text(json, "url");
    instance.name = Text(json, "name");
    instance.label = Text(json, "label");
    instance.parent = Text(json, "parent");
    if (instance.parent.empty()) {
        instance.parent = Text(json, "parent_in_place");
        instance.inPlace = !instance.parent.empty();
    }
    instance.conformTarget = Text(json, "conform_target");
    instance.rotationOrder = Text(json, "rotation_order");
    instance.inheritsScale = GivenFlag(json, "inherits_scale");
    for (const char* const member :
         {"translation", "rotation", "scale", "center_point", "end_point", "orientation"})
        ReadInstanceVector(json, member, instance);
    if (const auto general = Find(json, "general_scale"))
        ReadInstanceChannel(*general, "general_scale", instance);
    ReadExtraChannels(json, instance.properties);
    ReadFavorites(json, instance.favorites);
    ForEach(json, "geometries", [&](const Element& item) {
        instance.geometries.push_back(ParseGeometryInstance(item));
        ReadFavorites(item, instance.favorites);
    });
    instance.formulas = ParseFormulas(json, context);
    return instance;
}

ModifierInstance ParseModifierInstance(const Element& json, ParseContext& context)
{
    ModifierInstance instance;
    instance.id = Text(json, "id");
    instance.url = Text(json, "url");
    instance.parent = Text(json, "parent");
    instance.name = Text(json, "name");
    instance.group = Text(json, "group");
    if (const auto channel = Find(json, "channel")) {
        instance.value = Number(*channel, "current_value");
        if (!instance.value)
            instance.value = Number(*channel, "value");
        instance.change = ParseChannelChange(*channel);
    }
    instance.formulas = ParseFormulas(json, context);
    return instance;
}

std::optional<AnimatedValue> ParseAnimation(const Element& json)
{
    AnimatedValue animation;
    animation.url = Text(json, "url");
    std::vector<Key> keys;
    ForEach(json, "keys", [&](const Element& row) {
        if (!row.is_array())
            return;
        std::optional<double> numbers[2];
        std::size_t index = 0;
        for (const Element item : Items(row))
            if (index < 2)
                numbers[index++] = AsNumber(item);
        if (numbers[0] && numbers[1])
            keys.push_back({*numbers[0], *numbers[1]});
    });
    if (keys.empty() || animation.url.empty())
        return std::nullopt;
    animation.value = ValueAtZero(std::move(keys));
    return animation;
}

std::vector<InfluenceMap> CollectInfluenceMaps(const Element& root)
{
    std::vector<InfluenceMap> maps;
    CollectFrom(root, {}, false, 0, maps);
    return maps;
}

} // namespace dson
