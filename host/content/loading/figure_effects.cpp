// The modifiers of a figure that are neither morphs nor dials.
// SPDX-License-Identifier: MIT

#include "figure_effects.h"

#include "app/texts.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "figure/file_effect.h"
#include "library/content_paths.h"

namespace openhost {

FigureEffects::FigureEffects(const FigureFile& figure, const FigureNodes& nodes, FigureDials& dials)
    : _nodes(nodes), _dials(dials),
      _maker(nodes.root().getObject(), [&figure](const std::string& what) { figure.warn(what); })
{
}

bool FigureEffects::add(const dson::Modifier& modifier, const dson::Document& file, const std::string& path)
{
    DzModifier* const made = _maker.define(modifier, path);
    if (!made)
        return false;
    enter(*made, modifier.id, path);
    if (DzNumericProperty* const dial = FileEffect::of(*made)->own())
        _dials.addOfEffect(*dial, modifier, file, path);
    return true;
}

void FigureEffects::enter(DzModifier& modifier, const std::string& id, const std::string& path)
{
    _made.emplace(std::make_pair(PathKey(path), id), &modifier);
}

DzModifier* FigureEffects::find(const dson::Uri& url, const std::string& path) const
{
    const auto made = _made.find({PathKey(path), url.id});
    if (made != _made.end())
        return made->second;
    const DzObject* const object = _nodes.root().getObject();
    DzModifier* const named = object ? object->findModifier(ToQ(url.id)) : nullptr;
    return named && FileEffect::of(*named) ? named : nullptr;
}

void FigureEffects::apply(const dson::ModifierInstance& instance, const std::string& path)
{
    const dson::Effect& effect = *instance.effect;
    const dson::Uri url = dson::ParseUri(instance.url);
    DzModifier* modifier = find(url, path);
    // Morphs and skins have such members, too.
    if (!modifier && IsCageEffect(effect)) {
        modifier = _maker.make(effect, instance.name.empty() ? instance.id : instance.name, url.id, path);
        if (modifier)
            enter(*modifier, url.id, path);
    }
    if (modifier)
        _maker.apply(*modifier, effect);
}

void FigureEffects::report()
{
    _maker.report();
}

} // namespace openhost
