// What other readers insist on in saved files.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "tests/host/save_fixture.h"

#include <map>
#include <set>

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// A saved scene as plain JSON.
class SavedFile : public SaveTest {
protected:
    void SetUp() override
    {
        SaveTest::SetUp();
        makeScene();
        ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0) << log().toStdString();
        _json = json::parse(ReadBytes(file("All.duf")));
    }
    const json& library(const char* name) const { return _json.at(std::string(name) + "_library"); }
    const json& nodes() const { return _json.at("scene").at("nodes"); }
    const json& modifiers() const { return _json.at("scene").at("modifiers"); }

    std::set<std::string> geometryInstances() const
    {
        std::set<std::string> ids;
        for (const json& node : nodes())
            for (const json& geometry : node.value("geometries", json::array()))
                ids.insert("#" + dson::EncodeFragment(geometry.at("id").get<std::string>()));
        return ids;
    }

    json _json;
};

bool Has(const json& object, std::initializer_list<const char*> members)
{
    for (const char* const member : members)
        if (!object.contains(member))
            return false;
    return true;
}

} // namespace

TEST_F(SavedFile, says_who_made_it)
{
    const json& info = _json.at("asset_info");
    EXPECT_EQ(info.at("id"), "/All.duf");
    EXPECT_EQ(info.at("type"), "scene");
    EXPECT_FALSE(info.at("contributor").at("author").get<std::string>().empty());
    EXPECT_EQ(info.at("revision"), "1.0");
}

TEST_F(SavedFile, names_its_own_place_in_a_content_directory)
{
    ASSERT_EQ(save("DzSceneAssetFilter", _library / "Scenes/My Scene.duf"), 0);
    const json info = json::parse(ReadBytes(_library / "Scenes/My Scene.duf")).at("asset_info");
    EXPECT_EQ(info.at("id"), "/Scenes/My%20Scene.duf");
}

TEST_F(SavedFile, describes_meshes_that_no_data_file_has)
{
    ASSERT_EQ(library("geometry").size(), 3u);
    for (const json& geometry : library("geometry")) {
        EXPECT_TRUE(Has(geometry, {"id", "name", "type", "vertices", "polylist", "polygon_groups",
                                   "polygon_material_groups"}));
        EXPECT_EQ(geometry["vertices"]["count"], geometry["vertices"]["values"].size());
        EXPECT_EQ(geometry["polygon_groups"]["values"], json({"five", "three"}));
    }
}

TEST_F(SavedFile, has_no_texture_coordinates_without_indices)
{
    for (const json& set : _json.value("uv_set_library", json::array())) {
        EXPECT_TRUE(Has(set, {"polygon_vertex_indices"}));
        EXPECT_TRUE(Has(set.at("uvs"), {"count", "values"}));
    }
}

TEST_F(SavedFile, writes_vectors_of_nodes_as_channels)
{
    ASSERT_EQ(library("node").size(), 6u);
    for (const json& node : library("node")) {
        EXPECT_TRUE(Has(node, {"label", "rotation_order", "rotation", "translation", "center_point"}));
        for (const char* const member :
             {"rotation", "translation", "scale", "center_point", "end_point", "orientation"}) {
            ASSERT_EQ(node.at(member).size(), 3u) << member;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                EXPECT_EQ(node[member][axis].at("id"), std::string(1, static_cast<char>('x' + axis)));
                EXPECT_TRUE(Has(node[member][axis], {"type", "value"}));
            }
        }
    }
}

TEST_F(SavedFile, lists_every_bone_below_its_parent)
{
    std::set<std::string> seen;
    std::map<std::string, int> urls;
    for (const json& node : nodes()) {
        EXPECT_TRUE(Has(node, {"id", "url", "name", "label"}));
        if (node.contains("parent")) {
            EXPECT_TRUE(seen.count(node.at("parent"))) << node.at("id");
        }
        const std::string reference = "#" + dson::EncodeFragment(node.at("id").get<std::string>());
        EXPECT_TRUE(seen.insert(reference).second) << "ids are unique";
        ++urls[node.at("url")];
    }
    EXPECT_EQ(urls["/data/Acme/Mini/Base/Mini.dsf#Mini"], 2);
    EXPECT_EQ(urls["/data/Acme/Mini/Base/Mini.dsf#hip"], 2);
    EXPECT_EQ(urls["/data/Acme/Mini/Base/Mini.dsf#arm"], 2);
    EXPECT_EQ(nodes().size(), 12u);
    EXPECT_EQ(geometryInstances().size(), 5u);
    for (const json& node : nodes())
        for (const json& geometry : node.value("geometries", json::array()))
            EXPECT_TRUE(Has(geometry, {"id", "url"}));
}

TEST_F(SavedFile, hangs_modifiers_on_geometries)
{
    const std::set<std::string> geometries = geometryInstances();
    int skins = 0;
    for (const json& modifier : modifiers()) {
        EXPECT_TRUE(geometries.count(modifier.at("parent"))) << modifier.at("id");
        if (!modifier.contains("channel")) {
            ++skins;
            EXPECT_NE(modifier.at("url").get<std::string>().find("SkinBinding"), std::string::npos);
            continue;
        }
        EXPECT_EQ(modifier["channel"].at("id"), "value");
    }
    EXPECT_EQ(skins, 3);
}

TEST_F(SavedFile, tells_the_parents_limits_and_sizes_of_morphs_and_skins)
{
    int morphs = 0;
    for (const json& modifier : library("modifier")) {
        EXPECT_TRUE(Has(modifier, {"id", "name", "parent"}));
        if (modifier.contains("morph")) {
            ++morphs;
            EXPECT_TRUE(Has(modifier.at("channel"), {"id", "type", "min", "max"}));
            EXPECT_EQ(modifier["morph"]["vertex_count"], modifier["name"] == "Puff" ? 6 : 10);
        } else {
            EXPECT_TRUE(Has(modifier.at("skin"), {"node", "geometry", "vertex_count"}));
        }
    }
    EXPECT_EQ(morphs, 3);
}

TEST_F(SavedFile, names_joints_after_their_bones)
{
    std::set<std::string> bones;
    for (const json& node : library("node"))
        bones.insert(node.at("id"));
    for (const json& modifier : library("modifier"))
        for (const json& joint : modifier.value("/skin/joints"_json_pointer, json::array())) {
            EXPECT_TRUE(bones.count(joint.at("id")));
            EXPECT_EQ(joint.at("node"), "#" + joint.at("id").get<std::string>());
            EXPECT_EQ(joint["node_weights"].at("count"), joint["node_weights"].at("values").size());
        }
}

TEST_F(SavedFile, writes_links_as_push_push_mult)
{
    const json& formulas = nodes().at(0).at("formulas");
    ASSERT_EQ(formulas.size(), 1u);
    EXPECT_EQ(formulas[0]["output"], "arm:/data/Acme/Mini/Base/Mini.dsf#arm?rotation/x");
    EXPECT_FALSE(formulas[0].contains("stage"));
    ASSERT_EQ(formulas[0]["operations"].size(), 3u);
    EXPECT_EQ(formulas[0]["operations"][0], json({{"op", "push"}, {"url", "Mini:#My%20Shape-1?value"}}));
    EXPECT_EQ(formulas[0]["operations"][1], json({{"op", "push"}, {"val", 20.0}}));
    EXPECT_EQ(formulas[0]["operations"][2], json({{"op", "mult"}}));
}

TEST_F(SavedFile, gives_every_part_an_id_of_its_own)
{
    std::set<std::string> ids;
    const auto enter = [&ids](const json& list) {
        for (const json& item : list)
            EXPECT_TRUE(ids.insert(item.at("id")).second) << item.at("id");
    };
    for (const char* const name : {"geometry", "node", "modifier"})
        enter(library(name));
    enter(nodes());
    enter(modifiers());
    for (const json& node : nodes())
        enter(node.value("geometries", json::array()));
}

TEST_F(SavedFile, calls_a_single_morph_by_one_name)
{
    for (const json& modifier : library("modifier"))
        if (modifier.at("name") == "Puff") {
            EXPECT_EQ(modifier.at("id"), "Puff");
        }
}

TEST_F(SavedFile, holds_no_influence_maps_in_its_library)
{
    for (const json& modifier : library("modifier"))
        EXPECT_FALSE(modifier.contains("dform"));
}

TEST_F(SavedFile, encodes_addresses_and_leaves_names_as_they_are)
{
    const json* group = nullptr;
    for (const json& node : nodes())
        if (node.at("name") == "Group 1")
            group = &node;
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->at("label"), "Gr\xC3\xBCppe #1/50%");
    EXPECT_EQ(group->at("url"), "#Group%201");
    EXPECT_EQ(group->at("id"), "Group 1-1");
}
