// Applying D-Former presets.
// SPDX-License-Identifier: MIT

#include "preset_dform.h"

#include "app/texts.h"
#include "base/errors.h"
#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformmodifier.h"
#include "dzdformzone.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"

#include <algorithm>
#include <vector>

namespace openhost {

namespace {

const dson::InfluenceMap& BestMap(const dson::Document& preset)
{
    const auto& maps = preset.influenceMaps;
    const auto best =
        std::find_if(maps.begin(), maps.end(), [](const dson::InfluenceMap& map) { return map.isDForm; });
    return best == maps.end() ? maps.front() : *best;
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

void RemoveDForm(DzDForm& former)
{
    for (DzNode* const part : {static_cast<DzNode*>(former.getBase()), static_cast<DzNode*>(former.getZone()),
                               static_cast<DzNode*>(&former)})
        if (part)
            dzScene->removeNode(part);
}

/// All of its parts, or none; none of them is left then.
void AddDForm(DzDForm& former)
{
    const QString name = former.getLabel();
    std::vector<DzNode*> missing{&former, former.getBase(), former.getZone()};
    while (!missing.empty() && dzScene->addNode(missing.front()))
        missing.erase(missing.begin());
    if (missing.empty())
        return;
    RemoveDForm(former);
    qDeleteAll(missing);
    throw base::Error(name.toStdString() + " cannot be added to the scene");
}

} // namespace

DFormLoadOptions ProposedDFormOptions(const dson::Document& preset)
{
    const std::string& owner = BestMap(preset).owner;
    DFormLoadOptions options;
    options.name = ToQ(owner.empty() ? "D-Former" : owner);
    return options;
}

void ApplyDForm(const dson::Document& preset, DzNode& node, const DFormLoadOptions& options)
{
    const DzWeightMapPtr weights = MakeWeightMap(BestMap(preset), preset, node);
    const QString& name = options.name;
    if (options.replaceSameName)
        for (DzDForm* const present : FindDForms(name, node))
            RemoveDForm(*present);

    auto* const former = new DzDForm;
    former->setName(name);
    former->setLabel(name);
    auto* const base = new DzDFormBase;
    base->setName(name + QLatin1String(" Base"));
    base->setLabel(base->getName());
    auto* const zone = new DzDFormZone;
    zone->setName(name + QLatin1String(" Field"));
    zone->setLabel(zone->getName());
    zone->setInfluenceMode(DzDFormZone::WeightMap);
    former->setBase(base);
    former->setZone(zone);
    AddDForm(*former);
    if (DzDFormModifier* const modifier = former->applyToNode(&node))
        modifier->setInfluenceWeights(weights);
}

} // namespace openhost
