// A figure's dials while it is put together: those of morphs, controls and aliases.
// SPDX-License-Identifier: MIT

#include "figure_dials.h"

#include "app/texts.h"
#include "definition_nodes.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzpresentation.h"
#include "library/asset_origin.h"
#include "loading/channel_properties.h"

#include <fmt/format.h>

namespace openhost {

namespace {

/// What an alias shows is its target's, and so are the limits.
void ShowLike(const DzNumericProperty& target, DzNumericProperty& alias)
{
    alias.setDoubleMinMax(target.getDoubleMin(), target.getDoubleMax());
    alias.setIsClamped(target.isClamped());
    alias.setDisplayAsPercent(target.getDisplayAsPercent());
}

/// Where a pane shows it.
void ApplyPlace(DzNumericProperty& property, const dson::Modifier& modifier)
{
    property.setPath(ToQ(modifier.group));
    property.setRegion(ToQ(modifier.region));
}

/// A dial of the host for a modifier's channel.
void ApplyDial(DzNumericProperty& property, const dson::Modifier& modifier)
{
    ApplyChannel(property, modifier.channel);
    ApplyPlace(property, modifier);
}

} // namespace

bool FigureDials::hasName(const std::string& name) const
{
    return _index.hasName(name) || _givenNames.count(name) > 0;
}

std::string FigureDials::freeName(const std::string& taken)
{
    int number = 2;
    while (hasName(fmt::format("{} {}", taken, number)))
        ++number;
    return *_givenNames.insert(fmt::format("{} {}", taken, number)).first;
}

void FigureDials::addOfMorph(DzMorph& morph, const dson::Modifier& modifier, const dson::Document& file,
                             const std::string& filePath)
{
    DzFloatProperty& dial = *morph.getValueControl();
    ApplyDial(dial, modifier);
    if (IsDataFile(filePath))
        SetAsDefined(dial);
    _index.add(modifier, file, filePath, dial);
}

DzNode& FigureDials::ownerOf(const dson::Modifier& modifier) const
{
    DzNode* const owner = _nodes.find(dson::ParseUri(modifier.parent).id);
    return owner ? *owner : _nodes.root();
}

bool FigureDials::addControl(const dson::Modifier& modifier, const std::string& name,
                             const dson::Document& file, const std::string& filePath)
{
    DzNode& owner = ownerOf(modifier);
    std::unique_ptr<DzNumericProperty> property = MakeProperty(name, modifier.channel);
    if (!property || owner.findProperty(property->getName()))
        return false;
    DzNumericProperty& dial = *property;
    owner.addProperty(property.release());
    ApplyDial(dial, modifier);
    SetAssetUri(dial, AssetUri(filePath, modifier.id));
    if (IsDataFile(filePath))
        SetAsDefined(dial);
    dial.setPresentation(MakePresentation(modifier.presentationType).release());
    _index.add(modifier, file, filePath, dial);
    return true;
}

bool FigureDials::addAlias(const dson::Modifier& modifier, const dson::Document& file,
                           const std::string& filePath)
{
    DzNode& owner = ownerOf(modifier);
    const QString name = ToQ(modifier.name);
    if (owner.findProperty(name))
        return false;
    auto* const property = new DzFloatProperty(name, true, true, 0.0f);
    property->setLabel(ToQ(modifier.channel.label));
    property->setHidden(!modifier.channel.visible);
    owner.addProperty(property);
    ApplyPlace(*property, modifier);
    SetAssetUri(*property, AssetUri(filePath, modifier.id));
    _aliases.push_back({property, modifier.channel.targetChannel});
    _index.add(modifier, file, filePath, *property);
    return true;
}

void FigureDials::lose(const dson::Modifier& modifier, const std::string& filePath)
{
    for (const std::string& text : {modifier.id, modifier.name})
        _index.lose(filePath, text);
}

std::size_t FigureDials::connectAliases(const PropertyResolver& resolve)
{
    std::size_t missing = 0;
    for (const PendingAlias& alias : _aliases) {
        DzNumericProperty* const target = resolve(alias.target);
        if (!target || !alias.property->setAliasTarget(target)) {
            // A dial that turns nothing would only mislead.
            alias.property->setHidden(true);
            ++missing;
        }
    }
    for (const PendingAlias& alias : _aliases)
        if (const DzNumericProperty* const target = resolve(alias.target))
            ShowLike(*target, *alias.property);
    _aliases.clear();
    return missing;
}

DzNumericProperty* FigureDials::resolve(const std::string& text) const
{
    const dson::Uri uri = dson::ParseUri(text);
    if (uri.property.compare(0, 5, "value") == 0)
        return _index.find(uri);
    const DzNode* target = _nodes.find(uri.id);
    if (!target)
        target = _nodes.find(uri.node);
    return target ? FindNodeChannel(*target, uri.property) : nullptr;
}

} // namespace openhost
