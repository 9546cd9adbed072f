// What a file says of a modifier that is neither morph nor dial.
// SPDX-License-Identifier: MIT

#include "figure/file_effect.h"

#include "dzmodifier.h"
#include "dznumericproperty.h"
#include "figure/channel_type.h"

#include <algorithm>
#include <unordered_map>

namespace openhost {

namespace {

DzNumericProperty* Look(const std::map<std::string, DzNumericProperty*>& properties, const std::string& key)
{
    const auto found = properties.find(key);
    return found == properties.end() ? nullptr : found->second;
}

} // namespace

FileEffect::FileEffect(dson::Effect effect, DzModifier& owner) : QObject(&owner), _effect(std::move(effect))
{
    for (int i = 0; i < owner.getNumProperties(); ++i)
        if (auto* const property = qobject_cast<DzNumericProperty*>(owner.getProperty(i)))
            _byFoldedName.insert(property->getName().toCaseFolded(), property);
}

FileEffect* FileEffect::of(const DzModifier& modifier)
{
    return modifier.findChild<FileEffect*>(QString(), Qt::FindDirectChildrenOnly);
}

void FileEffect::supplement(const dson::Effect& instance)
{
    for (const auto& member : instance.members) {
        const bool isThere = std::any_of(_effect.members.begin(), _effect.members.end(),
                                         [&](const auto& own) { return own.first == member.first; });
        if (!isThere)
            _effect.members.push_back(member);
    }
}

DzNumericProperty* FileEffect::findNamed(const std::string& name) const
{
    return qobject_cast<DzNumericProperty*>(
        _byFoldedName.value(QString::fromStdString(name).toCaseFolded()).data());
}

void FileEffect::enter(const dson::Channel& channel, DzNumericProperty& property)
{
    _byFoldedName.insert(property.getName().toCaseFolded(), &property);
    _byId.emplace(channel.id, &property);
    _byName.emplace(channel.name, &property);
}

const dson::Channel* FileEffect::describedChannel(const std::string& id) const
{
    for (const dson::EffectChannel& one : _effect.channels)
        if (one.channel.id == id)
            return &one.channel;
    return nullptr;
}

void FileEffect::keep(const dson::Channel& channel)
{
    if (!channel.otherValue.empty())
        _kept[channel.id] = channel;
}

bool FileEffect::keeps(const std::string& id) const
{
    return _kept.count(id) > 0;
}

DzNumericProperty* FileEffect::find(const std::string& idOrName) const
{
    DzNumericProperty* const property = Look(_byId, idOrName);
    return property ? property : Look(_byName, idOrName);
}

dson::Effect FileEffect::present() const
{
    dson::Effect now = _effect;
    now.channels.clear();
    std::unordered_map<const DzNumericProperty*, const std::string*> ids;
    for (const auto& entry : _byId)
        ids[entry.second] = &entry.first;
    const auto* const owner = qobject_cast<const DzModifier*>(parent());
    for (int i = 0; i < owner->getNumProperties(); ++i) {
        const auto* const property = qobject_cast<const DzNumericProperty*>(owner->getProperty(i));
        if (!property || property == _own)
            continue;
        dson::EffectChannel one;
        one.channel.id = one.channel.name = property->getName().toStdString();
        one.channel.type = ChannelTypeOf(*property);
        const auto id = ids.find(property);
        if (id != ids.end())
            one.channel.id = *id->second;
        else if (property->getDoubleRawValue() == property->getDoubleDefaultValue())
            continue;
        one.channel.currentValue = property->getDoubleRawValue();
        now.channels.push_back(std::move(one));
    }
    for (const auto& kept : _kept)
        now.channels.push_back({kept.second, {}, true});
    return now;
}

} // namespace openhost
