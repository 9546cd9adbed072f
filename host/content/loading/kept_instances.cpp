// Handing nodes and modifiers what their instances say beyond what can be set.
// SPDX-License-Identifier: MIT

#include "kept_instances.h"

#include "app/texts.h"
#include "dzfacetshape.h"
#include "dzmodifier.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "figure/file_effect.h"

#include <algorithm>

#include <fmt/format.h>

namespace openhost {

namespace {

/// Channels that are dials of the element have been set.
template <class Element>
void DropSet(dson::KeptMembers& kept, const Element* element)
{
    if (element)
        dson::DropChannels(kept, [element](const std::string& id) {
            return qobject_cast<DzNumericProperty*>(element->findProperty(ToQ(id))) != nullptr;
        });
}

} // namespace

KeptInstances::KeptInstances(const dson::Document& document)
    : _load(std::make_shared<KeptLoad>()), _isNeeded(document.kept || !document.animations.empty())
{
    _load->content = document.kept;
    for (const dson::NodeInstance& instance : document.nodeInstances) {
        _isNeeded = _isNeeded || !instance.kept.empty();
        note(instance.id);
        for (const dson::GeometryInstance& geometry : instance.geometries)
            note(geometry.id);
    }
}

void KeptInstances::note(const std::string& id)
{
    if (!id.empty())
        _load->instances.insert(id);
}

void KeptInstances::enter(const dson::NodeInstance& instance, DzNode& node) const
{
    if (!_isNeeded && std::all_of(instance.geometries.begin(), instance.geometries.end(),
                                  [](const dson::GeometryInstance& one) { return one.kept.empty(); }))
        return;
    KeptNode kept{_load, instance.id, instance.kept, {}, {}};
    DropSet(kept.members, &node);
    for (const dson::GeometryInstance& geometry : instance.geometries)
        kept.geometryIds.push_back(geometry.id);
    if (!instance.geometries.empty()) {
        kept.geometry = instance.geometries.front().kept;
        const DzObject* const object = node.getObject();
        DropSet(kept.geometry, object ? object->getCurrentShape() : nullptr);
    }
    Keep(node, std::move(kept));
}

void KeptInstances::enter(const dson::ModifierInstance& instance, QObject& owner) const
{
    if (!_isNeeded && instance.kept.empty())
        return;
    KeptModifier kept{_load, instance.id, instance.kept};
    const auto* const modifier = qobject_cast<const DzModifier*>(&owner);
    if (const FileEffect* const effect = modifier ? FileEffect::of(*modifier) : nullptr)
        dson::DropChannels(kept.members,
                           [effect](const std::string& id) { return effect->find(id) != nullptr; });
    Keep(owner, std::move(kept));
}

void KeptInstances::enter(const dson::AnimatedValue& entry, DzNumericProperty* property, DzNode& figure)
{
    if (property && !entry.isMoving)
        return;
    const double value = property ? property->getDoubleRawValue() : 0.0;
    _load->animations.push_back({entry.url, entry.text, property != nullptr, property, &figure, value});
}

std::string KeptInstances::idleParts() const
{
    return _load->content ? fmt::format("{}", fmt::join(_load->content->idle, ", ")) : std::string();
}

} // namespace openhost
