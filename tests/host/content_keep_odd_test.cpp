// Saving a scene keeps what its file says of nodes and modifiers, however oddly.
// SPDX-License-Identifier: MIT

#include "dznode.h"
#include "dznumericproperty.h"
#include "dzscene.h"
#include "loading/kept_parts.h"
#include "tests/host/keep_fixture.h"

using doll::Instance;
using nlohmann::ordered_json;

namespace {

class KeptParts : public KeepTest {
protected:
    /// An instance of the figure's root alone, with further members and those of its geometry.
    static std::string root(const std::string& more, const std::string& geometry = "")
    {
        return R"({"id": "Doll", "url": "/data/Nord/Doll/Doll.dsf#Doll"
            , "geometries": [{"id": "Doll-1", "url": "/data/Nord/Doll/Doll.dsf#Doll-1")" +
               geometry + "}]" + more + "}";
    }
    static std::string modifier(const std::string& more)
    {
        return R"(, "modifiers": [{"id": "Up-3", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up",
            "parent": "#Doll-1")" +
               more + "}]";
    }
};

} // namespace

TEST_F(KeptParts, of_nodes_and_geometries_survive)
{
    ordered_json file = resaved(scene(
        root(R"(, "vendor": {"a": [1]}, "preview": null, "extra": [{"type": "vendor/extra", "keep": true},
            {"type": "studio_node_channels", "version": "0.1.9", "more": 3, "channels": [
                {"channel": {"id": "Visible", "type": "bool", "current_value": false}},
                {"channel": {"id": "Glow", "type": "color", "current_value": [1, 0, 0]}, "group": "/Light"}]},
            {"type": "studio/node/favorites", "favorites": [], "colour": 2}])",
             R"(, "vendor": 5, "extra": {"type": "material_selection_sets", "sets": [{"Face": [1]}]})"),
        ""));
    const ordered_json& node = file["scene"]["nodes"][0];
    EXPECT_EQ(node["vendor"], parsed(R"({"a": [1]})"));
    EXPECT_TRUE(node.contains("preview"));
    EXPECT_EQ(node["extra"], parsed(R"([{"type": "studio_node_channels", "version": "0.1.8", "channels": [
                      {"channel": {"id": "Visible", "type": "bool", "current_value": false}},
                      {"channel": {"id": "Glow", "type": "color", "current_value": [1, 0, 0]}, "group": "/Light"}],
                      "more": 3},
                  {"type": "vendor/extra", "keep": true}, {"type": "studio/node/favorites", "colour": 2}])"))
        << node["extra"].dump(1);
    EXPECT_EQ(node["geometries"][0]["vendor"], 5);
    EXPECT_EQ(node["geometries"][0]["extra"],
              parsed(R"([{"type": "material_selection_sets", "sets": [{"Face": [1]}]}])"));
    expectStable();
}

TEST_F(KeptParts, give_way_to_what_has_been_set_since)
{
    ASSERT_TRUE(load("Scenes/One.duf", doll::Scene(root(R"(, "extra": [{"type": "studio_node_channels",
        "channels": [{"channel": {"id": "Visible", "type": "bool", "current_value": false}}]}])"))));
    dzScene->getPrimarySelection()->setVisible(true);
    EXPECT_FALSE(saved()["scene"]["nodes"][0].contains("extra"));
}

TEST_F(KeptParts, of_modifiers_survive_whether_they_are_turned_or_not)
{
    writeShape("Up", doll::Morph("Up", 1, 1.0));
    for (const char* const channel : {"", R"(, "channel": {"id": "value", "current_value": 0.5})"}) {
        TestHost().reset();
        use(_library);
        ordered_json file =
            resaved(scene(Instance(), modifier(std::string(channel) + R"(, "name": "Mine", "vendor": "#hip",
                "extra": [{"type": "studio/element_data/notes", "text": "x"}])")));
        ordered_json up = entry(file["scene"]["modifiers"], "Up");
        ASSERT_TRUE(up.is_object()) << file["scene"].dump(1);
        EXPECT_EQ(up["name"], "Mine");
        EXPECT_EQ(up["vendor"], "#hip");
        EXPECT_EQ(up["extra"], parsed(R"([{"type": "studio/element_data/notes", "text": "x"}])"));
        EXPECT_EQ(up.contains("channel"), *channel != '\0');
        expectStable();
    }
}

TEST_F(KeptParts, of_skins_survive)
{
    ordered_json file = resaved(scene(Instance(), R"(, "modifiers": [{"id": "Skin-4",
        "url": "/data/Nord/Doll/Doll.dsf#Skin", "parent": "#Doll-1", "vendor": [4]}])"));
    ASSERT_EQ(file["scene"]["modifiers"].size(), 1u);
    EXPECT_EQ(file["scene"]["modifiers"][0]["vendor"], parsed("[4]"));
    expectStable();
}

TEST_F(KeptParts, of_smoothing_survive)
{
    ordered_json file = resaved(scene(Instance(), R"(, "modifiers": [{"id": "Smooth-4", "url": "#Smooth-4",
        "name": "Smooth", "parent": "#Doll-1", "vendor": [4], "extra": [{"type": "studio/modifier/smoothing"},
        {"type": "vendor/smooth", "by": 3}]}])"));
    ordered_json smooth;
    for (const ordered_json& modifier : file["scene"]["modifiers"])
        if (modifier.contains("vendor"))
            smooth = modifier;
    ASSERT_TRUE(smooth.is_object()) << file["scene"].dump(1);
    EXPECT_EQ(smooth["vendor"], parsed("[4]"));
    EXPECT_EQ(smooth["extra"].back(), parsed(R"({"type": "vendor/smooth", "by": 3})"));
    expectStable();
}

TEST_F(KeptParts, of_the_head_survive_in_a_file_of_the_same_kind)
{
    const std::string text = doll::Scene(Instance());
    const std::string head = R"("asset_info": {"keywords": ["a", "b"], )";
    ASSERT_TRUE(load("Scenes/One.duf", std::string(text).replace(text.find(R"("asset_info": {)"), 15, head)));
    EXPECT_EQ(saved()["asset_info"]["keywords"], parsed(R"(["a", "b"])"));
    expectStable();
    EXPECT_FALSE(saved("DzSceneSubsetAssetFilter")["asset_info"].contains("keywords"));
}

TEST_F(KeptParts, of_odd_shapes_survive)
{
    ordered_json file = resaved(
        R"("nothing": null, "image_library": 7, "material_library": {"id": "M", "vendor": 1}, "scene": {"nodes": [)" +
        root(R"(, "extra": {"keep": 1})") +
        R"(], "materials": {"id": "m", "url": "#M", "geometry": "#Doll-1"}, "uvs": [null, 5, "x", ["#Doll-1"]],
            "extra": "text", "animations": [3]})");
    EXPECT_TRUE(file.contains("nothing"));
    EXPECT_EQ(file["material_library"], parsed(R"([{"id": "M", "vendor": 1}])"));
    EXPECT_EQ(file["scene"]["nodes"][0]["extra"], parsed(R"([{"keep": 1}])"));
    EXPECT_EQ(file["scene"]["materials"], parsed(R"([{"id": "m", "url": "#M", "geometry": "#Doll-1"}])"));
    EXPECT_EQ(file["scene"]["uvs"], parsed(R"([null, 5, "x", ["#Doll-1"]])"));
    EXPECT_EQ(file["scene"]["extra"], parsed(R"(["text"])"));
    EXPECT_EQ(file["scene"]["animations"], parsed("[3]"));
    expectStable();
}

TEST_F(KeptParts, of_one_name_stay_two)
{
    resaved(R"("vendor": 1, "vendor": 2, "scene": {"nodes": [)" +
            root(R"(, "extra": [{"type": "a"}], "extra": [{"type": "b"}])") +
            R"(], "materials": [{"id": "m", "again": 1, "again": 2}], "materials": [{"id": "n"}]})");
    const std::string text = ReadBytes(target());
    EXPECT_NE(text.find("\"vendor\" : 1,\n\t\"vendor\" : 2"), std::string::npos) << text;
    EXPECT_NE(text.find(R"({"id":"m","again":1,"again":2})"), std::string::npos);
    EXPECT_NE(text.find(R"({"id":"n"})"), std::string::npos);
    EXPECT_NE(text.find(R"({"type":"b"})"), std::string::npos);
    expectStable();
}

TEST_F(KeptParts, may_be_nested_deeply)
{
    std::string deep = "1";
    for (int i = 0; i < 900; ++i)
        deep = "[" + deep + "]";
    ordered_json file = resaved(
        scene(root(R"(, "vendor": )" + deep), R"(, "vendor": {"see": "#Doll", "deep": )" + deep + "}"));
    EXPECT_EQ(file["scene"]["nodes"][0]["vendor"], ordered_json::parse(deep));
    EXPECT_EQ(file["scene"]["vendor"]["deep"], ordered_json::parse(deep));
    expectStable();
}

TEST_F(KeptParts, that_are_nested_too_deeply_lose_their_innermost_once)
{
    std::string deep = "1";
    for (int i = 0; i < 3000; ++i)
        deep = "{\"in\": " + deep + "}";
    // In a list, as it is saved, it lies a level deeper.
    ASSERT_TRUE(load("Scenes/Deep.duf", doll::File(scene(root(""), ", \"extra\": " + deep), "scene")));
    const ordered_json first = saved()["scene"]["extra"];
    const int told = timesLogged("nested too deeply");
    EXPECT_EQ(told, 1);
    dzScene->clear();
    ASSERT_TRUE(open(target()));
    EXPECT_EQ(timesLogged("nested too deeply"), told);
    EXPECT_EQ(saved()["scene"]["extra"], first);
}

TEST_F(KeptParts, refer_to_what_they_referred_to)
{
    ordered_json file = resaved(scene(
        Instance("-1", R"(, "label": "A")") + "," + Instance("", R"(, "label": "B")"),
        R"(, "vendor": ["#hip-1", "hip:#hip?x", "see #hip", "/data/x.dsf#hip", "#hip%2D1?rotation/x", "Doll/hip:#hip"])"));
    // The first figure's ids are the plain ones now.
    ordered_json nodes = file["scene"]["nodes"];
    const std::string second = nodes[4]["id"];
    EXPECT_EQ(nodes[1]["id"], "hip");
    EXPECT_EQ(file["scene"]["vendor"], ordered_json({"#hip", second + ":#" + second + "?x", "see #hip",
                                                     "/data/x.dsf#hip", "#hip?rotation/x", "Doll/hip:#hip"}))
        << file["scene"]["vendor"].dump();
    expectStable();
}

TEST_F(KeptParts, of_cameras_and_lights_survive)
{
    ordered_json file = resaved(R"("node_library": [
            {"id": "Lamp", "name": "Lamp", "type": "light", "label": "Lamp", "spot": {"intensity": 0.7},
             "extra": [{"type": "studio/node/light"}, {"type": "studio_node_channels", "channels": [
                {"channel": {"id": "Flux", "type": "float", "value": 1500}}]}]},
            {"id": "Eye", "type": "camera", "perspective": {"yfov": 30}}],
        "scene": {"nodes": [{"id": "Lamp-3", "url": "#Lamp", "name": "Lamp", "label": "Lamp", "extra":
            [{"type": "studio_node_channels", "channels": [{"channel": {"id": "Flux", "current_value": 9}}]}]},
            {"id": "Eye-3", "url": "#Eye", "name": "Eye", "label": "Eye", "rotation_order": "ZYX"}],
            "current_camera": "#Eye-3"})");
    ordered_json lamp = entry(file["node_library"], "Lamp");
    EXPECT_EQ(lamp["type"], "light");
    EXPECT_EQ(lamp["spot"], parsed(R"({"intensity": 0.7})"));
    EXPECT_EQ(lamp["extra"],
              parsed(R"([{"type": "studio/node/light"}, {"type": "studio_node_channels", "channels": [
                {"channel": {"id": "Flux", "type": "float", "value": 1500}}]}])"));
    ordered_json eye = entry(file["node_library"], "Eye");
    EXPECT_EQ(eye["type"], "camera");
    EXPECT_EQ(eye["perspective"], parsed(R"({"yfov": 30})"));
    EXPECT_EQ(eye["rotation_order"], "ZYX");
    ordered_json nodes = file["scene"]["nodes"];
    EXPECT_EQ(nodes[0]["extra"][0]["channels"][0]["channel"]["current_value"], 9);
    EXPECT_FALSE(nodes[1].contains("rotation_order")) << "the definition says it";
    EXPECT_EQ(file["scene"]["current_camera"], "#" + std::string(nodes[1]["id"]));
    expectStable();
}

TEST_F(KeptParts, that_move_the_axes_of_nodes_survive_as_they_are_now)
{
    ASSERT_TRUE(load("Scenes/One.duf", doll::Scene(Instance("", "", R"(, "rotation_order": "ZXY",
        "inherits_scale": true, "center_point": [{"id": "x", "current_value": 0.25}], "orientation": [0, 45, 0])"))));
    DzNode* const hand = BoneOf(*dzScene->getPrimarySelection(), "hand");
    ASSERT_NE(hand, nullptr);
    hand->setOrientation(DzVec3(0.0f, 90.0f, 0.0f));
    ordered_json file = entry(saved()["scene"]["nodes"], "hand");
    EXPECT_EQ(file["rotation_order"], "ZXY");
    EXPECT_EQ(file["inherits_scale"], true);
    EXPECT_EQ(file["center_point"], parsed(R"([{"id": "x", "current_value": 0.25}, {"id": "y",
        "current_value": 20}, {"id": "z", "current_value": 0}])"));
    EXPECT_EQ(file["orientation"][1]["current_value"], 90);
    EXPECT_FALSE(file.contains("end_point"));
    expectStable();
    const DzNode* const again = BoneOf(*dzScene->getPrimarySelection(), "hand");
    EXPECT_EQ(again->getRotationOrder().toString().toStdString(), "ZXY");
    EXPECT_EQ(again->getOrigin().m_x, 0.25f);
}

TEST_F(KeptParts, of_shapes_that_are_not_there_survive)
{
    ordered_json file = resaved(scene(Instance("-8"), R"(, "modifiers": [{"id": "Gone-2",
        "url": "/data/Nord/No%20Such.dsf#Gone", "parent": "#Doll-1-8", "group": "/Head", "vendor": "#hip-8",
        "channel": {"id": "value", "type": "float", "current_value": 0.7, "visible": false}}])"));
    ordered_json gone = entry(file["scene"]["modifiers"], "Gone-2");
    EXPECT_EQ(gone, parsed(R"({"id": "Gone-2", "url": "/data/Nord/No%20Such.dsf#Gone", "parent": "#Doll-1",
        "group": "/Head", "channel": {"id": "value", "type": "float", "visible": false, "current_value": 0.7},
        "vendor": "#hip"})"));
    expectStable();
}

TEST_F(KeptParts, are_held_only_where_a_file_says_more_than_can_be_set)
{
    const std::string group = R"({"id": "Group-1", "url": "#Group", "name": "Group", "label": "Group",
        "rotation": [{"id": "x", "current_value": 5}], "extra": [{"type": "studio_node_channels", "channels":
            [{"channel": {"id": "Visible", "type": "bool", "current_value": false}}]}]})";
    const std::string library = R"("node_library": [{"id": "Group", "type": "node"}], )";
    ASSERT_TRUE(load("Scenes/One.duf", doll::File(library + scene(group, ""), "scene")));
    ASSERT_EQ(dzScene->getNumNodes(), 1);
    EXPECT_EQ(openhost::KeptOfNode(*dzScene->getNode(0)), nullptr);
    ASSERT_TRUE(load("Scenes/Two.duf", doll::File(library + scene(group, R"(, "vendor": 1)"), "scene")));
    ASSERT_EQ(dzScene->getNumNodes(), 2);
    EXPECT_NE(openhost::KeptOfNode(*dzScene->getNode(1)), nullptr);
}

TEST_F(KeptParts, share_the_texture_coordinates_of_a_mesh_in_their_file)
{
    const std::string mesh = R"("geometry_library": [{"id": "Card-1", "name": "Card",
            "vertices": {"values": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]]}, "polygon_groups": {"values": ["all"]},
            "polygon_material_groups": {"values": ["Paper"]}, "polylist": {"values": [[0,0,0,1,2,3]]},
            "default_uv_set": "#Card-1-UVs"}],
        "uv_set_library": [{"id": "Card-1-UVs", "vertex_count": 4, "uvs": {"values": [[0,0],[1,0],[1,1],[0,1]]},
            "polygon_vertex_indices": []}],
        "node_library": [{"id": "Card", "type": "node"}], "material_library": [{"id": "Paper"}],)";
    ordered_json file = resaved(mesh + scene(R"({"id": "Card-3", "url": "#Card", "name": "Card",
        "geometries": [{"id": "Card-4", "url": "#Card-1"}]})",
                                             R"(, "materials": [{"id": "Paper-1", "url": "#Paper",
        "geometry": "#Card-4", "uv_set": "#Card-1-UVs"}])"));
    ASSERT_EQ(file["uv_set_library"].size(), 1u);
    EXPECT_EQ(file["uv_set_library"][0]["id"], "Card-1-UVs");
    EXPECT_EQ(file["scene"]["materials"][0]["uv_set"], "#Card-1-UVs");
    const std::string geometry = file["scene"]["nodes"][0]["geometries"][0]["id"];
    EXPECT_EQ(file["scene"]["materials"][0]["geometry"], "#" + geometry);
    expectStable();
}
