// What files hold beyond what is read of them, on its way from one file to the next.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace dson {

/// Members of an object that nothing here understands, in the file's order: JSON text. Those that are
/// understood are there with what their own members hold beyond that, if anything, and with ids.
struct KeptMembers {
    std::vector<std::pair<std::string, std::string>> members; ///< by name, none of them `extra`
    std::vector<std::string> extras;                          ///< entries of `extra`

    bool empty() const { return members.empty() && extras.empty(); }
};

/// An entry of a list.
struct KeptPart {
    std::string id;   ///< empty for an entry without
    std::string text; ///< JSON
};

/// What a file holds beside its nodes and their modifiers, and the definitions of those.
struct KeptContent {
    std::string type; ///< of the file that it comes from
    KeptMembers file, info, scene;
    std::vector<KeptPart> materials, uvs;                      ///< of the scene
    std::vector<KeptPart> images, uvSets, materialDefinitions; ///< those parts refer to them
    std::vector<KeptPart> geometries; ///< those that only further geometries of its nodes refer to
    std::vector<KeptPart> animations; ///< whose values cannot be read, by URL
    std::vector<std::string> idle;    ///< what of it a person knows by name, such as "3 materials"
};

/// The text of a member; empty where there is no such member or it is no text.
std::string TextMember(const std::string& json, const std::string& name);
/// The object with the member set, in its place or behind the others.
std::string WithTextMember(const std::string& json, const std::string& name, const std::string& value);

/// Ids of the same file that texts in it refer to, such as "#Skin" and "Doll:#hip?rotation/x".
std::set<std::string> ReferencesIn(const std::string& json);
/// The same JSON with other ids in such texts.
/// @param ids  new ones by old ones
std::string WithReferences(const std::string& json, const std::map<std::string, std::string>& ids);

/// What a channel, or each of a list of channels, holds beyond what is read of it, with its id; empty for
/// nothing.
std::string RestOfChannels(const std::string& json);
/// A list of channels, each with what the one of its id in the other list has besides.
std::string WithChannels(const std::string& channels, const std::string& others);

/// Takes the channels that are known out of the entries of `extra`, but for what they hold beyond that, and
/// the entries that hold nothing else.
void DropChannels(KeptMembers& kept, const std::function<bool(const std::string& id)>& isKnown);

} // namespace dson
