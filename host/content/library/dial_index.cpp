// A figure's dials by what files call them.
// SPDX-License-Identifier: MIT

#include "library/dial_index.h"

#include "library/content_paths.h"

namespace openhost {

namespace {

std::string FragmentKey(const std::string& pathKey, const std::string& id)
{
    return pathKey + "#" + id;
}

DzNumericProperty* Look(const std::unordered_map<std::string, DzNumericProperty*>& dials,
                        const std::string& key, const DzNumericProperty* asking)
{
    const auto found = dials.find(key);
    return found == dials.end() || found->second == asking ? nullptr : found->second;
}

} // namespace

void DialIndex::Names::add(const dson::Modifier& modifier, DzNumericProperty& dial)
{
    byName.emplace(modifier.name, &dial);
    byId.emplace(modifier.id, &dial);
    for (const std::string& text : {modifier.id, modifier.name})
        byFoldedName.emplace(FoldCase(text), &dial);
}

DzNumericProperty* DialIndex::Names::find(const std::string& nameOrId, const DzNumericProperty* asking) const
{
    DzNumericProperty* const named = Look(byName, nameOrId, asking);
    return named ? named : Look(byId, nameOrId, asking);
}

DzNumericProperty* DialIndex::Names::findFolded(const std::string& folded,
                                                const DzNumericProperty* asking) const
{
    return Look(byFoldedName, folded, asking);
}

void DialIndex::add(const dson::Modifier& modifier, const dson::Document& file, const std::string& filePath,
                    const DzNode& owner, DzNumericProperty& dial)
{
    const std::string path = PathKey(filePath);
    const bool isAlias = modifier.channel.type == "alias";
    if (file.modifiers.size() == 1 && file.skins.empty())
        _byFile.emplace(path, &dial);
    for (const std::string& text : {modifier.id, modifier.name})
        enterFragment(FragmentKey(path, text), {&dial, isAlias});
    OfNode& ofNode = _byNode[&owner];
    (isAlias ? ofNode.aliases : ofNode.dials).add(modifier, dial);
    (isAlias ? _aliases : _dials).add(modifier, dial);
}

void DialIndex::enterFragment(const std::string& key, Defined defined)
{
    const auto [known, isNew] = _byFragment.emplace(key, defined);
    if (!isNew && (!known->second.dial || (known->second.isAlias && !defined.isAlias)))
        known->second = defined;
}

void DialIndex::lose(const std::string& filePath, const std::string& idOrName)
{
    _byFragment.emplace(FragmentKey(PathKey(filePath), idOrName), Defined{nullptr, false});
}

void DialIndex::loseFile(const std::string& filePath)
{
    _lostFiles.insert(PathKey(filePath));
}

bool DialIndex::has(const std::string& filePath, const std::string& idOrName) const
{
    const auto defined = _byFragment.find(FragmentKey(PathKey(filePath), idOrName));
    return defined != _byFragment.end() && defined->second.dial;
}

DzNumericProperty* DialIndex::find(const dson::Uri& uri, const Place& place) const
{
    if (uri.path.empty())
        return find(uri.id, place);
    const std::string path = PathKey(uri.path);
    const auto defined = _byFragment.find(FragmentKey(path, uri.id));
    if (defined != _byFragment.end())
        return defined->second.dial;
    if (_lostFiles.count(path) > 0)
        return nullptr;
    DzNumericProperty* const dial = find(uri.id, place);
    // Files and what is in them get renamed one without the other.
    return dial ? dial : Look(_byFile, path, place.asking);
}

DzNumericProperty* DialIndex::find(const std::string& nameOrId, const Place& place) const
{
    if (nameOrId.empty())
        return nullptr;
    const std::string folded = FoldCase(nameOrId);
    if (place.node)
        if (DzNumericProperty* const own = findOn(*place.node, nameOrId, folded, place.asking))
            return own;
    const auto root = _byNode.find(&_root);
    if (root != _byNode.end())
        if (DzNumericProperty* const dial = root->second.dials.find(nameOrId, place.asking))
            return dial;
    for (const Names* const names : {&_dials, &_aliases}) {
        if (DzNumericProperty* const dial = names->find(nameOrId, place.asking))
            return dial;
        if (DzNumericProperty* const dial = names->findFolded(folded, place.asking))
            return dial;
    }
    return nullptr;
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
    return _dials.find(nameOrId, asking) ? nullptr : dials.findFolded(folded, asking);
}

} // namespace openhost
