// Turning the members of a DSON file into values: channels and vectors of them.
// SPDX-License-Identifier: MIT

#include "channel_parts.h"

namespace dson {

namespace {

/// Also one that single precision cannot hold: what reads the channel tells of it.
std::optional<double> Limit(const Element& channel, const char* member)
{
    const auto limit = Find(channel, member);
    double number = 0.0;
    return limit && limit->get(number) == simdjson::SUCCESS ? number : Number(channel, member);
}

} // namespace

double ValueOf(const Element& channelOrNumber, double fallback)
{
    if (!channelOrNumber.is_object())
        return AsNumber(channelOrNumber).value_or(fallback);
    if (const auto current = Number(channelOrNumber, "current_value"))
        return *current;
    return Number(channelOrNumber, "value").value_or(fallback);
}

std::optional<bool> GivenFlag(const Element& json, const char* member)
{
    return Find(json, member) ? std::optional<bool>(Flag(json, member, false)) : std::nullopt;
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
    channel.min = Limit(json, "min");
    channel.max = Limit(json, "max");
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

} // namespace dson
