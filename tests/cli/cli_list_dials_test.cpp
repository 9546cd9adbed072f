// Looking up the dials of a figure.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_terminal.h"
#include "cli_workspace.h"

#include <filesystem>
#include <sstream>

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;
using Strings = std::vector<std::string>;

const char* const figureText = R"({"file_version": "0.6.0.0",
    "asset_info": {"id": "/data/Acme/Box/Box.dsf", "type": "figure"},
    "geometry_library": [{"id": "Box-g", "vertices": {"values": [[0, 0, 0], [9, 0, 0], [9, 9, 0], [0, 9, 0]]},
        "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["skin"]},
        "polylist": {"values": [[0, 0, 0, 1, 2, 3]]}}],
    "node_library": [{"id": "Box", "label": "Box", "type": "figure"},
                     {"id": "hip", "label": "Hip", "type": "bone", "parent": "#Box"}]})";

std::string Dial(const std::string& name, const std::string& label, const std::string& group,
                 const std::string& channel, const std::string& more = "")
{
    return R"({"file_version": "0.6.0.0", "asset_info": {"id": "/x.dsf", "type": "modifier"}, "modifier_library": [{
        "id": ")" +
           name + R"(", "parent": "/data/Acme/Box/Box.dsf#Box-g", "group": ")" + group +
           R"(", "channel": {"id": "value", "type": "float", "label": ")" + label + "\"" + channel + "}" +
           more + "}]}";
}

class ListDials : public ::testing::Test {
protected:
    ListDials()
    {
        const std::string folder = "lib/data/Acme/Box/Morphs/Acme";
        for (const std::string& made : {folder, std::string("lib/People")})
            std::filesystem::create_directories(workspace.path(made));
        figure = workspace.write("lib/data/Acme/Box/Box.dsf", figureText);
        workspace.write(folder + "/Tall.dsf",
                        Dial("PHMTall", "Tall", "/Shapes", R"(, "min": 0, "max": 1, "clamped": true)",
                             R"(, "morph": {"vertex_count": 4, "deltas": {"values": [[2, 0, 1, 0]]}})"));
        workspace.write(folder + "/Bend.dsf",
                        Dial("CTRLBend", "Bend Zo\xC3\xA4", "/Pose/Arm", R"(, "min": -2, "max": 3)"));
        workspace.write(folder + "/Unseen.dsf", Dial("Unseen", "Unseen", "/Pose", R"(, "visible": false)"));
        character = workspace.write("lib/People/Boxer.duf", R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/People/Boxer.duf", "type": "character"}, "scene": {
            "nodes": [{"id": "Box", "url": "/data/Acme/Box/Box.dsf#Box", "label": "Boxer",
                       "geometries": [{"id": "g", "url": "/data/Acme/Box/Box.dsf#Box-g"}]}],
            "modifiers": [{"id": "t", "url": "/data/Acme/Box/Morphs/Acme/Tall.dsf#PHMTall", "parent": "#g",
                           "channel": {"id": "value", "current_value": 0.25}}]}})");
    }

    ProgramResult run(Strings more) const
    {
        more.insert(more.begin(), "list-dials");
        return RunProgram(more);
    }
    Strings lines(const Strings& more) const
    {
        const ProgramResult result = run(more);
        ExpectSuccess(result);
        std::istringstream stream(result.out);
        Strings lines;
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        return lines;
    }

    Workspace workspace;
    std::string figure, character;
};

const char* const headings = "LABEL\tNAME\tGROUP\tVALUE\tLIMITS\tFILE\tFIGURE";
const char* const tall = "Tall\tPHMTall\t/Shapes\t0.25\t0..1\t/data/Acme/Box/Morphs/Acme/Tall.dsf\tBoxer";
const char* const bend =
    "Bend Zo\xC3\xA4\tCTRLBend\t/Pose/Arm\t0\tnone\t/data/Acme/Box/Morphs/Acme/Bend.dsf\tBoxer";

} // namespace

TEST_F(ListDials, gives_other_programs_a_line_a_dial_with_tabs_between)
{
    EXPECT_EQ(lines({character}), (Strings{headings, tall, bend}));
}

TEST_F(ListDials, searches_label_name_and_group_ignoring_case)
{
    EXPECT_EQ(lines({character, "--search", "TALL"}), (Strings{headings, tall}));
    EXPECT_EQ(lines({character, "--search", "phm"}), (Strings{headings, tall}));
    EXPECT_EQ(lines({character, "--search", "pose/a"}), (Strings{headings, bend}));
    EXPECT_EQ(lines({character, "--search", "ZO\xC3\x84"}), (Strings{headings, bend}));
    const ProgramResult none = run({character, "--search", "nothing"});
    EXPECT_EQ(none.exitCode, 0);
    EXPECT_EQ(none.out.compare(0, 6, "LABEL\t"), 0) << none.out;
    EXPECT_EQ(none.err,
              "gantrel: warning: " + character + ": no dial has \"nothing\" in label, name or group\n");
}

TEST_F(ListDials, tells_those_alone_that_were_changed)
{
    EXPECT_EQ(lines({character, "--changed"}), (Strings{headings, tall}));
    EXPECT_EQ(lines({character, "--changed", "--search", "bend"}), Strings{headings});
}

TEST_F(ListDials, takes_the_file_that_defines_a_figure)
{
    const Strings listed = lines({figure, "--content", workspace.path("lib")});
    ASSERT_EQ(listed.size(), 3u);
    EXPECT_EQ(listed[1], "Tall\tPHMTall\t/Shapes\t0\t0..1\t/data/Acme/Box/Morphs/Acme/Tall.dsf\tBox");
    EXPECT_EQ(lines({figure}), listed);
    std::filesystem::create_directories(workspace.path("other"));
    ExpectError(run({figure, "--content", workspace.path("other")}), 1,
                figure + ": lies in no content directory.");
    const std::string morph = workspace.path("lib/data/Acme/Box/Morphs/Acme/Tall.dsf");
    ExpectError(run({morph}), 1, morph + ": defines no figure.");
}

TEST_F(ListDials, of_a_file_with_a_prop_in_front_are_the_figure_s)
{
    std::string both = figureText;
    const std::string list = R"("node_library": [)";
    both.insert(both.find(list) + list.size(), R"({"id": "Ball", "label": "Ball", "type": "node"}, )");
    const std::string file = workspace.write("lib/data/Acme/Box/Box.dsf", both);
    const Strings listed = lines({file});
    ASSERT_EQ(listed.size(), 3u);
    EXPECT_EQ(listed[1], "Tall\tPHMTall\t/Shapes\t0\t0..1\t/data/Acme/Box/Morphs/Acme/Tall.dsf\tBox");
}

TEST_F(ListDials, as_json_has_limits_and_defaults)
{
    const ProgramResult result = run({character, "--json", "--search", "bend"});
    ExpectSuccess(result);
    const json report = json::parse(result.out);
    ASSERT_EQ(report["dials"].size(), 1u);
    EXPECT_EQ(report["dials"][0],
              json::parse("{\"label\": \"Bend Zo\xC3\xA4\", \"name\": \"CTRLBend\", \"group\": "
                          "\"/Pose/Arm\", \"value\": 0, \"default\": 0, \"min\": -2, \"max\": 3, "
                          "\"clamped\": false, \"file\": "
                          "\"/data/Acme/Box/Morphs/Acme/Bend.dsf\", \"figure\": \"Boxer\", "
                          "\"node\": \"Box\", \"alias_of\": null}"));
    EXPECT_EQ(report["warnings"], json::array());
}

TEST_F(ListDials, keeps_warnings_out_of_the_table)
{
    workspace.write("lib/data/Acme/Box/Morphs/Acme/Bad.dsf", "{");
    const ProgramResult result = run({character});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, std::string(headings) + "\n" + tall + "\n" + bend + "\n");
    EXPECT_NE(result.err.find("Bad.dsf: ends too early, at line 1, column 2\n"), std::string::npos)
        << result.err;
}

TEST_F(ListDials, fits_the_terminal)
{
    const TerminalResult wide = RunOnTerminal({"list-dials", character}, 200);
    ASSERT_EQ(wide.screen.size(), 3u);
    EXPECT_EQ(wide.screen[0],
              "LABEL     NAME      GROUP      VALUE  LIMITS  FILE                                 FIGURE");
    EXPECT_EQ(wide.screen[1],
              "Tall      PHMTall   /Shapes    0.25   0..1    /data/Acme/Box/Morphs/Acme/Tall.dsf  Boxer");
    const TerminalResult narrow = RunOnTerminal({"list-dials", character}, 70);
    ASSERT_EQ(narrow.screen.size(), 3u);
    EXPECT_EQ(narrow.screen[1],
              "Tall      PHMTall   /Shapes    0.25   0..1    \xE2\x80\xA6s/Acme/Tall.dsf  Boxer");
}

TEST_F(ListDials, tells_of_aliases_what_they_stand_for)
{
    const std::string folder = "lib/data/Acme/Box/Morphs/Acme/";
    workspace.write(folder + "alias_hip_Tall.dsf", R"({"file_version": "0.6.0.0",
        "asset_info": {"id": "/x.dsf", "type": "modifier"}, "modifier_library": [{"id": "PHMTall", "name": "PHMTall",
        "parent": "/data/Acme/Box/Box.dsf#hip", "group": "/Hip", "channel": {"id": "value", "type": "alias",
        "label": "Tall", "target_channel": "Box:#PHMTall?value"}}]})");
    workspace.write(folder + "alias_Sway.dsf", R"({"file_version": "0.6.0.0",
        "asset_info": {"id": "/x.dsf", "type": "modifier"}, "modifier_library": [{"id": "Sway", "name": "Sway",
        "parent": "/data/Acme/Box/Box.dsf#Box", "channel": {"id": "value", "type": "alias",
        "label": "Sway", "target_channel": "hip:#SwayHip?value"}}]})");
    std::string sway = Dial("SwayHip", "Sway Hip", "/Hip", R"(, "value": 0.5)");
    sway.replace(sway.find("#Box-g"), 6, "#hip");
    workspace.write(folder + "SwayHip.dsf", sway);
    const Strings listed = lines({character});
    const std::string place = "/data/Acme/Box/Morphs/Acme/";
    EXPECT_EQ(
        listed,
        (Strings{std::string(headings) + "\tALIAS OF", std::string(tall) + "\t",
                 "Sway\tSway\t/\t0.5\tnone\t" + place + "alias_Sway.dsf\tBoxer\tSwayHip of hip",
                 std::string(bend) + "\t",
                 "Tall\tPHMTall\t/Hip\t0.25\t0..1\t" + place + "alias_hip_Tall.dsf\tBoxer, Hip\tPHMTall",
                 "Sway Hip\tSwayHip\t/Hip\t0.5\tnone\t" + place + "SwayHip.dsf\tBoxer, Hip\t"}));
    EXPECT_EQ(lines({character, "--changed"}).size(), 3u);
    const json dials = json::parse(run({character, "--json", "--search", "sway"}).out).at("dials");
    ASSERT_EQ(dials.size(), 2u);
    EXPECT_EQ(dials[0].at("alias_of"), "SwayHip of hip");
    EXPECT_EQ(dials[0].at("default"), 0.5);
    EXPECT_EQ(dials[1].at("alias_of"), nullptr);
    EXPECT_EQ(dials[1].at("node"), "hip");
}
