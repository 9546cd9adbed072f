// The host's objects, shapes and properties, and the resolution of figures.
// SPDX-License-Identifier: MIT

#include "ks_daz-helpers.h"

#include "ks_exception.h"
#include "ks_string.h"

#include <QMetaObject>

#include <dzbone.h>
#include <dzboolproperty.h>
#include <dzenumproperty.h>
#include <dzfloatproperty.h>
#include <dzintproperty.h>
#include <dzmodifier.h>
#include <dznode.h>
#include <dzobject.h>
#include <dzshape.h>
#include <dzskeleton.h>

namespace kst {
namespace daz {

namespace {

DzProperty* FindInModifiers(const DzNode& node, const QString& name, bool throwIfMissing)
{
    DzObject* const object = GetObject(node, throwIfMissing);
    if (!object)
        return nullptr;
    const DzModifier* const named = object->findModifier(name);
    if (named && named->getNumProperties() == 1)
        return named->getProperty(0);
    for (int i = 0; i < object->getNumModifiers(); ++i) {
        const DzModifier* const modifier = object->getModifier(i);
        if (DzProperty* const property = modifier ? modifier->findProperty(name) : nullptr)
            return property;
    }
    return nullptr;
}

DzProperty* FindInShape(const DzNode& node, const QString& name, bool throwIfMissing)
{
    const DzShape* const shape = GetCurrentShape(node, throwIfMissing);
    return shape ? shape->findProperty(name) : nullptr;
}

DzProperty* FindAt(const DzNode& node, PropertyLocation location, const QString& name, bool throwIfMissing)
{
    switch (location) {
    case PropertyLocation::Node:
        return node.findProperty(name);
    case PropertyLocation::Modifiers:
        return FindInModifiers(node, name, throwIfMissing);
    case PropertyLocation::Shape:
        return FindInShape(node, name, throwIfMissing);
    case PropertyLocation::Any:
        for (const PropertyLocation place :
             {PropertyLocation::Node, PropertyLocation::Modifiers, PropertyLocation::Shape})
            if (DzProperty* const property = FindAt(node, place, name, false))
                return property;
        return nullptr;
    }
    return nullptr;
}

} // namespace

DzObject* GetObject(const DzNode& node, bool throwIfMissing)
{
    DzObject* const object = node.getObject();
    if (!object && throwIfMissing)
        throw Exception("node {} ({}) has no DzObject", str::Quote(node.getName()),
                        str::Quote(node.getLabel()));
    return object;
}

DzShape* GetCurrentShape(const DzNode& node, bool throwIfMissing)
{
    const DzObject* const object = GetObject(node, throwIfMissing);
    if (!object)
        return nullptr;
    DzShape* const shape = object->getCurrentShape();
    if (!shape && throwIfMissing)
        throw Exception("node {} has no DzShape", str::Quote(node.getLabel()));
    return shape;
}

DzProperty* FindProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                         bool throwIfMissing)
{
    DzProperty* const property = FindAt(node, location, str::ToQ(name), throwIfMissing);
    if (!property && throwIfMissing)
        throw Exception("node {} ({}) has no property named {}", str::Quote(node.getName()),
                        str::Quote(node.getLabel()), str::Quote(name));
    return property;
}

template <class T>
T* FindTypedProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                     bool throwIfMissing)
{
    DzProperty* const property = FindProperty(node, location, name, throwIfMissing);
    if (!property)
        return nullptr;
    T* const typed = qobject_cast<T*>(property);
    if (!typed && throwIfMissing)
        throw Exception("expected property {} in node {} ({}) to be a {} but it is {} instead",
                        str::Quote(name), str::Quote(node.getName()), str::Quote(node.getLabel()),
                        T::staticMetaObject.className(), property->metaObject()->className());
    return typed;
}

template DzIntProperty* FindTypedProperty(const DzNode&, PropertyLocation, std::string_view, bool);
template DzFloatProperty* FindTypedProperty(const DzNode&, PropertyLocation, std::string_view, bool);
template DzBoolProperty* FindTypedProperty(const DzNode&, PropertyLocation, std::string_view, bool);
template DzEnumProperty* FindTypedProperty(const DzNode&, PropertyLocation, std::string_view, bool);

DzIntProperty* FindIntProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                               bool throwIfMissing)
{
    return FindTypedProperty<DzIntProperty>(node, location, name, throwIfMissing);
}

DzFloatProperty* FindFloatProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                                   bool throwIfMissing)
{
    return FindTypedProperty<DzFloatProperty>(node, location, name, throwIfMissing);
}

DzBoolProperty* FindBoolProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                                 bool throwIfMissing)
{
    return FindTypedProperty<DzBoolProperty>(node, location, name, throwIfMissing);
}

DzEnumProperty* FindEnumProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                                 bool throwIfMissing)
{
    return FindTypedProperty<DzEnumProperty>(node, location, name, throwIfMissing);
}

DzFloatProperty* FindBoneProperty(const DzSkeleton& skeleton, std::string_view boneName,
                                  std::string_view propertyName, bool throwIfMissing)
{
    const DzBone* const bone = skeleton.findBone(str::ToQ(boneName));
    if (bone)
        return FindFloatProperty(*bone, PropertyLocation::Node, propertyName, throwIfMissing);
    if (throwIfMissing)
        throw Exception("cannot find bone {} in figure {}", str::Quote(boneName),
                        str::Quote(skeleton.getLabel()));
    return nullptr;
}

void SetBoneValueOrThrow(const DzSkeleton& skeleton, std::string_view boneName, std::string_view propertyName,
                         float value)
{
    FindBoneProperty(skeleton, boneName, propertyName, true)->setValue(value);
}

DzBoolProperty* FindEnableSmoothingProperty(const DzNode& node, bool throwIfMissing)
{
    return FindBoolProperty(node, PropertyLocation::Modifiers, "Enable Smoothing", throwIfMissing);
}

DzBoolProperty* FindSmoothingInteractiveUpdateProperty(const DzNode& node, bool throwIfMissing)
{
    return FindBoolProperty(node, PropertyLocation::Modifiers, "Interactive Update", throwIfMissing);
}

DzBoolProperty* FindGeneratePreRenderHairsProperty(const DzNode& node, bool throwIfMissing)
{
    return FindBoolProperty(node, PropertyLocation::Modifiers, "Generate PreRender Hairs", throwIfMissing);
}

DzBoolProperty* FindPreviewPreRenderHairsProperty(const DzNode& node, bool throwIfMissing)
{
    return FindBoolProperty(node, PropertyLocation::Modifiers, "Preview Pre Render Hairs", throwIfMissing);
}

DzIntProperty* FindRenderLineTessellationSidesProperty(const DzNode& node, bool throwIfMissing)
{
    return FindIntProperty(node, PropertyLocation::Modifiers, "Render Line Tessellation Sides",
                           throwIfMissing);
}

DzIntProperty* FindViewportLineTessellationSidesProperty(const DzNode& node, bool throwIfMissing)
{
    return FindIntProperty(node, PropertyLocation::Modifiers, "Viewport Line Tessellation Sides",
                           throwIfMissing);
}

DzBoolProperty* FindFreezeSimulationProperty(const DzNode& node, bool throwIfMissing)
{
    return FindBoolProperty(node, PropertyLocation::Modifiers, "Freeze Simulation", throwIfMissing);
}

DzProperty* FindVisibleInSimulationProperty(const DzNode& node)
{
    return FindProperty(node, PropertyLocation::Node, "Visible in Simulation", false);
}

DzEnumProperty* FindNodeResolutionEnumProperty(const DzNode& node, bool throwIfMissing)
{
    return FindEnumProperty(node, PropertyLocation::Shape, "lodlevel", throwIfMissing);
}

DzIntProperty* FindSubdivisionLevelIntProperty(const DzNode& node, bool throwIfMissing)
{
    return FindIntProperty(node, PropertyLocation::Shape, "SubDIALevel", throwIfMissing);
}

NodeResolution GetNodeResolution(const DzNode& node) noexcept
{
    const DzEnumProperty* const property = FindNodeResolutionEnumProperty(node, false);
    if (!property)
        return NodeResolution::Unknown;
    switch (property->getValue()) {
    case 0:
        return NodeResolution::BaseResolution;
    case 1:
        return NodeResolution::HighResolution;
    default:
        return NodeResolution::Unknown;
    }
}

bool SetNodeResolution(const DzNode& node, NodeResolution resolution, bool throwIfMissing)
{
    DzEnumProperty* const property = FindNodeResolutionEnumProperty(node, throwIfMissing);
    if (!property)
        return false;
    if (resolution != NodeResolution::BaseResolution && resolution != NodeResolution::HighResolution) {
        if (throwIfMissing)
            throw Exception("invalid enum value");
        return false;
    }
    property->setValue(resolution == NodeResolution::HighResolution ? 1 : 0);
    return true;
}

bool GetSubdivisionLevel(const DzNode& node, int* level) noexcept
{
    const DzIntProperty* const property = FindSubdivisionLevelIntProperty(node, false);
    if (!property)
        return false;
    *level = property->getValue();
    return true;
}

} // namespace daz
} // namespace kst
