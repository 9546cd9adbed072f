// Applying D-Former presets.
// SPDX-License-Identifier: MIT

#include "preset_dform.h"

#include "app/texts.h"
#include "base/errors.h"
#include "definition_nodes.h"
#include "dson/uri.h"
#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformmodifier.h"
#include "dzdformzone.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "figure/fitting.h"
#include "instance_values.h"

#include <QPointer>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace openhost {

namespace {

/// Null where the file has none.
const dson::InfluenceMap* BestMap(const dson::Document& preset)
{
    const auto& maps = preset.influenceMaps;
    const auto best =
        std::find_if(maps.begin(), maps.end(), [](const dson::InfluenceMap& map) { return map.isDForm; });
    if (best != maps.end())
        return &*best;
    return maps.empty() ? nullptr : &maps.front();
}

bool IsDForm(const std::optional<dson::Effect>& effect)
{
    return effect && effect->kind == "dform";
}

int VertexCount(const DzNode& node)
{
    const DzObject* const object = node.getObject();
    const auto* const shape = object ? qobject_cast<DzFacetShape*>(object->getCurrentShape()) : nullptr;
    return shape && shape->getFacetMesh() ? shape->getFacetMesh()->getNumVertices() : 0;
}

DzWeightMapPtr MakeWeightMap(const dson::InfluenceMap& source, const dson::Document& preset,
                             const DzNode& node)
{
    const int count = VertexCount(node);
    if (source.vertexCount >= 0 && source.vertexCount != count)
        throw base::FormatError("{}: the influence weights are for {} vertices but {} has {}",
                                preset.file.string(), source.vertexCount, node.getLabel().toStdString(),
                                count);
    DzWeightMapPtr map(new DzWeightMap(count, QLatin1String("Influence Weights")));
    for (std::size_t i = 0; i < source.vertices.size(); ++i) {
        if (source.vertices[i] >= static_cast<std::uint32_t>(count))
            throw base::FormatError("{}: influence weight {} names vertex {} but {} has {}",
                                    preset.file.string(), i, source.vertices[i],
                                    node.getLabel().toStdString(), count);
        map->setFloatWeight(static_cast<int>(source.vertices[i]), source.weights[i]);
    }
    return map;
}

/// The D-Formers of that name that deform the node.
std::vector<DzDForm*> FindDForms(const QString& name, const DzNode& node)
{
    std::vector<DzDForm*> found;
    for (int i = 0; i < dzScene->getNumNodes(); ++i) {
        auto* const former = qobject_cast<DzDForm*>(dzScene->getNode(i));
        if (former && former->getName() == name && former->getModifierForNode(&node))
            found.push_back(former);
    }
    return found;
}

/// @param outside  those that are not in the scene
void RemoveDForm(DzDForm& former, const std::vector<DzNode*>& outside = {})
{
    // A part takes along those that hang on it.
    const QPointer<DzNode> parts[] = {former.getBase(), former.getZone(), &former};
    qDeleteAll(outside);
    for (const QPointer<DzNode>& part : parts)
        if (part)
            dzScene->removeNode(part);
}

/// The definition of a part; null for a file without.
const dson::Node* DefinitionOf(const dson::Document& preset, dson::DFormPart::Role role)
{
    for (const dson::Node& node : preset.nodes)
        if (node.dform && node.dform->role == role)
            return &node;
    return nullptr;
}

/// The part as the file places it, or one in the middle of the world.
template <class Part>
Part* MakePart(const dson::Document& preset, dson::DFormPart::Role role, const QString& name)
{
    const dson::Node* const definition = DefinitionOf(preset, role);
    std::unique_ptr<DzNode> node = definition ? MakeNode(*definition) : std::make_unique<Part>();
    for (const dson::NodeInstance& instance : preset.nodeInstances)
        if (definition && dson::ParseUri(instance.url).id == definition->id)
            ApplyInstance(instance, *node);
    node->setName(name);
    node->setLabel(name);
    return qobject_cast<Part*>(node.release());
}

/// The other part that the file hangs a part on; null for none.
DzNode* ParentIn(const dson::Document& preset, dson::DFormPart::Role role, DzDForm& former)
{
    using Role = dson::DFormPart::Role;
    const dson::Node* const definition = DefinitionOf(preset, role);
    const std::string parent = definition ? definition->parent : std::string();
    const auto is = [&](Role other) {
        const dson::Node* const node = other == role ? nullptr : DefinitionOf(preset, other);
        return node && !parent.empty() && node->id == parent;
    };
    if (is(Role::Former))
        return &former;
    if (is(Role::Base))
        return former.getBase();
    return is(Role::Zone) ? former.getZone() : nullptr;
}

/// All of its parts, or none; none of them is left then.
void AddDForm(const dson::Document& preset, DzDForm& former)
{
    using Role = dson::DFormPart::Role;
    const QString name = former.getLabel();
    const std::pair<DzNode*, DzNode*> parts[] = {{&former, ParentIn(preset, Role::Former, former)},
                                                 {former.getBase(), ParentIn(preset, Role::Base, former)},
                                                 {former.getZone(), ParentIn(preset, Role::Zone, former)}};
    for (const auto& part : parts)
        if (part.second && !IsBelow(*part.second, *part.first))
            part.second->addNodeChild(part.first);
    std::vector<DzNode*> missing;
    for (const auto& part : parts)
        if (!part.first->getNodeParent())
            missing.push_back(part.first);
    while (!missing.empty() && dzScene->addNode(missing.front()))
        missing.erase(missing.begin());
    if (missing.empty())
        return;
    RemoveDForm(former, missing);
    throw base::Error(name.toStdString() + " cannot be added to the scene");
}

} // namespace

bool HoldsDForm(const dson::Document& preset)
{
    return !preset.influenceMaps.empty() ||
           std::any_of(preset.modifiers.begin(), preset.modifiers.end(),
                       [](const dson::Modifier& modifier) { return IsDForm(modifier.effect); });
}

DFormLoadOptions ProposedDFormOptions(const dson::Document& preset)
{
    const dson::InfluenceMap* const map = BestMap(preset);
    std::string owner = map ? map->owner : std::string();
    for (const dson::Modifier& modifier : preset.modifiers)
        if (owner.empty() && IsDForm(modifier.effect))
            owner = modifier.name;
    DFormLoadOptions options;
    options.name = ToQ(owner.empty() ? "D-Former" : owner);
    return options;
}

void ApplyDForm(const dson::Document& preset, DzNode& node, const DFormLoadOptions& options)
{
    const dson::InfluenceMap* const map = BestMap(preset);
    const DzWeightMapPtr weights = map ? MakeWeightMap(*map, preset, node) : DzWeightMapPtr();
    const QString& name = options.name;
    if (options.replaceSameName)
        for (DzDForm* const present : FindDForms(name, node))
            RemoveDForm(*present);

    using Role = dson::DFormPart::Role;
    auto* const former = MakePart<DzDForm>(preset, Role::Former, name);
    auto* const base = MakePart<DzDFormBase>(preset, Role::Base, name + QLatin1String(" Base"));
    auto* const zone = MakePart<DzDFormZone>(preset, Role::Zone, name + QLatin1String(" Field"));
    if (!DefinitionOf(preset, Role::Zone))
        zone->setInfluenceMode(DzDFormZone::WeightMap);
    former->setBase(base);
    former->setZone(zone);
    AddDForm(preset, *former);
    if (DzDFormModifier* const modifier = former->applyToNode(&node))
        modifier->setInfluenceWeights(weights);
}

} // namespace openhost
