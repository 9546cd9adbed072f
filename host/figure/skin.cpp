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

DzWeightMap::DzWeightMap(int numVertices, const QString& name) : _name(name), _numWeights(0)
{
    setNumWeights(numVertices, false);
}

DzWeightMap::~DzWeightMap() = default;

void DzWeightMap::setNumWeights(int count, bool keep)
{
    if (!keep)
        _pages.clear();
    for (int vertex = std::max(0, count); keep && vertex < _numWeights; ++vertex)
        setWeight(vertex, 0); // or it would be there again when the map grows
    _numWeights = std::max(0, count);
    _pages.resize((static_cast<std::size_t>(_numWeights) + pageSize - 1) / pageSize);
    _inARow.clear();
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
    if (vertex < 0 || vertex >= _numWeights)
        return 0;
    const std::unique_ptr<Page>& page = _pages[static_cast<std::size_t>(vertex) / pageSize];
    return page ? (*page)[static_cast<std::size_t>(vertex) % pageSize] : static_cast<unsigned short>(0);
}

void DzWeightMap::setWeight(int vertex, unsigned short weight)
{
    if (vertex < 0 || vertex >= _numWeights)
        return;
    std::unique_ptr<Page>& page = _pages[static_cast<std::size_t>(vertex) / pageSize];
    if (!page && weight == 0)
        return;
    if (!page)
        page = std::make_unique<Page>(Page{});
    (*page)[static_cast<std::size_t>(vertex) % pageSize] = weight;
    if (!_inARow.empty())
        _inARow[static_cast<std::size_t>(vertex)] = weight;
}

const unsigned short* DzWeightMap::getWeightsPtr() const
{
    if (_inARow.empty()) {
        _inARow.resize(static_cast<std::size_t>(_numWeights));
        forEachWeight(
            [&](int vertex, unsigned short weight) { _inARow[static_cast<std::size_t>(vertex)] = weight; });
    }
    return _inARow.data();
}

DzWeightMap* DzWeightMap::makeCopy() const
{
    auto* const copy = new DzWeightMap(_numWeights, _name);
    for (std::size_t p = 0; p < _pages.size(); ++p)
        if (_pages[p])
            copy->_pages[p] = std::make_unique<Page>(*_pages[p]);
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
        SkinAccess::append(*map, _joints[static_cast<std::size_t>(joint)]);
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

void SkinAccess::append(const DzWeightMap& map, geometry::JointWeights& list)
{
    map.forEachWeight([&list](int vertex, unsigned short weight) {
        list.vertices.push_back(static_cast<std::uint32_t>(vertex));
        list.weights.push_back(static_cast<float>(weight) / static_cast<float>(DZ_USHORT_MAX));
    });
}

void SkinAccess::update(const DzSkinBinding& binding, const DzSkeleton& skeleton, std::size_t vertexCount)
{
    DzSkinBinding::SkinImpl& skin = *binding._skin;
    const QList<DzBone*>& bones = skeleton.bones();
    if (skin.weights.vertexCount() == vertexCount && skin.bones == bones)
        return;
    QHash<const DzBone*, int> indices;
    for (int i = 0; i < bones.size(); ++i)
        indices.insert(bones.at(i), i);
    const auto indexOf = [&](const DzBoneBinding& bone) { return indices.value(bone.getBone(), -1); };
    // One kind of map after the other, as each takes eight bytes an entry on its way.
    const auto collected = [&](const auto& mapOf) {
        JointMaps maps(static_cast<std::size_t>(bones.size()), vertexCount);
        for (const auto& bone : skin.bindings)
            if (const int joint = indexOf(*bone); joint >= 0)
                maps.add(joint, mapOf(*bone));
        return maps.weights();
    };
    const bool hasAxes = std::any_of(skin.bindings.begin(), skin.bindings.end(), [&](const auto& bone) {
        return indexOf(*bone) >= 0 && HasAxisWeights(*bone);
    });
    const auto ofAxis = [&](int axis) {
        return collected([axis](const DzBoneBinding& bone) {
            return HasAxisWeights(bone) ? bone.getAxisWeights(axis) : bone.getWeights();
        });
    };
    skin.weights = collected([](const DzBoneBinding& bone) { return bone.getWeights(); });
    skin.scaleWeights = collected([](const DzBoneBinding& bone) { return bone.getScaleWeights(); });
    skin.axisWeights = geometry::AxisWeights();
    if (hasAxes)
        skin.axisWeights = {ofAxis(0), ofAxis(1), ofAxis(2)};
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
