// A figure's mesh and the skin that binds it to the bones.
// SPDX-License-Identifier: MIT

#include "figure_mesh.h"

#include "app/texts.h"
#include "base/counted.h"
#include "definition_nodes.h"
#include "dzbone.h"
#include "dzbonebinding.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzobject.h"
#include "dzselectionmap.h"
#include "dzskinbinding.h"
#include "dzweightmap.h"
#include "figure/mesh_access.h"
#include "figure/skin_access.h"
#include "library/asset_origin.h"
#include "load_report.h"
#include "loading/kept_parts.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

namespace openhost {

namespace {

bool HasGeometry(const dson::Document& definition, const std::string& id)
{
    return std::any_of(definition.geometries.begin(), definition.geometries.end(),
                       [&id](const dson::Geometry& geometry) { return geometry.id == id; });
}

/// What binds the root; where files do not say what a skin binds, the only one for the geometry does.
const dson::SkinDefinition* FindSkin(const dson::Document& definition, const std::string& rootId,
                                     const std::optional<std::string>& wanted)
{
    for (const dson::SkinDefinition& skin : definition.skins)
        if (skin.node == rootId || (!wanted && definition.skins.size() == 1))
            return &skin;
    for (const dson::SkinDefinition& skin : definition.skins)
        if (wanted && !wanted->empty() && skin.node.empty() && skin.geometry == *wanted)
            return &skin;
    return nullptr;
}

const dson::Geometry* FindGeometry(const dson::Document& definition, const dson::SkinDefinition* skin,
                                   const std::optional<std::string>& wanted)
{
    for (const dson::Geometry& geometry : definition.geometries)
        if (wanted ? geometry.id == *wanted : !skin || geometry.id == skin->geometry)
            return &geometry;
    const bool isOnly = !wanted && definition.geometries.size() == 1;
    return isOnly ? &definition.geometries.front() : nullptr;
}

/// What of a skin had to be guessed, or keeps it from being used.
/// @param isWanted  the geometry is known from elsewhere
void ReportGuesses(const FigureFile& file, const dson::SkinDefinition& skin, bool isWanted, bool hasMesh)
{
    const dson::SkinDefinition::Unread& told = skin.unread;
    if (skin.node.empty() && !told.node && !told.all)
        file.warn(fmt::format("the skin {} names no node; it binds the figure", skin.binding.id));
    if (isWanted || (hasMesh && (told.geometry || told.all)))
        return;
    const char* const outcome =
        hasMesh ? "the only one of the file is used" : "the figure is left without its mesh";
    if (skin.geometry.empty())
        file.warn(fmt::format("the skin {} names no geometry; {}", skin.binding.id, outcome));
    else if (!HasGeometry(*file.definition(), skin.geometry))
        file.warn(fmt::format("the skin {} names the geometry {}, which is not in the file; {}",
                              skin.binding.id, skin.geometry, outcome));
}

/// Skins that bind what another one binds already.
void ReportFurtherSkins(const FigureFile& file, const dson::SkinDefinition& used)
{
    std::vector<std::string> further;
    for (const dson::SkinDefinition& skin : file.definition()->skins)
        if (&skin != &used && !skin.node.empty() && skin.node == used.node)
            further.push_back(skin.binding.id);
    if (!further.empty())
        file.warn(base::Counted(further.size(), "skin binds what another one binds already and is left out",
                                "skins bind what another one binds already and are left out") +
                  Examples(further));
}

bool IsWithin(const std::vector<std::uint32_t>& vertices, std::size_t vertexCount)
{
    return std::all_of(vertices.begin(), vertices.end(),
                       [vertexCount](std::uint32_t vertex) { return vertex < vertexCount; });
}

/// @return how many there were beyond the mesh
std::size_t LeaveOutBeyond(std::vector<std::uint32_t>& vertices, std::vector<float>& weights,
                           std::size_t vertexCount)
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < vertices.size(); ++i)
        if (vertices[i] < vertexCount) {
            vertices[kept] = vertices[i];
            weights[kept++] = weights[i];
        }
    const std::size_t lost = vertices.size() - kept;
    vertices.resize(kept);
    weights.resize(kept);
    return lost;
}

bool IsWithin(const dson::JointBinding& joint, std::size_t vertexCount)
{
    return IsWithin(joint.vertices, vertexCount) && IsWithin(joint.scale.vertices, vertexCount) &&
           (!joint.axes ||
            std::all_of(joint.axes->begin(), joint.axes->end(), [vertexCount](const dson::WeightMap& axis) {
                return IsWithin(axis.vertices, vertexCount);
            }));
}

bool IsWithin(const dson::SkinBinding& skin, std::size_t vertexCount)
{
    const auto& shares = skin.dualQuaternionShares;
    return (!shares || IsWithin(shares->vertices, vertexCount)) &&
           IsWithin(skin.generalShares.vertices, vertexCount) &&
           std::all_of(
               skin.joints.begin(), skin.joints.end(),
               [vertexCount](const dson::JointBinding& joint) { return IsWithin(joint, vertexCount); });
}

/// What of the skin is for vertices of the mesh; the rest is told.
dson::SkinBinding Within(dson::SkinBinding skin, std::size_t vertexCount, const FigureFile& file)
{
    std::size_t lost = 0;
    for (dson::JointBinding& joint : skin.joints) {
        lost += LeaveOutBeyond(joint.vertices, joint.weights, vertexCount);
        lost += LeaveOutBeyond(joint.scale.vertices, joint.scale.weights, vertexCount);
        for (int axis = 0; joint.axes && axis < 3; ++axis) {
            dson::WeightMap& map = (*joint.axes)[static_cast<std::size_t>(axis)];
            lost += LeaveOutBeyond(map.vertices, map.weights, vertexCount);
        }
    }
    lost += LeaveOutBeyond(skin.generalShares.vertices, skin.generalShares.weights, vertexCount);
    if (auto& shares = skin.dualQuaternionShares)
        lost += LeaveOutBeyond(shares->vertices, shares->weights, vertexCount);
    file.warn(fmt::format("{} of vertices beyond the {} of the mesh and left out",
                          base::Counted(lost, "weight of the skin is", "weights of the skin are"),
                          vertexCount));
    return skin;
}

/// Joints that bind nothing, or one bone twice.
void ReportJoints(const FigureFile& file, const dson::SkinBinding& skin, const FigureNodes& nodes)
{
    std::vector<std::string> homeless, repeated;
    std::set<const DzNode*> met;
    bool bindsAny = false;
    for (const dson::JointBinding& joint : skin.joints) {
        const auto* const bone = qobject_cast<DzBone*>(nodes.find(joint.node));
        if (!bone)
            homeless.push_back(joint.node.empty() ? "one without a name" : joint.node);
        else if (!met.insert(bone).second)
            repeated.push_back(joint.node);
        bindsAny = bindsAny || (bone && !joint.vertices.empty());
    }
    if (!homeless.empty())
        file.warn(
            fmt::format("{} for no bone of the figure and left out{}",
                        base::Counted(homeless.size(), "joint of the skin is", "joints of the skin are"),
                        Examples(homeless)));
    if (!repeated.empty())
        file.warn(
            fmt::format("{} for a bone that has one, and both count{}",
                        base::Counted(repeated.size(), "joint of the skin is", "joints of the skin are"),
                        Examples(repeated)));
    if (!bindsAny)
        file.warn(fmt::format("the skin {} binds no vertex to any bone", skin.id));
}

/// As the file says; bones that it does not mention are selected by the face groups of their names.
std::unique_ptr<DzSelectionMap> MakeSelectionMap(const dson::SkinDefinition& skin, const FigureNodes& nodes)
{
    auto map = std::make_unique<DzSelectionMap>();
    std::set<const DzNode*> selected;
    for (const auto& pair : skin.selectionMap) {
        const DzNode* const target = nodes.find(pair.second);
        if (!target)
            continue;
        map->addPair(ToQ(pair.first), target->getName());
        selected.insert(target);
    }
    for (const dson::JointBinding& joint : skin.binding.joints) {
        const auto* const bone = qobject_cast<DzBone*>(nodes.find(joint.node));
        if (bone && !selected.count(bone) && map->findNodeName(bone->getName()).isEmpty())
            map->addPair(bone->getName(), bone->getName());
    }
    return map;
}

DzWeightMapPtr BlendMap(const dson::WeightMap& shares, std::size_t vertexCount)
{
    DzWeightMapPtr map(new DzWeightMap(static_cast<int>(vertexCount), QStringLiteral("Blend Weights")));
    for (std::size_t i = 0; i < shares.vertices.size(); ++i)
        map->setFloatWeight(static_cast<int>(shares.vertices[i]), shares.weights[i]);
    return map;
}

std::unique_ptr<DzSkinBinding> MakeBinding(const dson::SkinBinding& skin, std::size_t vertexCount,
                                           const FigureNodes& nodes)
{
    auto binding = std::make_unique<DzSkinBinding>();
    binding->setName(ToQ(skin.id));
    binding->setTargetVertexCount(static_cast<int>(vertexCount));
    binding->setGeneralMapMode(skin.dualQuaternion ? DzSkinBinding::DualQuat : DzSkinBinding::Linear);
    for (const dson::JointBinding& joint : skin.joints) {
        auto* const bone = qobject_cast<DzBone*>(nodes.find(joint.node));
        if (!bone)
            continue;
        DzBoneBinding& bound = SkinAccess::bind(*binding, *bone, joint.vertices, joint.weights);
        if (joint.isMeanOfAxes || !joint.kept.empty())
            Keep(bound, {joint.isMeanOfAxes, joint.kept});
        if (!joint.scale.vertices.empty())
            SkinAccess::bindScale(*binding, bound, joint.scale.vertices, joint.scale.weights);
        for (int axis = 0; joint.axes && axis < 3; ++axis) {
            const dson::WeightMap& map = (*joint.axes)[static_cast<std::size_t>(axis)];
            SkinAccess::bindAxis(*binding, bound, axis, map.vertices, map.weights);
        }
    }
    Keep(*binding, skin.normalizing);
    binding->setScaleMode(skin.scaling == dson::SkinBinding::Scaling::ByScaleMaps
                              ? DzSkinBinding::ScaleMaps
                              : DzSkinBinding::BindingMaps);
    if (skin.turning == dson::SkinBinding::Turning::ByAxis) {
        binding->setBindingMode(DzSkinBinding::Local);
    } else if (skin.turning == dson::SkinBinding::Turning::Mixed) {
        binding->setBindingMode(DzSkinBinding::Blended);
        binding->setBlendMode(DzSkinBinding::BlendLocalGeneral);
        binding->setBlendMap(BlendMap(skin.generalShares, vertexCount));
    } else if (skin.dualQuaternionShares) {
        binding->setBindingMode(DzSkinBinding::Blended);
        binding->setBlendMode(DzSkinBinding::BlendLinearDualQuat);
        binding->setBlendMap(BlendMap(*skin.dualQuaternionShares, vertexCount));
    }
    return binding;
}

const DzFacetMesh* MeshOf(const DzNode& node)
{
    const DzObject* const object = node.getObject();
    const auto* const shape = object ? qobject_cast<DzFacetShape*>(object->getCurrentShape()) : nullptr;
    return shape ? shape->getFacetMesh() : nullptr;
}

} // namespace

FigureMesh::FigureMesh(const FigureFile& file, const FigureNodes& nodes,
                       const std::optional<std::string>& wanted)
    : _root(nodes.root())
{
    const dson::Document& definition = *file.definition();
    const dson::SkinDefinition* const skin = FindSkin(definition, nodes.rootId(), wanted);
    const dson::Geometry* const geometry = FindGeometry(definition, skin, wanted);
    if (skin) {
        ReportGuesses(file, *skin, wanted.has_value(), geometry != nullptr);
        ReportFurtherSkins(file, *skin);
    }
    if (!geometry)
        return;
    _geometryId = geometry->id;
    _root.setObject(MakeObject(*geometry).release());
    SetAssetUri(*_root.getObject(), AssetUri(file.path(), geometry->id));
    if (!skin)
        return;
    const std::size_t vertexCount = geometry->mesh.vertexCount();
    std::optional<dson::SkinBinding> shortened;
    if (!IsWithin(skin->binding, vertexCount))
        shortened = Within(skin->binding, vertexCount, file);
    const dson::SkinBinding& binding = shortened ? *shortened : skin->binding;
    if (!skin->unread.all)
        ReportJoints(file, binding, nodes);
    _root.setSelectionMap(MakeSelectionMap(*skin, nodes).release());
    _root.getObject()->addModifier(MakeBinding(binding, vertexCount, nodes).release());
}

std::shared_ptr<const geometry::Topology> FigureMesh::topology() const
{
    const DzFacetMesh* const mesh = MeshOf(_root);
    return mesh ? MeshAccess::mesh(*mesh).topology : nullptr;
}

int FigureMesh::vertexCount() const
{
    const DzFacetMesh* const mesh = MeshOf(_root);
    return mesh ? mesh->getNumVertices() : 0;
}

bool FigureMesh::fits(const dson::MorphData& morph) const
{
    return morph.vertexCount <= 0 || morph.vertexCount == vertexCount();
}

} // namespace openhost
