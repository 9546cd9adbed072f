// What an instance says of its node.
// SPDX-License-Identifier: MIT

#include "instance_values.h"

#include "app/texts.h"
#include "definition_nodes.h"
#include "dzfacetshape.h"
#include "dzintproperty.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "loading/channel_properties.h"

namespace openhost {

namespace {

void ApplyChannels(const dson::NodeInstance& instance, const DzNode& node, const ValueSetter& set)
{
    for (const auto& channel : instance.channels)
        if (DzNumericProperty* const property = FindNodeChannel(node, channel.first))
            set(*property, channel.second);
    for (const auto& change : instance.changes)
        if (DzNumericProperty* const property = FindNodeChannel(node, change.first))
            ApplyChange(*property, change.second);
    for (const auto& entry : instance.properties)
        if (auto* const property = qobject_cast<DzNumericProperty*>(node.findProperty(ToQ(entry.first))))
            set(*property, entry.second);
}

void ApplyGeometry(const dson::GeometryInstance& geometry, const DzNode& node)
{
    const DzObject* const object = node.getObject();
    const auto* const shape = object ? qobject_cast<DzFacetShape*>(object->getCurrentShape()) : nullptr;
    if (!shape)
        return;
    DzIntProperty* const level = shape->getSubDLevelControl();
    if (level && geometry.subdivisionLevel)
        level->setValue(*geometry.subdivisionLevel);
    if (!geometry.edgeInterpolation.empty())
        SetEdgeInterpolation(*shape->getFacetMesh(), geometry.edgeInterpolation);
    for (const auto& channel : geometry.channels)
        if (auto* const property = qobject_cast<DzNumericProperty*>(shape->findProperty(ToQ(channel.first))))
            property->setDoubleValue(channel.second);
}

} // namespace

void SetRawValue(DzNumericProperty& property, double value)
{
    property.setDoubleRawValue(value);
}

bool IsHeldByLimits(const DzNumericProperty& property)
{
    const double raw = property.getDoubleRawValue();
    return property.isClamped() && (raw < property.getDoubleMin() || raw > property.getDoubleMax());
}

std::vector<std::string> ApplyInstance(const dson::NodeInstance& instance, DzNode& node,
                                       const ValueSetter& set)
{
    const QString name = ToQ(instance.name);
    if (!name.isEmpty() && name != node.getName())
        node.setName(name);
    if (!instance.label.empty())
        node.setLabel(ToQ(instance.label));
    DzRotationOrder order;
    if (!instance.rotationOrder.empty() && order.fromString(ToQ(instance.rotationOrder)))
        node.setRotationOrder(order);
    if (instance.inheritsScale)
        node.setInheritsScale(*instance.inheritsScale);
    ApplyChannels(instance, node, set);
    if (!instance.geometries.empty())
        ApplyGeometry(instance.geometries.front(), node);
    std::vector<std::string> held;
    for (const auto& channel : instance.channels)
        if (const DzNumericProperty* const property = FindNodeChannel(node, channel.first))
            if (IsHeldByLimits(*property))
                held.push_back(property->getLabel().toStdString());
    return held;
}

} // namespace openhost
