// Weight maps and skin bindings.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dzbone.h"
#include "dzbonebinding.h"
#include "dzobject.h"
#include "dzskeleton.h"
#include "dzskinbinding.h"
#include "dzweightmap.h"
#include "figure/pipeline.h"
#include "figure/skin_access.h"

#include <QHash>

#include <algorithm>
#include <cmath>

DzWeightMap::DzWeightMap(int numVertices, const QString& name)
    : _name(name), _weights(static_cast<std::size_t>(std::max(0, numVertices)))
{
}

DzWeightMap::~DzWeightMap() = default;

void DzWeightMap::setNumWeights(int count, bool keep)
{
    if (!keep)
        _weights.clear();
    _weights.resize(static_cast<std::size_t>(std::max(0, count)));
}

float DzWeightMap::getFloatWeight(int vertex) const
{
    return static_cast<float>(getWeight(vertex)) / static_cast<float>(DZ_USHORT_MAX);
}

void DzWeightMap::setFloatWeight(int vertex, float weight)
{
    const float held = std::isfinite(weight) ? std::min(1.0f, std::max(0.0f, weight)) : 0.0f;
    setWeight(vertex, static_cast<unsigned short>(std::lround(held * static_cast<float>(DZ_USHORT_MAX))));
}

unsigned short DzWeightMap::getWeight(int vertex) const
{
    return vertex >= 0 && vertex < getNumWeights() ? _weights[static_cast<std::size_t>(vertex)]
                                                   : static_cast<unsigned short>(0);
}

void DzWeightMap::setWeight(int vertex, unsigned short weight)
{
    if (vertex >= 0 && vertex < getNumWeights())
        _weights[static_cast<std::size_t>(vertex)] = weight;
}

DzWeightMap* DzWeightMap::makeCopy() const
{
    auto* const copy = new DzWeightMap(0, _name);
    copy->_weights = _weights;
    return copy;
}

void DzWeightMap::normalizeMaps(const QList<DzWeightMap*>& maps)
{
    int count = 0;
    for (const DzWeightMap* map : maps)
        count = std::max(count, map->getNumWeights());
    for (int vertex = 0; vertex < count; ++vertex) {
        double sum = 0.0;
        for (const DzWeightMap* map : maps)
            sum += map->getWeight(vertex);
        for (DzWeightMap* map : sum > 0.0 ? maps : QList<DzWeightMap*>())
            map->setWeight(vertex, static_cast<unsigned short>(
                                       std::lround(map->getWeight(vertex) / sum * DZ_USHORT_MAX)));
    }
}

DzBoneBinding::DzBoneBinding(DzBone* bone) : _bone(nullptr), _binding(nullptr)
{
    setBone(bone);
}
DzBoneBinding::~DzBoneBinding() = default;

void DzBoneBinding::setBone(DzBone* bone)
{
    if (bone == _bone)
        return;
    if (_bone)
        disconnect(_bone, SIGNAL(destroyed()), this, SLOT(handleBoneDestroyed()));
    _bone = bone;
    if (bone)
        connect(bone, SIGNAL(destroyed()), SLOT(handleBoneDestroyed()));
    if (_binding)
        _binding->invalidate();
}

void DzBoneBinding::setWeights(DzWeightMap* weights)
{
    _weights = weights;
    if (_binding)
        _binding->invalidate();
}

void DzBoneBinding::setScaleWeights(DzWeightMap* weights)
{
    _scaleWeights = weights;
    if (_binding)
        _binding->invalidate();
}

DzWeightMap* DzBoneBinding::getAxisWeights(int axis) const
{
    return axis >= 0 && axis < 3 ? static_cast<DzWeightMap*>(_axisWeights[axis]) : nullptr;
}

void DzBoneBinding::setAxisWeights(int axis, DzWeightMap* weights)
{
    if (axis < 0 || axis >= 3)
        return;
    _axisWeights[axis] = weights;
    if (_binding)
        _binding->invalidate();
}

void DzBoneBinding::handleBoneDestroyed()
{
    _bone = nullptr;
    if (_binding)
        _binding->invalidate();
}

struct DzSkinBinding::SkinImpl {
    std::vector<std::unique_ptr<DzBoneBinding>> bindings;
    int vertexCount = 0;
    BindingMode bindingMode = General;
    MapMode mapMode = DualQuat;
    ScaleMode scaleMode = BindingMaps;
    BlendMode blendMode = BlendLinearDualQuat;
    DzWeightMapPtr blendMap;

    geometry::SkinWeights weights, scaleWeights;
    geometry::AxisWeights axisWeights; ///< of no vertices where no bone has weights for each axis
    std::vector<float> shares;         ///< from the blend map: of dual quaternions, or of the general weights
    QList<DzBone*> bones;              ///< that the weights were made for
};

DzSkinBinding::DzSkinBinding() : _skin(new SkinImpl)
{
    setName(QStringLiteral("SkinBinding"));
}

DzSkinBinding::~DzSkinBinding()
{
    for (const auto& binding : _skin->bindings)
        binding->_binding = nullptr;
}

int DzSkinBinding::getNumBoneBindings() const
{
    return static_cast<int>(_skin->bindings.size());
}

DzBoneBinding* DzSkinBinding::getBoneBinding(int index) const
{
    return index >= 0 && index < getNumBoneBindings() ? _skin->bindings[static_cast<std::size_t>(index)].get()
                                                      : nullptr;
}

void DzSkinBinding::addBoneBinding(DzBoneBinding* binding)
{
    if (!binding || binding->_binding)
        return;
    binding->_binding = this;
    _skin->bindings.emplace_back(binding);
    invalidate();
}

int DzSkinBinding::getTargetVertexCount() const
{
    return _skin->vertexCount;
}
void DzSkinBinding::setTargetVertexCount(int count)
{
    _skin->vertexCount = count;
}
DzSkinBinding::BindingMode DzSkinBinding::getBindingMode() const
{
    return _skin->bindingMode;
}
void DzSkinBinding::setBindingMode(BindingMode mode)
{
    _skin->bindingMode = mode;
    invalidate();
}
DzSkinBinding::MapMode DzSkinBinding::getGeneralMapMode() const
{
    return _skin->mapMode;
}

void DzSkinBinding::setGeneralMapMode(MapMode mode)
{
    _skin->mapMode = mode;
    invalidate();
}

DzSkinBinding::ScaleMode DzSkinBinding::getScaleMode() const
{
    return _skin->scaleMode;
}
void DzSkinBinding::setScaleMode(ScaleMode mode)
{
    _skin->scaleMode = mode;
    invalidate();
}
DzSkinBinding::BlendMode DzSkinBinding::getBlendMode() const
{
    return _skin->blendMode;
}
void DzSkinBinding::setBlendMode(BlendMode mode)
{
    _skin->blendMode = mode;
    invalidate();
}
DzWeightMap* DzSkinBinding::getBlendMap() const
{
    return _skin->blendMap;
}
void DzSkinBinding::setBlendMap(DzWeightMap* map)
{
    _skin->blendMap = map;
    invalidate();
}

void DzSkinBinding::invalidate()
{
    _skin->weights = geometry::SkinWeights();
    _skin->bones.clear();
    if (getObject())
        getObject()->pipeline().jointsChanged();
}

namespace openhost {

namespace {

/// Weight maps by joint, on their way to weights by vertex.
class JointMaps {
public:
    JointMaps(std::size_t jointCount, std::size_t vertexCount)
        : _joints(jointCount), _vertexCount(vertexCount)
    {
    }

    void add(int joint, const DzWeightMap* map)
    {
        if (!map)
            return;
        const auto count = static_cast<std::size_t>(map->getNumWeights());
        if (count > _vertexCount)
            throw base::FormatError("weight map has {} weights for {} vertices", count, _vertexCount);
        geometry::JointWeights& weights = _joints[static_cast<std::size_t>(joint)];
        const unsigned short* const values = map->getWeightsPtr();
        for (std::size_t v = 0; v < count; ++v) {
            if (values[v] == 0)
                continue;
            weights.vertices.push_back(static_cast<std::uint32_t>(v));
            weights.weights.push_back(static_cast<float>(values[v]) / static_cast<float>(DZ_USHORT_MAX));
        }
    }

    geometry::SkinWeights weights() const { return geometry::MakeSkinWeights(_vertexCount, _joints); }

private:
    std::vector<geometry::JointWeights> _joints;
    std::size_t _vertexCount;
};

bool HasAxisWeights(const DzBoneBinding& binding)
{
    return binding.getAxisWeights(0) || binding.getAxisWeights(1) || binding.getAxisWeights(2);
}

} // namespace

void SkinAccess::update(const DzSkinBinding& binding, const DzSkeleton& skeleton, std::size_t vertexCount)
{
    DzSkinBinding::SkinImpl& skin = *binding._skin;
    const QList<DzBone*>& bones = skeleton.bones();
    if (skin.weights.vertexCount() == vertexCount && skin.bones == bones)
        return;
    QHash<const DzBone*, int> indices;
    for (int i = 0; i < bones.size(); ++i)
        indices.insert(bones.at(i), i);
    JointMaps turns(static_cast<std::size_t>(bones.size()), vertexCount), scales(turns), x(turns), y(turns),
        z(turns);
    JointMaps* const axes[] = {&x, &y, &z};
    bool hasAxes = false;
    for (const auto& boneBinding : skin.bindings) {
        const int joint = indices.value(boneBinding->getBone(), -1);
        if (joint < 0)
            continue;
        turns.add(joint, boneBinding->getWeights());
        scales.add(joint, boneBinding->getScaleWeights());
        const bool isPerAxis = HasAxisWeights(*boneBinding);
        hasAxes = hasAxes || isPerAxis;
        for (int axis = 0; axis < 3; ++axis)
            axes[axis]->add(joint, isPerAxis ? boneBinding->getAxisWeights(axis) : boneBinding->getWeights());
    }
    skin.weights = turns.weights();
    skin.scaleWeights = scales.weights();
    skin.axisWeights = geometry::AxisWeights();
    if (hasAxes)
        skin.axisWeights = {x.weights(), y.weights(), z.weights()};
    skin.shares.clear();
    if (const DzWeightMap* const map = skin.blendMap)
        for (std::size_t v = 0; v < vertexCount; ++v)
            skin.shares.push_back(map->getFloatWeight(static_cast<int>(v)));
    skin.bones = bones;
}

const geometry::SkinWeights& SkinAccess::weights(const DzSkinBinding& binding, const DzSkeleton& skeleton,
                                                 std::size_t vertexCount)
{
    update(binding, skeleton, vertexCount);
    return binding._skin->weights;
}

geometry::SkinBlend SkinAccess::blend(const DzSkinBinding& binding, const DzSkeleton& skeleton,
                                      std::size_t vertexCount)
{
    update(binding, skeleton, vertexCount);
    const DzSkinBinding::SkinImpl& skin = *binding._skin;
    geometry::SkinBlend blend(skin.mapMode == DzSkinBinding::Linear ? geometry::SkinMode::Linear
                                                                    : geometry::SkinMode::DualQuaternion);
    if (skin.bindingMode == DzSkinBinding::Blended && skin.blendMode == DzSkinBinding::BlendLinearDualQuat)
        blend.dualQuaternionShares = skin.shares;
    const bool mixesAxes =
        skin.bindingMode == DzSkinBinding::Blended && skin.blendMode == DzSkinBinding::BlendLocalGeneral;
    if ((skin.bindingMode == DzSkinBinding::Local || mixesAxes) &&
        skin.axisWeights.x.vertexCount() == vertexCount)
        blend.axisWeights = &skin.axisWeights;
    if (mixesAxes)
        blend.generalShares = skin.shares;
    if (skin.scaleMode == DzSkinBinding::ScaleMaps && !skin.scaleWeights.joints.empty())
        blend.scaleWeights = &skin.scaleWeights;
    return blend;
}

namespace {

DzWeightMapPtr MapOf(int vertexCount, const QString& name, const std::vector<std::uint32_t>& vertices,
                     const std::vector<float>& weights)
{
    DzWeightMapPtr map(new DzWeightMap(vertexCount, name));
    for (std::size_t i = 0; i < vertices.size() && i < weights.size(); ++i)
        map->setFloatWeight(static_cast<int>(vertices[i]), weights[i]);
    return map;
}

} // namespace

DzBoneBinding& SkinAccess::bind(DzSkinBinding& binding, DzBone& bone,
                                const std::vector<std::uint32_t>& vertices, const std::vector<float>& weights)
{
    auto* const boneBinding = new DzBoneBinding(&bone);
    boneBinding->setName(bone.getName());
    boneBinding->setWeights(MapOf(binding.getTargetVertexCount(), bone.getName(), vertices, weights));
    binding.addBoneBinding(boneBinding);
    return *boneBinding;
}

void SkinAccess::bindScale(DzSkinBinding& binding, DzBoneBinding& bone,
                           const std::vector<std::uint32_t>& vertices, const std::vector<float>& weights)
{
    bone.setScaleWeights(MapOf(binding.getTargetVertexCount(), bone.getName(), vertices, weights));
}

void SkinAccess::bindAxis(DzSkinBinding& binding, DzBoneBinding& bone, int axis,
                          const std::vector<std::uint32_t>& vertices, const std::vector<float>& weights)
{
    bone.setAxisWeights(axis, MapOf(binding.getTargetVertexCount(), bone.getName(), vertices, weights));
}

} // namespace openhost
