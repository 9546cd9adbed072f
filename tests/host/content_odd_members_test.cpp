// Members of other types than they should be of: none is passed over in silence.
// SPDX-License-Identifier: MIT

#include "dson/reader.h"
#include "tests/host/foreign_fixture.h"

#include <functional>
#include <regex>
#include <utility>

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

/// A file with all that is read of figures, as another program would write it.
const char* const figure =
    R"({"file_version": "0.6.1.0", "asset_info": {"id": "/data/Nord/F.dsf", "type": "figure",
    "contributor": {"author": "Nord", "email": "n@o", "website": "n.o"}, "revision": "1.0", "modified": "2024"},
    "geometry_library": [{"id": "g", "name": "g", "label": "G", "type": "polygon_mesh",
        "edge_interpolation_mode": "edges_only", "default_uv_set": "#u",
        "vertices": {"count": 4, "values": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]]},
        "polygon_groups": {"count": 1, "values": ["hip"]},
        "polygon_material_groups": {"count": 1, "values": ["Skin"]},
        "polylist": {"count": 1, "values": [[0,0,0,1,2,3]]},
        "polyline_list": {"count": 1, "values": [[0,0,0,1]]},
        "edge_weights": {"count": 1, "values": [[0,1,2]]},
        "graft": {"vertex_count": 9, "poly_count": 3, "vertex_pairs": {"count": 1, "values": [[0,5]]},
                  "hidden_polys": {"count": 1, "values": [2]}},
        "extra": [{"type": "studio_geometry_channels", "channels": [
            {"channel": {"id": "SubDIALevel", "type": "int", "value": 1}}]}]}],
    "uv_set_library": [{"id": "u", "uvs": {"count": 5, "values": [[0,0],[1,0],[1,1],[0,1],[0.5,1]]},
        "polygon_vertex_indices": [[0,2,4]]}],
    "node_library": [
        {"id": "F", "name": "F", "label": "F", "type": "figure", "presentation": {"type": "Actor"},
         "rotation_order": "XYZ", "inherits_scale": true,
         "general_scale": {"id": "general_scale", "type": "float", "value": 1}},
        {"id": "hip", "name": "hip", "label": "Hip", "type": "bone", "parent": "#F",
         "center_point": [{"id": "x", "value": 1}, {"id": "y", "value": 0}, {"id": "z", "value": 0}],
         "end_point": [0, 1, 0], "orientation": [0, 0, 0],
         "rotation": [{"id": "x", "type": "float", "name": "XRotate", "label": "Bend", "value": 0, "min": -90,
            "max": 90, "clamped": true, "visible": true, "locked": false, "auto_follow": true,
            "display_as_percent": false, "step_size": 1}],
         "formulas": [{"output": "hip:#hip?end_point/x", "stage": "sum", "operations": [
            {"op": "push", "url": "F:#d?value"}, {"op": "push", "val": [0, 0, 0, 0, 0]},
            {"op": "push", "val": [1, 2, 0, 0, 0]}, {"op": "push", "val": 2}, {"op": "spline_tcb"}]}]}],
    "modifier_library": [
        {"id": "s", "parent": "#g", "skin": {"node": "#F", "geometry": "#g", "vertex_count": 4,
            "joints": [{"id": "hip", "node": "#hip", "node_weights": {"count": 1, "values": [[0, 1]]},
                "scale_weights": {"count": 1, "values": [[0, 1]]},
                "local_weights": {"x": {"count": 1, "values": [[0, 1]]}, "y": {"count": 1, "values": [[0, 1]]},
                                  "z": {"count": 1, "values": [[0, 1]]}}}],
            "selection_map": [{"id": "d", "mappings": [["hip", "hip"]]}]},
         "extra": [{"type": "skin_settings", "auto_normalize_general": true, "auto_normalize_local": true,
            "auto_normalize_scale": true, "binding_mode": "Blended", "general_map_mode": "Linear",
            "scale_mode": "BindingMaps", "blend_mode": "BlendLinearDualQuat",
            "blend_weights": {"count": 1, "values": [[0, 0.5]]}}]},
        {"id": "m", "name": "m", "parent": "#F", "region": "Head", "group": "/Nose",
         "presentation": {"type": "Modifier/Shape"},
         "channel": {"id": "value", "type": "float", "name": "Value", "label": "Nose", "value": 0,
            "current_value": 0.5, "min": 0, "max": 1, "clamped": true, "visible": true, "locked": false,
            "auto_follow": true, "display_as_percent": true, "step_size": 0.01},
         "morph": {"vertex_count": 4, "hd_url": "/a.dhdm", "deltas": {"count": 1, "values": [[0, 1, 0, 0]]}}},
        {"id": "e", "name": "e", "parent": "#F", "channel": {"id": "value", "type": "enum", "value": 1,
            "enum_values": ["a", "b"]}},
        {"id": "a", "name": "a", "parent": "#F", "channel": {"id": "value", "type": "alias",
            "target_channel": "F:#m?value"}},
        {"id": "w", "name": "w", "parent": "#F", "extra": [{"type": "studio/modifier/push",
            "push_post_smooth": true, "influence_vertex_count": 4,
            "influence_weights": {"count": 1, "values": [[0, 1]]}},
            {"type": "studio_modifier_channels", "channels": [{"group": "/Push", "channel": {"id": "Value",
            "name": "Value", "type": "float", "value": 1}}]}]}]})";

/// Likewise of scenes.
const char* const scene = R"({"file_version": "0.6.1.0", "asset_info": {"id": "/S.duf", "type": "scene"},
    "scene": {"nodes": [
        {"id": "F-1", "url": "/data/Nord/F.dsf#F", "name": "F", "label": "F", "parent_in_place": "#P",
         "rotation_order": "XYZ", "inherits_scale": true,
         "translation": [{"id": "x", "type": "float", "current_value": 5, "min": 0, "max": 9, "clamped": true,
            "visible": true, "locked": false, "label": "X"}], "general_scale": {"id": "general_scale",
            "current_value": 1},
         "geometries": [{"id": "g-1", "url": "/data/Nord/F.dsf#g", "name": "g", "label": "G",
            "type": "subdivision_surface", "current_subdivision_level": 1, "edge_interpolation_mode": "edges_only",
            "extra": [{"type": "studio_geometry_channels", "channels": [
                {"channel": {"id": "SubDRenderLevel", "type": "int", "current_value": 2}}]}]}],
         "extra": [{"type": "studio_node_channels", "channels": [
                {"channel": {"id": "Size", "type": "float", "current_value": 2}}]},
            {"type": "studio/node/favorites", "favorites": ["Size/value"]}]},
        {"id": "P", "url": "/data/Nord/F.dsf#F", "parent": "#Q", "conform_target": "#F-1"}],
    "modifiers": [{"id": "m-1", "url": "/data/Nord/F.dsf#m", "parent": "#g-1", "name": "m", "group": "/Nose",
        "channel": {"id": "value", "type": "float", "current_value": 0.5, "min": 0, "max": 1, "clamped": true,
            "visible": true, "locked": false, "label": "Nose"}}],
    "animations": [{"url": "F-1:?translation/x/value", "keys": [[0, 1]]}]}})";

class OddMembers : public testing::Test {
protected:
    dson::Document read(const Json& json) const
    {
        const std::filesystem::path file = std::filesystem::path(_folder.path().toStdString()) / "odd.duf";
        WriteBytes(file, json.dump());
        return dson::ReadDocument(file);
    }

    QTemporaryDir _folder;
};

/// Of another type than the value, and such that no reading makes sense of it.
std::vector<Json> OddFor(const Json& value)
{
    std::vector<Json> odd;
    if (!value.is_string())
        odd.emplace_back("odd");
    if (!value.is_number() && !value.is_boolean())
        odd.emplace_back(7.5);
    if (!value.is_array())
        odd.push_back(Json::array({Json::array({"odd"})}));
    if (!value.is_object())
        odd.push_back(Json{{"odd", 1}});
    return odd;
}

/// Calls visit(path, odd) with every member and item replaced in turn.
void ForEachOdd(Json& at, const std::string& path,
                const std::function<void(const std::string&, const Json&)>& visit)
{
    for (auto child = at.begin(); child != at.end(); ++child) {
        const std::string name =
            path + '/' + (at.is_object() ? child.key() : std::to_string(child - at.begin()));
        const Json kept = *child;
        for (const Json& odd : OddFor(kept)) {
            *child = odd;
            visit(name, odd);
        }
        *child = kept;
        if (kept.is_structured())
            ForEachOdd(*child, name, visit);
    }
}

/// What is not read, or makes sense after all, or is told by what puts the figure together.
bool NeedsNoLine(const std::string& path, const Json& odd)
{
    const auto is = [&path](const char* pattern) { return std::regex_match(path, std::regex(pattern)); };
    const bool isOfUnknownKind = odd.is_object() && is(".*/(extra|channels|selection_map)(/\\d+)?");
    const bool isAnybodys = is(".*/extra/\\d+");
    const bool isKnownFromList = is(".*/count");
    const bool isUnread = is("/geometry_library/0/extra/0/(type|channels/0/channel/type)|"
                             "/geometry_library/0/polyline_list/values/0/[01]|"
                             ".*/general_scale/id|/modifier_library/0/(parent|skin/selection_map/0/id)|"
                             "/modifier_library/0/skin/joints/0/id|/scene/modifiers/0/channel/id");
    const bool isPlainNumber = odd.is_number() && is(".*/(general_scale|operations/\\d+/val)");
    const bool isToldLater = is("/scene/modifiers/0/channel/current_value|/scene/animations/0/keys/.*") ||
                             (odd.is_structured() && is("/scene/animations/0/keys"));
    return isOfUnknownKind || isAnybodys || isKnownFromList || isUnread || isPlainNumber || isToldLater;
}

} // namespace

TEST_F(OddMembers, are_told)
{
    for (const char* const text : {figure, scene}) {
        Json json = Json::parse(text);
        EXPECT_EQ(read(json).diagnostics, base::Diagnostics{}) << "as it is";
        ForEachOdd(json, "", [&](const std::string& path, const Json& odd) {
            EXPECT_NE(read(json).diagnostics.empty(), !NeedsNoLine(path, odd)) << path << ": " << odd;
        });
    }
}

TEST_F(OddMembers, that_are_null_say_nothing)
{
    for (const char* const text : {figure, scene}) {
        Json json = Json::parse(text);
        const std::function<void(Json&)> visit = [&](Json& at) {
            for (auto child = at.begin(); at.is_object() && child != at.end(); ++child) {
                if (child.key() == "id")
                    continue; // what an axis is called is needed
                const Json kept = std::exchange(*child, nullptr);
                for (const base::Diagnostic& met : read(json).diagnostics)
                    EXPECT_EQ(met.what.find("has a member"), met.what.npos)
                        << child.key() << ": " << met.what;
                *child = kept;
            }
            for (Json& child : at)
                if (child.is_structured())
                    visit(child);
        };
        visit(json);
    }
}
