// Channels of files as properties of the scene.
// SPDX-License-Identifier: MIT

#include "loading/channel_properties.h"

#include "dzboolproperty.h"
#include "dzenumproperty.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dznode.h"
#include "figure/channel_type.h"

#include <algorithm>
#include <limits>
#include <set>

#include <QString>

namespace openhost {

namespace {

struct ChannelSuffix {
    const char* member;
    const char* suffix; ///< of the property, behind the axis letter
};

const ChannelSuffix channelSuffixes[] = {
    {"translation", "Translate"}, {"rotation", "Rotate"}, {"scale", "Scale"},
    {"center_point", "Origin"},   {"end_point", "End"},   {"orientation", "Orientation"},
};

QString NodePropertyName(const std::string& member, const std::string& axis)
{
    for (const ChannelSuffix& entry : channelSuffixes)
        if (member == entry.member && axis.size() == 1 && axis[0] >= 'x' && axis[0] <= 'z')
            return QChar::fromLatin1(static_cast<char>(axis[0] - 'x' + 'X')) + QLatin1String(entry.suffix);
    return QString();
}

/// Dials hold single precision.
double WithinFloat(double limit)
{
    constexpr double largest = std::numeric_limits<float>::max();
    return std::clamp(limit, -largest, largest);
}

bool HoldsNoNumber(const std::string& type)
{
    static const std::set<std::string> types{"color", "float_color", "image",       "string",
                                             "file",  "node",        "numeric_node"};
    return types.count(type) > 0;
}

} // namespace

bool HasLimitsBeyondFloat(const dson::Channel& channel)
{
    const auto isBeyond = [](const std::optional<double>& limit) {
        return limit && *limit != WithinFloat(*limit);
    };
    return isBeyond(channel.min) || isBeyond(channel.max);
}

bool IsOfKnownType(const dson::Channel& channel)
{
    return channel.type == "float" || channel.type == "int" || channel.type == "bool" ||
           channel.type == "enum";
}

void ApplyChannel(DzNumericProperty& property, const dson::Channel& channel)
{
    if (!channel.label.empty())
        property.setLabel(QString::fromStdString(channel.label));
    const bool hasLimits = (channel.min || channel.max) && channel.type != "bool" && channel.type != "enum";
    if (hasLimits)
        property.setDoubleMinMax(WithinFloat(channel.min.value_or(0.0)),
                                 WithinFloat(channel.max.value_or(1.0)));
    property.setIsClamped(channel.clamped);
    property.setDisplayAsPercent(channel.displayAsPercent);
    property.setDoubleDefaultValue(channel.value);
    property.setDoubleRawValue(channel.currentValue.value_or(channel.value));
    property.setHidden(!channel.visible);
    property.setCanAutoFollow(channel.autoFollow);
    if (auto* const number = qobject_cast<DzFloatProperty*>(&property))
        number->setSensitivity(static_cast<float>(channel.stepSize));
    property.lock(channel.locked);
}

void ApplyChange(DzNumericProperty& property, const dson::ChannelChange& change)
{
    if (!change.label.empty())
        property.setLabel(QString::fromStdString(change.label));
    if (change.min || change.max)
        property.setDoubleMinMax(change.min.value_or(property.getDoubleMin()),
                                 change.max.value_or(property.getDoubleMax()));
    if (change.clamped)
        property.setIsClamped(*change.clamped);
    if (change.visible)
        property.setHidden(!*change.visible);
    if (change.locked)
        property.lock(*change.locked);
}

std::unique_ptr<DzNumericProperty> MakeProperty(const std::string& name, const dson::Channel& channel)
{
    const QString text = QString::fromStdString(name);
    std::unique_ptr<DzNumericProperty> property;
    if (HoldsNoNumber(channel.type) || !channel.otherValue.empty())
        return nullptr;
    if (channel.type == "int") {
        property = std::make_unique<DzIntProperty>(text, true, true, 0); // its value follows
    } else if (channel.type == "bool") {
        property = std::make_unique<DzBoolProperty>(text, true, true, channel.value != 0.0);
    } else if (channel.type == "enum") {
        auto choice = std::make_unique<DzEnumProperty>(text, true, true, 0);
        for (const std::string& item : channel.enumValues)
            choice->addItem(QString::fromStdString(item));
        property = std::move(choice);
    } else {
        property = std::make_unique<DzFloatProperty>(text, true, true, static_cast<float>(channel.value));
    }
    ApplyChannel(*property, channel);
    if (!IsOfKnownType(channel))
        SetChannelType(*property, channel.type);
    return property;
}

DzNumericProperty* FindNodeChannel(const DzNode& node, const std::string& propertyPath)
{
    const std::size_t slash = propertyPath.find('/');
    const std::string member = propertyPath.substr(0, slash);
    const std::string rest = slash == std::string::npos ? std::string() : propertyPath.substr(slash + 1);
    const std::string axis = rest.substr(0, rest.find('/'));
    const bool isGeneralScale = member == "general_scale" || (member == "scale" && axis == "general");
    const QString name = isGeneralScale ? QString(QLatin1String("Scale")) : NodePropertyName(member, axis);
    if (name.isEmpty())
        return nullptr;
    // The rig's own channels are not shown to users.
    DzProperty* const property = node.findProperty(name);
    return qobject_cast<DzNumericProperty*>(property ? property : node.findPrivateProperty(name));
}

DzNumericProperty& AliasEnd(DzNumericProperty& property)
{
    DzNumericProperty* end = &property;
    while (auto* const target = qobject_cast<DzNumericProperty*>(end->getAliasTarget()))
        end = target;
    return *end;
}

} // namespace openhost
