// Keeping what nothing here understands.
// SPDX-License-Identifier: MIT

#include "kept_parts.h"

#include "dson/reader.h"
#include "dson/uri.h"
#include "parts.h"

#include <algorithm>
#include <initializer_list>
#include <set>
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

/// A list whose entries are read as such: its count is known from them.
const Names listMembers{"count", "values"};

/// What a member that is read holds beyond that; empty for nothing.
std::string RestOfMember(std::string_view name, const Element& value)
{
    if (Contains({"channel", "general_scale", "rotation", "translation", "scale", "center_point", "end_point",
                  "orientation"},
                 name))
        return RestOfChannels(value);
    if (!value.is_object())
        return {};
    if (Contains({"vertices", "polygon_groups", "polygon_material_groups", "polylist", "polyline_list",
                  "edge_weights"},
                 name))
        return Without(value, listMembers, true);
    if (name == "graft")
        return Without(value, {"vertex_count", "poly_count", "vertex_pairs", "hidden_polys"}, true);
    if (name == "morph")
        return Without(value, {"vertex_count", "deltas", "hd_url"}, true);
    if (name == "skin" || name == "legacy_skin")
        return Without(value, {"node", "geometry", "vertex_count", "joints", "selection_map"}, true);
    return {};
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
        } else if (!Contains(known, member.key) || ReadingTally::isUnread(member.key)) {
            kept.members.emplace_back(member.key, simdjson::minify(member.value));
        } else if (std::string rest = RestOfMember(member.key, member.value); !rest.empty()) {
            kept.members.emplace_back(member.key, std::move(rest));
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
                   "general_scale", "formulas"},
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

KeptMembers KeptOfGeometryDefinition(const Element& definition)
{
    KeptMembers kept = KeptOf(definition,
                              {"id", "name", "label", "type", "edge_interpolation_mode", "vertices",
                               "polygon_groups", "polygon_material_groups", "polylist", "polyline_list",
                               "edge_weights", "default_uv_set", "graft"},
                              Whole);
    // The dials that every geometry is written with.
    DropChannels(kept, [](const std::string& id) { return id == "SubDIALevel" || id == "SubDRenderLevel"; });
    return kept;
}

KeptMembers KeptOfModifierDefinition(const Element& definition, const Modifier& parsed)
{
    KeptMembers kept = KeptOf(
        definition, {"id", "name", "parent", "channel", "region", "group", "formulas", "morph"}, Whole);
    if (!parsed.effect)
        return kept;
    const auto& effect = parsed.effect->members;
    const auto isOfEffect = [&effect](const auto& member) {
        return std::any_of(effect.begin(), effect.end(),
                           [&](const auto& other) { return other.first == member.first; });
    };
    kept.members.erase(std::remove_if(kept.members.begin(), kept.members.end(), isOfEffect),
                       kept.members.end());
    kept.extras.clear();
    return kept;
}

KeptMembers KeptOfSkin(const Element& definition)
{
    return KeptOf(definition, {"id", "parent", "skin", "legacy_skin"}, [](const Element& extra) {
        if (Text(extra, "type") != "skin_settings")
            return Whole(extra);
        return Without(extra,
                       {"auto_normalize_general", "auto_normalize_local", "auto_normalize_scale",
                        "binding_mode", "general_map_mode", "scale_mode", "blend_mode", "blend_vertex_count",
                        "blend_weights"},
                       true);
    });
}

std::size_t CountUnkept(const Element& owner)
{
    std::size_t count = 0;
    const auto look = [&count](const Element& part, Names read) {
        if (part.is_object() && !Without(part, read, true).empty())
            ++count;
    };
    ForEach(owner, "formulas", [&](const Element& formula) {
        look(formula, {"output", "stage", "operations"});
        ForEach(formula, "operations", [&](const Element& operation) {
            look(operation, {"op", "url", "val"});
        });
    });
    for (const char* const member : {"skin", "legacy_skin"})
        if (const auto skin = Find(owner, member))
            ForEach(*skin, "joints", [&](const Element& joint) {
                if (const auto weights = Find(joint, "node_weights"))
                    look(*weights, listMembers);
            });
    const auto morph = Find(owner, "morph");
    if (const auto deltas = morph ? Find(*morph, "deltas") : std::nullopt)
        look(*deltas, listMembers);
    return count;
}

std::string RestOfChannel(const Element& channel)
{
    if (!channel.is_object())
        return {};
    const Names read{"type",      "name",           "label",
                     "value",     "current_value",  "min",
                     "max",       "clamped",        "display_as_percent",
                     "visible",   "locked",         "auto_follow",
                     "step_size", "target_channel", "enum_values"};
    std::string rest = "{";
    bool saysMore = false;
    for (const auto member : Members(channel)) {
        if (Contains(read, member.key) && !ReadingTally::isUnread(member.key))
            continue;
        saysMore = saysMore || member.key != "id";
        rest += (rest.size() > 1 ? "," : "") + Json(std::string(member.key)).dump() + ':' +
                simdjson::minify(member.value);
    }
    return saysMore ? rest + '}' : std::string();
}

std::string RestOfChannels(const Element& channels)
{
    if (!channels.is_array())
        return RestOfChannel(channels);
    std::string list;
    for (const Element channel : Items(channels))
        if (const std::string rest = RestOfChannel(channel); !rest.empty() && Find(channel, "id"))
            list += (list.empty() ? "[" : ",") + rest;
    return list.empty() ? list : list + ']';
}

namespace {

/// Ids of this file's definitions that are no node's first geometry alone, or one of a node without a
/// definition, which has no mesh.
std::set<std::string> FurtherGeometries(const Element& scene)
{
    std::set<std::string> ids;
    ForEach(scene, "nodes", [&ids](const Element& node) {
        bool isFirst = !QuietText(node, "url").empty();
        ForEach(node, "geometries", [&](const Element& geometry) {
            const Uri url = ParseUri(Text(geometry, "url"));
            if (!std::exchange(isFirst, false) && url.path.empty() && !url.id.empty())
                ids.insert(url.id);
        });
    });
    return ids;
}

std::vector<KeptPart> PartsOfIds(const Element& root, std::string_view name, const std::set<std::string>& ids)
{
    std::vector<KeptPart> parts;
    ForEach(root, name, [&](const Element& part) {
        if (const std::string id = Text(part, "id"); ids.count(id) > 0)
            parts.push_back({id, simdjson::minify(part)});
    });
    return parts;
}

} // namespace

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
        kept->geometries = PartsOfIds(root, "geometry_library", FurtherGeometries(*scene));
        moves = Find(*scene, "animations").has_value();
    }
    const bool isNothing = !moves && kept->idle.empty() && kept->file.empty() && kept->info.empty() &&
                           kept->scene.empty() && kept->geometries.empty() && kept->materials.empty() &&
                           kept->uvs.empty() && kept->images.empty() && kept->uvSets.empty() &&
                           kept->materialDefinitions.empty() && kept->animations.empty();
    return isNothing ? nullptr : kept;
}

namespace {

Json Raw(const Element& element)
{
    return RawText(simdjson::minify(element));
}

/// What is there stays as it is.
void MergeMembers(Json& present, const Element& kept)
{
    for (const auto member : Members(kept))
        if (const std::string name(member.key); !present.contains(name))
            present[name] = Raw(member.value);
}

std::string IdOf(const Json& object)
{
    return object.is_object() && object.contains("id") && object["id"].is_string()
               ? object["id"].get<std::string>()
               : std::string();
}

/// Things that the list does not have come behind the others.
void MergeById(Json& present, const Element& kept)
{
    for (const Element item : Items(kept)) {
        const std::string id = Text(item, "id");
        const auto same =
            std::find_if(present.begin(), present.end(), [&id](const Json& one) { return IdOf(one) == id; });
        if (id.empty() || same == present.end())
            present.push_back(Raw(item));
        else
            MergeMembers(*same, item);
    }
}

void Merge(Json& present, const Element& kept)
{
    if (present.is_object() && kept.is_object())
        MergeMembers(present, kept);
    else if (present.is_array() && kept.is_array())
        MergeById(present, kept);
}

/// An entry of a list of channels is known by the id of its channel.
void MergeChannel(Json& present, const Element& kept)
{
    const auto channel = Find(kept, "channel");
    const std::string id = channel ? Text(*channel, "id") : std::string();
    const auto same = std::find_if(present.begin(), present.end(), [&id](const Json& one) {
        return one.is_object() && one.contains("channel") && IdOf(one["channel"]) == id;
    });
    if (id.empty() || same == present.end()) {
        present.push_back(Raw(kept));
        return;
    }
    Merge((*same)["channel"], *channel);
    MergeMembers(*same, kept);
}

/// Adds the kept members of an entry to the present one of its type.
void MergeExtra(Json& present, const Element& kept)
{
    if (present.contains("channels") && present["channels"].is_array())
        ForEach(kept, "channels", [&](const Element& entry) { MergeChannel(present["channels"], entry); });
    MergeMembers(present, kept);
}

/// @param merged  numbers of the entries that another one has been added to
void AddExtra(Json& extras, std::size_t written, std::set<std::size_t>& merged, const std::string& text)
{
    simdjson::dom::parser parser;
    Element kept;
    const bool isObject = parser.parse(text).get(kept) == simdjson::SUCCESS && kept.is_object();
    const std::string type = isObject ? Text(kept, "type") : std::string();
    for (std::size_t i = 0; i < written && !type.empty(); ++i) {
        Json& present = extras[i];
        const bool isSame = present.is_object() && present.contains("type") && present["type"] == Json(type);
        const bool areChannels = isSame && Find(kept, "channels") && present.contains("channels");
        if (areChannels || (isSame && merged.insert(i).second))
            return MergeExtra(present, kept);
    }
    extras.push_back(RawText(text));
}

void MergeText(Json& present, const std::string& text)
{
    simdjson::dom::parser parser;
    Element kept;
    if (parser.parse(text).get(kept) == simdjson::SUCCESS)
        Merge(present, kept);
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
        else
            MergeText(object[name], text);
    if (kept.extras.empty())
        return;
    Json& extras = object["extra"];
    const std::size_t written = extras.size();
    std::set<std::size_t> merged;
    for (const std::string& text : kept.extras)
        AddExtra(extras, written, merged, text);
}

Json KeptOr(const KeptMembers& kept, const std::string& member, Json written)
{
    for (const auto& [name, text] : kept.members)
        if (name == member && Json(TextMember(text, "type")) == written["type"])
            return RawText(text);
    return written;
}

} // namespace dson
