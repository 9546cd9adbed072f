// What a D-Former does to an object.
// SPDX-License-Identifier: MIT

#include "forming.h"

#include "base/errors.h"
#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformmodifier.h"
#include "dzdformzone.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "figure/file_effect.h"
#include "geometry/deform_field.h"
#include "scene/node_transform.h"

namespace openhost {

namespace {

using Eigen::Affine3d;

/// From where things stand at rest to where the node puts them.
Affine3d PlaceOf(const DzNode& node)
{
    const NodeTransform& transform = WorldTransform(node);
    Affine3d place = Affine3d::Identity();
    place.linear() = transform.linear;
    place.translation() = transform.origin - transform.linear * transform.center;
    return place;
}

/// How the former stands to its base, in the world.
Affine3d Motion(const DzDForm& former)
{
    const Affine3d now = PlaceOf(former);
    return former.getBase() ? now * PlaceOf(*former.getBase()).inverse() : now;
}

/// The product of a place and its inverse is off by rounding.
bool IsIdentity(const Affine3d& transform)
{
    return transform.isApprox(Affine3d::Identity(), 1e-12);
}

double StrengthOf(const DzDFormModifier& modifier)
{
    const FileEffect* const file = FileEffect::of(modifier);
    const DzNumericProperty* const dial = file ? file->own() : nullptr;
    return dial ? dial->getDoubleValue() : 1.0;
}

std::vector<float> MapWeights(const DzWeightMap& map, const DzDFormModifier& modifier, std::size_t count)
{
    if (map.getNumWeights() != static_cast<int>(count))
        throw base::Error(fmt::format("{} has weights for {} vertices instead of {}",
                                      modifier.getName().toStdString(), map.getNumWeights(), count));
    std::vector<float> weights(count);
    for (std::size_t v = 0; v < count; ++v)
        weights[v] = map.getFloatWeight(static_cast<int>(v));
    return weights;
}

/// The field is a ball of 1 cm around the zone's centre, as the zone's node places and stretches it.
std::vector<float> FieldWeights(const DzDFormZone& zone, const Affine3d& toWorld,
                                const std::vector<geometry::Vec3f>& positions)
{
    const Affine3d ball = PlaceOf(zone) * Eigen::Translation3d(WorldTransform(zone).center);
    return geometry::BallWeights(positions, ball.inverse() * toWorld, zone.getFalloff());
}

std::vector<float> WeightsOf(const DzDFormModifier& modifier, const Affine3d& toWorld,
                             const std::vector<geometry::Vec3f>& positions)
{
    const DzDFormZone* const zone = modifier.getDForm()->getZone();
    const DzWeightMap* const map = modifier.getInfluenceWeights();
    if (zone && (zone->getInfluenceMode() == DzDFormZone::Sphere || !map))
        return FieldWeights(*zone, toWorld, positions);
    return map ? MapWeights(*map, modifier, positions.size()) : std::vector<float>(positions.size());
}

} // namespace

bool IsActive(const DzDFormModifier& modifier)
{
    return modifier.getDForm() && StrengthOf(modifier) != 0.0 && !IsIdentity(Motion(*modifier.getDForm()));
}

void ApplyDFormer(const DzDFormModifier& modifier, const DzObject& object,
                  std::vector<geometry::Vec3f>& positions)
{
    const DzNode* const node = object.getNode();
    const Affine3d toWorld = node ? PlaceOf(*node) : Affine3d::Identity();
    std::vector<float> weights = WeightsOf(modifier, toWorld, positions);
    const auto strength = static_cast<float>(StrengthOf(modifier));
    for (float& weight : weights)
        weight *= strength;
    const Affine3d motion = toWorld.inverse() * Motion(*modifier.getDForm()) * toWorld;
    if (!motion.matrix().allFinite())
        throw base::Error(modifier.getName().toStdString() +
                          " stands on something that is scaled to nothing");
    geometry::Deform(positions, motion, weights);
}

} // namespace openhost
