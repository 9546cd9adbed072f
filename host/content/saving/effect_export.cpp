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
    if (file && file->own())
        instance.channel = DescribeChange(*file->own(), "value");
    const std::string own = file ? file->ownChannel() : std::string();
    if (!own.empty())
        instance.effect = dson::Effect{{}, {}, {}, false, {{"channel", own}}};
    if (isDefined || !file)
        return;
    dson::Effect changes = file->present();
    changes.members.clear();
    if (!own.empty())
        changes.members.emplace_back("channel", own);
    auto& channels = changes.channels;
    channels.erase(std::remove_if(channels.begin(), channels.end(),
                                  [file](const dson::EffectChannel& one) {
                                      const DzNumericProperty* const property = file->find(one.channel.id);
                                      return property && one.channel.currentValue &&
                                             *one.channel.currentValue == property->getDoubleDefaultValue();
                                  }),
                   channels.end());
    if (!channels.empty())
        instance.effect = std::move(changes);
}

} // namespace openhost
