// Saving a scene keeps what its file has beside shapes and poses.
// SPDX-License-Identifier: MIT

#include "dson/uri.h"
#include "dzfigure.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzscene.h"
#include "tests/host/keep_fixture.h"

using doll::Instance;
using nlohmann::ordered_json;

namespace {

class KeptScene : public KeepTest {
protected:
    /// A painted figure of its own colour; ids end in the suffix, those of the libraries do not.
    static std::string painted(const std::string& suffix, const std::string& colour)
    {
        return R"("image_library": [{"id": "Tint", "map": [{"url": "/Runtime/)" + colour +
               R"(.jpg"}]}, {"id": "Unused", "map": []}],
            "material_library": [{"id": "Paint", "diffuse": {"channel": {"id": "diffuse", "type": "color",
                "value": [1, 0.5, 0], "image": "#Tint"}}}],
            "scene": {"nodes": [)" +
               Instance(suffix, R"(, "label": "Painted )" + colour + "\"") +
               R"(], "uvs": [{"id": "uv-1", "url": "/data/x.dsf#uv", "parent": "#Doll-1)" + suffix + R"("}],
            "materials": [{"id": "Face-1", "url": "#Paint", "geometry": "#Doll-1)" +
               suffix + R"(", "groups": ["Skin"], "uv_set": "#uv-1"}]})";
    }
    bool merge(const char* file, const std::string& members)
    {
        return load(file, doll::File(members, "scene"));
    }
};

} // namespace

TEST_F(KeptScene, has_its_materials_with_all_that_they_refer_to)
{
    ordered_json file = resaved(painted("", "Red"));
    EXPECT_EQ(file["scene"]["materials"],
              parsed(R"([{"id": "Face-1", "url": "#Paint", "geometry": "#Doll-1", "groups": ["Skin"],
                  "uv_set": "#uv-1"}])"));
    EXPECT_EQ(file["scene"]["uvs"],
              parsed(R"([{"id": "uv-1", "url": "/data/x.dsf#uv", "parent": "#Doll-1"}])"));
    EXPECT_EQ(file["material_library"],
              parsed(R"([{"id": "Paint", "diffuse": {"channel": {"id": "diffuse", "type": "color",
                  "value": [1, 0.5, 0], "image": "#Tint"}}}])"));
    EXPECT_EQ(file["image_library"], parsed(R"([{"id": "Tint", "map": [{"url": "/Runtime/Red.jpg"}]}])"));
    EXPECT_EQ(timesLogged("kept for saving and without effect here: 1 material, 1 UV set"), 1);
    EXPECT_FALSE(logged("left out"));
    expectStable();
}

TEST_F(KeptScene, is_kept_by_what_the_file_says_now)
{
    // The geometry gets another id, as the figure's own file calls it.
    ordered_json file = resaved(painted("-odd", "Red"));
    EXPECT_EQ(file["scene"]["nodes"][0]["geometries"][0]["id"], "Doll-1");
    EXPECT_EQ(file["scene"]["materials"][0]["geometry"], "#Doll-1");
    EXPECT_EQ(file["scene"]["uvs"][0]["parent"], "#Doll-1");
    expectStable();
}

TEST_F(KeptScene, has_the_materials_of_figures_that_are_there)
{
    const std::string two = R"("material_library": [{"id": "A"}, {"id": "B"}], "scene": {"nodes": [)" +
                            Instance("", R"(, "label": "One")") + "," +
                            Instance("-2", R"(, "label": "Two")") +
                            R"(], "materials": [{"id": "m1", "url": "#A", "geometry": "#Doll-1"},
            {"id": "m2", "url": "#B", "geometry": "#Doll-1-2"}]})";
    ordered_json both = resaved(two);
    EXPECT_EQ(both["scene"]["materials"].size(), 2u);
    const std::string second = both["scene"]["nodes"][3]["geometries"][0]["id"];
    EXPECT_EQ(both["scene"]["materials"][1]["geometry"], "#" + second);
    ASSERT_NE(labelled("One"), nullptr);
    dzScene->removeNode(labelled("One"));
    ordered_json rest = saved();
    EXPECT_EQ(rest["scene"]["materials"], parsed(R"([{"id": "m2", "url": "#B", "geometry": "#Doll-1"}])"));
    EXPECT_EQ(rest["material_library"], parsed(R"([{"id": "B"}])"));
    expectStable();
}

TEST_F(KeptScene, takes_nothing_along_into_the_next_one)
{
    ASSERT_TRUE(merge("Scenes/Old.duf", painted("", "Red")));
    dzScene->clear();
    ASSERT_NE(openDoll(), nullptr);
    ordered_json file = saved();
    EXPECT_FALSE(file["scene"].contains("materials"));
    EXPECT_FALSE(file.contains("material_library"));
}

TEST_F(KeptScene, shares_the_equal_parts_of_two_files)
{
    ASSERT_TRUE(merge("Scenes/One.duf", painted("", "Red")));
    ASSERT_TRUE(merge("Scenes/Two.duf", painted("", "Red")));
    ordered_json file = saved();
    EXPECT_EQ(file["image_library"].size(), 1u);
    EXPECT_EQ(file["material_library"].size(), 1u);
    ASSERT_EQ(file["scene"]["materials"].size(), 2u);
    const ordered_json& first = file["scene"]["materials"][0];
    const ordered_json& second = file["scene"]["materials"][1];
    EXPECT_NE(first["id"], second["id"]);
    EXPECT_NE(first["geometry"], second["geometry"]);
    EXPECT_NE(first["uv_set"], second["uv_set"]);
    EXPECT_EQ(second["url"], "#Paint");
    EXPECT_FALSE(logged("got another one"));
    expectStable();
}

TEST_F(KeptScene, tells_different_parts_of_one_id_apart)
{
    ASSERT_TRUE(merge("Scenes/One.duf", painted("", "Red")));
    ASSERT_TRUE(merge("Scenes/Two.duf", painted("", "Blue")));
    ordered_json file = saved();
    ASSERT_EQ(file["image_library"].size(), 2u);
    ASSERT_EQ(file["material_library"].size(), 2u);
    for (const ordered_json& material : file["scene"]["materials"]) {
        const std::string url = material["url"];
        ordered_json paint = entry(file["material_library"], url.substr(1));
        const std::string image = paint["diffuse"]["channel"]["image"];
        ordered_json tint = entry(file["image_library"], image.substr(1));
        const bool isFirst = &material == &file["scene"]["materials"][0];
        EXPECT_EQ(tint["map"][0]["url"], isFirst ? "/Runtime/Red.jpg" : "/Runtime/Blue.jpg");
    }
    EXPECT_EQ(timesLogged("2 images, UV sets and materials had an id that something else has and got "
                          "another one"),
              1)
        << log().toStdString();
    expectStable();
    EXPECT_EQ(timesLogged("got another one"), 1) << "the file has different ids now";
}

TEST_F(KeptScene, gives_no_id_twice)
{
    // What the file calls its material is what the figure's node is called.
    ordered_json file = resaved(R"("material_library": [{"id": "Doll"}], "scene": {"nodes": [)" +
                                Instance("-9") + R"(], "materials": [{"id": "hip", "url": "#Doll"}]})");
    const std::string id = file["material_library"][0]["id"];
    EXPECT_NE(id, "Doll");
    EXPECT_EQ(file["scene"]["materials"][0]["url"], "#" + id);
    EXPECT_NE(file["scene"]["materials"][0]["id"], "hip");
    expectStable();
}

TEST_F(KeptScene, has_the_settings_of_its_file)
{
    ordered_json file = resaved(
        R"("vendor": {"deep": [1, {"x": [null, true, 1e-7, "\u00e4\n"]}]}, "scene": {"vendor": 5, "nodes": [)" +
        Instance("-7") +
        R"(], "presentation": {"label": "Mine"}, "current_camera": "#hand-7",
            "extra": [{"type": "render_settings", "size": [640, 480]}]})");
    EXPECT_EQ(file["vendor"], parsed(R"({"deep": [1, {"x": [null, true, 1e-7, "\u00e4\n"]}]})"));
    EXPECT_EQ(file["scene"]["vendor"], 5);
    EXPECT_EQ(file["scene"]["presentation"], parsed(R"({"label": "Mine"})"));
    EXPECT_EQ(file["scene"]["current_camera"], "#hand");
    EXPECT_EQ(file["scene"]["extra"], parsed(R"([{"type": "render_settings", "size": [640, 480]}])"));
    expectStable();
}

TEST_F(KeptScene, keeps_the_settings_of_the_first_of_two_files)
{
    const auto more = [](const char* size) {
        return R"(, "vendor": )" + std::string(size) +
               R"(, "extra": [{"type": "a"}, {"type": "b", "size": )" + size + "}]";
    };
    ASSERT_TRUE(merge("Scenes/One.duf", scene(Instance(), more("1"))));
    ASSERT_TRUE(merge("Scenes/Two.duf", scene(Instance(), more("2"))));
    ordered_json file = saved();
    EXPECT_EQ(file["scene"]["vendor"], 1);
    EXPECT_EQ(file["scene"]["extra"],
              parsed(R"([{"type": "a"}, {"type": "b", "size": 1}, {"type": "b", "size": 2}])"));
    EXPECT_EQ(timesLogged("1 setting of loaded files differ; each is kept as the first of the files has it"),
              1)
        << log().toStdString();
}

TEST_F(KeptScene, leaves_its_settings_out_of_files_of_other_kinds)
{
    ASSERT_TRUE(merge("Scenes/One.duf", R"("vendor": 1, "scene": {"presentation": {}, "nodes": [)" +
                                            Instance() +
                                            R"(], "extra": [{"type": "render_settings"}],
                          "materials": [{"id": "m", "geometry": "#Doll-1"}]})"));
    dzScene->selectAllNodes(true);
    ordered_json subset = saved("DzSceneSubsetAssetFilter");
    EXPECT_EQ(subset["scene"]["materials"].size(), 1u);
    EXPECT_FALSE(subset["scene"].contains("presentation"));
    EXPECT_FALSE(subset["scene"].contains("extra"));
    EXPECT_FALSE(subset.contains("vendor"));
}

TEST_F(KeptScene, does_not_present_itself_as_the_character_in_it)
{
    ASSERT_TRUE(load("People/Doll.duf", doll::Scene(Instance(), R"(, "presentation": {"label": "Doll"},
        "extra": [{"type": "notes"}])",
                                                    "character")));
    ordered_json file = saved();
    EXPECT_FALSE(file["scene"].contains("presentation"));
    EXPECT_EQ(file["scene"]["extra"], parsed(R"([{"type": "notes"}])"));
}

TEST_F(KeptScene, loads_its_add_ons_once)
{
    writeShirt();
    write("Clothes/Shirt.duf", doll::Scene(shirt("")));
    resaved(scene(Instance(), R"(, "extra": [{"type": "scene_post_load", "PostLoadAddons":
        ["/Clothes/Shirt.duf"]}, {"type": "scene_post_load_script", "script": "/x.dsa"}])"));
    ASSERT_EQ(dzScene->getNumSkeletons(), 2);
    TestHost().reset();
    use(_library);
    ASSERT_TRUE(open(target()));
    EXPECT_EQ(dzScene->getNumSkeletons(), 2);
    EXPECT_EQ(saved()["scene"]["extra"],
              parsed(R"([{"type": "scene_post_load_script", "script": "/x.dsa"}])"));
}

TEST_F(KeptScene, still_moves)
{
    ordered_json file = resaved(
        scene(Instance("-5"),
              R"(, "animations": [{"url": "hand-5:#hand-5?rotation/z/value", "keys": [[0, 1], [1, 5]]},
            {"url": "name://@selection/hip:?rotation/x/value", "keys": [[0, 2], [1, 6, ["TCB", 0, 0, 0]]]},
            {"url": "#hip-5?rotation/y/value", "keys": [[0, 3]]},
            {"url": "#nothing?value", "keys": [[0, 4]]},
            {"url": "#Skin?diffuse/image", "keys": [[0, "x.png"]]}])"));
    EXPECT_EQ(file["scene"]["animations"], parsed(R"([{"url": "#Skin?diffuse/image", "keys": [[0, "x.png"]]},
                  {"url": "hand:#hand?rotation/z/value", "keys": [[0, 1], [1, 5]]},
                  {"url": "hip:#hip?rotation/x/value", "keys": [[0, 2], [1, 6, ["TCB", 0, 0, 0]]]},
                  {"url": "#nothing?value", "keys": [[0, 4]]}])"));
    expectStable();
}

TEST_F(KeptScene, keeps_the_values_of_what_is_not_there)
{
    const char* const entry = R"([{"url": "#nothing?value", "keys": [[0, 4]]}])";
    EXPECT_EQ(resaved(scene(Instance(), R"(, "animations": )" + std::string(entry)))["scene"]["animations"],
              parsed(entry));
    expectStable();
}

TEST_F(KeptScene, moves_no_more_where_a_value_has_been_changed)
{
    ASSERT_TRUE(merge("Scenes/One.duf",
                      scene(Instance(), R"(, "animations": [{"url": "#hand?rotation/z/value", "keys": [[0, 1],
            [1, 5]]}, {"url": "#hip?rotation/z/value", "keys": [[0, 1], [1, 5]]}])")));
    DzNode* const hand = BoneOf(*dzScene->getPrimarySelection(), "hand");
    ASSERT_NE(hand, nullptr);
    qobject_cast<DzNumericProperty*>(hand->findProperty(QStringLiteral("ZRotate")))->setDoubleRawValue(40.0);
    ordered_json file = saved();
    EXPECT_EQ(file["scene"]["animations"],
              parsed(R"([{"url": "#hip?rotation/z/value", "keys": [[0, 1], [1, 5]]}])"));
    EXPECT_EQ(entry(file["scene"]["nodes"], "hand")["rotation"][0]["current_value"], 40);
    EXPECT_EQ(timesLogged("1 animation of values that have been changed since loading cannot be kept; the "
                          "present values are"),
              1)
        << log().toStdString();
}

TEST_F(KeptScene, moves_the_figure_that_has_moved_when_it_was_the_selected_one)
{
    const char* const moving =
        R"(, "animations": [{"url": "name://@selection:?translation/x/value", "keys": [[0, 1], [1, 5]]}])";
    ASSERT_TRUE(merge("Scenes/One.duf", scene(Instance("", R"(, "label": "Still")"), "")));
    ASSERT_TRUE(merge("Scenes/Two.duf", scene(Instance("", R"(, "label": "Moving")"), moving)));
    ordered_json file = saved();
    ASSERT_EQ(file["scene"]["animations"].size(), 1u);
    ordered_json owner;
    for (const ordered_json& node : file["scene"]["nodes"])
        if (node["label"] == "Moving")
            owner = node;
    const std::string id = owner["id"];
    EXPECT_EQ(file["scene"]["animations"][0]["url"],
              dson::MakePropertyUri(id, "", id, "translation/x/value"));
    expectStable();
}
