// Turning the members of a DSON file into values: channels and vectors of them.
// SPDX-License-Identifier: MIT

#include "channel_parts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>

namespace dson {

namespace {

/// A member that is to be a number; tallied when it is something else.
std::optional<double> NumberOf(const Element& channel, std::string_view member)
{
    const auto found = Find(channel, member);
    const auto number = found ? AsNumber(*found) : std::nullopt;
    if (found && !number && IsOneNumber(Text(channel, "type", "float")))
        ReadingTally::addSpoilt(Text(channel, "name", Text(channel, "id")));
    return number;
}

/// Likewise of one that is not its value; other kinds of values may have other kinds of limits.
std::optional<double> NumberBeside(const Element& channel, std::string_view member)
{
    if (IsOneNumber(Text(channel, "type", "float")))
        return Number(channel, member);
    const auto found = Find(channel, member);
    return found ? AsNumber(*found) : std::nullopt;
}

/// Also one that single precision cannot hold: what reads the channel tells of it.
std::optional<double> Limit(const Element& channel, const char* member)
{
    const auto limit = Find(channel, member);
    double number = 0.0;
    return limit && limit->get(number) == simdjson::SUCCESS ? number : NumberBeside(channel, member);
}

bool HasLimits(const std::string& type)
{
    return type != "bool" && type != "enum" && MayHoldNumber(type);
}

void TellExchanged(const Element& channel, const std::optional<double>& min, const std::optional<double>& max)
{
    if (min && max && *min > *max)
        ReadingTally::addOdd(channel, "min", OddMembers::Wanted::Ordered);
}

/// Whether a dial that holds its value within limits would hold another one.
bool IsHeld(const Channel& channel, double value)
{
    if (channel.type == "enum")
        return !channel.enumValues.empty() &&
               (value < 0.0 || value > static_cast<double>(channel.enumValues.size() - 1));
    if (!channel.clamped || !HasLimits(channel.type) || !(channel.min || channel.max))
        return false;
    // What a file leaves out of a pair of limits is that of a share.
    const double one = channel.min.value_or(0.0), other = channel.max.value_or(1.0);
    return value < std::min(one, other) || value > std::max(one, other);
}

bool IsRounded(const Channel& channel, double value)
{
    constexpr double most = std::numeric_limits<std::int32_t>::max();
    return (channel.type == "int" || channel.type == "enum") &&
           (value != std::floor(value) || std::abs(value) > most);
}

void TellUnfit(const Element& json, const Channel& channel)
{
    if (HasLimits(channel.type))
        TellExchanged(json, channel.min, channel.max);
    const auto look = [&](const char* member, double value) {
        if (IsHeld(channel, value))
            ReadingTally::addOdd(json, member, OddMembers::Wanted::Within);
        else if (IsRounded(channel, value))
            ReadingTally::addOdd(json, member, OddMembers::Wanted::Whole);
    };
    look("value", channel.value);
    if (channel.currentValue)
        look("current_value", *channel.currentValue);
}

/// Empty for a number, for what should be one and for an alias, which has no value.
std::string OtherValue(const Element& channel, const std::string& type)
{
    if (IsOneNumber(type) || type == "alias")
        return {};
    auto value = Find(channel, "current_value");
    if (!value)
        value = Find(channel, "value");
    const bool isNumber = value && MayHoldNumber(type) && AsNumber(*value);
    return value && !isNumber ? simdjson::minify(*value) : std::string();
}

} // namespace

bool IsOneNumber(std::string_view type)
{
    return type == "float" || type == "int" || type == "bool" || type == "enum";
}

bool MayHoldNumber(std::string_view type)
{
    static const std::set<std::string_view> others{"color",  "float_color", "image",       "file",
                                                   "string", "node",        "numeric_node"};
    return others.count(type) == 0;
}

std::optional<double> GivenValue(const Element& channelOrNumber)
{
    if (!channelOrNumber.is_object()) {
        const auto number = AsNumber(channelOrNumber);
        if (!number && !channelOrNumber.is_null())
            ReadingTally::addSpoilt("a vector");
        return number;
    }
    if (!MayHoldNumber(Text(channelOrNumber, "type", "float")))
        return std::nullopt;
    const auto current = NumberOf(channelOrNumber, "current_value");
    return current ? current : NumberOf(channelOrNumber, "value");
}

double ValueOf(const Element& channelOrNumber, double fallback)
{
    return GivenValue(channelOrNumber).value_or(fallback);
}

Channel ParseChannel(const Element& json)
{
    Channel channel;
    channel.id = Text(json, "id");
    channel.type = Text(json, "type", "float");
    channel.name = Text(json, "name");
    channel.label = Text(json, "label");
    channel.otherValue = OtherValue(json, channel.type);
    if (MayHoldNumber(channel.type)) {
        channel.value = NumberOf(json, "value").value_or(0.0);
        channel.currentValue = NumberOf(json, "current_value");
    }
    channel.min = Limit(json, "min");
    channel.max = Limit(json, "max");
    channel.clamped = Flag(json, "clamped", false);
    channel.displayAsPercent = Flag(json, "display_as_percent", false);
    channel.visible = Flag(json, "visible", true);
    channel.locked = Flag(json, "locked", false);
    channel.autoFollow = Flag(json, "auto_follow", false);
    channel.stepSize = NumberBeside(json, "step_size").value_or(1.0);
    channel.targetChannel = Text(json, "target_channel");
    if (channel.type == "string")
        channel.text = Text(json, "current_value", Text(json, "value"));
    ForEachText(json, "enum_values", [&](std::string_view item) { channel.enumValues.emplace_back(item); });
    TellUnfit(json, channel);
    return channel;
}

ChannelChange ParseChannelChange(const Element& channel)
{
    ChannelChange change;
    change.label = Text(channel, "label");
    change.min = NumberBeside(channel, "min");
    change.max = NumberBeside(channel, "max");
    TellExchanged(channel, change.min, change.max);
    change.clamped = GivenFlag(channel, "clamped");
    change.visible = GivenFlag(channel, "visible");
    change.locked = GivenFlag(channel, "locked");
    return change;
}

} // namespace dson
