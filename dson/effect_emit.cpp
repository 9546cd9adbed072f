// Modifiers that are neither morphs nor dials as JSON.
// SPDX-License-Identifier: MIT

#include "emit.h"
#include "json_view.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace dson {

namespace {

/// By id; those that are written are taken out.
using Values = std::map<std::string, const Channel*>;

Json Raw(const Element& element)
{
    return RawText(simdjson::minify(element));
}

/// The members in their order, with the ones that change put in place of the old or behind them.
template <class Change>
Json WithChanges(const Element& object, Change change)
{
    Json json = Json::object();
    for (const auto member : Members(object))
        json[std::string(member.key)] = Raw(member.value);
    change(json);
    return json;
}

Json CurrentValue(const Channel& channel)
{
    if (!channel.otherValue.empty())
        return RawText(channel.otherValue);
    if (channel.type == "bool")
        return *channel.currentValue != 0.0;
    return ExactNumber(*channel.currentValue);
}

Json WithValue(const Element& entry, Values& values)
{
    const auto old = Find(entry, "channel");
    const auto now = old && old->is_object() ? values.find(Text(*old, "id")) : values.end();
    if (now == values.end())
        return Raw(entry);
    const Channel& channel = *now->second;
    values.erase(now);
    return WithChanges(entry, [&](Json& json) {
        json["channel"] =
            WithChanges(*old, [&](Json& present) { present["current_value"] = CurrentValue(channel); });
    });
}

Json WithValues(const Element& extra, Values& values)
{
    const auto channels = Find(extra, "channels");
    if (!channels || !channels->is_array())
        return Raw(extra);
    return WithChanges(extra, [&](Json& json) {
        Json list = Json::array();
        for (const Element entry : Items(*channels))
            list.push_back(WithValue(entry, values));
        json["channels"] = std::move(list);
    });
}

/// For what the file has no place yet.
Json NewChannels(const Values& values)
{
    Json list = Json::array();
    for (const auto& value : values) {
        const Channel& channel = *value.second;
        Json written{{"id", channel.id}};
        if (!channel.type.empty())
            written["type"] = channel.type;
        written["name"] = channel.name;
        written["current_value"] = CurrentValue(channel);
        list.push_back({{"channel", std::move(written)}});
    }
    return Json{{"type", "studio_modifier_channels"}, {"version", "0.1.8"}, {"channels", std::move(list)}};
}

Json EmitExtras(const std::string& text, Values& values)
{
    Json extras = Json::array();
    simdjson::dom::parser parser;
    Element old;
    if (!text.empty() && parser.parse(text).get(old) == simdjson::SUCCESS) {
        if (old.is_object())
            extras.push_back(WithValues(old, values));
        else if (old.is_array())
            for (const Element extra : Items(old))
                extras.push_back(WithValues(extra, values));
    }
    if (!values.empty())
        extras.push_back(NewChannels(values));
    return extras;
}

bool Has(const Effect& effect, std::string_view member)
{
    return std::any_of(effect.members.begin(), effect.members.end(),
                       [member](const auto& one) { return one.first == member; });
}

Json EmitInfluence(const InfluenceMap& map)
{
    return Json{{"influence_vertex_count", map.vertexCount},
                {"influence_weights", EmitWeights(map.vertices, map.weights)}};
}

/// What no file has words for yet.
/// @param extras  that the modifier is to have
void AddOwn(Json& modifier, Json& extras, const Effect& effect)
{
    if (Has(effect, "dform") || Has(effect, "extra"))
        return;
    if (effect.kind == "dform" && effect.influence) {
        modifier["dform"] = EmitInfluence(*effect.influence);
    } else if (effect.kind == "dform" && effect.members.empty() && effect.channels.empty()) {
        modifier["dform"] = Json::object();
    } else if (effect.influence) {
        Json extra{{"type", effect.kind}};
        extra.update(EmitInfluence(*effect.influence));
        extras.insert(extras.begin(), std::move(extra));
    }
}

} // namespace

Json EmitDFormPart(const DFormPart& part)
{
    static const char* const types[] = {"studio/node/dform", "studio/node/dform_base",
                                        "studio/node/dform_zone"};
    Json json{{"type", types[static_cast<int>(part.role)]}};
    if (part.usesWeights)
        json["influence_mode"] = *part.usesWeights ? "weight_map" : "sphere";
    for (const auto& knot : part.falloff)
        json["falloff"].push_back(Json::array({ExactNumber(knot[0]), ExactNumber(knot[1])}));
    return json;
}

void AddEffect(Json& modifier, const Effect& effect)
{
    Values values;
    for (const EffectChannel& one : effect.channels)
        if (one.channel.currentValue || !one.channel.otherValue.empty())
            values.emplace(one.channel.id, &one.channel);
    std::string extra;
    for (const auto& member : effect.members)
        if (member.first == "extra")
            extra = member.second;
        else
            modifier[member.first] = RawText(member.second);
    Json extras = EmitExtras(extra, values);
    AddOwn(modifier, extras, effect);
    if (!extras.empty())
        modifier["extra"] = std::move(extras);
}

} // namespace dson
