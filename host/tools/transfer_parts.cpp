// The single things that a transfer carries over.
// SPDX-License-Identifier: MIT

#include "transfer_parts.h"

#include "base/errors.h"
#include "dzbone.h"
#include "dzbonebinding.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzselectionmap.h"
#include "dzskinbinding.h"
#include "dzweightmap.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "figure/skin_access.h"
#include "geometry/deltas.h"
#include "scene/node_transform.h"
#include "scene/node_walk.h"

#include <algorithm>
#include <map>
#include <numeric>

namespace openhost {

namespace {

using geometry::Vec3f;

/// Deltas turn and stretch with the place of their node but do not move with it.
std::vector<Vec3f> Turned(std::vector<Vec3f> deltas, const Eigen::Matrix3d& linear)
{
    if (linear != Eigen::Matrix3d::Identity())
        for (Vec3f& delta : deltas)
            delta = geometry::FromEigen(linear * geometry::ToEigen(delta));
    return deltas;
}

void CopyBones(const DzNode& from, DzNode& to, std::map<const DzNode*, DzBone*>& copies)
{
    WalkBelow(from, [&](const DzNode& node) {
        const auto* const bone = qobject_cast<const DzBone*>(&node);
        if (!bone)
            return Walk::Around;
        const auto above = copies.find(bone->getNodeParent());
        DzNode& parent = above == copies.end() ? to : *above->second;
        if (auto* const present = qobject_cast<DzBone*>(parent.findNodeChild(bone->getName()))) {
            copies[bone] = present;
            return Walk::On;
        }
        auto* const copy = new DzBone;
        copy->setName(bone->getName());
        copy->setLabel(bone->getLabel());
        copy->setOrigin(bone->getOrigin(true));
        copy->setEndPoint(bone->getEndPoint(true));
        copy->setOrientation(DzVec3(bone->getOrientXControl()->getDefaultValue(),
                                    bone->getOrientYControl()->getDefaultValue(),
                                    bone->getOrientZControl()->getDefaultValue()));
        copy->setRotationOrder(bone->getRotationOrder());
        copy->setInheritsScale(bone->inheritsScale());
        parent.addNodeChild(copy);
        copies[bone] = copy;
        return Walk::On;
    });
}

struct SparseWeights {
    std::vector<std::uint32_t> vertices;
    std::vector<float> weights;
};

SparseWeights Sparse(const std::vector<float>& dense)
{
    SparseWeights sparse;
    // Half a step of the 16 bits in which weights are kept.
    constexpr float smallest = 0.5f / 65535.0f;
    for (std::uint32_t v = 0; v < dense.size(); ++v) {
        if (dense[v] < smallest)
            continue;
        sparse.vertices.push_back(v);
        sparse.weights.push_back(std::min(dense[v], 1.0f));
    }
    return sparse;
}

std::vector<float> Dense(const DzWeightMap& map, std::size_t count)
{
    std::vector<float> weights(count);
    for (std::size_t v = 0; v < count; ++v)
        weights[v] = map.getFloatWeight(static_cast<int>(v));
    return weights;
}

void BindToOneBone(DzSkinBinding& binding, DzFigure& target)
{
    auto* const bone = new DzBone;
    bone->setName(QLatin1String("root"));
    bone->setLabel(QLatin1String("Root"));
    target.addNodeChild(bone);
    std::vector<std::uint32_t> all(static_cast<std::size_t>(binding.getTargetVertexCount()));
    std::iota(all.begin(), all.end(), 0u);
    SkinAccess::bind(binding, *bone, all, std::vector<float>(all.size(), 1.0f));
}

void BindLikeSource(DzSkinBinding& binding, const geometry::SurfaceMap& map, const DzFigure& source,
                    DzFigure& target)
{
    std::map<const DzNode*, DzBone*> copies;
    CopyBones(source, target, copies);
    const DzSkinBinding& from = *source.getSkinBinding();
    binding.setGeneralMapMode(from.getGeneralMapMode());
    for (int i = 0; i < from.getNumBoneBindings(); ++i) {
        const DzBoneBinding& joint = *from.getBoneBinding(i);
        const auto copy = copies.find(joint.getBone());
        if (copy == copies.end() || !joint.getWeights())
            continue;
        const std::vector<float> weights = Dense(*joint.getWeights(), map.sourceVertexCount());
        const SparseWeights sparse = Sparse(map.transfer(weights));
        if (!sparse.vertices.empty())
            SkinAccess::bind(binding, *copy->second, sparse.vertices, sparse.weights);
    }
}

} // namespace

std::vector<Vec3f> BasePositionsInWorld(const DzNode& node)
{
    std::vector<Vec3f> positions = node.getObject()->pipeline().base().positions;
    const NodeTransform& place = WorldTransform(node);
    if (!place.isIdentity())
        for (Vec3f& position : positions)
            position = geometry::FromEigen(place.apply(geometry::ToEigen(position)));
    return positions;
}

void RequireInvertiblePlace(const DzNode& node)
{
    if (!WorldTransform(node).linear.inverse().allFinite())
        throw base::Error(node.getLabel().toStdString() + " is scaled to nothing");
}

void TransferMorphTo(const geometry::SurfaceMap& map, const DzMorph& morph, const DzNode& source,
                     DzFigure& target, bool overrideExisting)
{
    DzObject& object = *target.getObject();
    auto* present = qobject_cast<DzMorph*>(object.findModifier(morph.getName()));
    if (present && !overrideExisting)
        return;
    const std::vector<Vec3f> sourceDeltas =
        Turned(geometry::ToDense(DeltasAccess::deltas(*morph.getDeltas()), map.sourceVertexCount()),
               WorldTransform(source).linear);
    const Eigen::Matrix3d inverse = WorldTransform(target).linear.inverse();
    const std::vector<Vec3f> deltas = Turned(map.transfer(sourceDeltas), inverse);
    if (!present) {
        auto made = std::make_unique<DzMorph>();
        made->setName(morph.getName());
        made->setLabel(morph.getLabel());
        if (object.addModifier(made.get()) != DZ_NO_ERROR)
            return;
        present = made.release();
        DzFloatProperty& dial = *present->getValueControl();
        const DzFloatProperty& model = *morph.getValueControl();
        dial.setPath(model.getPath());
        dial.setRegion(model.getRegion());
        dial.setMinMax(model.getMin(), model.getMax());
        dial.setIsClamped(model.isClamped());
        dial.setDisplayAsPercent(model.getDisplayAsPercent());
    }
    present->setDeltas(
        DeltasAccess::create(geometry::MakeDeltas(deltas, 0.0f), static_cast<int>(map.targetVertexCount())));
}

void TransferBinding(const geometry::SurfaceMap& map, const DzNode& source, DzFigure& target)
{
    const auto* const figure = qobject_cast<const DzFigure*>(&source);
    const bool isSkinned = figure && figure->getSkinBinding();
    DzSkinBinding* const present = target.getSkinBinding();
    if (present && !isSkinned)
        return;
    if (present)
        target.getObject()->removeModifier(present);
    auto* const binding = new DzSkinBinding;
    binding->setName(QLatin1String("SkinBinding"));
    binding->setTargetVertexCount(static_cast<int>(map.targetVertexCount()));
    if (isSkinned)
        BindLikeSource(*binding, map, *figure, target);
    else
        BindToOneBone(*binding, target);
    target.getObject()->addModifier(binding);
}

void TransferGroups(const geometry::SurfaceMap& map, const DzNode& source, DzFigure& target, bool faceGroups,
                    bool surfaces)
{
    const geometry::Topology& from = *source.getObject()->pipeline().base().topology;
    auto* const shape = qobject_cast<DzFacetShape*>(target.getObject()->getCurrentShape());
    geometry::PolygonMesh mesh = MeshAccess::mesh(*shape->getFacetMesh());
    auto topology = std::make_shared<geometry::Topology>(*mesh.topology);
    if (faceGroups && !from.faceGroups.empty()) {
        topology->groupNames = from.groupNames;
        topology->faceGroups = geometry::TransferLabels(map, *topology, from.faceGroups);
    }
    if (surfaces && !from.faceSurfaces.empty()) {
        topology->surfaceNames = from.surfaceNames;
        topology->faceSurfaces = geometry::TransferLabels(map, *topology, from.faceSurfaces);
    }
    mesh.topology = std::move(topology);
    MeshAccess::assign(*shape->getFacetMesh(), std::move(mesh), 0);
}

void TransferSelectionMap(const DzNode& source, DzFigure& target)
{
    const DzSelectionMap* const from = source.getSelectionMap();
    if (!from)
        return;
    auto* const copy = new DzSelectionMap;
    for (int i = 0; i < from->getNumPairs(); ++i)
        copy->addPair(from->getPairGroup(i), from->getPairNodeName(i));
    target.setSelectionMap(copy);
}

} // namespace openhost
