// What nodes have that the scene does not show, told and written again.
// SPDX-License-Identifier: MIT

#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzintproperty.h"
#include "dzobject.h"
#include "tests/host/keep_fixture.h"

using doll::Scene;
using nlohmann::ordered_json;

namespace {

DzFacetShape& ShapeOf(const DzNode& node)
{
    return *qobject_cast<DzFacetShape*>(node.getObject()->getCurrentShape());
}

class Unshown : public KeepTest {
protected:
    /// The root of the figure with its geometry, and more of them.
    static std::string root(const std::string& first, const std::string& further = "")
    {
        return R"({"id": "Doll", "url": "/data/Nord/Doll/Doll.dsf#Doll", "label": "Doll", "geometries": [
            {"id": "Doll-1", "url": "/data/Nord/Doll/Doll.dsf#Doll-1")" +
               first + "}" + further + "]}";
    }
};

using UnshownGeometry = Unshown;
using RepeatedNode = Unshown;
using UnknownSubdivision = Unshown;

} // namespace

TEST_F(UnshownGeometry, is_told_and_has_no_bearing_on_what_is_shown)
{
    ASSERT_TRUE(load("Scenes/Two.duf", Scene(root(R"(, "current_subdivision_level": 1)",
                                                  R"(, {"id": "Doll-low", "url": "/data/Nord/Low.dsf#Low",
            "current_subdivision_level": 3}, {"id": "Doll-proxy", "url": "/data/Nord/Low.dsf#Proxy"})"))));
    EXPECT_TRUE(logged("2 geometries are not the first of their nodes and are kept for saving only, such as "
                       "Doll-low and Doll-proxy"))
        << log().toStdString();
    EXPECT_EQ(ShapeOf(*labelled("Doll")).getSubDLevelControl()->getValue(), 1);
}

TEST_F(UnshownGeometry, survives_with_what_refers_to_it)
{
    const ordered_json file = resaved(scene(
        root("", R"(, {"id": "Doll-low", "url": "/data/Nord/Low.dsf#Low", "vendor": [1]})"),
        R"(, "materials": [{"id": "Skin", "url": "/data/Nord/Skin.dsf#Skin", "geometry": "#Doll-low"}])"));
    const ordered_json& geometries = file["scene"]["nodes"][0]["geometries"];
    ASSERT_EQ(geometries.size(), 2u) << file["scene"].dump(1);
    EXPECT_EQ(geometries[1], parsed(R"({"id": "Doll-low", "url": "/data/Nord/Low.dsf#Low", "vendor": [1]})"));
    EXPECT_EQ(file["scene"]["materials"][0]["geometry"], "#Doll-low");
    expectStable();
}

TEST_F(UnshownGeometry, of_the_scenes_own_file_survives_with_its_mesh)
{
    const std::string low = R"({"id": "Low", "vertices": {"values": [[0,0,0],[1,0,0],[1,1,0]]},
        "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["Felt"]},
        "polylist": {"values": [[0,0,0,1,2]]}})";
    const ordered_json file = resaved(R"("geometry_library": [)" + low + R"(, {"id": "Unused"}], )" +
                                      scene(root("", R"(, {"id": "Doll-low", "url": "#Low"})"), ""));
    ASSERT_EQ(file.value("geometry_library", ordered_json::array()).size(), 1u) << file.dump(1);
    EXPECT_EQ(file["geometry_library"][0], parsed(low.c_str()));
    EXPECT_EQ(file["scene"]["nodes"][0]["geometries"][1]["url"], "#Low");
    expectStable();
}

TEST_F(UnshownGeometry, of_two_figures_with_the_same_ids_gets_ids_of_its_own)
{
    const std::string figure = Scene(root("", R"(, {"id": "Doll-low", "url": "/data/Nord/Low.dsf#Low"})"));
    ASSERT_TRUE(load("Scenes/One.duf", figure));
    ASSERT_TRUE(open(_library / "Scenes/One.duf"));
    const ordered_json file = saved();
    const ordered_json& nodes = file["scene"]["nodes"];
    std::set<std::string> ids;
    std::size_t count = 0;
    for (const ordered_json& node : nodes)
        for (const ordered_json& geometry : node.value("geometries", ordered_json::array())) {
            ids.insert(geometry["id"].get<std::string>());
            ++count;
        }
    EXPECT_EQ(count, 4u) << nodes.dump(1);
    EXPECT_EQ(ids.size(), count) << nodes.dump(1);
}

TEST_F(UnknownSubdivision, survives)
{
    const ordered_json file =
        resaved(scene(root(R"(, "edge_interpolation_mode": "edges_at_random", "extra": [{"type":
            "studio_geometry_channels", "version": "0.1.8", "channels": [
                {"channel": {"id": "SubDAlgorithmControl", "type": "enum", "current_value": 9}}]}])"),
                      ""));
    const ordered_json& geometry = file["scene"]["nodes"][0]["geometries"][0];
    EXPECT_EQ(geometry["edge_interpolation_mode"], "edges_at_random");
    EXPECT_EQ(geometry["extra"][0]["channels"][0]["channel"]["current_value"], 9) << geometry.dump(1);
    expectStable();
}

TEST_F(UnknownSubdivision, gives_way_to_what_has_been_set_since)
{
    ASSERT_TRUE(load("Scenes/One.duf", Scene(root(R"(, "edge_interpolation_mode": "edges_at_random")"))));
    ShapeOf(*labelled("Doll")).getFacetMesh()->setSubDEdgeInterpolation(DzFacetMesh::SharpCornersEdges);
    EXPECT_EQ(saved()["scene"]["nodes"][0]["geometries"][0]["edge_interpolation_mode"], "edges_and_corners");
}

TEST_F(RepeatedNode, is_told_and_stays_one)
{
    writeHat();
    const ordered_json file =
        resaved(R"("node_library": [{"id": "Copy", "name": "Copy", "type": "node", "extra":
        [{"type": "studio/node/instance"}]}], )" +
                scene(R"({"id": "Hat", "url": "/data/Nord/Hat.dsf#Hat", "label": "Hat"},
            {"id": "Copy-1", "url": "#Copy", "label": "Hat again", "extra": [{"type": "studio_node_channels",
                "version": "0.1.8", "channels": [{"channel": {"id": "Instance Target", "type": "node",
                "node": "#Hat"}}]}]})",
                      ""));
    EXPECT_TRUE(logged("1 node repeats another, which is not drawn, and is kept for saving only, such as Hat "
                       "again"))
        << log().toStdString();
    EXPECT_EQ(entry(file["node_library"], "Copy")["extra"], parsed(R"([{"type": "studio/node/instance"}])"))
        << file.dump(1);
    const std::string hat = file["scene"]["nodes"][0]["id"];
    bool isThere = false;
    for (const ordered_json& node : file["scene"]["nodes"])
        if (node["label"] == "Hat again") {
            isThere = true;
            EXPECT_EQ(node["extra"][0]["channels"][0]["channel"]["node"], "#" + hat) << node.dump(1);
        }
    EXPECT_TRUE(isThere) << file["scene"].dump(1);
    expectStable();
}

TEST_F(RepeatedNode, is_told_where_only_its_instance_says_so)
{
    ASSERT_TRUE(load("Scenes/Copies.duf", Scene(R"({"id": "a", "label": "First", "extra": [{"type":
        "studio/node/instance"}]}, {"id": "b", "label": "Second", "extra": [{"type": "studio/node/instance"}]},
        {"id": "c", "label": "Group", "extra": [{"type": "studio/node/group_node"}]})")));
    EXPECT_TRUE(
        logged("2 nodes repeat others, which is not drawn, and are kept for saving only, such as First "
               "and Second"))
        << log().toStdString();
}
