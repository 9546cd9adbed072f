// Handing nodes and modifiers what their instances say beyond what can be set.
// SPDX-License-Identifier: MIT

#include "kept_instances.h"

#include "app/texts.h"
#include "dson/uri.h"
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

bool HasClass(const std::string& type)
{
    static const std::set<std::string> types{"node", "figure", "legacy_figure", "bone", "camera"};
    return types.count(type) > 0;
}

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
    : _document(document), _load(std::make_shared<KeptLoad>())
{
    _load->content = document.kept;
    for (const dson::NodeInstance& instance : document.nodeInstances) {
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

const dson::Node* KeptInstances::definitionOf(const dson::NodeInstance& instance) const
{
    const dson::Uri url = dson::ParseUri(instance.url);
    const std::vector<dson::Node>& nodes = _document.nodes;
    const auto found = std::find_if(nodes.begin(), nodes.end(),
                                    [&url](const dson::Node& node) { return node.id == url.id; });
    return url.path.empty() && found != nodes.end() ? &*found : nullptr;
}

KeptNode KeptInstances::keptOf(const dson::NodeInstance& instance, const DzNode& node) const
{
    KeptNode kept{_load, instance.id, instance.kept, {}, {}, {}, {}};
    DropSet(kept.members, &node);
    for (const dson::GeometryInstance& geometry : instance.geometries)
        kept.geometryIds.push_back(geometry.id);
    if (!instance.geometries.empty()) {
        kept.geometry = instance.geometries.front().kept;
        const DzObject* const object = node.getObject();
        DropSet(kept.geometry, object ? object->getCurrentShape() : nullptr);
    }
    if (const dson::Node* const definition = definitionOf(instance)) {
        if (!HasClass(definition->type))
            kept.definitionType = definition->type;
        kept.definition = definition->kept;
    }
    return kept;
}

KeptModifier KeptInstances::keptOf(const dson::ModifierInstance& instance, const QObject& owner) const
{
    KeptModifier kept{_load, instance.id, instance.kept};
    const auto* const modifier = qobject_cast<const DzModifier*>(&owner);
    if (const FileEffect* const effect = modifier ? FileEffect::of(*modifier) : nullptr)
        dson::DropChannels(kept.members,
                           [effect](const std::string& id) { return effect->find(id) || effect->keeps(id); });
    return kept;
}

void KeptInstances::handOver() const
{
    // A part that stays may refer to any other, so it is all or none.
    bool isNeeded = _load->content || !_load->animations.empty() || !_load->modifiers.empty();
    std::vector<std::pair<DzNode*, KeptNode>> nodes;
    for (const auto& [instance, node] : _nodes) {
        if (!node)
            continue;
        nodes.emplace_back(node, keptOf(*instance, *node));
        isNeeded = isNeeded || nodes.back().second.saysAnything();
    }
    std::vector<std::pair<QObject*, KeptModifier>> modifiers;
    for (const auto& [instance, owner] : _modifiers) {
        if (!owner)
            continue;
        modifiers.emplace_back(owner, keptOf(*instance, *owner));
        isNeeded = isNeeded || !modifiers.back().second.members.empty();
    }
    if (!isNeeded)
        return;
    for (auto& [node, kept] : nodes)
        Keep(*node, std::move(kept));
    for (auto& [owner, kept] : modifiers)
        Keep(*owner, std::move(kept));
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
