// One figure or node of the scene as definitions.
// SPDX-License-Identifier: MIT

#include "unit_export.h"

#include "channel_export.h"
#include "dzbone.h"
#include "dzbonebinding.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzpresentation.h"
#include "dzselectionmap.h"
#include "dzskinbinding.h"
#include "dzweightmap.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "loading/kept_parts.h"
#include "openhost/diagnostics.h"

namespace openhost {

namespace {

DzFacetShape* ShapeOf(const SceneUnit& unit)
{
    const DzObject* const object = unit.root->getObject();
    auto* const shape = object ? qobject_cast<DzFacetShape*>(object->getCurrentShape()) : nullptr;
    return shape && shape->getFacetMesh() ? shape : nullptr;
}

/// Files have names for everything.
std::string NameOf(const QString& name, const char* fallback)
{
    return name.isEmpty() ? fallback : name.toStdString();
}

std::string NodeName(const DzNode& node)
{
    return NameOf(node.getName(), "node");
}

std::string DialName(const UnitDial& dial)
{
    return NameOf(dial.morph ? dial.morph->getName() : dial.property->getName(), "dial");
}

std::string GeometryId(const SceneUnit& unit)
{
    return NodeName(*unit.root) + "-1";
}

const char* EdgeInterpolation(const DzFacetMesh& mesh)
{
    switch (mesh.getSubDEdgeInterpolation()) {
    case DzFacetMesh::SharpEdges:
        return "edges_only";
    case DzFacetMesh::SharpCornersEdges:
        return "edges_and_corners";
    default:
        return "no_interpolation";
    }
}

/// A mesh as files have it, with the texture coordinates of its corners.
struct FileMesh {
    std::shared_ptr<const geometry::Topology> topology;
    geometry::TexCoords texCoords;
};

/// @param corners  places in the source's list of corners
void AddFace(geometry::Topology& target, std::vector<std::uint32_t>& uvs, const FileMesh& source,
             std::size_t face, const std::vector<std::uint32_t>& corners)
{
    std::vector<std::uint32_t> vertices;
    for (const std::uint32_t corner : corners) {
        vertices.push_back(source.topology->cornerVertices[corner]);
        if (!source.texCoords.cornerIndices.empty())
            uvs.push_back(source.texCoords.cornerIndices[corner]);
    }
    target.addFace(vertices);
    if (!source.topology->faceGroups.empty())
        target.faceGroups.push_back(source.topology->faceGroups[face]);
    if (!source.topology->faceSurfaces.empty())
        target.faceSurfaces.push_back(source.topology->faceSurfaces[face]);
}

/// Files know faces of three and four corners.
FileMesh WithSmallFaces(FileMesh mesh)
{
    const geometry::Topology& topology = *mesh.topology;
    std::size_t largest = 0;
    for (std::size_t f = 0; f < topology.faceCount(); ++f)
        largest = std::max(largest, topology.face(f).size());
    if (largest <= 4)
        return mesh;
    auto cut = std::make_shared<geometry::Topology>();
    cut->vertexCount = topology.vertexCount;
    cut->groupNames = topology.groupNames;
    cut->surfaceNames = topology.surfaceNames;
    std::vector<std::uint32_t> uvs;
    for (std::size_t f = 0; f < topology.faceCount(); ++f) {
        const std::uint32_t first = topology.faceOffsets[f], end = topology.faceOffsets[f + 1];
        if (end - first == 4)
            AddFace(*cut, uvs, mesh, f, {first, first + 1, first + 2, first + 3});
        else
            for (std::uint32_t c = first + 1; c + 1 < end; ++c)
                AddFace(*cut, uvs, mesh, f, {first, c, c + 1});
    }
    return {std::move(cut), {std::move(mesh.texCoords.coordinates), std::move(uvs)}};
}

dson::WeightMap DescribeMap(const DzWeightMap& map)
{
    dson::WeightMap described;
    for (int v = 0; v < map.getNumWeights(); ++v) {
        if (map.getWeight(v) == 0)
            continue;
        described.vertices.push_back(static_cast<std::uint32_t>(v));
        described.weights.push_back(map.getFloatWeight(v));
    }
    return described;
}

/// Until somebody changes one of them.
bool IsMeanOfAxes(const dson::JointBinding& joint)
{
    const dson::WeightMap mean = joint.axes ? dson::MeanOfAxes(*joint.axes) : dson::WeightMap();
    return mean.vertices == joint.vertices && mean.weights == joint.weights;
}

dson::JointBinding DescribeJoint(const DzBoneBinding& binding, const std::string& id)
{
    dson::WeightMap turns = DescribeMap(*binding.getWeights());
    dson::JointBinding joint;
    joint.node = id;
    joint.vertices = std::move(turns.vertices);
    joint.weights = std::move(turns.weights);
    if (binding.getScaleWeights())
        joint.scale = DescribeMap(*binding.getScaleWeights());
    for (int axis = 0; axis < 3; ++axis) {
        const DzWeightMap* const map = binding.getAxisWeights(axis);
        if (map && !joint.axes)
            joint.axes.emplace();
        if (map)
            (*joint.axes)[static_cast<std::size_t>(axis)] = DescribeMap(*map);
    }
    if (const KeptJoint* const kept = KeptOfJoint(binding)) {
        joint.isMeanOfAxes = kept->hadNoWeights && IsMeanOfAxes(joint);
        joint.kept = kept->members;
    }
    return joint;
}

void DescribeModes(const DzSkinBinding& binding, dson::SkinBinding& skin)
{
    if (const dson::SkinBinding::Normalizing* const kept = KeptOfSkin(binding))
        skin.normalizing = *kept;
    skin.dualQuaternion = binding.getGeneralMapMode() == DzSkinBinding::DualQuat;
    if (binding.getScaleMode() == DzSkinBinding::ScaleMaps)
        skin.scaling = dson::SkinBinding::Scaling::ByScaleMaps;
    const DzWeightMap* const shares = binding.getBlendMap();
    const bool isBlended = shares && binding.getBindingMode() == DzSkinBinding::Blended;
    const bool mixesAxes = isBlended && binding.getBlendMode() == DzSkinBinding::BlendLocalGeneral;
    if (mixesAxes)
        skin.generalShares = DescribeMap(*shares);
    else if (isBlended)
        skin.dualQuaternionShares = DescribeMap(*shares);
    if (mixesAxes)
        skin.turning = dson::SkinBinding::Turning::Mixed;
    else if (binding.getBindingMode() == DzSkinBinding::Local)
        skin.turning = dson::SkinBinding::Turning::ByAxis;
}

std::string PresentationType(const DzPresentation* presentation)
{
    return presentation ? presentation->getType().toStdString() : std::string("Modifier/Shape");
}

} // namespace

std::string FileIds::take(const std::string& text)
{
    const std::string wanted = text.empty() ? "part" : text;
    const auto expected = _expected.find(wanted);
    const bool isRepeated = expected != _expected.end() && expected->second > 1;
    if (!isRepeated && _taken.insert(wanted).second)
        return wanted;
    // Ids are never given back, so what was passed over once need not be tried again.
    for (int& n = _numbers[wanted];;) {
        const std::string id = wanted + "-" + std::to_string(++n);
        if (_expected.count(id) == 0 && _taken.insert(id).second)
            return id;
    }
}

void ExpectUnitIds(FileIds& ids, const SceneUnit& unit)
{
    for (const UnitDial& dial : unit.dials)
        if (dial.uri.empty())
            ids.expect(DialName(dial));
    if (!unit.isDescribedWhole())
        return;
    for (const DzNode* const node : unit.nodes)
        ids.expect(NodeName(*node));
    if (ShapeOf(unit))
        ids.expect(GeometryId(unit));
    if (SkinOf(unit))
        ids.expect(NameOf(SkinOf(unit)->getName(), "SkinBinding"));
}

UnitIds TakeUnitIds(FileIds& ids, const SceneUnit& unit)
{
    UnitIds taken;
    if (unit.isDescribedWhole()) {
        for (const DzNode* const node : unit.nodes)
            taken.nodes[node] = ids.take(NodeName(*node));
        if (ShapeOf(unit))
            taken.geometry = ids.take(GeometryId(unit));
        if (SkinOf(unit))
            taken.skin = ids.take(NameOf(SkinOf(unit)->getName(), "SkinBinding"));
    }
    for (const UnitDial& dial : unit.dials)
        if (dial.uri.empty())
            taken.dials[dial.property] = ids.take(DialName(dial));
    return taken;
}

std::optional<dson::Geometry> DescribeGeometry(const SceneUnit& unit, const std::string& id)
{
    const DzFacetShape* const shape = ShapeOf(unit);
    if (!shape)
        return std::nullopt;
    const DzFacetMesh& mesh = *shape->getFacetMesh();
    dson::Geometry described;
    described.id = id;
    described.name = NameOf(shape->getName(), id.c_str());
    described.label = shape->getLabel().toStdString();
    described.subdivisionSurface = shape->getSubDLevelControl() != nullptr;
    described.edgeInterpolation = EdgeInterpolation(mesh);
    if (const DzIntProperty* const level = shape->getSubDLevelControl())
        described.subdivisionLevel = static_cast<int>(level->getDoubleDefaultValue());
    described.mesh = MeshAccess::mesh(mesh);
    const MeshExtras* const extras = MeshAccess::extras(mesh);
    FileMesh inFile =
        WithSmallFaces({described.mesh.topology, extras ? extras->texCoords : geometry::TexCoords()});
    described.mesh.topology = std::move(inFile.topology);
    described.texCoords = std::move(inFile.texCoords);
    if (!described.texCoords.cornerIndices.empty())
        described.defaultUvSet = "#" + dson::EncodeFragment(id + "-UVs");
    if (extras) {
        described.lines = extras->lines;
        described.creases = extras->creases;
        described.graft = extras->graft;
    }
    return described;
}

const DzSkinBinding* SkinOf(const SceneUnit& unit)
{
    const DzObject* const object = unit.root->getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        if (const auto* const binding = qobject_cast<const DzSkinBinding*>(object->getModifier(i)))
            return ShapeOf(unit) ? binding : nullptr;
    return nullptr;
}

dson::SkinDefinition DescribeSkin(const SceneUnit& unit, const UnitIds& ids)
{
    const DzSkinBinding& binding = *SkinOf(unit);
    dson::SkinDefinition skin;
    skin.node = ids.nodes.at(unit.root);
    skin.geometry = ids.geometry;
    skin.binding.id = ids.skin;
    skin.binding.vertexCount = static_cast<std::uint32_t>(ShapeOf(unit)->getFacetMesh()->getNumVertices());
    DescribeModes(binding, skin.binding);
    for (int i = 0; i < binding.getNumBoneBindings(); ++i) {
        const DzBoneBinding& joint = *binding.getBoneBinding(i);
        const auto bone = ids.nodes.find(joint.getBone());
        if (bone != ids.nodes.end() && joint.getWeights())
            skin.binding.joints.push_back(DescribeJoint(joint, bone->second));
    }
    const DzSelectionMap* const map = unit.root->getSelectionMap();
    for (int i = 0; map && i < map->getNumPairs(); ++i)
        for (const auto& bone : ids.nodes)
            if (bone.first->getName() == map->getPairNodeName(i))
                skin.selectionMap.emplace_back(map->getPairGroup(i).toStdString(), bone.second);
    return skin;
}

std::vector<dson::Node> DescribeUnitNodes(const SceneUnit& unit, const UnitIds& ids)
{
    std::vector<dson::Node> nodes;
    for (const DzNode* const node : unit.nodes) {
        dson::Node described = DescribeNode(*node);
        described.id = ids.nodes.at(node);
        if (node != unit.root)
            described.parent = ids.nodes.at(node->getNodeParent());
        nodes.push_back(std::move(described));
    }
    return nodes;
}

dson::Modifier DescribeDial(const UnitDial& dial, const std::string& id, const std::string& parent,
                            const SceneUnit& unit)
{
    dson::Modifier modifier;
    modifier.id = id;
    modifier.name = DialName(dial);
    modifier.parent = parent;
    modifier.channel = DescribeChannel(*dial.property, "value");
    modifier.region = dial.property->getRegion().toStdString();
    const std::string group = dial.property->getPath().toStdString();
    modifier.group = group.empty() ? "/" : group;
    if (!dial.morph) {
        modifier.presentationType = PresentationType(dial.property->getPresentation());
        return modifier;
    }
    modifier.presentationType = PresentationType(dial.morph->getPresentation());
    modifier.morph.emplace();
    modifier.morph->deltas = DeltasAccess::deltas(*dial.morph->getDeltas());
    // Its file would need a place in a content library, which a scene need not have.
    if (!DeltasAccess::detail(*dial.morph->getDeltas()).empty())
        Report({base::Severity::Warning,
                {},
                dial.morph->getName().toStdString(),
                "the detail for subdivided meshes is not saved with the scene; save it as a morph asset"});
    modifier.morph->vertexCount = ShapeOf(unit) ? ShapeOf(unit)->getFacetMesh()->getNumVertices() : -1;
    return modifier;
}

} // namespace openhost
