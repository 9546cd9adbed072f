// Saving a scene keeps what its file says of geometries, modifiers and channels beyond what is read.
// SPDX-License-Identifier: MIT

#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "figure/mesh_access.h"
#include "tests/host/keep_fixture.h"

using doll::Instance;
using nlohmann::ordered_json;

namespace {

class KeptDefinitions : public KeepTest {
protected:
    /// A prop of one quad that the scene itself defines.
    /// @param geometry, modifiers  what is said of its mesh, with a comma in front, and its modifiers
    /// @param instances  those of the modifiers
    ordered_json withCloth(const std::string& geometry, const std::string& modifiers = "",
                           const std::string& instances = "", const std::string& node = "")
    {
        return resaved(R"("geometry_library": [{"id": "Cloth-g", "type": "subdivision_surface",
            "vertices": {"count": 4, "unit": "cm", "values": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]]},
            "polygon_groups": {"count": 1, "values": ["all"]},
            "polygon_material_groups": {"count": 1, "values": ["Felt"], "order": "a"},
            "polylist": {"values": [[0,0,0,1,2,3]]})" +
                       geometry + R"(}], "node_library": [{"id": "Cloth", "type": "node", "label": "Cloth")" +
                       node + R"(}], "modifier_library": [)" + modifiers + "], " +
                       scene(R"({"id": "Cloth-1", "url": "#Cloth", "label": "Cloth",
                "geometries": [{"id": "Cloth-1-g", "url": "#Cloth-g"}]})",
                             R"(, "modifiers": [)" + instances + "]"));
    }
    static std::string modifier(const std::string& id, const std::string& more)
    {
        return R"({"id": ")" + id + R"(", "name": ")" + id + R"(", "parent": "#Cloth-g")" + more + "}";
    }
    static std::string instance(const std::string& id, const std::string& more = "")
    {
        return R"({"id": ")" + id + R"(-1", "url": "#)" + id + R"(", "parent": "#Cloth-1-g")" + more + "}";
    }
    static DzNode& cloth() { return *dzScene->findNodeByLabel(QStringLiteral("Cloth")); }
};

} // namespace

TEST_F(KeptDefinitions, of_geometries_survive)
{
    const ordered_json file = withCloth(R"(, "vendor": {"a": [1, 2.5]}, "graft": {"colour": "red"}, "extra": [
        {"type": "studio_geometry_channels", "version": "0.2", "channels": [
            {"channel": {"id": "SubDIALevel", "type": "int", "value": 1, "mood": "x"}, "group": "/Mesh"},
            {"channel": {"id": "SubDNormalSmoothing", "type": "enum", "value": 1}}]},
        {"type": "vendor/mesh", "keep": true}])");
    const ordered_json& geometry = file["geometry_library"][0];
    EXPECT_EQ(geometry["vendor"], parsed(R"({"a": [1, 2.5]})"));
    EXPECT_EQ(geometry["vertices"]["unit"], "cm");
    EXPECT_EQ(geometry["vertices"]["values"].size(), 4u);
    EXPECT_EQ(geometry["polygon_material_groups"]["order"], "a");
    EXPECT_EQ(geometry["graft"], parsed(R"({"colour": "red"})"));
    ASSERT_EQ(geometry["extra"].size(), 2u) << geometry["extra"].dump(1);
    const ordered_json& channels = geometry["extra"][0]["channels"];
    ASSERT_EQ(channels.size(), 3u) << channels.dump(1);
    EXPECT_EQ(channels[0]["channel"]["mood"], "x");
    EXPECT_EQ(channels[0]["channel"]["value"], 1);
    EXPECT_EQ(channels[2]["channel"]["id"], "SubDNormalSmoothing");
    EXPECT_EQ(geometry["extra"][1], parsed(R"({"type": "vendor/mesh", "keep": true})"));
    expectStable();
}

TEST_F(KeptDefinitions, of_a_mesh_that_has_been_replaced_are_left_out_and_told)
{
    withCloth(R"(, "pins": [0, 3])");
    geometry::PolygonMesh mesh;
    mesh.positions = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}};
    auto topology = std::make_shared<geometry::Topology>();
    topology->vertexCount = 3;
    topology->addFace(std::vector<std::uint32_t>{0, 1, 2});
    mesh.topology = topology;
    auto& shape = *qobject_cast<DzFacetShape*>(cloth().getObject()->getCurrentShape());
    shape.setFacetMesh(openhost::MeshAccess::create(mesh));
    EXPECT_FALSE(saved()["geometry_library"][0].contains("pins"));
    EXPECT_TRUE(logged("1 geometry has been given another mesh; what else its file said of the old one is "
                       "left out"))
        << log().toStdString();
}

TEST_F(KeptDefinitions, of_morphs_and_controls_survive)
{
    const ordered_json file =
        withCloth("",
                  modifier("Puff", R"(, "source": "/old.dsf#Puff", "label": "Puff it",
            "presentation": {"type": "Modifier/Shape", "label": "Mine", "description": "d", "icon_large": "/i.png",
                "colors": [[0, 0, 0], [0.5, 1, 1]], "tip": 1},
            "channel": {"id": "value", "type": "float", "name": "Puff", "value": 0, "mood": {"deep": [1]}},
            "morph": {"vertex_count": 4, "smooth": true, "deltas": {"count": 1, "values": [[2, 0, 0, 1]]}},
            "extra": [{"type": "vendor/morph", "keep": 7}])") +
                      ", " + modifier("Turn", R"(, "vendor": "#Cloth",
            "channel": {"id": "value", "type": "float", "value": 0.5, "mood": "y"})"),
                  instance("Puff", R"(, "channel": {"id": "value", "current_value": 1, "mine": 3})") + ", " +
                      instance("Turn", R"(, "channel": {"id": "value", "mine": "still"})"));
    const ordered_json puff = entry(file["modifier_library"], "Puff");
    EXPECT_EQ(puff["source"], "/old.dsf#Puff");
    EXPECT_EQ(puff["label"], "Puff it");
    EXPECT_EQ(puff["presentation"]["label"], "Mine");
    EXPECT_EQ(puff["presentation"]["colors"], parsed("[[0, 0, 0], [0.5, 1, 1]]"));
    EXPECT_EQ(puff["presentation"]["tip"], 1);
    EXPECT_EQ(puff["channel"]["mood"], parsed(R"({"deep": [1]})"));
    EXPECT_EQ(puff["morph"]["smooth"], true);
    EXPECT_EQ(puff["morph"]["deltas"]["values"].size(), 1u);
    EXPECT_EQ(puff["extra"], parsed(R"([{"type": "vendor/morph", "keep": 7}])"));
    const ordered_json turn = entry(file["modifier_library"], "Turn");
    EXPECT_EQ(turn["vendor"], "#Cloth");
    EXPECT_EQ(turn["channel"]["mood"], "y");
    const ordered_json& instances = file["scene"]["modifiers"];
    EXPECT_EQ(entry(instances, "Puff-1")["channel"]["mine"], 3);
    EXPECT_EQ(entry(instances, "Puff-1")["channel"]["current_value"], 1);
    EXPECT_EQ(entry(instances, "Turn-1")["channel"], parsed(R"({"id": "value", "mine": "still"})"));
    expectStable();
}

TEST_F(KeptDefinitions, of_effects_survive)
{
    const ordered_json file =
        withCloth("", modifier("Out", R"(, "source": "/old.dsf#Out", "label": "Outwards", "vendor": 1,
            "channel": {"id": "value", "type": "float", "name": "Value", "value": 1, "mood": "x"},
            "extra": [{"type": "studio/modifier/push"}, {"type": "studio_modifier_channels", "channels": [
                {"channel": {"id": "Shell", "type": "bool", "value": true, "mood": "s"}}]}])"),
                  instance("Out", R"(, "channel": {"id": "value", "current_value": 2, "mine": 3},
            "extra": [{"type": "studio_modifier_channels", "channels": [
                {"channel": {"id": "Shell", "current_value": false, "mine": 4}, "vendor": 5}]}])"));
    const ordered_json out = entry(file["modifier_library"], "Out");
    EXPECT_EQ(out["source"], "/old.dsf#Out");
    EXPECT_EQ(out["label"], "Outwards");
    EXPECT_EQ(out["vendor"], 1);
    EXPECT_EQ(out["channel"]["mood"], "x");
    EXPECT_EQ(out["extra"].size(), 2u);
    EXPECT_EQ(out["extra"][1]["channels"][0]["channel"]["mood"], "s");
    const ordered_json set = entry(file["scene"]["modifiers"], "Out-1");
    EXPECT_EQ(set["channel"]["mine"], 3);
    EXPECT_EQ(set["extra"][0]["channels"],
              parsed(R"([{"channel": {"id": "Shell", "mine": 4}, "vendor": 5}])"))
        << set.dump(1);
    expectStable();
}

TEST_F(KeptDefinitions, of_skins_survive)
{
    std::string figure = doll::Figure();
    const auto insert = [&figure](const std::string& behind, const std::string& text) {
        figure.insert(figure.find(behind) + behind.size(), text);
    };
    insert(R"("name": "Skin", )", R"("vendor": [4], "presentation": {"type": "Modifier/Skin"}, )");
    insert(R"("skin": {)", R"("tool": "hand", )");
    insert(R"("general_map_mode": "DualQuat")", R"(, "mood": "x")");
    std::string instances = Instance();
    for (std::size_t at = 0; (at = instances.find(doll::path)) != instances.npos;)
        instances.erase(at, std::string(doll::path).size());
    const ordered_json file = resaved(figure + ", " + scene(instances, R"(, "modifiers": [
        {"id": "Skin-1", "url": "#Skin", "parent": "#Doll-1"}])"));
    const ordered_json skin = entry(file["modifier_library"], "Skin");
    ASSERT_TRUE(skin.is_object()) << file["modifier_library"].dump(1);
    EXPECT_EQ(skin["vendor"], parsed("[4]"));
    EXPECT_EQ(skin["presentation"]["type"], "Modifier/Skin");
    EXPECT_EQ(skin["skin"]["tool"], "hand");
    EXPECT_EQ(skin["skin"]["joints"].size(), 2u);
    ASSERT_EQ(skin["extra"].size(), 1u);
    EXPECT_EQ(skin["extra"][0]["mood"], "x");
    EXPECT_EQ(skin["extra"][0]["general_map_mode"], "DualQuat");
    expectStable();
}

TEST_F(KeptDefinitions, that_no_instance_names_are_told_to_be_left_out)
{
    withCloth("", modifier("Idle", R"(, "vendor": 1, "channel": {"id": "value", "type": "float"})"));
    EXPECT_EQ(timesLogged("1 definition that no instance in the scene names says more than is read, which "
                          "saving will leave out, such as Idle"),
              1)
        << log().toStdString();
}

TEST_F(KeptDefinitions, that_have_no_place_are_told_to_be_left_out)
{
    withCloth("", modifier("Puff", R"(, "channel": {"id": "value", "type": "float"},
            "morph": {"vertex_count": 4, "deltas": {"count": 1, "values": [[2, 0, 0, 1]], "unit": "cm"}},
            "formulas": [{"output": "Cloth:#Cloth?rotation/x", "note": "n", "operations": [
                {"op": "push", "url": "Cloth:#Puff?value"}, {"op": "push", "val": 2, "note": "m"}, {"op": "mult"}]}])"),
              instance("Puff"));
    EXPECT_TRUE(
        logged("3 formulas, joints or lists of deltas hold more than is read, which saving will leave "
               "out"))
        << log().toStdString();
}

TEST_F(KeptDefinitions, of_nodes_have_channels_with_all_that_they_hold)
{
    const ordered_json file = withCloth("", "", "", R"(, "presentation": {"type": "Prop", "tip": 1},
        "rotation": [{"id": "x", "type": "float", "value": 0, "mood": "x"}, {"id": "y", "value": 0}],
        "center_point": [{"id": "y", "value": 2, "mood": "c"}],
        "general_scale": {"id": "general_scale", "type": "float", "value": 1, "mood": "g"})");
    const ordered_json& node = file["node_library"][0];
    EXPECT_EQ(node["rotation"].size(), 3u);
    EXPECT_EQ(node["rotation"][0]["mood"], "x");
    EXPECT_EQ(node["center_point"][1]["mood"], "c");
    EXPECT_EQ(node["center_point"][1]["value"], 2);
    EXPECT_EQ(node["general_scale"]["mood"], "g");
    EXPECT_EQ(node["presentation"], parsed(R"({"type": "Prop", "tip": 1})"));
    expectStable();
}

TEST_F(KeptDefinitions, leave_channels_of_instances_with_all_that_they_hold)
{
    const std::string root = R"({"id": "Doll", "url": "/data/Nord/Doll/Doll.dsf#Doll",
        "rotation": [{"id": "x", "current_value": 30, "mood": "x"}, {"id": "z", "mood": "z"}],
        "general_scale": {"id": "general_scale", "mood": "g"},
        "center_point": [{"id": "y", "current_value": 2, "mood": "c"}],
        "extra": [{"type": "studio_node_channels", "channels": [
            {"channel": {"id": "Visible", "type": "bool", "current_value": false, "mood": "v"}, "vendor": 1},
            {"channel": {"id": "Visible in Simulation", "type": "bool", "value": true, "mood": "s"}}]}],
        "geometries": [{"id": "Doll-1", "url": "/data/Nord/Doll/Doll.dsf#Doll-1"}]})";
    const ordered_json file = resaved(scene(root, ""));
    const ordered_json& node = file["scene"]["nodes"][0];
    ASSERT_EQ(node["rotation"].size(), 2u) << node.dump(1);
    EXPECT_EQ(node["rotation"][0]["current_value"], 30);
    EXPECT_EQ(node["rotation"][0]["mood"], "x");
    EXPECT_EQ(node["rotation"][1], parsed(R"({"id": "z", "mood": "z"})"));
    EXPECT_EQ(node["general_scale"], parsed(R"({"id": "general_scale", "mood": "g"})"));
    EXPECT_EQ(node["center_point"][1], parsed(R"({"id": "y", "current_value": 2, "mood": "c"})"));
    EXPECT_EQ(node["extra"][0]["channels"], parsed(R"([
        {"channel": {"id": "Visible", "type": "bool", "current_value": false, "mood": "v"}, "vendor": 1},
        {"channel": {"id": "Visible in Simulation", "mood": "s"}}])"))
        << node["extra"].dump(1);
    expectStable();
}
