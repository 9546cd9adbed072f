// Modifiers of an object that are neither morphs nor dials.
// SPDX-License-Identifier: MIT

#include "effect_maker.h"

#include "app/texts.h"
#include "base/counted.h"
#include "dzdformmodifier.h"
#include "dzenumproperty.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "figure/cage_modifier.h"
#include "figure/file_effect.h"
#include "figure/pipeline.h"
#include "library/asset_origin.h"
#include "library/content_paths.h"
#include "load_report.h"
#include "loading/channel_properties.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include <fmt/format.h>

namespace openhost {

namespace {

const char* const effectPrefix = "studio/modifier/";
const char* const smoothing = "studio/modifier/smoothing";
const char* const push = "studio/modifier/push";
const char* const simulation = "studio/modifier/dynamic_simulation";

/// Kinds that other programs evaluate and this one keeps.
const char* const keptKinds[] = {simulation, "studio/modifier/dynamic_generate_hair",
                                 "studio/modifier/dynamic_hair_follow", "studio/modifier/line_tessellation",
                                 "studio/modifier/conditional_graft"};

std::unique_ptr<DzModifier> ModifierOf(const std::string& kind)
{
    if (kind == smoothing)
        return std::make_unique<SmoothingModifier>();
    if (kind == push)
        return std::make_unique<PushModifier>();
    if (kind == "dform")
        return std::make_unique<DzDFormModifier>();
    if (kind == simulation)
        return std::make_unique<SimulationModifier>();
    return std::make_unique<DzModifier>();
}

bool IsKept(const std::string& kind)
{
    return std::any_of(std::begin(keptKinds), std::end(keptKinds),
                       [&](const char* kept) { return kind == kept; });
}

/// The modifier's own property for a channel of the file; a choice among other items is another property.
DzNumericProperty* PresentProperty(DzModifier& modifier, const FileEffect& file, const dson::Channel& channel)
{
    DzNumericProperty* const property = file.findNamed(channel.name);
    if (!qobject_cast<DzEnumProperty*>(property) || channel.enumValues.empty())
        return property;
    modifier.removeProperty(property);
    return nullptr;
}

} // namespace

bool IsCageEffect(const dson::Effect& effect)
{
    return effect.kind.compare(0, std::strlen(effectPrefix), effectPrefix) == 0;
}

EffectMaker::EffectMaker(DzObject* object, Warn warn) : _object(object), _warn(std::move(warn)) {}

DzModifier* EffectMaker::define(const dson::Modifier& modifier, const std::string& path)
{
    DzModifier* const made = make(*modifier.effect, modifier.name, modifier.id, path);
    if (!made)
        return nullptr;
    if (modifier.channel.label != modifier.name)
        made->setLabel(ToQ(modifier.channel.label));
    FileEffect& effect = *FileEffect::of(*made);
    if (modifier.hasChannel) {
        dson::EffectChannel own{modifier.channel, modifier.group, true};
        if (own.channel.name.empty())
            own.channel.name = "Value";
        addChannel(*made, effect, own);
        if (DzNumericProperty* const dial = effect.find(own.channel.id))
            effect.setOwn(*dial);
    }
    setUp(*made);
    return made;
}

DzModifier* EffectMaker::make(const dson::Effect& effect, const std::string& name, const std::string& id,
                              const std::string& path)
{
    if (!_object) {
        omit("modifier is for a mesh that is not there and is left out",
             "modifiers are for a mesh that is not there and are left out", name);
        return nullptr;
    }
    std::unique_ptr<DzModifier> modifier = ModifierOf(effect.kind);
    modifier->setName(ToQ(name));
    SetAssetUri(*modifier, AssetUri(path, id));
    auto* const file = new FileEffect(effect, *modifier);
    for (const dson::EffectChannel& channel : effect.channels)
        addChannel(*modifier, *file, channel);
    DzModifier* const made = modifier.get();
    if (_object->addModifier(made) != DZ_NO_ERROR)
        return nullptr;
    modifier.release();
    note(effect, name);
    return made;
}

void EffectMaker::apply(DzModifier& modifier, const dson::Effect& instance)
{
    FileEffect& file = *FileEffect::of(modifier);
    file.supplement(instance);
    if (instance.influence)
        takeOverInfluence(modifier, file, *instance.influence);
    for (const dson::EffectChannel& channel : instance.channels) {
        DzNumericProperty* property = file.find(channel.channel.id);
        if (!property)
            property = file.find(channel.channel.name);
        if (!property)
            takeOver(modifier, file, channel);
        else if (channel.hasValue)
            property->setDoubleRawValue(channel.channel.currentValue.value_or(channel.channel.value));
        else if (!channel.channel.otherValue.empty())
            noteNoNumber(channel.channel);
    }
    setUp(modifier);
}

/// Where an instance has weights for another mesh, the definition's are the nearest to what it means.
void EffectMaker::takeOverInfluence(const DzModifier& modifier, FileEffect& file,
                                    const dson::InfluenceMap& map)
{
    const auto& defined = file.described().influence;
    if (fits(map) || !defined || !fits(*defined))
        file.setInfluence(map);
    else
        _warn(fmt::format("{} is given influence weights for another mesh than that of {} vertices and keeps "
                          "those of its definition",
                          modifier.getName().toStdString(), vertexCount()));
}

/// Of an instance, for what no property stands for yet.
void EffectMaker::takeOver(DzModifier& modifier, FileEffect& file, dson::EffectChannel channel)
{
    const dson::Channel* const defined = file.describedChannel(channel.channel.id);
    const bool isOpen = channel.channel.type.empty();
    if (isOpen && defined)
        channel.channel.type = defined->type;
    else if (isOpen && channel.hasValue)
        channel.channel.type = "float";
    if (isOpen && !defined && channel.hasValue)
        channel.channel.otherValue.clear();
    if (channel.channel.otherValue.empty())
        addChannel(modifier, file, channel);
    else if (!defined && file.findNamed(channel.channel.name))
        noteNoNumber(channel.channel);
    else
        file.keep(channel.channel);
}

void EffectMaker::addChannel(DzModifier& modifier, FileEffect& file, const dson::EffectChannel& channel)
{
    DzNumericProperty* property = PresentProperty(modifier, file, channel.channel);
    if (property) {
        dson::Channel described = channel.channel;
        if (!channel.hasValue)
            described.value = property->getDoubleDefaultValue();
        ApplyChannel(*property, described);
    } else {
        std::unique_ptr<DzNumericProperty> made = MakeProperty(channel.channel.name, channel.channel);
        if (!made)
            return; // a text or a node: kept with what is saved
        property = made.release();
        modifier.addProperty(property);
    }
    if (!channel.group.empty())
        property->setPath(ToQ(channel.group));
    if (!AssetUriOf(modifier).isEmpty())
        SetAsDefined(*property);
    file.enter(channel.channel, *property);
}

int EffectMaker::vertexCount() const
{
    return _object->pipeline().hasMesh() ? int(_object->pipeline().base().vertexCount()) : 0;
}

bool EffectMaker::fits(const dson::InfluenceMap& map) const
{
    const int count = vertexCount();
    const bool isBeyond = std::any_of(map.vertices.begin(), map.vertices.end(), [&](std::uint32_t vertex) {
        return vertex >= static_cast<std::uint32_t>(count);
    });
    return !isBeyond && (map.vertexCount < 0 || map.vertexCount == count);
}

DzWeightMapPtr EffectMaker::weightsOf(const dson::InfluenceMap& map, const DzModifier& modifier) const
{
    const int count = vertexCount();
    if (!fits(map)) {
        _warn(fmt::format("{} has influence weights for another mesh than that of {} vertices and does "
                          "nothing",
                          modifier.getName().toStdString(), count));
        return DzWeightMapPtr();
    }
    DzWeightMapPtr weights(new DzWeightMap(count, QLatin1String("Influence Weights")));
    for (std::size_t i = 0; i < map.vertices.size(); ++i)
        weights->setFloatWeight(static_cast<int>(map.vertices[i]), map.weights[i]);
    return weights;
}

void EffectMaker::setUpPush(PushModifier& modifier, const FileEffect& file) const
{
    const dson::Effect& effect = file.described();
    DzNumericProperty* distance = file.own();
    for (const dson::EffectChannel& channel : effect.channels)
        if (!distance && channel.channel.type == "float")
            distance = file.find(channel.channel.id);
    const DzWeightMapPtr weights =
        effect.influence ? weightsOf(*effect.influence, modifier) : DzWeightMapPtr();
    if (effect.influence && !weights)
        return;
    modifier.setInfluenceWeights(weights);
    modifier.setActsLast(effect.pushesAfterSmoothing);
    modifier.setDistanceControl(distance);
}

/// What the kind takes from the file beside its dials.
void EffectMaker::setUp(DzModifier& modifier)
{
    const auto* const smoother = qobject_cast<SmoothingModifier*>(&modifier);
    if (smoother && smoother->exceedsLimits())
        omit("smoothing modifier is held within a weight of 1 and 1000 rounds",
             "smoothing modifiers are held within a weight of 1 and 1000 rounds",
             modifier.getName().toStdString());
    if (auto* const pushing = qobject_cast<PushModifier*>(&modifier))
        setUpPush(*pushing, *FileEffect::of(modifier));
    const auto& influence = FileEffect::of(modifier)->described().influence;
    auto* const forming = qobject_cast<DzDFormModifier*>(&modifier);
    if (forming && influence)
        forming->setInfluenceWeights(weightsOf(*influence, modifier));
}

void EffectMaker::note(const dson::Effect& effect, const std::string& name)
{
    const auto kept = [&](const std::string& one, const std::string& many) { omit(one, many, name); };
    const auto& channels = effect.channels;
    const bool collides = std::any_of(channels.begin(), channels.end(), [](const dson::EffectChannel& one) {
        return FoldCase(one.channel.name).find("collision") != std::string::npos;
    });
    if (effect.kind == smoothing && collides)
        kept("smoothing modifier is evaluated without its collisions",
             "smoothing modifiers are evaluated without their collisions");
    else if (IsKept(effect.kind))
        kept(fmt::format("modifier of the kind {} is kept but not evaluated", effect.kind),
             fmt::format("modifiers of the kind {} are kept but not evaluated", effect.kind));
    else if (effect.kind == "channel")
        kept("modifier has a value that is not one number; it is kept as it is",
             "modifiers have values that are not one number; they are kept as they are");
    else if (effect.kind.empty())
        kept("modifier does not say what it does; it is kept as it is",
             "modifiers do not say what they do; they are kept as they are");
    else if (effect.kind != smoothing && effect.kind != push && effect.kind != "dform")
        kept(fmt::format("modifier of the unknown kind {} is kept but not evaluated", effect.kind),
             fmt::format("modifiers of the unknown kind {} are kept but not evaluated", effect.kind));
    const auto& members = effect.members;
    const bool isMasked = std::any_of(members.begin(), members.end(), [](const auto& member) {
        return member.first == "dform" && member.second.find("\"mask_bone\"") != std::string::npos;
    });
    if (isMasked)
        omit("D-Former is evaluated without its mask bone",
             "D-Formers are evaluated without their mask bones", name);
}

void EffectMaker::noteNoNumber(const dson::Channel& channel)
{
    omit("value of a modifier is no number that its dial can hold and is not taken over",
         "values of modifiers are no numbers that their dials can hold and are not taken over", channel.id);
}

void EffectMaker::omit(const std::string& one, const std::string& many, const std::string& name)
{
    Omission& omission = _omitted[many];
    if (omission.count++ == 0) {
        omission.one = one;
        omission.example = name;
    }
}

void EffectMaker::report()
{
    for (const auto& [many, omission] : _omitted)
        _warn(base::Counted(omission.count, omission.one.c_str(), many.c_str()) +
              Examples({omission.example}));
    _omitted.clear();
}

} // namespace openhost
