// What a file sets shapes and controls to.
// SPDX-License-Identifier: MIT

#include "instance_dials.h"

#include "app/texts.h"
#include "base/counted.h"
#include "base/errors.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzskinbinding.h"
#include "figure/file_effect.h"
#include "instance_values.h"
#include "loading/channel_properties.h"
#include "preset_target.h"
#include "scene/changes_together.h"
#include "selection_effects.h"

#include <algorithm>

#include <fmt/format.h>

namespace openhost {

namespace {

DzSkinBinding* SkinOf(const DzNode& figure)
{
    const DzObject* const object = figure.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        if (auto* const skin = qobject_cast<DzSkinBinding*>(object->getModifier(i)))
            return skin;
    return nullptr;
}

/// Of another figure, or of a mesh that is not shown.
bool IsSkinOf(const dson::Document& file, const std::string& id)
{
    return std::any_of(file.skins.begin(), file.skins.end(),
                       [&id](const dson::SkinDefinition& skin) { return skin.binding.id == id; });
}

} // namespace

InstanceDials::InstanceDials(SceneLoad& load) : _load(load), _sources(load.sources) {}

void InstanceDials::dialAll()
{
    for (const dson::ModifierInstance& instance : _sources.document().modifierInstances)
        dial(instance);
}

std::optional<LoadedFigures::Place> InstanceDials::placeOfParent(const dson::ModifierInstance& instance)
{
    if (const Place* const place = _load.figures.placeOf(instance.parent))
        return *place;
    const dson::Uri parent = dson::ParseUri(instance.parent);
    if (const std::optional<Place> bone = boneOf(parent, _sources.uriOf(instance))) {
        _load.report.addUnlistedBone(parent.id);
        return bone;
    }
    const std::optional<Place> open = parent.path.empty() ? _load.figures.withoutGeometry() : std::nullopt;
    if (!open || parent.id.empty())
        return std::nullopt;
    const FigureAssembly& assembly = _load.figures.all()[open->figure].assembly;
    if (parent.id == assembly.geometryId())
        return open;
    const dson::Uri url = _sources.uriOf(instance);
    if (!assembly.hasDialOf(url) && !assembly.hasSkin(url))
        return std::nullopt;
    _load.report.addGuessedParent(parent.id, open->node->getLabel().toStdString());
    return open;
}

std::optional<LoadedFigures::Place> InstanceDials::boneOf(const dson::Uri& parent,
                                                          const dson::Uri& dial) const
{
    if (!parent.path.empty() || NamesSelection(parent))
        return std::nullopt;
    const std::optional<Place> withDial = _load.figures.boneOf(
        parent.id, [&dial](const FigureAssembly& assembly) { return assembly.hasDialOf(dial); });
    return withDial ? withDial : _load.figures.boneOf(parent.id);
}

void InstanceDials::dial(const dson::ModifierInstance& instance)
{
    const std::optional<Place> place = placeOfParent(instance);
    if (!place) {
        if (_load.selected && NamesSelection(dson::ParseUri(instance.parent)))
            _onSelection.push_back(&instance);
        else
            _load.report.addHomeless(instance.url.empty() ? instance.id : instance.url);
        return;
    }
    FigureAssembly& assembly = _load.figures.all()[place->figure].assembly;
    assembly.addFormulas(instance.formulas, _sources.sharedDocument());
    const dson::Uri url = _sources.uriOf(instance);
    // Every figure has one; it would be looked for among all dials by all that they are called.
    if (assembly.hasSkin(url))
        return keep(instance, assembly, url, nullptr);
    DzNumericProperty* const property = findDial(assembly, url, *place->node);
    if (instance.effect)
        assembly.applyEffect(instance, url.path);
    keep(instance, assembly, url, property);
    if (!property) {
        if (DzModifier* const effect = assembly.findEffect(url))
            FileEffect::of(*effect)->setOwnChannel(instance.channelText);
        else if (url.id.empty())
            _load.report.addWithoutUrl(instance.id);
        else if (instance.value)
            assembly.loseShape(url, _sources.whyMissing(url), *instance.value);
        return;
    }
    if (!assembly.hasDialOf(url) && _sources.find(url.path).empty())
        _load.report.addReplaced(url.path);
    _load.figures.enterDial(instance.id, *property);
    ApplyChange(*property, instance.change);
    if (!instance.group.empty())
        _groups.set(*property, ToQ(instance.group));
    if (instance.value) {
        if (!_set.insert(property).second)
            _load.report.addRepeatedDial(instance.id);
        _load.setValue(assembly, *property, *instance.value);
    }
    noteOddValue(instance);
    if (const DzNumericProperty& turned = AliasEnd(*property); IsHeldByLimits(turned))
        _load.noteBeyondLimits({turned.getLabel().toStdString()});
}

/// Of what a dial stands for.
void InstanceDials::noteOddValue(const dson::ModifierInstance& instance)
{
    if (!instance.value && !instance.channelText.empty())
        _load.report.warn(instance.id +
                          ": is set to what is no number that a dial can hold; it stays as it is");
    if (!instance.numberText.empty())
        _numbersInTexts.push_back(instance.numberText);
}

void InstanceDials::tellOddities()
{
    if (const std::vector<std::string>& cut = _groups.cutNames(); !cut.empty())
        _load.report.warn(TellCutPaths(cut));
    if (!_numbersInTexts.empty())
        _load.report.warn(fmt::format("has {} as texts, read as what they say, such as \"{}\"",
                                      base::Counted(_numbersInTexts.size(), "number", "numbers"),
                                      _numbersInTexts.front()));
}

void InstanceDials::keep(const dson::ModifierInstance& instance, const FigureAssembly& assembly,
                         const dson::Uri& url, DzNumericProperty* dial)
{
    QObject* owner = assembly.hasSkin(url) ? SkinOf(assembly.root()) : nullptr;
    if (!owner)
        owner = assembly.findEffect(url);
    if (!owner)
        owner = dial;
    if (owner)
        _load.kept.enter(instance, *owner);
    else
        _load.kept.enterMissing(instance);
}

void InstanceDials::dialSelection()
{
    if (!_load.selected || _onSelection.empty())
        return;
    const PresetTarget target(FigureOf(*_load.selected));
    std::vector<std::string> missing;
    const ChangesTogether together;
    for (const dson::ModifierInstance* const instance : _onSelection) {
        if (IsEffect(_sources.document(), *instance)) {
            ApplyEffectTo(target.node(), _sources.document(), *instance);
            continue;
        }
        DzNumericProperty* const property =
            target.findDial(dson::ParseUri(instance->parent).node, dson::ParseUri(instance->url).id);
        if (!property)
            missing.push_back(instance->url.empty() ? instance->id : instance->url);
        else if (instance->value && !AliasEnd(*property).isLocked())
            AliasEnd(*property).setDoubleRawValue(*instance->value);
        if (property)
            noteOddValue(*instance);
    }
    if (!missing.empty())
        _load.report.warnLeftOut(
            base::Counted(missing.size(),
                          "shape or control is set on what is selected, which has none of its name",
                          "shapes and controls are set on what is selected, which has none of them") +
            Examples(missing));
}

DzNumericProperty* InstanceDials::findDial(FigureAssembly& assembly, const dson::Uri& url, const DzNode& node)
{
    DzNumericProperty* const present = _sources.isDefinedHere(url) ? nullptr : assembly.findDial(url, &node);
    if (present)
        return present;
    addShapeFile(assembly, url);
    return assembly.findDial(url, &node);
}

void InstanceDials::addShapeFile(FigureAssembly& assembly, const dson::Uri& url)
{
    try {
        const std::shared_ptr<const dson::Document> file =
            _sources.isThisFile(url) ? _sources.sharedDocument() : _sources.documentOf(url);
        if (file && !assembly.addModifier(file, url.path, url.id) && !IsSkinOf(*file, url.id) &&
            !url.id.empty())
            _load.report.addAbsent(dson::MakeUri(url.path, url.id));
    } catch (const base::Error& error) {
        _load.report.warnLeftOut(error, _sources.find(url.path));
    }
}

} // namespace openhost
