// Members of other types than they should be of: none is passed over in silence.
// SPDX-License-Identifier: MIT

#include "dson/reader.h"
#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "tests/host/keep_fixture.h"

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
    const bool isPlainNumber = odd.is_number() && is(".*/general_scale");
    const bool isToldLater = is("/scene/modifiers/0/channel/current_value") ||
                             (!odd.is_object() && is("/scene/animations/0/keys/0/1"));
    return isOfUnknownKind || isAnybodys || isKnownFromList || isUnread || isPlainNumber || isToldLater;
}

class OddInScenes : public KeepTest {
protected:
    void SetUp() override
    {
        KeepTest::SetUp();
        writeShape("Up", doll::Morph("Up", 1, 1.0));
    }
    static std::string up(const std::string& id, const std::string& value)
    {
        return R"({"id": ")" + id + R"(", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up",
            "parent": "#Doll-1", "channel": {"id": "value", "current_value": )" +
               value + "}}";
    }
    bool loadWith(const std::string& modifiers)
    {
        return load("Scenes/Odd.duf", doll::Scene(doll::Instance(), R"(, "modifiers": [)" + modifiers + "]"));
    }
    /// The Doll's file with another text in place of one of its own.
    void writeFigure(const std::string& what, const std::string& instead) const
    {
        std::string text = doll::Figure();
        ASSERT_NE(text.find(what), text.npos) << what;
        text.replace(text.find(what), what.size(), instead);
        write("data/Nord/Doll/Doll.dsf", doll::File(text, "figure"));
    }
};

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

TEST_F(OddInScenes, are_modifiers_that_do_not_say_what_they_are_of)
{
    for (const char* const url : {"", R"("url": [1], )"}) {
        ASSERT_TRUE(loadWith(R"({"id": "u", )" + std::string(url) +
                             R"("parent": "#Doll-1", "channel": {"id": "value", "current_value": 0.5}})"));
        EXPECT_TRUE(
            logged("Odd.duf: 1 modifier does not say what it is of and is kept for saving only, such as u"))
            << log().toStdString();
        const nlohmann::ordered_json kept = entry(saved()["scene"]["modifiers"], "u");
        ASSERT_TRUE(kept.is_object());
        EXPECT_EQ(kept["channel"]["current_value"], 0.5);
        EXPECT_EQ(kept.contains("url"), *url != '\0') << kept;
        dzScene->clear();
    }
}

TEST_F(OddInScenes, are_dials_that_are_set_twice)
{
    ASSERT_TRUE(loadWith(up("a", "0.5") + ", " + up("b", "0.25")));
    EXPECT_EQ(ValueIn(*dzScene->getPrimarySelection(), "Up"), 0.25);
    EXPECT_EQ(timesLogged("Odd.duf: 1 dial is set once more, and the last value counts, such as b"), 1)
        << log().toStdString();
}

TEST_F(OddInScenes, are_no_dials_that_are_set_once)
{
    ASSERT_TRUE(loadWith(up("a", "0.5")));
    EXPECT_FALSE(logged("once more"));
    EXPECT_FALSE(logged("does not say what it is of"));
    EXPECT_FALSE(logged("has that of its definition"));
}

TEST_F(OddInScenes, are_geometries_that_their_figures_do_not_have)
{
    ASSERT_TRUE(load("Scenes/Odd.duf", doll::Scene(R"({"id": "D", "url": "/data/Nord/Doll/Doll.dsf#Doll",
        "geometries": [{"id": "g", "url": "/data/Nord/Doll/Doll.dsf#Nope"}]})")));
    EXPECT_NE(dzScene->getPrimarySelection()->getObject(), nullptr);
    EXPECT_TRUE(logged("Odd.duf: 1 geometry is not its node's, which has that of its definition, such as "
                       "/data/Nord/Doll/Doll.dsf#Nope"))
        << log().toStdString();
}

TEST_F(OddInScenes, are_no_geometries_that_are_named_by_name)
{
    ASSERT_TRUE(load("Scenes/Odd.duf", doll::Scene(R"({"id": "D", "url": "/data/Nord/Doll/Doll.dsf#Doll",
        "geometries": [{"id": "g", "url": "/data/Nord/Doll/Doll.dsf#doll"}]})")));
    EXPECT_FALSE(logged("is not its node's")) << log().toStdString();
}

TEST_F(OddInScenes, are_geometries_of_nodes_without_a_definition_which_survive)
{
    writeHat();
    const std::string node = R"({"id": "N", "label": "Group", "geometries": [{"id": "h", "url": ")";
    nlohmann::ordered_json file =
        resaved(scene(node + R"(/data/Nord/Hat.dsf#Hat-g", "label": "Felt"}]})", ""));
    EXPECT_EQ(file["scene"]["nodes"][0]["geometries"],
              parsed(R"([{"id": "h", "url": "/data/Nord/Hat.dsf#Hat-g", "label": "Felt"}])"));
    EXPECT_TRUE(
        logged("1 geometry is on a bone or on a node without a mesh and is kept for saving only, such as h"));
    expectStable();
    dzScene->clear();
    file = resaved(hatMembers("Hat", "Brim") + ", " + scene(node + R"(#Hat-g"}]})", ""));
    EXPECT_EQ(file["scene"]["nodes"][0]["geometries"][0]["url"], "#Hat-g");
    EXPECT_EQ(entry(file["geometry_library"], "Hat-g")["polygon_material_groups"],
              parsed(R"({"values": ["Felt"]})"))
        << file.dump(1);
    expectStable();
}

TEST_F(OddInScenes, are_second_skins_of_a_figure)
{
    writeFigure(
        R"("extra": [{"type": "skin_settings", "general_map_mode": "DualQuat"}]})",
        R"("extra": []}, {"id": "Other", "skin": {"node": "#Doll", "geometry": "#Doll-1", "joints": []}})");
    ASSERT_NE(openDoll(), nullptr);
    EXPECT_TRUE(logged("1 skin binds what another one binds already and is left out, such as Other"))
        << log().toStdString();
}

TEST_F(OddInScenes, are_formulas_that_divide_by_zero_each_told_once)
{
    writeShape("Turn",
               doll::Control("Turn", R"(, "formulas": [{"output": "hand:#hand?rotation/z", "operations": [
        {"op": "push", "val": 5}, {"op": "push", "url": "Doll:#Turn?value"}, {"op": "div"}]},
        {"output": "hand:#hand?rotation/x", "operations": [{"op": "push", "url": "Doll:#Turn?value"}, {"op": "inv"}]}])"));
    const DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    const DzNode& hand = *BoneOf(*figure, "hand");
    DzNumericProperty& turn = *DialIn(*figure, "Turn");
    for (const double value : {2.0, 0.0, 4.0, 0.0}) {
        turn.setDoubleValue(value);
        EXPECT_EQ(hand.getZRotControl()->getValue(), value == 0.0 ? 0.0f : static_cast<float>(5.0 / value));
        EXPECT_EQ(hand.getXRotControl()->getValue(), value == 0.0 ? 0.0f : static_cast<float>(1.0 / value));
    }
    for (const char* const dial : {"Z Rotate", "X Rotate"})
        EXPECT_EQ(timesLogged(std::string("a formula for ") + dial + " of Hand divides by 0, which gives 0"),
                  1)
            << log().toStdString();
}

TEST_F(OddInScenes, are_whole_numbers_beyond_all_that_dials_hold)
{
    writeShape("Many", doll::Control("Many", "", R"({"id": "value", "type": "int", "value": 1e30})"));
    const DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(ValueIn(*figure, "Many"), 2147483647.0);
}

TEST_F(OddInScenes, are_members_that_survive_but_bring_no_value_back)
{
    const std::string hand = R"(, "presentation": 3, "locked": [1], "rotation": [
        {"id": "x", "current_value": 5, "locked": "maybe"}, {"id": "w", "current_value": 1}], "scale": [2])";
    ASSERT_TRUE(load("Scenes/Odd.duf",
                     doll::Scene(doll::Instance("", R"(, "conform_target": [])", hand), R"(, "modifiers": [
        {"id": "u", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up", "parent": "#Doll-1", "group": [[]]}])")));
    const DzFigure& figure = *qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
    BoneOf(figure, "hand")->getXRotControl()->setValue(0.0f);
    const nlohmann::ordered_json file = saved()["scene"];
    const nlohmann::ordered_json node = entry(file["nodes"], "hand");
    EXPECT_EQ(node.dump().find("\"current_value\":5"), std::string::npos) << node;
    EXPECT_EQ(node["presentation"], 3);
    for (const auto& channel : node.value("scale", nlohmann::ordered_json::array()))
        EXPECT_TRUE(channel.is_object()) << node;
    EXPECT_EQ(entry(file["modifiers"], "Up")["group"], parsed("[[]]")) << file["modifiers"];
    expectStable();
}

TEST_F(OddInScenes, are_skins_or_what_they_bind_each_told_once)
{
    const std::string skin = doll::Figure();
    const std::size_t begin = skin.find(R"({"node": "#Doll", "geometry")"), end = skin.find(R"(,
        "extra": [{"type": "skin_settings")");
    ASSERT_TRUE(begin != skin.npos && end != skin.npos);
    const std::pair<std::string, const char*> cases[] = {{skin.substr(begin, end - begin), "\"skin\": "},
                                                         {R"("node": "#Doll")", "node"},
                                                         {R"("geometry": "#Doll-1")", "geometry"}};
    for (const auto& [what, member] : cases) {
        dzScene->clear();
        const bool isAll = what[0] == '{';
        writeFigure(what, isAll ? std::string("7") : '"' + std::string(member) + "\": 7");
        const int before = timesLogged("WARNING: ");
        ASSERT_NE(openDoll(), nullptr);
        EXPECT_EQ(timesLogged("WARNING: "), before + 1) << log().toStdString();
        EXPECT_TRUE(logged(std::string("Skin: has a member ") +
                           (isAll ? "skin that is no object" : std::string(member) + " that is no text") +
                           " and counts for nothing"))
            << log().toStdString();
    }
}

TEST_F(OddInScenes, are_shapes_that_their_files_lack)
{
    const std::string empty[] = {
        doll::File("", "modifier"), doll::File("\"modifier_library\": null"),
        doll::File("\"modifier_library\": {}"),
        doll::File("\"modifier_library\": [" + doll::Control("A") + "," + doll::Control("B") + "]")};
    for (const std::string& text : empty) {
        dzScene->clear();
        write(std::string(doll::shapes) + "Up.dsf", text);
        const std::string line = "Odd.duf: 1 shape or control is not in its file and is left out, such as "
                                 "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up";
        const int before = timesLogged(line);
        ASSERT_TRUE(loadWith(up("u", "0.5")));
        EXPECT_EQ(timesLogged(line), before + 1) << text << log().toStdString();
        const nlohmann::ordered_json file = saved()["scene"];
        EXPECT_EQ(entry(file["modifiers"], "u")["channel"]["current_value"], 0.5) << file["modifiers"];
    }
}

TEST_F(OddInScenes, are_no_shapes_that_their_files_have)
{
    ASSERT_TRUE(loadWith(up("u", "0.5") +
                         R"(, {"id": "s", "url": "/data/Nord/Doll/Doll.dsf#Skin", "parent": "#Doll-1"})"));
    EXPECT_FALSE(logged("in its file")) << log().toStdString();
}
