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
#include "host/scene/host_log.h"

#include <algorithm>
#include <vector>

#include <QPointer>

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

/// One value on its way to its dial; the dial may be gone after a question.
struct PresetValue {
    QPointer<DzNumericProperty> property;
    double value;

    bool isBeyondLimits() const
    {
        return property->isClamped() &&
               (value < property->getDoubleMin() || value > property->getDoubleMax());
    }
};

std::vector<PresetValue> FindValues(const dson::Document& preset, const DzNode& target)
{
    std::vector<PresetValue> values;
    for (const dson::AnimatedValue& entry : preset.animations)
        if (DzNumericProperty* const property = FindPresetProperty(target, dson::ParseUri(entry.url)))
            values.push_back({property, entry.value});
    return values;
}

void SettleLimits(const dson::Document& preset, const std::vector<PresetValue>& values)
{
    QStringList labels;
    std::vector<QPointer<DzNumericProperty>> exceeded;
    for (const PresetValue& value : values) {
        if (!value.isBeyondLimits())
            continue;
        exceeded.push_back(value.property);
        labels.append(value.property->getLabel());
    }
    if (exceeded.empty())
        return;
    const bool isUnlimited = CurrentLoadQuestions().presetExceedsLimits(labels);
    for (const QPointer<DzNumericProperty>& property : exceeded)
        if (property && isUnlimited)
            property->setIsClamped(false);
    const QString outcome = isUnlimited ? QStringLiteral("limits are switched off for values beyond them")
                                        : QStringLiteral("values beyond the limits stop at them");
    LogWarning(ToQ(preset.file.string()) + QLatin1String(": ") + outcome + QLatin1String(": ") +
               labels.join(QLatin1String(", ")));
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
    const std::vector<PresetValue> values = FindValues(preset, target);
    SettleLimits(preset, values);
    for (const PresetValue& value : values)
        if (value.property)
            value.property->setDoubleValue(value.value);
    return static_cast<int>(values.size());
}

} // namespace openhost
