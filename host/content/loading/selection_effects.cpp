// Modifiers that files put on what is selected.
// SPDX-License-Identifier: MIT

#include "selection_effects.h"

#include "app/texts.h"
#include "dson/uri.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "effect_maker.h"
#include "figure/file_effect.h"
#include "openhost/diagnostics.h"

#include <algorithm>

namespace openhost {

namespace {

/// Null where the file does not define it.
const dson::Modifier* DefinitionOf(const dson::Document& file, const dson::ModifierInstance& instance)
{
    const dson::Uri url = dson::ParseUri(instance.url);
    const auto definition =
        std::find_if(file.modifiers.begin(), file.modifiers.end(), [&](const dson::Modifier& modifier) {
            return modifier.id == url.id && modifier.effect && IsCageEffect(*modifier.effect);
        });
    return url.path.empty() && definition != file.modifiers.end() ? &*definition : nullptr;
}

DzModifier* Present(const DzObject& object, const std::string& name)
{
    DzModifier* const modifier = object.findModifier(ToQ(name));
    return modifier && FileEffect::of(*modifier) ? modifier : nullptr;
}

} // namespace

bool IsEffect(const dson::Document& file, const dson::ModifierInstance& instance)
{
    return (instance.effect && IsCageEffect(*instance.effect)) || DefinitionOf(file, instance);
}

bool ApplyEffectTo(DzNode& figure, const dson::Document& file, const dson::ModifierInstance& instance)
{
    DzObject* const object = figure.getObject();
    EffectMaker maker(object, [&file](const std::string& what) {
        Report({base::Severity::Warning, file.file.string(), {}, what});
    });
    const dson::Modifier* const definition = DefinitionOf(file, instance);
    const std::string id = dson::ParseUri(instance.url).id;
    DzModifier* modifier = object ? Present(*object, definition ? definition->name : id) : nullptr;
    const bool isInstanceAll = !modifier && !definition;
    if (!modifier && definition)
        modifier = maker.define(*definition, {});
    else if (!modifier)
        modifier = maker.make(*instance.effect, instance.name.empty() ? id : instance.name, id, {});
    if (modifier && instance.effect)
        maker.apply(*modifier, *instance.effect);
    if (modifier && instance.effect && instance.effect->influence && !isInstanceAll)
        FileEffect::of(*modifier)->setHasNewInfluence();
    DzNumericProperty* const own = modifier ? FileEffect::of(*modifier)->own() : nullptr;
    if (own && instance.value)
        own->setDoubleRawValue(*instance.value);
    else if (modifier && !own)
        FileEffect::of(*modifier)->setOwnChannel(instance.channelText);
    maker.report();
    return modifier;
}

} // namespace openhost
