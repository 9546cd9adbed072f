// A scene as text, to compare it before saving and after loading.
// SPDX-License-Identifier: MIT

#include "tests/host/scene_text.h"

#include "dzbone.h"
#include "dzbonebinding.h"
#include "dzerclink.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "dzskinbinding.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"

#include <fmt/format.h>

namespace {

std::string Text(const QString& text)
{
    return text.toStdString();
}

std::string PropertyText(const DzNumericProperty& property)
{
    std::string text = fmt::format(
        "    {} \"{}\" raw {} default {} min {} max {} {}{}{} path {} region {}\n", Text(property.getName()),
        Text(property.getLabel()), property.getDoubleRawValue(), property.getDoubleDefaultValue(),
        property.getDoubleMin(), property.getDoubleMax(), property.isClamped() ? "clamped " : "",
        property.isHidden() ? "hidden " : "", property.isLocked() ? "locked" : "", Text(property.getPath()),
        Text(property.getRegion()));
    for (int i = 0; i < property.getNumControllers(); ++i)
        if (const auto* const link = qobject_cast<const DzERCLink*>(property.getController(i)))
            text += fmt::format("      link {} {} {} from {}\n", link->getType(), link->getScalar(),
                                link->getAddend(), Text(link->getProperty()->getName()));
    return text;
}

std::string PropertiesText(const DzElement& element)
{
    std::string text;
    for (int i = 0; i < element.getNumProperties(); ++i)
        if (const auto* const property = qobject_cast<const DzNumericProperty*>(element.getProperty(i)))
            text += PropertyText(*property);
    for (int i = 0; i < element.getNumPrivateProperties(); ++i)
        if (const auto* const property =
                qobject_cast<const DzNumericProperty*>(element.getPrivateProperty(i)))
            text += PropertyText(*property);
    return text;
}

std::string ModifierText(const DzModifier& modifier)
{
    std::string text =
        fmt::format("  modifier {} {}\n", Text(modifier.className()), Text(modifier.getName()));
    text += PropertiesText(modifier);
    if (const auto* const morph = qobject_cast<const DzMorph*>(&modifier)) {
        const auto& deltas = openhost::DeltasAccess::deltas(*morph->getDeltas());
        for (std::size_t i = 0; i < deltas.size(); ++i)
            text += fmt::format("    {}: {} {} {}\n", deltas.vertices[i], deltas.deltas[i].x,
                                deltas.deltas[i].y, deltas.deltas[i].z);
    }
    if (const auto* const skin = qobject_cast<const DzSkinBinding*>(&modifier))
        for (int i = 0; i < skin->getNumBoneBindings(); ++i) {
            const DzBoneBinding& joint = *skin->getBoneBinding(i);
            text += "    joint " + Text(joint.getBone()->getName());
            for (int v = 0; v < joint.getWeights()->getNumWeights(); ++v)
                text += fmt::format(" {}", joint.getWeights()->getWeight(v));
            text += '\n';
        }
    return text;
}

std::string MeshText(const char* title, const DzVertexMesh& mesh)
{
    const geometry::PolygonMesh& polygons = openhost::MeshAccess::mesh(mesh);
    std::string text = fmt::format("  {} {} vertices {} faces", title, polygons.positions.size(),
                                   polygons.topology->faceCount());
    for (const auto& position : polygons.positions)
        text += fmt::format(" ({} {} {})", position.x, position.y, position.z);
    text += fmt::format(
        " corners {} groups {} {} surfaces {} {}\n", fmt::join(polygons.topology->cornerVertices, ","),
        fmt::join(polygons.topology->groupNames, ","), fmt::join(polygons.topology->faceGroups, ","),
        fmt::join(polygons.topology->surfaceNames, ","), fmt::join(polygons.topology->faceSurfaces, ","));
    return text;
}

std::string ObjectText(const DzObject& object)
{
    std::string text;
    for (int i = 0; i < object.getNumModifiers(); ++i)
        text += ModifierText(*object.getModifier(i));
    const auto* const shape = qobject_cast<const DzFacetShape*>(object.getCurrentShape());
    if (!shape)
        return text;
    text += "  shape " + Text(shape->getName()) + " " + Text(shape->getLabel()) + "\n" +
            PropertiesText(*shape) + MeshText("base", *shape->getFacetMesh());
    return text + MeshText("world", *object.getCachedGeom());
}

std::string NodeText(const DzNode& node)
{
    const DzNode* const parent = node.getNodeParent();
    const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node);
    const DzSkeleton* const target = skeleton ? skeleton->getFollowTarget() : nullptr;
    std::string text = fmt::format(
        "{} {} \"{}\" below {} follows {} uri {} order {} inherits {}\n", Text(node.className()),
        Text(node.getName()), Text(node.getLabel()), parent ? Text(parent->getLabel()) : "nothing",
        target ? Text(target->getLabel()) : "nothing", Text(node.getAssetUri().toString()),
        Text(node.getRotationOrder().toString()), node.inheritsScale());
    text += PropertiesText(node);
    return node.getObject() ? text + ObjectText(*node.getObject()) : text;
}

} // namespace

std::string TreeText(const DzNode& node)
{
    std::string text = NodeText(node);
    for (int i = 0; i < node.getNumNodeChildren(); ++i)
        text += TreeText(*node.getNodeChild(i));
    return text;
}

std::string SceneText()
{
    std::string text;
    for (int i = 0; i < dzScene->getNumNodes(); ++i)
        if (dzScene->getNode(i)->isRootNode())
            text += TreeText(*dzScene->getNode(i));
    return text;
}
