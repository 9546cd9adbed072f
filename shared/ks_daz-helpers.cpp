// The host's scene: selection, objects, properties, figures and OBJ files.
// SPDX-License-Identifier: MIT

#include "shared/ks_daz-helpers.h"

#include "shared/ks_daz-managers.h"
#include "shared/ks_exception.h"
#include "shared/ks_string.h"

#include <memory>

#include <QMetaObject>

#include <dzapp.h>
#include <dzbone.h>
#include <dzboolproperty.h>
#include <dzcontentmgr.h>
#include <dzenumproperty.h>
#include <dzexporter.h>
#include <dzfigure.h>
#include <dzfileiosettings.h>
#include <dzfloatproperty.h>
#include <dzimporter.h>
#include <dzintproperty.h>
#include <dzmodifier.h>
#include <dznode.h>
#include <dzobject.h>
#include <dzscene.h>
#include <dzshape.h>
#include <dzskeleton.h>
#include <dzuri.h>

namespace kst {
namespace daz {

namespace {

struct StockFigure {
    BaseFigure figure;
    const char* assetUri;
};

// The vendor folder is spelled both ways, as the figures themselves do; the comparison ignores case.
const StockFigure stockFigures[] = {
    {BaseFigure::Genesis3Female, "/data/DAZ%203D/Genesis%203/Female/Genesis3Female.dsf#Genesis3Female"},
    {BaseFigure::Genesis8Female, "/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#Genesis8Female"},
    {BaseFigure::Genesis8_1Female,
     "/data/Daz%203D/Genesis%208/Female%208_1/Genesis8_1Female.dsf#Genesis8_1Female"},
    {BaseFigure::Genesis3Male, "/data/DAZ%203D/Genesis%203/Male/Genesis3Male.dsf#Genesis3Male"},
    {BaseFigure::Genesis8Male, "/data/Daz%203D/Genesis%208/Male/Genesis8Male.dsf#Genesis8Male"},
    {BaseFigure::Genesis8_1Male, "/data/Daz%203D/Genesis%208/Male%208_1/Genesis8_1Male.dsf#Genesis8_1Male"},
    {BaseFigure::Genesis9, "/data/DAZ%203D/Genesis%209/Base/Genesis9.dsf#Genesis9"},
};

DzProperty* FindInModifiers(const DzNode& node, const QString& name, bool throwIfMissing)
{
    DzObject* const object = GetObject(node, throwIfMissing);
    if (!object)
        return nullptr;
    const DzModifier* const named = object->findModifier(name);
    if (named && named->getNumProperties() == 1)
        return named->getProperty(0);
    for (int i = 0; i < object->getNumModifiers(); ++i)
        if (DzProperty* const property = object->getModifier(i)->findProperty(name))
            return property;
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

} // namespace

std::vector<DzNode*> GetSceneSelection()
{
    std::vector<DzNode*> nodes;
    DzNodeListIterator iterator = dzScene->selectedNodeListIterator();
    while (iterator.hasNext())
        nodes.push_back(iterator.next());
    return nodes;
}

DzNode* GetPrimarySceneSelection(bool throwIfMissing)
{
    DzNode* const node = dzScene->getPrimarySelection();
    if (!node && throwIfMissing)
        throw Exception("nothing selected in scene");
    return node;
}

DzNode* ResolveBone(DzNode* node)
{
    const DzBone* const bone = qobject_cast<DzBone*>(node);
    return bone ? bone->getSkeleton() : node;
}

DzNode* ResolveSceneSelection()
{
    return ResolveBone(GetPrimarySceneSelection(false));
}

bool SetSceneSelection(DzNode& node)
{
    if (dzScene->getNumSelectedNodes() == 1 && dzScene->getSelectedNode(0) == &node)
        return false;
    dzScene->selectAllNodes(false);
    dzScene->setPrimarySelection(&node);
    return true;
}

DzFigure& ResolveToFigure_X(DzNode& node)
{
    DzFigure* const figure = qobject_cast<DzFigure*>(&node);
    if (!figure)
        throw Exception("node {} is not a DzFigure", str::Quote(node.getLabel()));
    return *figure;
}

std::string GetNodeAssetUri(const DzNode& node)
{
    return str::ToStd(node.getAssetUri().toString());
}

BaseFigure GetBaseFigure(std::string_view assetUri)
{
    for (const StockFigure& stock : stockFigures)
        if (str::EqualsCaseInsensitive(assetUri, stock.assetUri))
            return stock.figure;
    return BaseFigure::None;
}

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

void ExportOneObj_X(DzFileIOSettings& settings, std::string_view path)
{
    const std::unique_ptr<DzExporter> exporter(&GetObjExporter_X());
    settings.setIntValue(QLatin1String("RunSilent"), 1);
    const DzError result = exporter->writeFile(str::ToQ(path), &settings);
    if (result != DZ_NO_ERROR)
        throw Exception("failed to export OBJ {}: {}", str::Quote(path), str::ToStd(getErrorMessage(result)));
}

void ImportOneObj_X(DzFileIOSettings& settings, std::string_view path)
{
    const std::unique_ptr<DzImporter> importer(&GetObjImporter_X());
    settings.setIntValue(QLatin1String("RunSilent"), 1);
    const DzError result = importer->readFile(str::ToQ(path), &settings);
    if (result != DZ_NO_ERROR)
        throw Exception("failed to export import OBJ {}: {}", str::Quote(path),
                        str::ToStd(getErrorMessage(result)));
}

std::string GetAbsolutePath_X(std::string_view relativePath)
{
    return str::ToStd(GetAbsolutePathQ_X(str::ToQ(relativePath)));
}

QString GetAbsolutePathQ_X(const QString& relativePath)
{
    return GetContentMgr_X().getAbsolutePath(relativePath, true);
}

} // namespace daz
} // namespace kst
