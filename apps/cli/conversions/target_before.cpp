// A conversion's target as it was before.
// SPDX-License-Identifier: MIT

#include "conversions/target_before.h"

#include "dzbone.h"
#include "dzfigure.h"
#include "dzmodifier.h"
#include "dznumericproperty.h"
#include "dzobject.h"

namespace cli {

namespace {

void AddValues(const DzElement& element, std::vector<std::pair<DzNumericProperty*, double>>& values)
{
    for (DzPropertyListIterator properties = element.propertyListIterator(); properties.hasNext();)
        if (auto* const property = qobject_cast<DzNumericProperty*>(properties.next()))
            values.emplace_back(property, property->getDoubleRawValue());
}

std::vector<DzModifier*> ModifiersOf(const DzFigure& figure)
{
    std::vector<DzModifier*> modifiers;
    if (const DzObject* const object = figure.getObject())
        for (DzModifierIterator all = object->modifierIterator(); all.hasNext();)
            modifiers.push_back(all.next());
    return modifiers;
}

} // namespace

TargetBefore::TargetBefore(DzFigure& target)
    : _target(target), _label(target.getLabel()), _resolution(kst::daz::GetNodeResolution(target))
{
    AddValues(target, _values);
    for (const DzBone* const bone : target.bones())
        AddValues(*bone, _values);
    for (const DzModifier* const modifier : ModifiersOf(target)) {
        AddValues(*modifier, _values);
        _modifiers.insert(modifier);
    }
}

void TargetBefore::putBack() const
{
    for (DzModifier* const modifier : ModifiersOf(_target))
        if (_modifiers.count(modifier) == 0)
            _target.getObject()->removeModifier(modifier);
    for (const auto& [property, value] : _values)
        if (property->getDoubleRawValue() != value)
            property->setDoubleRawValue(value);
    kst::daz::SetNodeResolution(_target, _resolution, false);
    _target.setLabel(_label);
}

} // namespace cli
