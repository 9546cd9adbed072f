// Modifiers that act on the posed cage as a whole.
// SPDX-License-Identifier: MIT

#include "figure/cage_modifier.h"

#include "base/errors.h"
#include "dzboolproperty.h"
#include "dzenumproperty.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzobject.h"
#include "figure/pipeline.h"
#include "geometry/push.h"
#include "scene/own_property.h"

#include <algorithm>

namespace openhost {

namespace {

const char* const typeName = "Smoothing Type";
const char* const smoothingGroup = "/General/Mesh Smoothing";

/// More rounds than anybody can tell apart.
constexpr int mostIterations = 1000;

template <class Property, class Value>
Property* AddProperty(DzElement& owner, const char* name, const char* group, Value value)
{
    auto* const property = new Property(QLatin1String(name), true, true, value);
    property->setPath(QLatin1String(group));
    owner.addProperty(property);
    openhost::KeepProperty(*property);
    return property;
}

} // namespace

void CageModifier::propertyValueChanged(DzProperty* property)
{
    changed();
    DzModifier::propertyValueChanged(property);
}

void CageModifier::changed()
{
    if (DzObject* const object = getObject())
        object->pipeline().shaperChanged();
}

SmoothingModifier::SmoothingModifier()
    : _enabled(AddProperty<DzBoolProperty>(*this, "Enable Smoothing", smoothingGroup, true)),
      _weight(AddProperty<DzFloatProperty>(*this, "Weight", smoothingGroup, 0.5f)),
      _iterations(AddProperty<DzIntProperty>(*this, "Smoothing Iterations", smoothingGroup, 2))
{
    AddProperty<DzBoolProperty>(*this, "Interactive Update", smoothingGroup, false);
    auto* const type = AddProperty<DzEnumProperty>(*this, typeName, smoothingGroup, 0);
    type->addItem(QStringLiteral("Generic"));
    type->addItem(QStringLiteral("Base Shape Matching"));
    _weight->setMinMax(0.0f, 1.0f);
    _weight->setIsClamped(true);
    _iterations->setMinMax(0, 100);
}

bool SmoothingModifier::isActive() const
{
    return _enabled->getBoolValue() && _weight->getValue() > 0.0f && _iterations->getValue() > 0;
}

bool SmoothingModifier::exceedsLimits() const
{
    const float weight = _weight->getValue();
    return weight < 0.0f || weight > 1.0f || _iterations->getValue() > mostIterations;
}

bool SmoothingModifier::keepsShape() const
{
    // A file may bring types of its own, in an order of its own.
    const auto* const type = qobject_cast<const DzEnumProperty*>(findProperty(QLatin1String(typeName)));
    return type && type->getStringValue().contains(QLatin1String("shape"), Qt::CaseInsensitive);
}

void SmoothingModifier::apply(CageShape& cage) const
{
    if (_topology != cage.topology) {
        _smoother = std::make_shared<geometry::Smoother>(cage.topology);
        _topology = cage.topology;
    }
    // A file may take the limits away.
    const geometry::SmoothingOptions options{std::clamp(_weight->getValue(), 0.0f, 1.0f),
                                             std::min(_iterations->getValue(), mostIterations)};
    cage.positions = keepsShape() ? _smoother->smoothTowards(cage.positions, cage.rest, options)
                                  : _smoother->smooth(cage.positions, options);
}

void PushModifier::setDistanceControl(DzNumericProperty* distance)
{
    _distance = distance;
    if (distance)
        openhost::KeepProperty(*distance);
    changed();
}

void PushModifier::setInfluenceWeights(DzWeightMap* weights)
{
    _weights = weights;
    changed();
}

void PushModifier::setActsLast(bool last)
{
    _actsLast = last;
    changed();
}

bool PushModifier::isActive() const
{
    return _distance && _distance->getDoubleValue() != 0.0;
}

void PushModifier::apply(CageShape& cage) const
{
    std::vector<float> weights;
    if (_weights) {
        if (_weights->getNumWeights() != static_cast<int>(cage.positions.size()))
            throw base::Error(fmt::format("{} has weights for {} vertices instead of {}",
                                          getName().toStdString(), _weights->getNumWeights(),
                                          cage.positions.size()));
        for (int v = 0; v < _weights->getNumWeights(); ++v)
            weights.push_back(_weights->getFloatWeight(v));
    }
    cage.positions = geometry::PushAlongNormals({cage.topology.get(), cage.positions},
                                                static_cast<float>(_distance->getDoubleValue()), weights);
}

SimulationModifier::SimulationModifier()
{
    AddProperty<DzBoolProperty>(*this, "Freeze Simulation", "/Simulation", false);
}

} // namespace openhost
