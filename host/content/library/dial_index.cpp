// A figure's dials by what files call them.
// SPDX-License-Identifier: MIT

#include "library/dial_index.h"

#include "library/content_paths.h"

#include <functional>

namespace openhost {

namespace {

std::size_t FragmentHash(const std::string& pathKey, const std::string& idOrName)
{
    const std::hash<std::string> hash;
    return hash(pathKey) * 31 + hash(idOrName);
}

/// Calls sort(item) for those that have been added since the last time.
template <class Items, class Sort>
void SortNew(const Items& items, std::size_t& sorted, const Sort& sort)
{
    for (; sorted < items.size(); ++sorted)
        sort(items[sorted]);
}

/// What was added first; null counts for nothing.
template <class Dial>
const Dial* FirstOf(const Dial* a, const Dial* b)
{
    return !b || (a && a->number < b->number) ? a : b;
}

/// What counts of a file's dials of one name: a lost one only where there is no other, aliases after dials.
template <class Dial>
const Dial* WeightierOf(const Dial* a, const Dial* b)
{
    const auto rank = [](const Dial& dial) { return !dial.dial ? 2 : dial.isAlias ? 1 : 0; };
    return !a || rank(*a) == rank(*b) ? FirstOf(a, b) : rank(*a) < rank(*b) ? a : b;
}

} // namespace

DzNumericProperty* DialIndex::Names::find(const std::string& nameOrId, const DzNumericProperty* asking) const
{
    const auto look = [&](const auto& dials) {
        const auto found = dials.find(nameOrId);
        return found == dials.end() || found->second->dial == asking ? nullptr : found->second->dial;
    };
    SortNew(_all, _sortedByName, [this](const Dial* dial) { _byName.emplace(dial->name, dial); });
    if (DzNumericProperty* const named = look(_byName))
        return named;
    SortNew(_all, _sortedById, [this](const Dial* dial) {
        if (dial->id != dial->name) // who looks here has looked for the name
            _byId.emplace(dial->id, dial);
    });
    return look(_byId);
}

const DialIndex::Dial* DialIndex::Names::findFolded(const std::string& folded,
                                                    const DzNumericProperty* asking) const
{
    SortNew(_all, _sortedByFoldedText, [this](const Dial* dial) {
        for (const std::string* const text : {&dial->id, &dial->name})
            _byFoldedText.emplace(FoldCase(*text), dial);
    });
    const auto found = _byFoldedText.find(folded);
    return found == _byFoldedText.end() || found->second->dial == asking ? nullptr : found->second;
}

void DialIndex::add(const dson::Modifier& modifier, const dson::Document& file, const std::string& filePath,
                    const DzNode& owner, DzNumericProperty& dial)
{
    const bool isAlias = modifier.channel.type == "alias";
    const bool isAlone = file.modifiers.size() == 1 && file.skins.empty();
    _all.push_back({_all.size(), filePath, modifier.id, modifier.name, &dial, isAlias, isAlone});
    OfNode& ofNode = _byNode[&owner];
    (isAlias ? ofNode.aliases : ofNode.dials).add(_all.back());
    if (isAlias)
        _aliases.add(_all.back());
    else if (&owner != &_root)
        _ofOthers.add(_all.back());
}

void DialIndex::lose(const std::string& filePath, const std::string& idOrName)
{
    _all.push_back({_all.size(), filePath, idOrName, idOrName, nullptr, false, false});
}

void DialIndex::loseFile(const std::string& filePath)
{
    _lostFiles.insert(PathKey(filePath));
}

const DialIndex::Dial* DialIndex::findInFile(const std::string& path, const std::string& idOrName) const
{
    SortNew(_all, _sortedByFragment, [this](const Dial& dial) {
        const std::string key = PathKey(dial.path);
        _byFragment.emplace(FragmentHash(key, dial.id), &dial);
        if (dial.name != dial.id)
            _byFragment.emplace(FragmentHash(key, dial.name), &dial);
    });
    const Dial* found = nullptr;
    const auto alike = _byFragment.equal_range(FragmentHash(path, idOrName));
    for (auto entry = alike.first; entry != alike.second; ++entry) {
        const Dial& dial = *entry->second;
        if ((dial.id == idOrName || dial.name == idOrName) && PathKey(dial.path) == path)
            found = WeightierOf(found, &dial);
    }
    return found;
}

DzNumericProperty* DialIndex::findAlone(const std::string& path, const DzNumericProperty* asking) const
{
    const std::hash<std::string> hash;
    SortNew(_all, _sortedByFile, [this, &hash](const Dial& dial) {
        if (dial.isAlone)
            _byFile.emplace(hash(PathKey(dial.path)), &dial);
    });
    const Dial* found = nullptr;
    const auto alike = _byFile.equal_range(hash(path));
    for (auto entry = alike.first; entry != alike.second; ++entry)
        if (PathKey(entry->second->path) == path)
            found = FirstOf(found, entry->second);
    return found && found->dial != asking ? found->dial : nullptr;
}

bool DialIndex::has(const std::string& filePath, const std::string& idOrName) const
{
    const Dial* const defined = findInFile(PathKey(filePath), idOrName);
    return defined && defined->dial;
}

DzNumericProperty* DialIndex::find(const dson::Uri& uri, const Place& place) const
{
    if (uri.path.empty())
        return find(uri.id, place);
    const std::string path = PathKey(uri.path);
    if (const Dial* const defined = findInFile(path, uri.id))
        return defined->dial;
    if (_lostFiles.count(path) > 0)
        return nullptr;
    DzNumericProperty* const dial = find(uri.id, place);
    // Files and what is in them get renamed one without the other.
    return dial ? dial : findAlone(path, place.asking);
}

DzNumericProperty* DialIndex::findExactly(const std::string& nameOrId) const
{
    DzNumericProperty* const dial = _ofRoot.find(nameOrId, nullptr);
    return dial ? dial : _ofOthers.find(nameOrId, nullptr);
}

DzNumericProperty* DialIndex::findFolded(const std::string& folded) const
{
    const Dial* const first =
        FirstOf(_ofRoot.findFolded(folded, nullptr), _ofOthers.findFolded(folded, nullptr));
    return first ? first->dial : nullptr;
}

DzNumericProperty* DialIndex::find(const std::string& nameOrId, const Place& place) const
{
    if (nameOrId.empty())
        return nullptr;
    const std::string folded = FoldCase(nameOrId);
    if (place.node)
        if (DzNumericProperty* const own = findOn(*place.node, nameOrId, folded, place.asking))
            return own;
    // An alias asks, if any: dials are never what is not to be found.
    if (DzNumericProperty* const dial = findExactly(nameOrId))
        return dial;
    DzNumericProperty* alike = findFolded(folded);
    if (!alike) {
        if (DzNumericProperty* const alias = _aliases.find(nameOrId, place.asking))
            return alias;
        const Dial* const alias = _aliases.findFolded(folded, place.asking);
        alike = alias ? alias->dial : nullptr;
    }
    if (alike)
        _otherSpellings.insert(nameOrId);
    return alike;
}

DzNumericProperty* DialIndex::findOn(const DzNode& node, const std::string& nameOrId,
                                     const std::string& folded, const DzNumericProperty* asking) const
{
    const auto ofNode = _byNode.find(&node);
    if (ofNode == _byNode.end())
        return nullptr;
    const Names &dials = ofNode->second.dials, &aliases = ofNode->second.aliases;
    if (DzNumericProperty* const dial = dials.find(nameOrId, asking))
        return dial;
    // Another dial's exact name comes before this node's in other letters.
    if (DzNumericProperty* const alias = aliases.find(nameOrId, asking))
        return alias;
    const Dial* const alike = findExactly(nameOrId) ? nullptr : dials.findFolded(folded, asking);
    if (alike)
        _otherSpellings.insert(nameOrId);
    return alike ? alike->dial : nullptr;
}

} // namespace openhost
