// Nodes and objects of the host from the definitions of a file.
// SPDX-License-Identifier: MIT

#include "definition_nodes.h"

#include "app/texts.h"
#include "dzbasiccamera.h"
#include "dzbone.h"
#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformzone.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzintproperty.h"
#include "dzobject.h"
#include "dzpresentation.h"
#include "figure/mesh_access.h"
#include "geometry/deform_field.h"
#include "library/asset_origin.h"
#include "loading/channel_properties.h"

namespace openhost {

namespace {

DzVec3 ToVector(const std::array<double, 3>& values)
{
    return DzVec3(static_cast<float>(values[0]), static_cast<float>(values[1]),
                  static_cast<float>(values[2]));
}

std::unique_ptr<DzNode> MakePart(const dson::DFormPart& part)
{
    if (part.role == dson::DFormPart::Role::Former)
        return std::make_unique<DzDForm>();
    if (part.role == dson::DFormPart::Role::Base)
        return std::make_unique<DzDFormBase>();
    auto zone = std::make_unique<DzDFormZone>();
    // Without influence weights the field counts anyway.
    zone->setInfluenceMode(part.usesWeights.value_or(true) ? DzDFormZone::WeightMap : DzDFormZone::Sphere);
    std::vector<geometry::Falloff::Knot> knots;
    for (const auto& knot : part.falloff)
        knots.push_back({knot[0], knot[1]});
    zone->setFalloff(geometry::Falloff(std::move(knots)));
    return zone;
}

std::unique_ptr<DzNode> MakeNodeOfType(const std::string& type)
{
    if (type == "figure" || type == "legacy_figure")
        return std::make_unique<DzFigure>();
    if (type == "bone")
        return std::make_unique<DzBone>();
    if (type == "camera")
        return std::make_unique<DzBasicCamera>();
    return std::make_unique<DzNode>();
}

void ApplyVector(const DzNode& node, const char* member, const std::array<dson::Channel, 3>& channels)
{
    static const char* const axes[3] = {"/x", "/y", "/z"};
    for (std::size_t axis = 0; axis < 3; ++axis)
        if (DzNumericProperty* const property = FindNodeChannel(node, std::string(member) + axes[axis]))
            ApplyChannel(*property, channels[axis]);
}

} // namespace

void SetEdgeInterpolation(DzFacetMesh& mesh, const std::string& name)
{
    mesh.setSubDEdgeInterpolation(name == "edges_only"          ? DzFacetMesh::SharpEdges
                                  : name == "edges_and_corners" ? DzFacetMesh::SharpCornersEdges
                                                                : DzFacetMesh::SoftCornersEdges);
}

void SetTransformsAsDefined(const DzNode& node)
{
    for (const char* const member : {"translation", "rotation", "scale"})
        for (const char* const axis : {"/x", "/y", "/z"})
            SetAsDefined(*FindNodeChannel(node, std::string(member) + axis));
    SetAsDefined(*FindNodeChannel(node, "general_scale"));
}

std::unique_ptr<DzPresentation> MakePresentation(const std::string& type)
{
    if (type.empty())
        return nullptr;
    auto presentation = std::make_unique<DzPresentation>();
    presentation->setType(ToQ(type));
    return presentation;
}

std::unique_ptr<DzNode> MakeNode(const dson::Node& definition)
{
    std::unique_ptr<DzNode> node =
        definition.dform ? MakePart(*definition.dform) : MakeNodeOfType(definition.type);
    node->setName(ToQ(definition.name));
    node->setLabel(ToQ(definition.label));
    DzRotationOrder order;
    order.fromString(ToQ(definition.rotationOrder)); // a file's reader takes over none but those there are
    node->setRotationOrder(order);
    node->setInheritsScale(definition.inheritsScale);
    node->setOrigin(ToVector(definition.centerPoint));
    node->setEndPoint(ToVector(definition.endPoint));
    node->setOrientation(ToVector(definition.orientation));
    ApplyVector(*node, "translation", definition.translation);
    ApplyVector(*node, "rotation", definition.rotation);
    ApplyVector(*node, "scale", definition.scale);
    if (DzNumericProperty* const scale = FindNodeChannel(*node, "general_scale"))
        scale->setDoubleValue(definition.generalScale.value);
    node->setPresentation(MakePresentation(definition.presentationType).release());
    return node;
}

std::unique_ptr<DzObject> MakeObject(const dson::Geometry& geometry)
{
    const DzFacetMeshPtr mesh(MeshAccess::create(geometry.mesh));
    mesh->setName(ToQ(geometry.name));
    mesh->enableSubDivision(geometry.subdivisionSurface);
    SetEdgeInterpolation(*mesh, geometry.edgeInterpolation);
    const MeshExtras extras{geometry.texCoords, geometry.lines, geometry.creases, geometry.graft,
                            geometry.leftOutFaces};
    if (!extras.texCoords.cornerIndices.empty() || !extras.lines.empty() || !extras.creases.empty() ||
        !extras.graft.empty() || !extras.leftOutFaces.empty())
        MeshAccess::setExtras(*mesh, std::make_shared<MeshExtras>(extras));
    auto shape = std::make_unique<DzFacetShape>();
    shape->setName(ToQ(geometry.name));
    shape->setLabel(ToQ(geometry.label));
    shape->setFacetMesh(mesh);
    if (DzIntProperty* const level = shape->getSubDLevelControl()) {
        level->setDefaultValue(geometry.subdivisionLevel);
        level->setValue(geometry.subdivisionLevel);
    }
    auto object = std::make_unique<DzObject>();
    object->setName(ToQ(geometry.name));
    object->addShape(shape.release());
    return object;
}

} // namespace openhost
