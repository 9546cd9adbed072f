// Applying presets to what is selected.
// SPDX-License-Identifier: MIT

#include "host/content/preset_loader.h"

#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformmodifier.h"
#include "dzdformzone.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzmodifier.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "geometry/errors.h"
#include "host/content/channel_properties.h"
#include "host/content/dson_uri.h"

#include <algorithm>

namespace openhost {

namespace {

QString ToQ(const std::string& text)
{
    return QString::fromStdString(text);
}

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
        throw geometry::FormatError("{}: the influence weights are for {} vertices but {} has {}",
                                    preset.file.string(), source.vertexCount, node.getLabel().toStdString(),
                                    count);
    DzWeightMapPtr map(new DzWeightMap(count, QLatin1String("Influence Weights")));
    for (std::size_t i = 0; i < source.vertices.size(); ++i) {
        if (source.vertices[i] >= static_cast<std::uint32_t>(count))
            throw geometry::FormatError("{}: influence weight {} names vertex {} but {} has {}",
                                        preset.file.string(), i, source.vertices[i],
                                        node.getLabel().toStdString(), count);
        map->setFloatWeight(static_cast<int>(source.vertices[i]), source.weights[i]);
    }
    return map;
}

DzNumericProperty* FindModifierDial(const DzNode& node, const std::string& name)
{
    if (const DzObject* const object = node.getObject())
        if (const DzModifier* const modifier = object->findModifier(ToQ(name)))
            if (modifier->getNumProperties() > 0)
                return qobject_cast<DzNumericProperty*>(modifier->getProperty(0));
    return qobject_cast<DzNumericProperty*>(node.findProperty(ToQ(name)));
}

DzNumericProperty* FindPresetProperty(const DzNode& node, const dson::Uri& uri)
{
    if (uri.property.compare(0, 5, "value") == 0)
        return FindModifierDial(node, uri.id);
    const std::size_t slash = uri.node.rfind('/');
    const std::string name = slash == std::string::npos ? std::string() : uri.node.substr(slash + 1);
    if (name.empty() || name == "@selection")
        return FindNodeChannel(node, uri.property);
    const DzNode* const child = node.findNodeChild(ToQ(name), true);
    return child ? FindNodeChannel(*child, uri.property) : nullptr;
}

} // namespace

void ApplyDForm(const dson::Document& preset, DzNode& node)
{
    const dson::InfluenceMap& source = BestMap(preset);
    const DzWeightMapPtr weights = MakeWeightMap(source, preset, node);
    const QString name = ToQ(source.owner.empty() ? "D-Former" : source.owner);

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
    for (DzNode* const part :
         {static_cast<DzNode*>(former), static_cast<DzNode*>(base), static_cast<DzNode*>(zone)})
        dzScene->addNode(part);
    former->setBase(base);
    former->setZone(zone);
    if (DzDFormModifier* const modifier = former->applyToNode(&node))
        modifier->setInfluenceWeights(weights);
}

int ApplyValues(const dson::Document& preset, DzNode& node)
{
    DzNode* const figure = node.getSkeleton();
    const DzNode& target = figure ? *figure : node;
    int applied = 0;
    for (const dson::AnimatedValue& entry : preset.animations) {
        DzNumericProperty* const property = FindPresetProperty(target, dson::ParseUri(entry.url));
        if (!property)
            continue;
        property->setDoubleValue(entry.value);
        ++applied;
    }
    return applied;
}

} // namespace openhost
