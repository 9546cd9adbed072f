// Properties of the scene as channels of files.
// SPDX-License-Identifier: MIT

#include "channel_export.h"

#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformzone.h"
#include "dzenumproperty.h"
#include "dzfloatproperty.h"
#include "dznode.h"
#include "dzpresentation.h"
#include "dzskeleton.h"
#include "figure/channel_type.h"
#include "geometry/deform_field.h"
#include "library/asset_origin.h"
#include "loading/channel_properties.h"

namespace openhost {

const std::array<const char*, 3> transformMembers{"translation", "rotation", "scale"};
const std::array<const char*, 3> axisIds{"x", "y", "z"};

namespace {

const DzNumericProperty& Transform(const DzNode& node, const char* member, const char* axis)
{
    return *FindNodeChannel(node, std::string(member) + "/" + axis);
}

const DzNumericProperty& GeneralScale(const DzNode& node)
{
    return *FindNodeChannel(node, "general_scale");
}

std::array<double, 3> RawVector(const DzNode& node, const char* member)
{
    std::array<double, 3> values{};
    for (std::size_t axis = 0; axis < 3; ++axis)
        values[axis] = Transform(node, member, axisIds[axis]).getDoubleRawValue();
    return values;
}

std::array<dson::Channel, 3> VectorChannels(const DzNode& node, const char* member)
{
    std::array<dson::Channel, 3> channels;
    for (std::size_t axis = 0; axis < 3; ++axis)
        channels[axis] = DescribeChannel(Transform(node, member, axisIds[axis]), axisIds[axis]);
    return channels;
}

std::optional<dson::DFormPart> DFormPartOf(const DzNode& node)
{
    using Role = dson::DFormPart::Role;
    if (qobject_cast<const DzDForm*>(&node))
        return dson::DFormPart{Role::Former, std::nullopt, {}};
    if (qobject_cast<const DzDFormBase*>(&node))
        return dson::DFormPart{Role::Base, std::nullopt, {}};
    const auto* const zone = qobject_cast<const DzDFormZone*>(&node);
    if (!zone)
        return std::nullopt;
    dson::DFormPart part{Role::Zone, zone->getInfluenceMode() == DzDFormZone::WeightMap, {}};
    for (const geometry::Falloff::Knot& knot : zone->getFalloff().knots())
        part.falloff.push_back({knot.distance, knot.strength});
    return part;
}

std::string NodeType(const DzNode& node)
{
    if (qobject_cast<const DzSkeleton*>(&node))
        return "figure";
    if (node.inherits("DzBone"))
        return "bone";
    return node.inherits("DzCamera") ? "camera" : "node";
}

std::vector<dson::SceneChannel> VectorChanges(const DzNode& node, const char* member)
{
    std::vector<dson::SceneChannel> changes;
    for (const char* const axis : axisIds)
        if (const auto change = DescribeChange(Transform(node, member, axis), axis))
            changes.push_back(*change);
    return changes;
}

} // namespace

dson::Channel DescribeChannel(const DzNumericProperty& property, const std::string& id)
{
    dson::Channel channel;
    channel.id = id;
    channel.type = ChannelTypeOf(property);
    channel.name = property.getName().toStdString();
    channel.label = property.getLabel().toStdString();
    channel.value = property.getDoubleDefaultValue();
    if (channel.type != "bool" && channel.type != "enum") {
        channel.min = property.getDoubleMin();
        channel.max = property.getDoubleMax();
    }
    channel.clamped = property.isClamped();
    channel.displayAsPercent = property.getDisplayAsPercent();
    channel.visible = !property.isHidden();
    channel.locked = property.isLocked();
    channel.autoFollow = property.canAutoFollow();
    if (const auto* const number = qobject_cast<const DzFloatProperty*>(&property))
        channel.stepSize = number->getSensitivity();
    if (const auto* const choice = qobject_cast<const DzEnumProperty*>(&property))
        for (int i = 0; i < choice->getNumItems(); ++i)
            channel.enumValues.push_back(choice->getItem(i).toStdString());
    return channel;
}

std::optional<dson::SceneChannel> DescribeChange(const DzNumericProperty& property, const std::string& id)
{
    dson::SceneChannel channel;
    channel.id = id;
    channel.type = ChannelTypeOf(property);
    const bool hasOwnValue = HasOwnValue(property);
    const bool hasChanged = HasChanged(property);
    if (!hasOwnValue && !hasChanged)
        return std::nullopt;
    if (hasOwnValue)
        channel.value = property.getDoubleRawValue();
    if (hasChanged) {
        channel.change.label = property.getLabel().toStdString();
        channel.change.min = property.getDoubleMin();
        channel.change.max = property.getDoubleMax();
        channel.change.clamped = property.isClamped();
        channel.change.visible = !property.isHidden();
        channel.change.locked = property.isLocked();
    }
    return channel;
}

dson::Node DescribeNode(const DzNode& node)
{
    dson::Node described;
    described.name = node.getName().toStdString();
    described.label = node.getLabel().toStdString();
    described.type = NodeType(node);
    described.dform = DFormPartOf(node);
    described.rotationOrder = node.getRotationOrder().toString().toStdString();
    described.inheritsScale = node.inheritsScale();
    described.centerPoint = RawVector(node, "center_point");
    described.endPoint = RawVector(node, "end_point");
    described.orientation = RawVector(node, "orientation");
    described.translation = VectorChannels(node, "translation");
    described.rotation = VectorChannels(node, "rotation");
    described.scale = VectorChannels(node, "scale");
    described.generalScale = DescribeChannel(GeneralScale(node), "general_scale");
    if (const DzPresentation* const presentation = node.getPresentation())
        described.presentationType = presentation->getType().toStdString();
    return described;
}

bool IsOwnChannel(const DzNode& node, const DzNumericProperty& property)
{
    // What a class brings along is made for neither users nor files.
    return property.getOwner() == &node && !property.isUserProperty();
}

void DescribeInstanceChannels(const DzNode& node, dson::SceneNode& instance)
{
    instance.translation = VectorChanges(node, "translation");
    instance.rotation = VectorChanges(node, "rotation");
    instance.scale = VectorChanges(node, "scale");
    instance.generalScale = DescribeChange(GeneralScale(node), "general_scale");
    const auto isTransform = [&node](const DzNumericProperty& property) {
        for (const char* const member : transformMembers)
            for (const char* const axis : axisIds)
                if (&property == &Transform(node, member, axis))
                    return true;
        return &property == &GeneralScale(node);
    };
    for (int i = 0; i < node.getNumProperties(); ++i) {
        const auto* const property = qobject_cast<const DzNumericProperty*>(node.getProperty(i));
        if (!property || !IsOwnChannel(node, *property) || isTransform(*property))
            continue;
        if (const auto change = DescribeChange(*property, property->getName().toStdString()))
            instance.properties.push_back(*change);
    }
}

} // namespace openhost
