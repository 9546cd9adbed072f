// Handing nodes and modifiers what their instances say beyond what can be set.
// SPDX-License-Identifier: MIT

#include "kept_instances.h"

#include "app/texts.h"
#include "base/counted.h"
#include "dson/uri.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzmodifier.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "figure/file_effect.h"
#include "load_report.h"
#include "openhost/diagnostics.h"

#include <algorithm>

#include <fmt/format.h>

namespace openhost {

namespace {

bool HasClass(const std::string& type)
{
    static const std::set<std::string> types{"node", "figure", "legacy_figure", "bone", "camera"};
    return types.count(type) > 0;
}

const dson::Geometry* GeometryOf(const dson::NodeInstance& instance, const FileDefinitions& definitions)
{
    return instance.geometries.empty() ? nullptr : definitions.geometry(instance.geometries.front().url);
}

/// What the definition of a modifier or a skin says; null for one of another file.
const dson::KeptMembers* KeptOfDefinition(const dson::ModifierInstance& instance,
                                          const FileDefinitions& definitions)
{
    if (const auto* const skin = definitions.skin(instance.url))
        return &skin->kept;
    const auto* const modifier = definitions.modifier(instance.url);
    return modifier ? &modifier->kept : nullptr;
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
    : _document(document), _definitions(document), _load(std::make_shared<KeptLoad>())
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

KeptNode KeptInstances::keptOf(const dson::NodeInstance& instance, const DzNode& node) const
{
    KeptNode kept;
    kept.load = _load;
    kept.id = instance.id;
    kept.members = instance.kept;
    DropSet(kept.members, &node);
    for (const dson::GeometryInstance& geometry : instance.geometries)
        kept.geometryIds.push_back(geometry.id);
    if (!instance.geometries.empty())
        keepGeometries(instance.geometries, node, kept);
    if (const dson::Node* const definition = _definitions.node(instance.url)) {
        if (!HasClass(definition->type))
            kept.definitionType = definition->type;
        kept.definition = definition->kept;
    }
    if (const dson::Geometry* const definition = GeometryOf(instance, _definitions)) {
        kept.geometryDefinition = definition->kept;
        kept.vertexCount = definition->mesh.vertexCount();
    }
    return kept;
}

void KeptInstances::keepGeometries(const std::vector<dson::GeometryInstance>& geometries, const DzNode& node,
                                   KeptNode& kept)
{
    const DzObject* const object = node.getObject();
    const auto* const shape = object ? qobject_cast<const DzFacetShape*>(object->getCurrentShape()) : nullptr;
    for (std::size_t i = shape ? 1 : 0; i < geometries.size(); ++i)
        kept.furtherGeometries.push_back({geometries[i].id, geometries[i].text});
    if (!shape)
        return;
    kept.geometry = geometries.front().kept;
    DropSet(kept.geometry, shape);
    kept.edgeInterpolation = shape->getFacetMesh()->getSubDEdgeInterpolation();
}

KeptModifier KeptInstances::keptOf(const dson::ModifierInstance& instance, const QObject& owner) const
{
    KeptModifier kept{_load, instance.id, instance.kept, {}};
    if (const dson::KeptMembers* const ofDefinition = KeptOfDefinition(instance, _definitions))
        kept.definition = *ofDefinition;
    const auto* const modifier = qobject_cast<const DzModifier*>(&owner);
    if (const FileEffect* const effect = modifier ? FileEffect::of(*modifier) : nullptr)
        dson::DropChannels(kept.members,
                           [effect](const std::string& id) { return effect->find(id) || effect->keeps(id); });
    return kept;
}

/// Nothing in the scene stands for a definition that no instance names.
void KeptInstances::tellUnclaimed() const
{
    std::set<const dson::KeptMembers*> claimed;
    for (const auto& [instance, node] : _nodes)
        if (const dson::Geometry* const geometry = GeometryOf(*instance, _definitions); geometry && node)
            claimed.insert(&geometry->kept);
    for (const auto& [instance, owner] : _modifiers)
        if (owner)
            claimed.insert(KeptOfDefinition(*instance, _definitions));
    std::vector<std::string> lost;
    const auto look = [&](const std::string& id, const dson::KeptMembers& kept) {
        if (!kept.empty() && claimed.count(&kept) == 0)
            lost.push_back(id);
    };
    for (const dson::Geometry& geometry : _document.geometries)
        look(geometry.id, geometry.kept);
    for (const dson::SkinDefinition& skin : _document.skins)
        look(skin.binding.id, skin.kept);
    for (const dson::Modifier& modifier : _document.modifiers)
        look(modifier.id, modifier.kept);
    if (!lost.empty())
        Report({base::Severity::Warning,
                _document.file.string(),
                {},
                base::Counted(lost.size(), "definition that no instance in the scene names says",
                              "definitions that no instances in the scene name say") +
                    " more than is read, which saving will leave out" + Examples(lost)});
}

void KeptInstances::handOver() const
{
    tellUnclaimed();
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
        isNeeded = isNeeded || modifiers.back().second.saysAnything();
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
