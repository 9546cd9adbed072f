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

} // namespace

void DialIndex::add(const dson::Modifier& modifier, const dson::Document& file, const std::string& filePath,
                    DzNumericProperty& dial)
{
    const std::string path = PathKey(filePath);
    if (file.modifiers.size() == 1 && file.skins.empty())
        _byFile.emplace(path, &dial);
    Names& names = modifier.channel.type == "alias" ? _aliases : _dials;
    for (const std::string& text : {modifier.id, modifier.name}) {
        DzNumericProperty*& known = _byFragment[FragmentKey(path, text)];
        known = known ? known : &dial;
        names.byFoldedName.emplace(FoldCase(text), &dial);
    }
    names.byName.emplace(modifier.name, &dial);
    names.byId.emplace(modifier.id, &dial);
}

void DialIndex::lose(const std::string& filePath, const std::string& idOrName)
{
    _byFragment.emplace(FragmentKey(PathKey(filePath), idOrName), nullptr);
}

void DialIndex::loseFile(const std::string& filePath)
{
    _lostFiles.insert(PathKey(filePath));
}

DzNumericProperty* DialIndex::look(const Dials& dials, const std::string& key)
{
    const auto found = dials.find(key);
    return found == dials.end() ? nullptr : found->second;
}

bool DialIndex::has(const std::string& filePath, const std::string& idOrName) const
{
    return look(_byFragment, FragmentKey(PathKey(filePath), idOrName)) != nullptr;
}

DzNumericProperty* DialIndex::find(const dson::Uri& uri) const
{
    if (uri.path.empty())
        return find(uri.id);
    const std::string path = PathKey(uri.path);
    const auto defined = _byFragment.find(FragmentKey(path, uri.id));
    if (defined != _byFragment.end())
        return defined->second;
    if (_lostFiles.count(path) > 0)
        return nullptr;
    DzNumericProperty* const dial = find(uri.id);
    // Files and what is in them get renamed one without the other.
    return dial ? dial : look(_byFile, path);
}

DzNumericProperty* DialIndex::find(const std::string& nameOrId) const
{
    if (nameOrId.empty())
        return nullptr;
    const std::string folded = FoldCase(nameOrId);
    for (const Names* const names : {&_dials, &_aliases})
        for (const auto& [dials, key] :
             {std::pair(&names->byName, &nameOrId), std::pair(&names->byId, &nameOrId),
              std::pair(&names->byFoldedName, &folded)})
            if (DzNumericProperty* const dial = look(*dials, *key))
                return dial;
    return nullptr;
}

} // namespace openhost
