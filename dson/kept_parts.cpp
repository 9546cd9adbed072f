// Keeping what nothing here understands.
// SPDX-License-Identifier: MIT

#include "kept_parts.h"

#include "dson/reader.h"
#include "parts.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace dson {

namespace {

using Names = std::initializer_list<std::string_view>;

bool Contains(Names names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Calls visit(entry) for each entry of a list; what should be a list and is none counts as its only entry.
template <class Visit>
void ForEachEntry(const Element& list, Visit visit)
{
    if (list.is_array())
        for (const Element item : Items(list))
            visit(item);
    else if (!list.is_null())
        visit(list);
}

/// What remains of an entry of `extra` when the named members are taken out of it.
/// @param isRead  its type alone has been read, too
/// @return nothing where that says nothing more
std::string Without(const Element& extra, Names read, bool isRead)
{
    std::string rest;
    bool isChanged = isRead, saysMore = false;
    for (const auto member : Members(extra)) {
        if (Contains(read, member.key)) {
            isChanged = true;
            continue;
        }
        saysMore = saysMore || (member.key != "type" && member.key != "version");
        rest += (rest.empty() ? "{" : ",") + Json(std::string(member.key)).dump() + ':' +
                simdjson::minify(member.value);
    }
    if (!isChanged)
        return simdjson::minify(extra);
    return saysMore ? rest + '}' : std::string();
}

bool IsOfDFormer(const Element& extra)
{
    return Text(extra, "type").compare(0, 17, "studio/node/dform") == 0;
}

/// What its reader has not made favourites or a part of a D-Former of.
std::string RestOfExtra(const Element& extra)
{
    if (!extra.is_object())
        return simdjson::minify(extra);
    const bool isOfDFormer = IsOfDFormer(extra);
    return isOfDFormer ? Without(extra, {"influence_mode", "falloff"}, true)
                       : Without(extra, {"favorites"}, false);
}

std::string RestOfDefinitionExtra(const Element& extra)
{
    return IsOfDFormer(extra) ? RestOfExtra(extra) : simdjson::minify(extra);
}

/// @param known  members that are read; of several with one name the first is
template <class RestOf>
KeptMembers KeptOf(const Element& object, Names known, RestOf restOf)
{
    KeptMembers kept;
    if (!object.is_object())
        return kept;
    bool hasExtra = false;
    for (const auto member : Members(object)) {
        if (member.key == "extra") {
            const bool isRead = !std::exchange(hasExtra, true);
            ForEachEntry(member.value, [&](const Element& entry) {
                std::string rest = isRead ? restOf(entry) : simdjson::minify(entry);
                if (!rest.empty())
                    kept.extras.push_back(std::move(rest));
            });
        } else if (!Contains(known, member.key)) {
            kept.members.emplace_back(member.key, simdjson::minify(member.value));
        }
    }
    return kept;
}

std::string Whole(const Element& extra)
{
    return simdjson::minify(extra);
}

/// The entries of all members of that name.
std::vector<KeptPart> Parts(const Element& owner, std::string_view name, const char* idMember = "id")
{
    std::vector<KeptPart> parts;
    if (owner.is_object())
        for (const auto member : Members(owner))
            if (member.key == name)
                ForEachEntry(member.value, [&](const Element& entry) {
                    parts.push_back({Text(entry, idMember), simdjson::minify(entry)});
                });
    return parts;
}

std::vector<KeptPart> UnreadAnimations(const Element& scene)
{
    std::vector<KeptPart> unread;
    std::size_t strange = 0;
    ForEach(scene, "animations", [&](const Element& entry) {
        if (!ParseAnimation(entry, strange))
            unread.push_back({Text(entry, "url"), simdjson::minify(entry)});
    });
    return unread;
}

/// The files that it wants are loaded with it and are in the scene from then on.
std::string RestOfSceneExtra(const Element& extra)
{
    return NamesAddOns(extra) ? std::string() : simdjson::minify(extra);
}

void KeepScene(const Element& scene, KeptContent& kept)
{
    kept.scene = KeptOf(scene, {"nodes", "modifiers", "materials", "uvs", "animations"}, RestOfSceneExtra);
    kept.materials = Parts(scene, "materials");
    kept.uvs = Parts(scene, "uvs");
    kept.animations = UnreadAnimations(scene);
}

} // namespace

KeptMembers KeptOfNode(const Element& definition)
{
    return KeptOf(definition,
                  {"id", "name", "type", "label", "parent", "rotation_order", "inherits_scale",
                   "center_point", "end_point", "orientation", "rotation", "translation", "scale",
                   "general_scale", "presentation", "formulas"},
                  RestOfDefinitionExtra);
}

KeptMembers KeptOfNodeInstance(const Element& instance)
{
    return KeptOf(instance,
                  {"id", "url", "name", "label", "parent", "parent_in_place", "conform_target", "translation",
                   "rotation", "scale", "general_scale", "formulas", "geometries"},
                  RestOfExtra);
}

KeptMembers KeptOfGeometry(const Element& instance)
{
    return KeptOf(
        instance,
        {"id", "url", "name", "label", "type", "current_subdivision_level", "edge_interpolation_mode"},
        RestOfExtra);
}

KeptMembers KeptOfJoint(const Element& joint)
{
    return KeptOf(joint, {"id", "node", "node_weights", "scale_weights", "local_weights"}, Whole);
}

KeptMembers KeptOfModifier(const Element& instance)
{
    return KeptOf(instance, {"id", "url", "parent", "group", "channel", "formulas"}, Whole);
}

std::shared_ptr<const KeptContent> KeptOfFile(const Element& root, std::vector<std::string> idle)
{
    auto kept = std::make_shared<KeptContent>();
    kept->idle = std::move(idle);
    kept->file = KeptOf(root,
                        {"file_version", "asset_info", "geometry_library", "node_library", "uv_set_library",
                         "modifier_library", "image_library", "material_library", "scene"},
                        Whole);
    if (const auto info = Find(root, "asset_info")) {
        kept->type = Text(*info, "type");
        kept->info = KeptOf(*info, {"id", "type", "contributor", "revision", "modified"}, Whole);
    }
    kept->images = Parts(root, "image_library");
    kept->uvSets = Parts(root, "uv_set_library");
    kept->materialDefinitions = Parts(root, "material_library");
    bool moves = false;
    if (const auto scene = Find(root, "scene")) {
        KeepScene(*scene, *kept);
        moves = Find(*scene, "animations").has_value();
    }
    const bool isNothing = !moves && kept->idle.empty() && kept->file.empty() && kept->info.empty() &&
                           kept->scene.empty() && kept->materials.empty() && kept->uvs.empty() &&
                           kept->images.empty() && kept->uvSets.empty() &&
                           kept->materialDefinitions.empty() && kept->animations.empty();
    return isNothing ? nullptr : kept;
}

namespace {

/// Adds the kept members of an entry to the present one of its type.
void MergeExtra(Json& present, const Element& kept)
{
    for (const auto member : Members(kept)) {
        const std::string name(member.key);
        Json* const there = present.contains(name) ? &present[name] : nullptr;
        if (!there)
            present[name] = RawText(simdjson::minify(member.value));
        else if (name == "channels" && there->is_array())
            ForEachEntry(member.value, [there](const Element& entry) {
                there->push_back(RawText(simdjson::minify(entry)));
            });
    }
}

void AddExtra(Json& extras, std::size_t written, const std::string& text)
{
    simdjson::dom::parser parser;
    Element kept;
    const bool isObject = parser.parse(text).get(kept) == simdjson::SUCCESS && kept.is_object();
    const std::string type = isObject ? Text(kept, "type") : std::string();
    for (std::size_t i = 0; i < written && !type.empty() && Find(kept, "channels"); ++i) {
        Json& present = extras[i];
        const bool isSame = present.is_object() && present.contains("type") && present["type"] == Json(type);
        if (isSame && present.contains("channels"))
            return MergeExtra(present, kept);
    }
    extras.push_back(RawText(text));
}

} // namespace

void AddKept(Json& object, const KeptMembers& kept)
{
    if (kept.empty())
        return;
    const Json before = [&object] {
        Json names = Json::object();
        for (const auto& member : object.items())
            names[member.key()] = nullptr;
        return names;
    }();
    // As members of a list, so that two of one name stay two.
    auto& members = object.get_ref<Json::object_t&>();
    for (const auto& [name, text] : kept.members)
        if (!before.contains(name))
            members.emplace_back(name, RawText(text));
    if (kept.extras.empty())
        return;
    Json& extras = object["extra"];
    const std::size_t written = extras.size();
    for (const std::string& text : kept.extras)
        AddExtra(extras, written, text);
}

} // namespace dson
