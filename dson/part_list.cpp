// Lists of things, also where a file has something else in their place.
// SPDX-License-Identifier: MIT

#include "part_list.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "dson/reader.h"

#include <algorithm>

#include <fmt/format.h>

namespace dson {

namespace {

struct Wording {
    const char *one, *many;
};

/// In the order of the kinds.
constexpr Wording wordings[] = {
    {"list is one thing by itself, which is read", "lists are one thing by themselves, which is read"},
    {"list is an object, the members of which are read", "lists are objects, the members of which are read"},
    {"object is a list, the entries of which are read", "objects are lists, the entries of which are read"},
    {"member is there more than once, and read each time",
     "members are there more than once, and read each time"},
    {"list is within another, and its entries are read",
     "lists are within others, and their entries are read"},
    {"entry of a list is no object and left out", "entries of lists are no objects and left out"},
    {"list is something else and left out", "lists are something else and left out"},
};

/// Things have names or values of their own; what has objects alone is a list of them by their names.
bool IsListOfMembers(const Element& object)
{
    bool hasMembers = false;
    for (const simdjson::dom::key_value_pair member : Members(object)) {
        if (!member.value.is_object())
            return false;
        hasMembers = true;
    }
    return hasMembers;
}

/// All of the name, without those that are null.
std::vector<Element> MembersOf(const Element& owner, std::string_view name, OddLists& met)
{
    std::vector<Element> found;
    if (owner.is_object())
        for (const simdjson::dom::key_value_pair member : Members(owner))
            if (member.key == name && !member.value.is_null())
                found.push_back(member.value);
    if (found.size() > 1)
        met.add(OddLists::Repeated, name);
    return found;
}

void AddThings(const Element& list, std::string_view name, std::vector<KeyedPart>& parts, OddLists& met)
{
    for (const Element item : Items(list)) {
        base::ThrowIfCancelled();
        if (item.is_object()) {
            parts.push_back({item, {}});
        } else if (item.is_array()) {
            met.add(OddLists::Nested, name);
            AddThings(item, name, parts, met);
        } else {
            met.add(OddLists::NoThing, name);
        }
    }
}

void AddParts(const Element& list, std::string_view name, std::vector<KeyedPart>& parts, OddLists& met)
{
    if (list.is_array()) {
        AddThings(list, name, parts, met);
    } else if (!list.is_object()) {
        met.add(OddLists::Senseless, name);
    } else if (IsListOfMembers(list)) {
        met.add(OddLists::Object, name);
        for (const simdjson::dom::key_value_pair member : Members(list))
            parts.push_back({member.value, member.key});
    } else if (Members(list).size() > 0) {
        met.add(OddLists::OneThing, name);
        parts.push_back({list, {}});
    }
}

} // namespace

void OddLists::add(Kind kind, std::string_view name)
{
    constexpr std::size_t most = 3;
    Tally& tally = _tallies[kind];
    ++tally.count;
    const bool isNew = std::find(tally.names.begin(), tally.names.end(), name) == tally.names.end();
    if (isNew && tally.names.size() < most)
        tally.names.emplace_back(name);
}

std::vector<std::string> OddLists::phrases() const
{
    static_assert(std::size(wordings) == std::tuple_size_v<decltype(_tallies)>);
    std::vector<std::string> phrases;
    for (std::size_t kind = 0; kind < _tallies.size(); ++kind)
        if (const Tally& tally = _tallies[kind]; tally.count > 0)
            phrases.push_back(fmt::format("{}: {}",
                                          base::Counted(tally.count, wordings[kind].one, wordings[kind].many),
                                          fmt::join(tally.names, ", ")));
    return phrases;
}

std::vector<Element> PartsOf(const Element& owner, std::string_view name, OddLists& met)
{
    std::vector<Element> parts;
    for (const KeyedPart& keyed : KeyedPartsOf(owner, name, met))
        parts.push_back(keyed.part);
    return parts;
}

std::vector<KeyedPart> KeyedPartsOf(const Element& owner, std::string_view name, OddLists& met)
{
    std::vector<KeyedPart> parts;
    for (const Element& list : MembersOf(owner, name, met))
        AddParts(list, name, parts, met);
    return parts;
}

std::vector<Element> ScenesOf(const Element& root, OddLists& met)
{
    std::vector<Element> scenes;
    for (const Element& scene : MembersOf(root, "scene", met)) {
        if (scene.is_array()) {
            met.add(OddLists::List, "scene");
            std::vector<KeyedPart> listed;
            AddThings(scene, "scene", listed, met);
            for (const KeyedPart& keyed : listed)
                scenes.push_back(keyed.part);
        } else if (scene.is_object()) {
            scenes.push_back(scene);
        } else {
            met.add(OddLists::Senseless, "scene");
        }
    }
    return scenes;
}

} // namespace dson
