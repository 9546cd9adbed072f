// Turning the members of a DSON file into values: modifiers that are neither morphs nor dials.
// SPDX-License-Identifier: MIT

#include "base/counted.h"
#include "channel_parts.h"
#include "json_rows.h"
#include "parts.h"

#include <cmath>
#include <set>

#include <fmt/format.h>

namespace dson {

namespace {

const std::string_view effectPrefix = "studio/modifier/";
const std::string_view dformPrefix = "studio/node/dform";
const std::string_view channelsType = "studio_modifier_channels";

/// What every modifier may have, and what is read of it as such.
bool IsCommon(std::string_view member)
{
    static const std::set<std::string_view> common{"id",     "url",    "name",     "label", "source",
                                                   "parent", "region", "formulas", "group", "channel"};
    return common.count(member) > 0;
}

/// The first type that says what the modifier does.
std::string ExtraKind(const Element& modifier)
{
    std::string kind;
    ForEach(modifier, "extra", [&](const Element& extra) {
        const std::string type = Text(extra, "type");
        if (kind.empty() && type != channelsType)
            kind = type;
    });
    return kind;
}

/// The first member that only this kind of modifier has.
std::string MemberKind(const Effect& effect)
{
    for (const auto& member : effect.members)
        if (member.first != "extra" && member.first != "presentation")
            return member.first;
    return {};
}

EffectChannel ParseEffectChannel(const Element& entry, const Element& json)
{
    EffectChannel parsed;
    parsed.channel = ParseChannel(json);
    if (parsed.channel.name.empty())
        parsed.channel.name = parsed.channel.id;
    parsed.group = Text(entry, "group");
    const ReadingTally unheard; // the channel has told
    parsed.hasValue =
        MayHoldNumber(parsed.channel.type) && (Number(json, "value") || Number(json, "current_value"));
    return parsed;
}

/// What does not say its type is of the one that its definition has.
EffectChannel ParseInstanceChannel(const Element& entry, const Element& json)
{
    if (Find(json, "type"))
        return ParseEffectChannel(entry, json);
    const ReadingTally unheard;
    EffectChannel parsed = ParseEffectChannel(entry, json);
    parsed.channel.type.clear();
    auto value = Find(json, "current_value");
    if (!value)
        value = Find(json, "value");
    if (value)
        parsed.channel.otherValue = simdjson::minify(*value);
    return parsed;
}

/// What stands in `extra` and `dform`, whatever the kind.
template <class ParseOne>
Effect ParseParts(const Element& modifier, ParseOne parseChannel)
{
    Effect effect;
    ForEach(modifier, "extra", [&](const Element& extra) {
        ForEachObject(extra, "channels", [&](const Element& entry) {
            const auto channel = FindObject(entry, "channel");
            if (channel && !(Text(*channel, "name") + Text(*channel, "id")).empty())
                effect.channels.push_back(parseChannel(entry, *channel));
        });
        if (Flag(extra, "push_post_smooth", false))
            effect.pushesAfterSmoothing = true;
        if (!effect.influence && Find(extra, "influence_weights"))
            effect.influence = ParseInfluenceMap(extra, Text(modifier, "name"), false, nullptr);
    });
    if (const auto dform = Find(modifier, "dform"))
        if (auto map = ParseInfluenceMap(*dform, Text(modifier, "name"), true, nullptr))
            effect.influence = std::move(map);
    if (!modifier.is_object())
        return effect;
    for (const auto member : Members(modifier))
        if (!IsCommon(member.key))
            effect.members.emplace_back(member.key, simdjson::minify(member.value));
    return effect;
}

bool Contains(const std::string& text, const char* part)
{
    return text.find(part) != std::string::npos;
}

DFormPart::Role RoleOf(const std::string& type)
{
    if (Contains(type, "base"))
        return DFormPart::Role::Base;
    return Contains(type, "zone") || Contains(type, "field") ? DFormPart::Role::Zone
                                                             : DFormPart::Role::Former;
}

std::optional<bool> UsesWeights(const Element& extra, const std::string& id, ParseContext& context)
{
    const auto member = Find(extra, "influence_mode");
    if (!member)
        return std::nullopt;
    if (const auto mode = AsNumber(*member))
        return *mode != 0.0;
    const std::string mode(TextOf(*member));
    if (Contains(mode, "weight"))
        return true;
    if (Contains(mode, "sphere") || Contains(mode, "field"))
        return false;
    context.warn(id, "has an unknown influence mode; its field counts");
    return false;
}

std::vector<std::array<double, 2>> Knots(const Element& extra, const std::string& id, ParseContext& context)
{
    std::vector<std::array<double, 2>> knots;
    std::size_t strange = 0;
    ForEachValue(extra, "falloff", [&](const Element& row) {
        double pair[2];
        // Further entries say how the curve bends there.
        if (ReadRow(row, pair, 2) >= 2 && std::isfinite(pair[0]) && std::isfinite(pair[1]))
            knots.push_back({pair[0], pair[1]});
        else
            ++strange;
    });
    if (strange > 0)
        context.warn(id,
                     fmt::format("{} not a distance and a strength and left out",
                                 base::Counted(strange, "row of its falloff is", "rows of its falloff are")));
    return knots;
}

bool HoldsOther(const Channel& channel)
{
    return channel.type != "alias" && (!channel.otherValue.empty() || !MayHoldNumber(channel.type));
}

/// A value that the host has no dial for is kept as the file has it.
void AddChannelText(const Element& modifier, Effect& effect)
{
    effect.members.emplace_back("channel", simdjson::minify(*Find(modifier, "channel")));
}

void CheckDForm(const Element& modifier, ParseContext& context)
{
    const auto dform = Find(modifier, "dform");
    if (dform && !dform->is_object())
        context.warn(Text(modifier, "id"), "is a D-Former that is no object and has no effect");
}

} // namespace

std::optional<DFormPart> ParseDFormPart(const Element& node, ParseContext& context)
{
    const std::string id = Text(node, "id");
    std::optional<DFormPart> part;
    ForEach(node, "extra", [&](const Element& extra) {
        const std::string type = Text(extra, "type");
        if (!part && type.compare(0, dformPrefix.size(), dformPrefix) == 0)
            part = DFormPart{RoleOf(type.substr(dformPrefix.size())), UsesWeights(extra, id, context),
                             Knots(extra, id, context)};
    });
    return part;
}

std::optional<Effect> ParseEffect(const Element& modifier, const Modifier& parsed, ParseContext& context)
{
    CheckDForm(modifier, context);
    const bool holdsOther = parsed.hasChannel && HoldsOther(parsed.channel);
    std::string kind = ExtraKind(modifier);
    const bool isPlain = parsed.hasChannel || !parsed.formulas.empty();
    if (Find(modifier, "dform"))
        kind = "dform";
    else if (!holdsOther && isPlain && kind.compare(0, effectPrefix.size(), effectPrefix) != 0)
        return std::nullopt;
    Effect effect = ParseParts(modifier, ParseEffectChannel);
    effect.kind = !kind.empty() ? kind : holdsOther ? "channel" : MemberKind(effect);
    if (holdsOther)
        AddChannelText(modifier, effect);
    return effect;
}

std::optional<Effect> ParseEffectInstance(const Element& instance, ParseContext& context)
{
    CheckDForm(instance, context);
    if (!Find(instance, "extra") && !Find(instance, "dform"))
        return std::nullopt;
    Effect effect = ParseParts(instance, ParseInstanceChannel);
    effect.kind = Find(instance, "dform") ? "dform" : ExtraKind(instance);
    return effect;
}

} // namespace dson
