// Applying presets to what is selected.
// SPDX-License-Identifier: MIT

#include "preset_loader.h"

#include "app/current_attendant.h"
#include "app/operations.h"
#include "app/texts.h"
#include "base/errors.h"
#include "dson/uri.h"
#include "dzbone.h"
#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformmodifier.h"
#include "dzdformzone.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfloatproperty.h"
#include "dzmodifier.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "loading/channel_properties.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"

#include <algorithm>
#include <vector>

#include <QPointer>
#include <QStringList>

#include <fmt/format.h>

namespace openhost {

namespace {

base::Diagnostic Warning(const dson::Document& preset, std::string what)
{
    return {base::Severity::Warning, preset.file.string(), {}, std::move(what)};
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

DzNode* FindBelow(const DzNode& node, const QString& name)
{
    // The figure's own bones come before those of clothes that it wears.
    if (const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node))
        if (DzBone* const bone = skeleton->findBone(name))
            return bone;
    return node.findNodeChild(name, true);
}

DzNumericProperty* DialOf(const DzModifier& modifier)
{
    return modifier.getNumProperties() > 0 ? qobject_cast<DzNumericProperty*>(modifier.getProperty(0))
                                           : nullptr;
}

/// Of a morph or control of the node or of one of its bones.
DzNumericProperty* FindDialByName(const DzNode& node, const QString& name)
{
    if (const DzObject* const object = node.getObject())
        if (const DzModifier* const modifier = object->findModifier(name))
            return DialOf(*modifier);
    if (auto* const own = qobject_cast<DzNumericProperty*>(node.findProperty(name)))
        return own;
    if (const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node))
        for (const DzBone* const bone : skeleton->bones())
            if (auto* const property = qobject_cast<DzNumericProperty*>(bone->findProperty(name)))
                return property;
    return nullptr;
}

bool IsOfMaterial(const dson::Uri& uri)
{
    return uri.id.compare(0, 10, "materials/") == 0;
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

/// One value on its way to its dial; the dial may be gone after a question.
struct PresetValue {
    QPointer<DzNumericProperty> property;
    double value;

    /// Presets hold what the dials themselves are set to; what drives them comes on top, whatever the order.
    void apply() const
    {
        auto* const target = qobject_cast<DzNumericProperty*>(property->getAliasTarget());
        DzNumericProperty& dial = target ? *target : *property;
        const QString detail = dial.getName() + QLatin1Char('=') + QString::number(value);
        if (dial.isLocked() || !Allows(Operation::SetValue, detail))
            return;
        const bool isHeld = dial.isClamped();
        dial.setDoubleRawValue(isHeld ? std::clamp(value, dial.getDoubleMin(), dial.getDoubleMax()) : value);
        emit Events().sceneEdited(SceneEdit::Value, dial.getOwner());
    }

    bool isBeyondLimits() const
    {
        return property->isClamped() &&
               (value < property->getDoubleMin() || value > property->getDoubleMax());
    }
};

std::vector<PresetValue> FindValues(const dson::Document& preset, const PresetTarget& target)
{
    std::vector<PresetValue> values;
    std::vector<std::string> missing;
    const auto enter = [&](DzNumericProperty* property, double value, const std::string& url) {
        if (property)
            values.push_back({property, value});
        else
            missing.push_back(url);
    };
    for (const dson::AnimatedValue& entry : preset.animations) {
        const dson::Uri uri = dson::ParseUri(entry.url);
        if (!IsOfMaterial(uri))
            enter(target.find(uri), entry.value, entry.url);
    }
    for (const dson::ModifierInstance& instance : preset.modifierInstances)
        if (instance.value)
            enter(target.findDial(dson::ParseUri(instance.url).id), *instance.value, instance.url);
    if (!missing.empty() && !values.empty())
        Report(Warning(preset, fmt::format("{} of {} values name nothing that {} has, such as {}",
                                           missing.size(), missing.size() + values.size(),
                                           target.node().getLabel().toStdString(), missing.front())));
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
    const bool isUnlimited = CurrentAttendant().mayExceedLimits(labels);
    for (const QPointer<DzNumericProperty>& property : exceeded)
        if (property && isUnlimited)
            property->setIsClamped(false);
    const QString outcome = isUnlimited ? QStringLiteral("limits are switched off for values beyond them: ")
                                        : QStringLiteral("values beyond the limits stop at them: ");
    Report(Warning(preset, (outcome + labels.join(QLatin1String(", "))).toStdString()));
}

} // namespace

DzNode* FindByPath(DzNode& top, const std::string& path)
{
    DzNode* node = &top;
    const QStringList steps = ToQ(path).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString& step : steps) {
        if (step == QLatin1String("@selection"))
            continue;
        node = FindBelow(*node, step);
        if (!node)
            return steps.last() == step ? nullptr : FindBelow(top, steps.last());
    }
    return node;
}

DzNode& FigureOf(DzNode& node)
{
    DzNode* const figure = qobject_cast<DzBone*>(&node) ? node.getSkeleton() : nullptr;
    return figure ? *figure : node;
}

DzNumericProperty* PresetTarget::find(const dson::Uri& uri) const
{
    DzNode* const part = FindByPath(_node, uri.node);
    if (!part)
        return nullptr;
    if (uri.property.compare(0, 5, "value") != 0)
        return uri.id.empty() ? FindNodeChannel(*part, uri.property) : nullptr;
    return part == &_node ? findDial(uri.id) : FindDialByName(*part, ToQ(uri.id));
}

DzNumericProperty* PresetTarget::findDial(const std::string& nameOrId) const
{
    const QString text = ToQ(nameOrId);
    DzNumericProperty* const property = FindDialByName(_node, text);
    return property ? property : findMorphById(text);
}

DzNumericProperty* PresetTarget::findMorphById(const QString& id) const
{
    if (!_morphsById) {
        _morphsById.emplace();
        const DzObject* const object = _node.getObject();
        for (int i = 0; object && i < object->getNumModifiers(); ++i)
            if (const auto* const morph = qobject_cast<DzMorph*>(object->getModifier(i)))
                _morphsById->insert(morph->getAssetUri().getId(), morph->getValueControl());
    }
    return id.isEmpty() ? nullptr : _morphsById->value(id);
}

bool HoldsValues(const dson::Document& preset)
{
    return std::any_of(
               preset.animations.begin(), preset.animations.end(),
               [](const dson::AnimatedValue& entry) { return !IsOfMaterial(dson::ParseUri(entry.url)); }) ||
           std::any_of(preset.modifierInstances.begin(), preset.modifierInstances.end(),
                       [](const dson::ModifierInstance& instance) { return instance.value.has_value(); });
}

std::vector<std::string> LeftOutOf(const dson::Document& preset)
{
    std::vector<std::string> parts = preset.leftOut;
    const auto count = std::count_if(
        preset.animations.begin(), preset.animations.end(),
        [](const dson::AnimatedValue& entry) { return IsOfMaterial(dson::ParseUri(entry.url)); });
    if (count > 0)
        parts.push_back(dson::Counted(std::size_t(count), "value of materials", "values of materials"));
    return parts;
}

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

int ApplyValues(const dson::Document& preset, DzNode& node)
{
    const PresetTarget target(FigureOf(node));
    if (const std::vector<std::string> others = LeftOutOf(preset); !others.empty())
        Report(Warning(preset, fmt::format("left out: {}", fmt::join(others, ", "))));
    const std::vector<PresetValue> values = FindValues(preset, target);
    SettleLimits(preset, values);
    for (const PresetValue& value : values)
        if (value.property)
            value.apply();
    return static_cast<int>(values.size());
}

} // namespace openhost
