// Dials given on the command line, on a figure of one morph.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"

#include <filesystem>

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

const char* const figureText = R"({"file_version": "0.6.0.0",
    "asset_info": {"id": "/data/Acme/Box/Box.dsf", "type": "figure"},
    "geometry_library": [{"id": "Box-1", "name": "Box", "type": "polygon_mesh",
        "vertices": {"count": 4, "values": [[0, 0, 0], [10, 0, 0], [10, 20, 0], [0, 20, 0]]},
        "polygon_groups": {"count": 1, "values": ["all"]},
        "polygon_material_groups": {"count": 1, "values": ["skin"]},
        "polylist": {"count": 1, "values": [[0, 0, 0, 1, 2, 3]]}}],
    "node_library": [{"id": "Box", "name": "Box", "label": "Box", "type": "figure"},
                     {"id": "hip", "name": "hip", "label": "Hip", "type": "bone", "parent": "#Box"}],
    "modifier_library": [{"id": "SkinBinding", "name": "SkinBinding", "parent": "#Box-1",
        "skin": {"node": "#Box", "geometry": "#Box-1", "vertex_count": 4,
            "joints": [{"id": "hip", "node": "#hip",
                "node_weights": {"count": 4, "values": [[0, 1], [1, 1], [2, 1], [3, 1]]}}]}}]})";

std::string MorphText(const std::string& name, const std::string& label)
{
    return R"({"file_version": "0.6.0.0", "asset_info": {"id": "/data/Acme/Box/Morphs/)" + name +
           R"(.dsf", "type": "modifier"}, "modifier_library": [{"id": ")" + name + R"(", "name": ")" + name +
           R"(", "parent": "/data/Acme/Box/Box.dsf#Box-1", "group": "/Shapes",
            "channel": {"id": "value", "type": "float", "name": "Value", "label": ")" +
           label + R"(", "value": 0, "min": 0, "max": 1, "clamped": true},
            "morph": {"vertex_count": 4, "deltas": {"count": 2, "values": [[2, 0, 10, 0], [3, 0, 10, 0]]}}}]})";
}

std::string CharacterText(double tall)
{
    return R"({"file_version": "0.6.0.0", "asset_info": {"id": "/People/Boxer.duf", "type": "character"},
        "scene": {"nodes": [{"id": "Box", "url": "/data/Acme/Box/Box.dsf#Box", "label": "Boxer",
                             "geometries": [{"id": "Box-g", "url": "/data/Acme/Box/Box.dsf#Box-1"}]}],
                  "modifiers": [{"id": "Tall-1", "url": "/data/Acme/Box/Morphs/Tall.dsf#Tall", "parent": "#Box-g",
                                 "channel": {"id": "value", "current_value": )" +
           std::to_string(tall) + "}}]}}";
}

/// A library with one character, 20 cm high and 10 cm more with its dial at 1.
struct Dials : ::testing::Test {
    Workspace workspace;
    std::string character;

    Dials()
    {
        for (const char* folder : {"lib/data/Acme/Box/Morphs", "lib/People"})
            std::filesystem::create_directories(workspace.path(folder));
        workspace.write("lib/data/Acme/Box/Box.dsf", figureText);
        workspace.write("lib/data/Acme/Box/Morphs/Tall.dsf", MorphText("Tall", "Tall Box"));
        character = workspace.write("lib/People/Boxer.duf", CharacterText(0.5));
    }

    json inspect(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> arguments{"inspect", "--json", character};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ProgramResult result = RunProgram(arguments);
        ExpectSuccess(result);
        return json::parse(result.out);
    }

    /// The picture's bytes.
    std::string render(const std::vector<std::string>& more) const
    {
        const std::string picture = workspace.path("picture.png");
        std::vector<std::string> arguments{"render", character, "--out", picture, "--size", "40x60"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        ExpectSuccess(RunProgram(arguments));
        return workspace.read("picture.png");
    }
};

} // namespace

TEST_F(Dials, are_listed_with_their_values_and_files)
{
    const json figures = inspect().at("figures");
    ASSERT_EQ(figures.size(), 1u);
    const json& figure = figures.front();
    EXPECT_EQ(figure.at("label"), "Boxer");
    EXPECT_EQ(figure.at("kind"), "other");
    EXPECT_EQ(figure.at("vertices"), 4);
    EXPECT_EQ(figure.at("bones"), 1);
    EXPECT_DOUBLE_EQ(figure.at("height_cm").get<double>(), 25.0);
    ASSERT_EQ(figure.at("dial_count"), 1);
    EXPECT_EQ(figure.at("dials").front(), json({{"name", "Tall"},
                                                {"label", "Tall Box"},
                                                {"value", 0.5},
                                                {"default", 0.0},
                                                {"path", "/Shapes"},
                                                {"min", 0.0},
                                                {"max", 1.0},
                                                {"asset", "/data/Acme/Box/Morphs/Tall.dsf#Tall"}}));
}

TEST_F(Dials, are_found_in_the_directories_given)
{
    std::filesystem::create_directories(workspace.path("elsewhere"));
    character = workspace.write("elsewhere/Boxer.duf", CharacterText(1.0));
    const json figures = inspect({"--content", workspace.path("lib")}).at("figures");
    ASSERT_EQ(figures.size(), 1u);
    EXPECT_DOUBLE_EQ(figures.front().at("height_cm").get<double>(), 30.0);
}

TEST_F(Dials, can_be_set_by_name_and_by_label_in_any_case)
{
    const std::string base = render({"--dial", "Tall=0"});
    const std::string tall = render({"--dial", "Tall=1"});
    EXPECT_NE(tall, base);
    EXPECT_EQ(render({"--dial", "Tall Box=1"}), tall);
    EXPECT_EQ(render({"--dial", "tall=1"}), tall);
}

TEST_F(Dials, take_values_in_percent)
{
    EXPECT_EQ(render({"--dial", "Tall=70%"}), render({"--dial", "Tall=0.7"}));
    EXPECT_NE(render({"--dial", "Tall=70%"}), render({"--dial", "Tall=1"}));
    for (const char* const dial : {"Tall=%", "Tall=50%%", "Tall=%50", "Tall%"})
        ExpectWrongUse(RunProgram({"render", character, "--out", workspace.path("a.png"), "--dial", dial}),
                       dial);
}

TEST_F(Dials, say_nothing_of_limits_and_pictures_when_quiet)
{
    const ProgramResult held = RunProgram({"render", character, "--out", workspace.path("held.png"), "--size",
                                           "40x60", "--dial", "Tall=5", "--quiet"});
    ExpectSuccess(held);
    EXPECT_EQ(held.out, "");
    EXPECT_EQ(workspace.read("held.png"), render({"--dial", "Tall=1"}));
    ExpectError(RunProgram({"render", "none.duf", "--out", workspace.path("a.png"), "--quiet"}), 1,
                "Cannot open none.duf: No such file or directory.");
}

TEST_F(Dials, hold_values_within_their_limits_and_say_so)
{
    const std::string picture = workspace.path("held.png");
    const ProgramResult held =
        RunProgram({"render", character, "--out", picture, "--size", "40x60", "--dial", "Tall=5"});
    EXPECT_EQ(held.exitCode, 0);
    EXPECT_EQ(held.err,
              "gantrel: warning: --dial Tall=5 is beyond the limits of \"Tall\", 0 to 1, and is held "
              "within them\n");
    EXPECT_EQ(workspace.read("held.png"), render({"--dial", "Tall=1"}));
}

TEST_F(Dials, that_are_aliases_of_nothing_cannot_be_turned)
{
    const auto writeAlias = [this](const std::string& id, const std::string& target) {
        workspace.write("lib/data/Acme/Box/Morphs/" + id + ".dsf",
                        R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/x.dsf", "type": "modifier"}, "modifier_library": [{"id": ")" +
                            id + R"(", "name": ")" + id +
                            R"(", "parent": "/data/Acme/Box/Box.dsf#Box",
            "channel": {"id": "value", "type": "alias", "label": ")" +
                            id + R"(", "target_channel": ")" + target + "\"}}]}");
    };
    writeAlias("Lone", "Box:#Gone?value");
    writeAlias("Ring", "Box:#Round?value");
    writeAlias("Round", "Box:#Ring?value");
    const auto refused = [this](const std::string& dial) {
        return RunProgram({"render", character, "--out", workspace.path("a.png"), "--dial", dial});
    };
    ExpectError(refused("Lone=1"), 1,
                "--dial Lone=1 turns nothing: \"Lone\" is an alias of Box:#Gone?value, which the figure does "
                "not have.");
    for (const char* const dial : {"Ring=1", "Round=1"}) {
        const ProgramResult result = refused(dial);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.err.find(std::string("gantrel: --dial ") + dial + " turns nothing: "), 0u)
            << result.err;
        EXPECT_NE(result.err.find("stand for each other in a circle"), result.err.npos) << result.err;
    }
}

TEST_F(Dials, of_pictures_come_with_what_the_host_tells)
{
    workspace.write("lib/data/Acme/Box/Morphs/Broken.dsf", "{");
    const ProgramResult drawn =
        RunProgram({"render", character, "--out", workspace.path("a.png"), "--size", "40x60"});
    EXPECT_EQ(drawn.exitCode, 0);
    EXPECT_EQ(drawn.err.compare(0, 9, "gantrel: "), 0) << drawn.err;
    EXPECT_NE(drawn.err.find("Broken.dsf"), drawn.err.npos) << drawn.err;
}

TEST_F(Dials, that_are_unknown_bring_up_the_closest_names)
{
    workspace.write("lib/data/Acme/Box/Morphs/Small.dsf", MorphText("Small", "Small Box"));
    const ProgramResult result =
        RunProgram({"render", character, "--out", workspace.path("a.png"), "--dial", "Tal=1"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    const std::string beginning = "gantrel: \"Boxer\" has no dial \"Tal\"; the closest are \"Tall\", ";
    EXPECT_EQ(result.err.compare(0, beginning.size(), beginning), 0) << result.err;
    EXPECT_FALSE(workspace.has("a.png"));
}

TEST_F(Dials, with_the_same_label_are_told_apart_by_name_alone)
{
    workspace.write("lib/data/Acme/Box/Morphs/Taller.dsf", MorphText("Taller", "Tall Box"));
    const ProgramResult result =
        RunProgram({"render", character, "--out", workspace.path("a.png"), "--dial", "Tall Box=1"});
    ExpectError(result, 1, "Several dials are labelled \"Tall Box\": \"Tall\" and \"Taller\".");
    render({"--dial", "Taller=1"});
}

TEST_F(Dials, leave_no_trace_of_the_program_behind)
{
    inspect();
    EXPECT_EQ(workspace.entries(),
              (std::vector<std::string>{"lib", "lib/People", "lib/People/Boxer.duf", "lib/data",
                                        "lib/data/Acme", "lib/data/Acme/Box", "lib/data/Acme/Box/Box.dsf",
                                        "lib/data/Acme/Box/Morphs", "lib/data/Acme/Box/Morphs/Tall.dsf"}));
}
