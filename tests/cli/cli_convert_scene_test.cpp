// Converting out of scenes as people have them: with props, clothes and further figures.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include <filesystem>

namespace {

using nlohmann::json;

const char* const female = "/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#Genesis8Female";

/// An instance of a node of another file or of the scene's own.
std::string Instance(const std::string& id, const std::string& url, const std::string& label,
                     const std::string& more = "")
{
    return R"({"id": ")" + id + R"(", "url": ")" + url + R"(", "name": ")" + id + R"(", "label": ")" + label +
           "\"" + more + "}";
}

std::string Figure(const std::string& id, const std::string& label)
{
    return Instance(id, female, label,
                    R"(, "geometries": [{"id": ")" + id + R"(-1", "url": ")" + female + R"(-1"}])");
}

/// Turns the dial of the source's morph "Wide".
std::string Worn(const std::string& figure, double value)
{
    return R"({"id": "Wide of )" + figure +
           R"(", "url": "/data/Daz%203D/Genesis%208/Female/Morphs/Test/Base/Wide.dsf#Wide", "parent": "#)" +
           figure + R"(-1", "channel": {"id": "value", "current_value": )" + std::to_string(value) + "}}";
}

class ConvertScene : public ConversionTest {
protected:
    /// A scene that defines a ball, a node without a mesh.
    std::string writeScene(const std::string& nodes, const std::string& modifiers = Worn("Vera", 1.0)) const
    {
        std::filesystem::create_directories(library("/Scenes"));
        return workspace.write("lib/Scenes/Own.duf", R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/Scenes/Own.duf", "type": "scene"},
            "node_library": [{"id": "Ball", "name": "Ball", "label": "Ball", "type": "node"}],
            "scene": {"nodes": [)" + nodes + R"(], "modifiers": [)" +
                                                         modifiers + "]}}");
    }
    static std::string ball(const std::string& label, const std::string& more = "")
    {
        return Instance("Ball-1", "#Ball", label, more);
    }
    /// A piece of clothing with a bone, worn by the figure.
    std::string shirt(const std::string& target) const
    {
        std::filesystem::create_directories(library("/data/Acme/Shirt"));
        workspace.write("lib/data/Acme/Shirt/Shirt.dsf", R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/data/Acme/Shirt/Shirt.dsf", "type": "figure"},
            "geometry_library": [{"id": "Shirt-g", "vertices": {"values": [[0, 99, 40], [9, 99, 40], [0, 90, 40]]},
                "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["cloth"]},
                "polylist": {"values": [[0, 0, 0, 1, 2]]}}],
            "node_library": [{"id": "Shirt", "label": "Shirt", "type": "figure"},
                             {"id": "hip", "label": "hip", "type": "bone", "parent": "#Shirt"}]})");
        return Instance(
            "Shirt", "/data/Acme/Shirt/Shirt.dsf#Shirt", "Shirt",
            R"(, "conform_target": "#)" + target +
                R"(", "geometries": [{"id": "Shirt-1", "url": "/data/Acme/Shirt/Shirt.dsf#Shirt-g"}])");
    }

    json converted(const std::string& source, const std::string& target) const
    {
        const ProgramResult result = RunProgram(argumentsFor(source, target, {"--json", "--jobs", "full"}));
        ExpectSuccess(result);
        return result.out.empty() ? json::object() : json::parse(result.out);
    }
    /// What a conversion of the stock figure with these dials tells.
    json dialed(const std::vector<std::string>& dials) const
    {
        std::vector<std::string> more{"--json", "--jobs", "full", "--name", "Vera"};
        for (const std::string& dial : dials)
            more.insert(more.end(), {"--dial", dial});
        const ProgramResult result = RunProgram(argumentsFor(sourceFile(), targetFile(), more));
        ExpectSuccess(result);
        return json::parse(result.out);
    }
    void writeOnBone(const std::string& id, const std::string& bone, const std::string& channel) const
    {
        workspace.write("lib/data/Daz 3D/Genesis 8/Female/Morphs/Test/Base/" + bone + "_" + id + ".dsf",
                        R"({
            "file_version": "0.6.0.0", "asset_info": {"id": "/x.dsf", "type": "modifier"},
            "modifier_library": [{"id": ")" +
                            id + R"(", "name": ")" + id + R"(",
            "parent": "/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#)" +
                            bone + R"(", "channel": {"id": "value", )" + channel + "}}]}");
    }
    static std::string aliasOf(const std::string& target)
    {
        return R"("type": "alias", "label": "Wide", "target_channel": "Genesis8Female:#)" + target +
               R"(?value")";
    }
    /// The morphs are those of the figure alone.
    void expectSameMorphs(const json& told) const
    {
        const json alone = converted(writeScene(Figure("Vera", "Vera")), targetFile());
        EXPECT_EQ(alone.at("warnings"), json::array());
        EXPECT_GT(alone.at("created_morphs").at(0).at("largest_displacement_mm"), 10.0);
        EXPECT_EQ(told.at("created_morphs"), alone.at("created_morphs"));
        EXPECT_EQ(told.at("surface_distance_mm"), alone.at("surface_distance_mm"));
        EXPECT_EQ(told.at("figures").at("source").at("label"), "Vera");
    }
};

} // namespace

TEST_F(ConvertScene, takes_no_prop_for_the_stock_figure)
{
    const json told = converted(
        writeScene(Figure("Vera", "Vera") + "," + ball("Genesis 8 Female", R"(, "parent": "#Vera")")),
        targetFile());
    EXPECT_EQ(told.at("warnings"),
              json({"1 node has the label of a figure that the conversion loads: \"Genesis 8 Female\" is "
                    "\"Genesis 8 Female (2)\" meanwhile"}));
    expectSameMorphs(told);
}

TEST_F(ConvertScene, gives_what_is_in_the_way_labels_that_nothing_has)
{
    const std::string on = R"(, "parent": "#Vera")";
    const json told = converted(writeScene(Figure("Vera", "Vera") + "," + ball("Genesis 8 Female", on) + "," +
                                           Instance("Ball-2", "#Ball", "Genesis 8 Female (2)", on) + "," +
                                           Instance("Ball-3", "#Ball", "Genesis 9", on) + "," +
                                           Instance("Ball-4", "#Ball", "Genesis 3 Male", on)),
                                targetFile());
    EXPECT_EQ(told.at("warnings"),
              json({"2 nodes have the label of a figure that the conversion loads: \"Genesis 8 Female\" is "
                    "\"Genesis 8 Female (3)\" meanwhile, and so on"}));
    expectSameMorphs(told);
}

TEST_F(ConvertScene, converts_the_first_of_two_figures_and_says_so)
{
    const std::string scene =
        writeScene(Figure("Vera", "Vera") + "," + Figure("Berta", "Genesis 8 Female"), Worn("Vera", 1.0));
    const json told = converted(scene, targetFile());
    ASSERT_EQ(told.at("warnings").size(), 2u) << told.at("warnings");
    EXPECT_EQ(told.at("warnings").at(0),
              scene + ": has 2 figures that could be taken, \"Vera\" and \"Genesis 8 Female\"; the first is");
    expectSameMorphs(told);
}

TEST_F(ConvertScene, converts_the_first_figure_that_wears_a_shape)
{
    const std::string scene =
        writeScene(Figure("Berta", "Genesis 8 Female") + "," + Figure("Vera", "Vera"), Worn("Vera", 1.0));
    const json told = converted(scene, targetFile());
    ASSERT_EQ(told.at("warnings").size(), 2u) << told.at("warnings");
    EXPECT_EQ(told.at("warnings").at(0),
              scene + ": has 2 figures that could be taken, \"Genesis 8 Female\" and \"Vera\"; \"Vera\", the "
                      "first that wears a shape, is");
    const ProgramResult dialed =
        RunProgram(argumentsFor(scene, targetFile(), {"--json", "--jobs", "full", "--dial", "Wide=1"}));
    ExpectSuccess(dialed);
    EXPECT_NE(dialed.out.find("; the first is"), dialed.out.npos) << dialed.out;
    expectSameMorphs(told);
}

TEST_F(ConvertScene, converts_none_of_two_figures_without_shapes)
{
    const std::string scene = writeScene(Figure("Vera", "Vera") + "," + Figure("Berta", "Berta"), "");
    expectFailure(RunProgram(argumentsFor(scene, targetFile())), 1,
                  "Source figure \xE2\x80\x9CVera\xE2\x80\x9D has no morphs dialed in; nothing to do.");
}

TEST_F(ConvertScene, leaves_out_what_places_the_group_that_a_figure_hangs_on)
{
    const std::string on = R"(, "parent": "#Ball-1")";
    std::string figure = Figure("Vera", "Vera");
    figure.insert(figure.rfind('}'), on);
    for (const char* const placed : {R"("translation": [{"id": "x", "current_value": 50}])",
                                     R"("rotation": [{"id": "y", "current_value": 90}])",
                                     R"("general_scale": {"id": "general_scale", "current_value": 2})"}) {
        const std::string scene = writeScene(ball("Group", std::string(", ") + placed) + "," + figure + "," +
                                             Instance("Ball-2", "#Ball", "Ring", R"(, "parent": "#Vera")"));
        const json told = converted(scene, targetFile());
        EXPECT_EQ(told.at("warnings"),
                  json({scene + ": \"Vera\": hangs on \"Group\", which is moved, turned or scaled; it is "
                                "converted without that"}))
            << placed;
        expectSameMorphs(told);
    }
    const json plain = converted(writeScene(ball("Group") + "," + figure), targetFile());
    EXPECT_EQ(plain.at("warnings"), json::array());
    expectSameMorphs(plain);
}

TEST_F(ConvertScene, leaves_out_what_places_the_group_that_the_target_hangs_on)
{
    const std::string nine = "/data/DAZ%203D/Genesis%209/Base/Genesis9.dsf#Genesis9";
    std::filesystem::create_directories(library("/People/Own"));
    const std::string target = workspace.write(
        "lib/People/Own/Target.duf",
        R"({"file_version": "0.6.0.0", "asset_info": {"id": "/People/Own/Target.duf", "type": "scene"},
        "node_library": [{"id": "Ball", "name": "Ball", "label": "Ball", "type": "node"}], "scene": {"nodes": [)" +
            ball("Group", R"(, "translation": [{"id": "y", "current_value": 50}])") + "," +
            Instance("Nine", nine, "Nine",
                     R"(, "parent": "#Ball-1", "geometries": [{"id": "Nine-1", "url": ")" + nine +
                         R"(-1"}])") +
            "]}}");
    const json told = converted(writeScene(Figure("Vera", "Vera")), target);
    EXPECT_EQ(told.at("warnings"), json({target + ": \"Nine\": hangs on \"Group\", which is moved, turned or "
                                                  "scaled; it is converted without that"}));
    expectSameMorphs(told);
}

TEST_F(ConvertScene, shows_a_figure_that_is_hidden)
{
    std::string hidden = Figure("Vera", "Vera");
    hidden.insert(hidden.rfind('}'), R"(, "extra": [{"type": "studio_node_channels", "version": "0.6.0.0",
        "channels": [{"channel": {"id": "Visible", "type": "bool", "name": "Visible", "current_value": false}}]}])");
    const std::string scene = writeScene(hidden);
    const json told = converted(scene, targetFile());
    EXPECT_EQ(told.at("warnings"), json({scene + ": \"Vera\": is hidden and is shown for the conversion"}));
    expectSameMorphs(told);
}

TEST_F(ConvertScene, finds_the_figure_behind_clothes_that_come_first)
{
    const std::string scene = writeScene(shirt("Vera") + "," + Figure("Vera", "Vera"));
    const json told = converted(scene, targetFile());
    EXPECT_EQ(told.at("warnings"),
              json({scene + ": \"Vera\" is taken, the first Genesis 3, 8 or 8.1 figure to convert from; "
                            "\"Shirt\" comes before it"}));
    expectSameMorphs(told);
}

TEST_F(ConvertScene, keeps_a_target_apart_that_is_labelled_like_the_stock_figure)
{
    std::filesystem::create_directories(library("/People/Own"));
    const std::string nine = "/data/DAZ%203D/Genesis%209/Base/Genesis9.dsf#Genesis9";
    const std::string target =
        workspace.write("lib/People/Own/Target.duf",
                        R"({"file_version": "0.6.0.0",
        "asset_info": {"id": "/People/Own/Target.duf", "type": "character"}, "scene": {"nodes": [)" +
                            Instance("Nine", nine, "Genesis 8 Female",
                                     R"(, "geometries": [{"id": "Nine-1", "url": ")" + nine + R"(-1"}])") +
                            "]}}");
    const json told = converted(writeScene(Figure("Vera", "Vera")), target);
    EXPECT_EQ(told.at("figures").at("target").at("label"), "Genesis 8 Female");
    EXPECT_EQ(told.at("warnings").size(), 1u) << told.at("warnings");
    expectSameMorphs(told);
}

TEST_F(ConvertScene, turns_what_an_alias_of_a_bone_stands_for)
{
    const json plain = dialed({"Wide=1"});
    writeOnBone("Broad", "head", aliasOf("Wide"));
    writeOnBone("Bulge", "head", aliasOf("Bulge")); // of the name of what it stands for
    const json other = dialed({"Broad=1"});
    EXPECT_EQ(other.at("created_morphs"), plain.at("created_morphs"));
    EXPECT_EQ(other.at("warnings"), json({"--dial Broad=1 turns \"Wide\", of which \"Broad\" is an alias"}));
    for (const char* const dial : {"Wide=1", "Bulge=1"})
        EXPECT_EQ(dialed({dial}).at("warnings"), json::array()) << dial;
}

TEST_F(ConvertScene, turns_a_dial_of_one_bone_rather_than_an_alias_of_another)
{
    const json plain = dialed({"Wide=1"});
    writeOnBone("Bend", "hip", aliasOf("Wide"));
    writeOnBone("Bend", "head", R"("type": "float", "label": "Bend")");
    const json told = dialed({"Wide=1", "Bend=0.5"});
    EXPECT_EQ(told.at("created_morphs"), plain.at("created_morphs"));
    EXPECT_EQ(told.at("warnings"), json::array());
}

TEST_F(ConvertScene, names_what_a_scene_without_a_figure_has)
{
    std::string balls;
    for (const char* const label : {"A", "B", "C", "D", "E"})
        balls += std::string(balls.empty() ? "" : ",") + Instance(label, "#Ball", label);
    const std::string scene = writeScene(balls, "");
    expectFailure(
        RunProgram(argumentsFor(scene, targetFile())), 1,
        scene + ": has no Genesis 3, 8 or 8.1 figure to convert from, only \"A\", \"B\", \"C\" and 2 more.");
}

TEST_F(ConvertScene, tells_with_an_error_what_was_met_until_then)
{
    const std::string scene = writeScene(shirt("Nobody") + "," + Figure("Vera", "Vera"), "");
    const json told =
        ExpectJsonError(RunProgram(argumentsFor(scene, targetFile(), {"--json"})), 1,
                        "Source figure \xE2\x80\x9CVera\xE2\x80\x9D has no morphs dialed in; nothing to do.");
    ASSERT_EQ(told.at("diagnostics").size(), 2u) << told;
    std::string lines;
    for (const std::string line : told.at("warnings"))
        lines += line + "\n";
    EXPECT_NE(lines.find("there is nothing that Shirt can be fitted to"), lines.npos) << lines;
    EXPECT_NE(lines.find("\"Vera\" is taken"), lines.npos) << lines;
}
