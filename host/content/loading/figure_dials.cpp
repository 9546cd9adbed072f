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
#include "openhost/idle_aliases.h"

#include <fmt/format.h>

#include <QVariant>

#include <unordered_map>

namespace openhost {

namespace {

/// What an alias shows is its target's, and so are the limits.
void ShowLike(const DzNumericProperty& target, DzNumericProperty& alias)
{
    alias.setDoubleMinMax(target.getDoubleMin(), target.getDoubleMax());
    alias.setIsClamped(target.isClamped());
    alias.setDisplayAsPercent(target.getDisplayAsPercent());
}

const char* const idleKey = "openhost.whyIdle";

void SetIdle(QObject& dial, const std::string& why)
{
    dial.setProperty(idleKey, ToQ(why));
}

/// Names are unique among those that are shown and those that are not.
DzProperty* FindOn(const DzNode& node, const QString& name)
{
    DzProperty* const property = node.findProperty(name);
    return property ? property : node.findPrivateProperty(name);
}

} // namespace

void FigureDials::applyPlace(DzNumericProperty& property, const dson::Modifier& modifier)
{
    _groups.set(property, ToQ(modifier.group));
    property.setRegion(ToQ(modifier.region));
}

void FigureDials::applyDial(DzNumericProperty& property, const dson::Modifier& modifier)
{
    ApplyChannel(property, modifier.channel);
    applyPlace(property, modifier);
}

bool FigureDials::isOfMorph(const dson::Modifier& modifier) const
{
    return modifier.morph && _nodes.root().getObject();
}

DzNode& FigureDials::ownerOf(const dson::Modifier& modifier) const
{
    DzNode* const owner = isOfMorph(modifier) ? nullptr : _nodes.find(dson::ParseUri(modifier.parent).id);
    return owner ? *owner : _nodes.root();
}

bool FigureDials::hasMorph(const DzNode& owner, const std::string& name) const
{
    return &owner == &_nodes.root() && _morphNames.count(name) > 0;
}

bool FigureDials::isTaken(const dson::Modifier& modifier, const std::string& name) const
{
    const DzNode& owner = ownerOf(modifier);
    if (hasMorph(owner, name))
        return true;
    const DzProperty* const present = FindOn(owner, ToQ(name));
    // A morph's dial is on the morph, so the node may have a channel of that name.
    return present && !isAlias(present) && (present->isUserProperty() || !isOfMorph(modifier));
}

std::string FigureDials::freeName(const dson::Modifier& modifier)
{
    int& number = _lastNumbers.try_emplace({&ownerOf(modifier), modifier.name}, 1).first->second;
    do
        ++number;
    while (isTaken(modifier, fmt::format("{} {}", modifier.name, number)));
    return fmt::format("{} {}", modifier.name, number);
}

std::string FigureDials::freeAliasName(const DzNode& owner, const std::string& taken)
{
    std::string name = "alias_" + taken;
    int& number = _lastNumbers.try_emplace({&owner, name}, 1).first->second;
    while (FindOn(owner, ToQ(name)) || hasMorph(owner, name))
        name = fmt::format("alias_{} {}", taken, ++number);
    return name;
}

void FigureDials::makeAliasGiveWay(const DzNode& owner, const std::string& name)
{
    DzProperty* const present = owner.findProperty(ToQ(name));
    if (!present || !isAlias(present))
        return;
    present->setName(ToQ(freeAliasName(owner, name)));
    _renamedAliases.push_back(name);
}

void FigureDials::addOfMorph(DzMorph& morph, const dson::Modifier& modifier, const dson::Document& file,
                             const std::string& filePath)
{
    DzFloatProperty& dial = *morph.getValueControl();
    applyDial(dial, modifier);
    if (IsDataFile(filePath))
        SetAsDefined(dial);
    const std::string name = morph.getName().toStdString();
    _morphNames.insert(name);
    makeAliasGiveWay(_nodes.root(), name);
    _index.add(modifier, file, filePath, _nodes.root(), dial);
}

bool FigureDials::addControl(const dson::Modifier& modifier, const std::string& name,
                             const dson::Document& file, const std::string& filePath)
{
    DzNode& owner = ownerOf(modifier);
    std::unique_ptr<DzNumericProperty> property = MakeProperty(name, modifier.channel);
    if (!property)
        return false;
    DzNumericProperty& dial = *property;
    makeAliasGiveWay(owner, name);
    owner.addProperty(property.release());
    applyDial(dial, modifier);
    SetAssetUri(dial, AssetUri(filePath, modifier.id));
    if (IsDataFile(filePath))
        SetAsDefined(dial);
    dial.setPresentation(MakePresentation(modifier.presentationType).release());
    _index.add(modifier, file, filePath, owner, dial);
    return true;
}

void FigureDials::addAlias(const dson::Modifier& modifier, const dson::Document& file,
                           const std::string& filePath)
{
    DzNode& owner = ownerOf(modifier);
    const bool isFree = !FindOn(owner, ToQ(modifier.name)) && !hasMorph(owner, modifier.name);
    if (!isFree)
        _renamedAliases.push_back(modifier.name);
    const std::string name = isFree ? modifier.name : freeAliasName(owner, modifier.name);
    auto* const property = new DzFloatProperty(ToQ(name), true, true, 0.0f);
    property->setLabel(ToQ(modifier.channel.label));
    property->setHidden(!modifier.channel.visible);
    owner.addProperty(property);
    applyPlace(*property, modifier);
    SetAssetUri(*property, AssetUri(filePath, modifier.id));
    _aliases.push_back({property, modifier.channel.targetChannel});
    _aliasProperties.insert(property);
    _index.add(modifier, file, filePath, owner, *property);
}

void FigureDials::lose(const dson::Modifier& modifier, const std::string& filePath)
{
    for (const std::string& text : {modifier.id, modifier.name})
        _index.lose(filePath, text);
}

namespace {

/// Gives aliases the dials that they stand for in the end. What an alias names gets its own first, or a chain
/// of aliases would be walked for each of them.
class AliasChains {
public:
    /// @param target  null for none
    void add(DzNumericProperty& alias, DzNumericProperty* target)
    {
        _aliases.push_back(&alias);
        _targets.emplace(&alias, target);
    }

    /// @return of each circle the one that has no target
    std::unordered_set<const DzProperty*> connect()
    {
        for (DzNumericProperty* const alias : _aliases)
            connectChainOf(alias);
        return std::move(_circular);
    }

private:
    void connectChainOf(DzNumericProperty* first)
    {
        std::vector<DzNumericProperty*> chain;
        for (DzNumericProperty* next = first; next && _targets.count(next) > 0 && _seen.insert(next).second;
             next = _targets.at(next))
            chain.push_back(next);
        for (auto alias = chain.rbegin(); alias != chain.rend(); ++alias)
            if (DzNumericProperty* const target = _targets.at(*alias))
                if (!(*alias)->setAliasTarget(&AliasEnd(*target)))
                    _circular.insert(*alias);
    }

    std::vector<DzNumericProperty*> _aliases;
    std::unordered_map<const DzNumericProperty*, DzNumericProperty*> _targets;
    std::unordered_set<const DzProperty*> _seen, _circular;
};

} // namespace

FigureDials::HiddenAliases FigureDials::connectAliases(const TargetResolver& resolve)
{
    AliasChains chains;
    for (const PendingAlias& alias : _aliases)
        chains.add(*alias.property, resolve(alias.target, *alias.property));
    const std::unordered_set<const DzProperty*> circular = chains.connect();
    HiddenAliases hidden;
    for (const PendingAlias& alias : _aliases) {
        const DzNumericProperty& target = AliasEnd(*alias.property);
        if (!isAlias(&target)) {
            ShowLike(target, *alias.property);
            continue;
        }
        // A dial that turns nothing would only mislead.
        alias.property->setHidden(true);
        const std::string name = alias.property->getName().toStdString();
        if (circular.count(&target) > 0) {
            hidden.circular.push_back(name);
            SetIdle(*alias.property, "is one of aliases that stand for each other in a circle");
        } else if (alias.target.empty()) {
            hidden.withoutTarget.push_back(name);
            SetIdle(*alias.property, "is an alias that names no dial");
        } else if (&target == alias.property) {
            hidden.missing.push_back(alias.target);
            SetIdle(*alias.property,
                    fmt::format("is an alias of {}, which the figure does not have", alias.target));
        } else {
            hidden.ofHidden.push_back(name);
            SetIdle(*alias.property, fmt::format("is an alias of {}, which is idle itself", alias.target));
        }
    }
    _aliases.clear();
    return hidden;
}

DzNumericProperty* FigureDials::find(const dson::Uri& uri, const DzNode* node) const
{
    const DzNode* const named = _nodes.find(uri.node);
    return _index.find(uri, {named ? named : node, nullptr});
}

DzNumericProperty* FigureDials::resolve(const std::string& text, const DzNumericProperty* asking) const
{
    const dson::Uri uri = dson::ParseUri(text);
    if (uri.property.compare(0, 5, "value") == 0)
        return _index.find(uri, {_nodes.find(uri.node), asking});
    const DzNode* target = _nodes.find(uri.id);
    if (!target)
        target = _nodes.find(uri.node);
    return target ? FindNodeChannel(*target, uri.property) : nullptr;
}

std::string WhyIdle(const DzProperty& dial)
{
    return dial.property(idleKey).toString().toStdString();
}

} // namespace openhost
