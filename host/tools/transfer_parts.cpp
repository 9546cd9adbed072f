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
#include "geometry/skinning.h"
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
    std::vector<geometry::JointWeights> weights(static_cast<std::size_t>(from.getNumBoneBindings()));
    for (int i = 0; i < from.getNumBoneBindings(); ++i)
        if (const DzWeightMap* const own = from.getBoneBinding(i)->getWeights())
            SkinAccess::append(*own, weights[static_cast<std::size_t>(i)]);
    weights = map.transfer(weights);
    for (int i = 0; i < from.getNumBoneBindings(); ++i) {
        const auto copy = copies.find(from.getBoneBinding(i)->getBone());
        const geometry::JointWeights& own = weights[static_cast<std::size_t>(i)];
        // Half a step of the 16 bits in which weights are kept.
        const bool isFelt = std::any_of(own.weights.begin(), own.weights.end(),
                                        [](float weight) { return weight >= 0.5f / DZ_USHORT_MAX; });
        if (copy != copies.end() && isFelt)
            SkinAccess::bind(binding, *copy->second, own.vertices, own.weights);
    }
}

} // namespace

base::Span<const Vec3f> BasePositionsInWorld(const DzNode& node, std::vector<Vec3f>& moved)
{
    const std::vector<Vec3f>& positions = node.getObject()->pipeline().base().positions;
    const NodeTransform& place = WorldTransform(node);
    if (place.isIdentity())
        return positions;
    moved = positions;
    for (Vec3f& position : moved)
        position = geometry::FromEigen(place.apply(geometry::ToEigen(position)));
    return moved;
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
