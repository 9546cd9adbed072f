// The morphs of one node, and those that are dialed in.
// SPDX-License-Identifier: MIT

#include "ks_morphlist.h"

#include "ks_assert.h"
#include "ks_daz-adaptation.h"
#include "ks_daz-helpers.h"
#include "ks_exception.h"
#include "ks_string.h"

#include <cmath>
#include <limits>
#include <map>

#include <fmt/format.h>

#include <dzerclink.h>
#include <dzfloatproperty.h>
#include <dzmorph.h>
#include <dzmorphdeltas.h>
#include <dznode.h>
#include <dzobject.h>

namespace kst {

QString MorphInfo::getMorphNameQ() const
{
    return morph ? morph->getName() : QString();
}

QString MorphInfo::getPathQ() const
{
    return property ? property->getPath() : QString();
}

QString MorphInfo::getLabelQ() const
{
    return property ? property->getLabel() : QString();
}

struct MorphList::Impl {
    explicit Impl(DzNode& owner) : node(owner) {}

    std::shared_ptr<MorphInfo> createInfo(DzMorph& morph, DzFloatProperty& property)
    {
        const std::shared_ptr<MorphInfo> info = std::make_shared<MorphInfo>();
        info->morph = &morph;
        info->morphName = str::ToStd(morph.getName());
        info->property = &property;
        info->isFavorite = property.isFavorite();
        if (const DzMorphDeltas* const deltas = morph.getDeltas())
            info->deltasUri = KsHelpersDaz::GetDeltasUri(*deltas);
        info->isInDataFolder = str::StartsWith(info->deltasUri, "/data/");
        info->propertyPath = str::ToStd(property.getPath());

        all.push_back(info);
        if (info->isFavorite)
            favorites.push_back(info);
        byName.emplace(info->morphName, info);
        byLabel.emplace(str::ToStd(info->getLabelQ()), info);
        return info;
    }

    typedef std::map<std::string, std::shared_ptr<MorphInfo>, std::less<>> Index;

    static std::shared_ptr<MorphInfo> Find(const Index& index, std::string_view key)
    {
        const Index::const_iterator found = index.find(key);
        return found == index.end() ? nullptr : found->second;
    }

    DzNode& node;
    std::vector<std::shared_ptr<MorphInfo>> all;
    std::vector<std::shared_ptr<MorphInfo>> favorites;
    Index byName;
    Index byLabel;
};

MorphList::MorphList(DzNode& node) : _pImpl(new Impl(node))
{
    const DzObject* const object = node.getObject();
    if (!object)
        return;
    for (int i = 0; i < object->getNumModifiers(); ++i) {
        DzMorph* const morph = qobject_cast<DzMorph*>(object->getModifier(i));
        if (!morph)
            continue;
        if (morph->getNumProperties() != 1)
            throw Exception("expected modifier to have exactly one property");
        if (DzFloatProperty* const property = qobject_cast<DzFloatProperty*>(morph->getProperty(0)))
            _pImpl->createInfo(*morph, *property);
    }
}

MorphList::~MorphList() = default;

const std::vector<std::shared_ptr<MorphInfo>>& MorphList::getAll() const
{
    return _pImpl->all;
}

const std::vector<std::shared_ptr<MorphInfo>>& MorphList::getFavorites() const
{
    return _pImpl->favorites;
}

std::shared_ptr<MorphInfo> MorphList::findMorphByName(std::string_view name) const
{
    return Impl::Find(_pImpl->byName, name);
}

std::shared_ptr<MorphInfo> MorphList::findMorphByLabel(std::string_view label) const
{
    return Impl::Find(_pImpl->byLabel, label);
}

DzFloatProperty* MorphList::findPropertyInNode(std::string_view name, Location* where) const
{
    const QString wanted = str::ToQ(name);
    DzProperty* own = _pImpl->node.findProperty(wanted);
    if (!own)
        own = _pImpl->node.findPrivateProperty(wanted);
    DzFloatProperty* property = qobject_cast<DzFloatProperty*>(own);
    Location location = Location::Node;
    if (!property) {
        const std::shared_ptr<MorphInfo> info = findMorphByName(name);
        property = info ? info->property : nullptr;
        location = Location::Morph;
    }
    if (property && where)
        *where = location;
    return property;
}

DzFloatProperty& MorphList::findPropertyInNode_X(std::string_view name, Location* where) const
{
    DzFloatProperty* const property = findPropertyInNode(name, where);
    if (!property)
        throw Exception("failed to find property {} in node {}", str::Quote(name),
                        str::Quote(_pImpl->node.getLabel()));
    return *property;
}

std::vector<MorphList::ActiveMorph> MorphList::getActiveProperties() const
{
    std::vector<ActiveMorph> active;
    for (const std::shared_ptr<MorphInfo>& info : _pImpl->all) {
        const float value = info->property->getValue();
        if (std::abs(value) > std::numeric_limits<float>::epsilon())
            active.emplace_back(info->morphName, value);
    }
    return active;
}

std::vector<ExpandedProperty> MorphList::expandProperty(std::string_view name, Location* where) const
{
    Location location = Location::Morph;
    DzFloatProperty* const property = findPropertyInNode(name, &location);
    if (!property)
        return {};
    if (where)
        *where = location;
    std::vector<ExpandedProperty> driven = GetSubControllers(property);
    if (location == Location::Node && !driven.empty())
        return driven;
    ExpandedProperty itself;
    itself.property = property;
    driven.insert(driven.begin(), itself);
    return driven;
}

std::string MorphList::describe(const ExpandedProperty& entry) const
{
    const DzNumericProperty& property = *entry.property;
    const std::string label = str::ToStd(property.getLabel());
    const std::shared_ptr<MorphInfo> info = findMorphByLabel(label);
    return fmt::format("{}: {} ({}{}/{}{})", IsHeadMorph(&property) ? "Head" : "Body",
                       info ? info->morphName : str::ToStd(property.getName()), str::OPEN_QUOTE,
                       str::ToStd(property.getPath()), label, str::CLOSE_QUOTE);
}

std::shared_ptr<MorphInfo> MorphList::createMorph_X(DzMorphDeltas& deltas, std::string_view morphName,
                                                    bool replaceDeltasIfExists, const QString& label,
                                                    const QString& path)
{
    if (const std::shared_ptr<MorphInfo> existing = findMorphByName(morphName)) {
        if (!replaceDeltasIfExists)
            throw Exception("a morph with the name {} exists already", str::Quote(morphName));
        existing->morph->setDeltas(&deltas);
        return existing;
    }
    DzObject* const object = daz::GetObject(_pImpl->node, true);
    const QString name = str::ToQ(morphName);
    std::unique_ptr<DzMorph> owned(new DzMorph(&deltas));
    owned->setName(name);
    owned->setLabel(label);
    const DzError result = object->addModifier(owned.get());
    if (result != DZ_NO_ERROR)
        throw Exception("failed to add morph {} to node {}: {}", str::Quote(morphName),
                        str::Quote(_pImpl->node.getLabel()), KsHelpersDaz::GetErrorText(result));
    DzMorph* const morph = owned.release(); // the object's from now on

    DzFloatProperty& property = GetMorphProperty_X(*morph);
    property.setName(name);
    property.setLabel(name);
    property.setObjectName(name);
    property.setMinMax(0.0f, 1.0f);
    property.setIsClamped(true);
    property.setDisplayAsPercent(true);
    property.setPath(path);
    return _pImpl->createInfo(*morph, property);
}

bool MorphList::IsHeadMorph(const DzProperty* property)
{
    return property && str::StartsWith(str::ToStd(property->getPath()), "/Actor/Head/");
}

std::vector<ExpandedProperty> MorphList::GetSubControllers(const DzProperty* property)
{
    std::vector<ExpandedProperty> driven;
    if (!property)
        return driven;
    DzControllerListIterator links = property->slaveControllerListIterator();
    while (links.hasNext()) {
        const DzERCLink* const link = qobject_cast<DzERCLink*>(links.next());
        if (!link)
            continue;
        ExpandedProperty entry;
        entry.property = qobject_cast<DzNumericProperty*>(link->getOwner());
        entry.linkType = link->getType();
        entry.scalar = link->getScalar();
        entry.addend = link->getAddend();
        assert(entry.property);
        assert(entry.linkType < ExpandedProperty::ITSELF);
        driven.push_back(entry);
    }
    return driven;
}

DzFloatProperty& MorphList::GetMorphProperty_X(DzMorph& morph)
{
    const int count = morph.getNumProperties();
    if (count != 1)
        throw Exception("internal error: expected morph {} to have exactly one property, but it has {}",
                        str::Quote(morph.getName()), count);
    DzFloatProperty* const property = qobject_cast<DzFloatProperty*>(morph.getProperty(0));
    if (!property)
        throw Exception("property of morph {} is not a DzFloatProperty", str::Quote(morph.getName()));
    return *property;
}

DzMorph* MorphList::FindMorph(DzNode& node, std::string_view name)
{
    const DzObject* const object = node.getObject();
    return object ? qobject_cast<DzMorph*>(object->findModifier(str::ToQ(name))) : nullptr;
}

DzMorph& MorphList::FindMorph_X(DzNode& node, std::string_view name)
{
    DzMorph* const morph = FindMorph(node, name);
    if (!morph)
        throw Exception("cannot find morph {} in node {}", str::Quote(name), str::Quote(node.getLabel()));
    return *morph;
}

DzFloatProperty& MorphList::FindMorphProperty_X(DzNode& node, std::string_view name)
{
    return GetMorphProperty_X(FindMorph_X(node, name));
}

} // namespace kst
