// The morphs of one node, and those that are dialed in.
// SPDX-License-Identifier: MIT

#include "shared/ks_morphlist.h"

#include "shared/ks_exception.h"
#include "shared/ks_string.h"

#include <cmath>
#include <limits>
#include <map>

#include <dzfloatproperty.h>
#include <dzmorph.h>
#include <dzmorphdeltas.h>
#include <dznode.h>
#include <dzobject.h>
#include <dzuri.h>

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

    void add(DzMorph& morph, DzFloatProperty& property)
    {
        const std::shared_ptr<MorphInfo> info = std::make_shared<MorphInfo>();
        info->morph = &morph;
        info->morphName = str::ToStd(morph.getName());
        info->property = &property;
        info->isFavorite = property.isFavorite();
        if (const DzMorphDeltas* const deltas = morph.getDeltas())
            info->deltasUri = str::ToStd(deltas->getUri().toString());
        info->isInDataFolder = str::StartsWith(info->deltasUri, "/data/");
        info->propertyPath = str::ToStd(property.getPath());

        all.push_back(info);
        if (info->isFavorite)
            favorites.push_back(info);
        byName.emplace(info->morphName, info);
        byLabel.emplace(str::ToStd(info->getLabelQ()), info);
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
            _pImpl->add(*morph, *property);
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
