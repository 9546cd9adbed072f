// Modifiers that are neither morphs nor dials as file content.
// SPDX-License-Identifier: MIT

#include "effect_export.h"

#include "channel_export.h"
#include "dson/uri.h"
#include "dzdformmodifier.h"
#include "dzmodifier.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "figure/file_effect.h"
#include "library/asset_origin.h"
#include "library/content_paths.h"
#include "scene_units.h"

#include <algorithm>

namespace openhost {

namespace {

/// Of a D-Former that was applied in the scene.
dson::Effect OwnEffect(const DzModifier& modifier)
{
    dson::Effect effect;
    effect.kind = "dform";
    const auto* const former = qobject_cast<const DzDFormModifier*>(&modifier);
    const DzWeightMap* const weights = former ? former->getInfluenceWeights() : nullptr;
    if (!weights)
        return effect;
    effect.influence.emplace();
    effect.influence->vertexCount = weights->getNumWeights();
    for (int v = 0; v < weights->getNumWeights(); ++v) {
        if (weights->getWeight(v) == 0)
            continue;
        effect.influence->vertices.push_back(static_cast<std::uint32_t>(v));
        effect.influence->weights.push_back(weights->getFloatWeight(v));
    }
    return effect;
}

/// Those that are not as they have been defined, or not defined at all.
std::vector<dson::EffectChannel> ChangedChannels(const FileEffect& file)
{
    std::vector<dson::EffectChannel> channels = file.present().channels;
    channels.erase(std::remove_if(channels.begin(), channels.end(),
                                  [&file](const dson::EffectChannel& one) {
                                      const DzNumericProperty* const property = file.find(one.channel.id);
                                      return property && one.channel.currentValue &&
                                             !HasOwnValue(*property) && file.describedChannel(one.channel.id);
                                  }),
                   channels.end());
    return channels;
}

} // namespace

std::vector<const DzModifier*> EffectsOf(const SceneUnit& unit)
{
    std::vector<const DzModifier*> effects;
    const DzObject* const object = unit.root->getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        if (FileEffect::of(*object->getModifier(i)) ||
            qobject_cast<const DzDFormModifier*>(object->getModifier(i)))
            effects.push_back(object->getModifier(i));
    return effects;
}

bool IsDefinedElsewhere(const DzModifier& modifier, const SceneUnit& unit)
{
    return !unit.isDescribedWhole() && !AssetUriOf(modifier).isEmpty();
}

bool IsFoundWithFigure(const DzModifier& modifier, const SceneUnit& unit)
{
    const std::string folder = PathKey(unit.path.substr(0, unit.path.rfind('/') + 1));
    const std::string path = dson::ParseUri(AssetUriOf(modifier).toString().toStdString()).path;
    return PathKey(path).compare(0, folder.size(), folder) == 0;
}

dson::Modifier DescribeEffect(const DzModifier& modifier, const std::string& id, const std::string& parent)
{
    const FileEffect* const file = FileEffect::of(modifier);
    dson::Modifier described;
    described.id = id;
    described.name = modifier.getName().toStdString();
    described.parent = parent;
    const DzNumericProperty* const own = file ? file->own() : nullptr;
    described.hasChannel = own != nullptr;
    if (own) {
        described.channel = DescribeChannel(*own, "value");
        described.group = own->getPath().toStdString();
    }
    described.effect = file ? file->present() : OwnEffect(modifier);
    return described;
}

void DescribeEffectInstance(const DzModifier& modifier, bool isDefined, dson::SceneModifier& instance)
{
    const FileEffect* const file = FileEffect::of(modifier);
    if (!file)
        return;
    if (file->own())
        instance.channel = DescribeChange(*file->own(), "value");
    dson::Effect changes;
    changes.kind = file->described().kind;
    if (!isDefined)
        changes.channels = ChangedChannels(*file);
    if (!file->ownChannel().empty())
        changes.members.emplace_back("channel", file->ownChannel());
    if (file->hasNewInfluence())
        changes.influence = file->described().influence;
    if (!changes.channels.empty() || !changes.members.empty() || changes.influence)
        instance.effect = std::move(changes);
}

} // namespace openhost
