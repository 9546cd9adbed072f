// `gantrel inspect` and `gantrel render` on single files.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"

#include <map>

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

json InspectJson(const std::string& file)
{
    const ProgramResult result = RunProgram({"inspect", file, "--json"});
    ExpectSuccess(result);
    return json::parse(result.out);
}

/// Width and height from the header of a PNG file.
std::pair<unsigned, unsigned> PngSize(const std::string& bytes)
{
    const auto number = [&](std::size_t at) {
        unsigned value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
        return value;
    };
    return {number(16), number(20)};
}

/// A morph for a mesh of eight vertices that lifts two of them.
const char* const morphText = R"({"file_version": "0.6.0.0",
    "asset_info": {"id": "/data/Acme/Box/Morphs/Up.dsf", "type": "modifier",
                   "contributor": {"author": "Acme"}, "revision": "1.0"},
    "modifier_library": [{"id": "Up", "name": "Up", "parent": "/data/Acme/Box/Box.dsf#Box",
        "channel": {"id": "value", "type": "float", "name": "Value", "label": "Lift", "value": 0,
                    "min": 0, "max": 1},
        "group": "/Shapes",
        "morph": {"vertex_count": 8, "deltas": {"count": 2, "values": [[1, 0, 0.5, 0], [2, 0, 0.25, 0]]}}}]})";

/// A character whose figure is in no library.
const char* const orphanText = R"({"file_version": "0.6.0.0",
    "asset_info": {"id": "/People/Orphan.duf", "type": "character"},
    "scene": {"nodes": [{"id": "Box", "url": "/data/Acme/Box/Box.dsf#Box", "label": "Orphan"}]}})";

} // namespace

TEST(InspectCommand, counts_a_closed_mesh)
{
    const Workspace workspace;
    const json facts = InspectJson(workspace.write("cube.obj", CubeText(0.0)));
    EXPECT_EQ(facts.at("vertices"), 8);
    EXPECT_EQ(facts.at("faces"), json({{"total", 6}, {"quads", 6}}));
    EXPECT_EQ(facts.at("edges"),
              json({{"total", 12}, {"boundary", 0}, {"non_manifold", 0}, {"closed", true}}));
    EXPECT_EQ(facts.at("bounding_box_cm").at("size"), json({2.0, 2.0, 2.0}));
}

TEST(InspectCommand, finds_open_and_branching_edges_and_tells_groups_apart)
{
    const Workspace workspace;
    // Three triangles on one edge, and a pentagon beside them.
    const json facts = InspectJson(workspace.write(
        "fan.obj",
        "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 -1 0\nv 0 0 1\nv 5 0 0\nv 6 0 0\nv 6 1 0\nv 5 2 0\nv 4 1 0\n"
        "g fan\nf 1 2 3\nf 2 1 4\nf 1 2 5\ng disk\nf 6 7 8 9 10\n"));
    EXPECT_EQ(facts.at("edges"),
              json({{"total", 12}, {"boundary", 11}, {"non_manifold", 1}, {"closed", false}}));
    EXPECT_EQ(facts.at("faces"), json({{"total", 4}, {"triangles", 3}, {"5_corners", 1}}));
    EXPECT_EQ(facts.at("groups"), json({{{"name", "fan"}, {"faces", 3}}, {{"name", "disk"}, {"faces", 1}}}));
}

TEST(InspectCommand, tells_what_a_morph_file_defines)
{
    const Workspace workspace;
    const json facts = InspectJson(workspace.write("up.dsf", morphText));
    EXPECT_EQ(facts.at("asset").at("author"), "Acme");
    ASSERT_EQ(facts.at("modifiers").size(), 1u);
    const json& morph = facts.at("modifiers").front();
    EXPECT_EQ(morph.at("name"), "Up");
    EXPECT_EQ(morph.at("label"), "Lift");
    EXPECT_EQ(morph.at("group"), "/Shapes");
    EXPECT_EQ(morph.at("moved_vertices"), 2);
    EXPECT_DOUBLE_EQ(morph.at("largest_displacement_mm").get<double>(), 5.0);
}

TEST(InspectCommand, takes_missing_content_for_a_warning)
{
    const Workspace workspace;
    const json facts = InspectJson(workspace.write("orphan.duf", orphanText));
    EXPECT_EQ(facts.at("instances").front().at("label"), "Orphan");
    EXPECT_TRUE(facts.at("figures").empty());
    const std::string file = workspace.path("orphan.duf"),
                      what = "/data/Acme/Box/Box.dsf is in no content library";
    EXPECT_EQ(facts.at("warnings")[0], file + ": " + what);
    EXPECT_EQ(facts.at("diagnostics")[0],
              json({{"severity", "error"}, {"file", file}, {"asset", ""}, {"what", what}}));
    EXPECT_EQ(facts.at("diagnostics").size(), facts.at("warnings").size());
    EXPECT_EQ(workspace.entries(), std::vector<std::string>{"orphan.duf"});
}

TEST(InspectCommand, tells_once_what_is_odd_in_a_file_whatever_its_path)
{
    const Workspace workspace;
    const std::string path = workspace.write("Orphan.duf", std::string(orphanText) + "// mine");
    for (const std::string& file :
         {path, std::filesystem::relative(path).string(), workspace.path("./Orphan.duf")}) {
        const json facts = InspectJson(file);
        int told = 0;
        for (const std::string line : facts.at("warnings"))
            told += line.find("has 1 comment, left out") != line.npos;
        EXPECT_EQ(told, 1) << file;
    }
}

TEST(InspectCommand, shows_the_log_on_stderr_alone_and_when_asked_only)
{
    const Workspace workspace;
    const ProgramResult result =
        RunProgram({"inspect", workspace.write("orphan.duf", orphanText), "--json", "--verbose"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.err.find("ERROR: "), std::string::npos) << result.err;
    EXPECT_TRUE(json::accept(result.out));
}

TEST(InspectCommand, refuses_what_is_no_json)
{
    const Workspace workspace;
    const std::string file = workspace.write("broken.dsf", "{\"file_version\": ");
    ExpectError(RunProgram({"inspect", file}), 1, file + ": ends too early, at line 1, column 18.");
}

TEST(InspectCommand, refuses_a_gzip_that_is_cut_off)
{
    const Workspace workspace;
    const std::string file = workspace.write("cut.dsf", std::string("\x1f\x8b\x08\0\0\0\0\0\0\x03\xab", 11));
    ExpectJsonError(RunProgram({"inspect", file, "--json"}), 1, file + ": the compressed data is cut off.");
}

TEST(InspectCommand, refuses_a_position_that_is_not_finite)
{
    const Workspace workspace;
    const std::string file = workspace.write("nan.obj", "v 0 0 0\nv 0 nan 0\n");
    const ProgramResult result = RunProgram({"inspect", file});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err.compare(0, 9 + file.size(), "gantrel: " + file), 0) << result.err;
}

TEST(RenderCommand, joins_several_views_of_the_wanted_size)
{
    const Workspace workspace;
    const std::string mesh = workspace.write("cube.obj", CubeText(0.0));
    ExpectSuccess(RunProgram({"render", mesh, "--out", workspace.path("two.png"), "--view", "front", "--view",
                              "back", "--size", "60x80"}));
    const auto size = PngSize(workspace.read("two.png"));
    EXPECT_EQ(size.first, 120u);
    EXPECT_EQ(size.second, 80u);
}

TEST(RenderCommand, tells_when_a_picture_shows_nothing)
{
    const Workspace workspace;
    const std::string sheet = workspace.write("sheet.obj", "v 0 0 0\nv 9 0 0\nv 9 9 0\nv 0 9 0\nf 1 2 3 4\n");
    const std::string picture = workspace.path("a.png");
    ProgramResult result = RunProgram(
        {"render", sheet, "--out", picture, "--view", "front", "--view", "side", "--size", "16x16"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "gantrel: warning: " + sheet + ": nothing can be seen in the view side\n");
    EXPECT_TRUE(workspace.has("a.png"));
    const std::string point = workspace.write("point.obj", "v 1 1 1\nv 1 1 1\nv 1 1 1\nf 1 2 3\n");
    result = RunProgram({"render", point, "--out", picture, "--size", "16x16"});
    EXPECT_EQ(result.err, "gantrel: warning: " + point + ": nothing can be seen in the view front\n");
}

TEST(RenderCommand, shows_a_mesh_as_large_with_a_vertex_far_off)
{
    const Workspace workspace;
    const auto render = [&](const std::string& text) {
        const std::string mesh = workspace.write("mesh.obj", text), picture = workspace.path("a.png");
        const ProgramResult result = RunProgram({"render", mesh, "--out", picture, "--size", "30x40"});
        EXPECT_EQ(result.exitCode, 0);
        return std::make_pair(workspace.read("a.png"), result.err);
    };
    const auto [plain, nothing] = render(FineCubeText(6));
    EXPECT_EQ(nothing, "");
    EXPECT_EQ(render(FineCubeText(6) + "v 100000 0 0\n").first, plain) << "loose";
    const auto [shown, told] = render(FineCubeText(6) + "v 100000 0 0\nf 1 2 -1\n");
    EXPECT_NE(told.find("1 vertex lies too far off to be in the picture"), std::string::npos) << told;
    EXPECT_NE(told.find("gantrel: "), std::string::npos);
}

TEST(RenderCommand, writes_pictures_under_names_of_pictures_only)
{
    const Workspace workspace;
    const std::string mesh = workspace.write("cube.obj", CubeText(0.0));
    for (const char* const name :
         {"out.duf", "out.dsf", "out.dhdm", "out.jp", "out.gif", "out.png.txt", "out", "png", ".jpg"}) {
        const std::string out = workspace.path(name);
        ExpectError(RunProgram({"render", mesh, "--out", out}), 2,
                    "Cannot write " + out + ": a picture is a .png, .jpg or .jpeg file.");
        EXPECT_FALSE(workspace.has(name));
    }
}

TEST(RenderCommand, writes_the_format_that_the_name_ends_with)
{
    const Workspace workspace;
    const std::string mesh = workspace.write("cube.obj", CubeText(0.0));
    const std::string png = "\x89PNG\r\n", jpeg = "\xFF\xD8\xFF";
    for (const auto& [name, magic] : std::map<std::string, std::string>{{"a.png", png},
                                                                        {"b.PNG", png},
                                                                        {"c.jpg", jpeg},
                                                                        {"d.JPG", jpeg},
                                                                        {"e.Jpeg", jpeg},
                                                                        {"f.png.jpeg", jpeg}}) {
        SCOPED_TRACE(name);
        ExpectSuccess(RunProgram({"render", mesh, "--out", workspace.path(name), "--size", "50x30"}));
        EXPECT_EQ(workspace.read(name).substr(0, magic.size()), magic);
    }
    // A JPEG ends with a marker too, so that nothing of it is missing.
    const std::string whole = workspace.read("c.jpg");
    EXPECT_EQ(whole.substr(whole.size() - 2), "\xFF\xD9");
    EXPECT_EQ(whole, workspace.read("d.JPG"));
    const std::string nowhere = workspace.path("no/such/folder/a.jpg");
    ExpectError(RunProgram({"render", mesh, "--out", nowhere}), 1,
                "Cannot write " + nowhere + ": No such file or directory.");
}

TEST(RenderCommand, names_a_file_that_is_missing)
{
    const Workspace workspace;
    for (const char* name : {"nowhere.obj", "nowhere.duf"}) {
        const std::string file = workspace.path(name);
        ExpectError(RunProgram({"render", file, "--out", workspace.path("a.png")}), 1,
                    "Cannot open " + file + ": No such file or directory.");
    }
    EXPECT_TRUE(workspace.entries().empty());
}

TEST(RenderCommand, knows_that_a_mesh_has_no_dials)
{
    const Workspace workspace;
    const std::string mesh = workspace.write("cube.obj", CubeText(0.0));
    ExpectError(RunProgram({"render", mesh, "--out", workspace.path("a.png"), "--dial", "Smile=1"}), 2,
                mesh + ": an OBJ file has no dials to set.");
}

TEST(RenderCommand, leaves_the_old_picture_when_the_content_is_missing)
{
    const Workspace workspace;
    const std::string file = workspace.write("orphan.duf", orphanText);
    const std::string picture = workspace.write("a.png", "old");
    const ProgramResult result = RunProgram({"render", file, "--out", picture});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "gantrel: " + file +
                  ": /data/Acme/Box/Box.dsf is in no content library; no content folder is named.\n");
    EXPECT_EQ(workspace.read("a.png"), "old");
}

TEST(RenderCommand, names_a_content_directory_that_is_missing)
{
    const Workspace workspace;
    const std::string file = workspace.write("orphan.duf", orphanText);
    const std::string library = workspace.path("library");
    ExpectError(RunProgram({"render", file, "--out", workspace.path("a.png"), "--content", library}), 1,
                library + ": there is no such content directory.");
}
