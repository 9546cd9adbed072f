// `gantrel transfer`.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"
#include "geometry/obj.h"

#include <cmath>
#include <functional>
#include <map>
#include <sstream>

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

/// A cube that is lifted by 2 cm, and a finer cube in the same place.
struct TransferCommand : ::testing::Test {
    Workspace workspace;
    std::string neutral = workspace.write("neutral.obj", CubeText(0.0));
    std::string morphed = workspace.write("morphed.obj", CubeText(2.0));
    std::string target = workspace.write("target.obj", FineCubeText(6));

    ProgramResult run(const std::string& out, const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> arguments{"transfer", "--source-neutral", neutral, "--source-morphed",
                                           morphed,    "--target-neutral", target,  "--out",
                                           out};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunProgram(arguments);
    }
    /// The result is the target as it was, 2 cm higher.
    void expectLifted() const
    {
        const geometry::PolygonMesh before = geometry::ReadObj(target).mesh;
        const geometry::PolygonMesh after = geometry::ReadObj(workspace.path("out.obj")).mesh;
        ASSERT_EQ(after.vertexCount(), before.vertexCount());
        EXPECT_EQ(after.topology->cornerVertices, before.topology->cornerVertices);
        for (std::size_t v = 0; v < after.vertexCount(); ++v) {
            const geometry::Vec3f delta = after.positions[v] - before.positions[v];
            EXPECT_NEAR(geometry::Length(delta - geometry::Vec3f{0.0f, 2.0f, 0.0f}), 0.0f, 1e-4f) << v;
        }
    }
};

/// The text with others for those of its lines that begin so; the others are made from the lines' numbers.
std::string WithLines(const std::string& text, char beginning,
                      const std::function<std::string(double*)>& other)
{
    std::string changed;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream numbers(line.substr(1));
        double at[4] = {};
        if (line.front() == beginning) {
            numbers >> at[0] >> at[1] >> at[2] >> at[3];
            line = other(at);
        }
        changed += line + '\n';
    }
    return changed;
}

/// Hills over a square, their tops shifted along the ground while the numbers of the vertices stay.
std::string HillsText(int cells, double shift, double lift)
{
    std::ostringstream text;
    const double step = 30.0 / cells;
    for (int row = 0; row <= cells; ++row)
        for (int column = 0; column <= cells; ++column) {
            const double x = column * step, z = row * step;
            text << "v " << x + shift << ' ' << lift + 1.5 * std::sin(x) * std::sin(z) << ' ' << z << '\n';
        }
    for (int row = 0; row < cells; ++row)
        for (int column = 0; column < cells; ++column) {
            const int first = row * (cells + 1) + column + 1;
            text << "f " << first << ' ' << first + cells + 1 << ' ' << first + cells + 2 << ' ' << first + 1
                 << '\n';
        }
    return text.str();
}

} // namespace

TEST_F(TransferCommand, registers_features_that_lie_beside_when_asked_to)
{
    neutral = workspace.write("neutral.obj", HillsText(80, 0.0, 0.0));
    morphed = workspace.write("morphed.obj", HillsText(80, 0.0, 2.0));
    target = workspace.write("target.obj", HillsText(60, 0.8, 0.1));
    const auto meanSlide = [this](const std::vector<std::string>& more) {
        const ProgramResult result = run(workspace.path("out.obj"), more);
        ExpectSuccess(result);
        return json::parse(result.out).at("slide_mm").at("mean").get<double>();
    };
    const double registered = meanSlide({"--json", "--register"});
    EXPECT_NEAR(registered, 8.0, 1.0);
    EXPECT_LT(meanSlide({"--json"}), registered - 1.0); // a match by itself goes no further than an edge
}

TEST_F(TransferCommand, moves_the_target_as_the_source_moves)
{
    ExpectSuccess(run(workspace.path("out.obj")));
    expectLifted();
}

TEST_F(TransferCommand, prints_one_json_object)
{
    const ProgramResult result = run(workspace.path("out.obj"), {"--json"});
    ExpectSuccess(result);

    const json report = json::parse(result.out);
    EXPECT_EQ(report.at("source_neutral"), neutral);
    EXPECT_EQ(report.at("out"), workspace.path("out.obj"));
    EXPECT_EQ(report.at("source_vertices"), 8);
    EXPECT_EQ(report.at("target_vertices"), 6 * 6 * 6 + 2);
    EXPECT_EQ(report.at("matched_vertices").get<int>() + report.at("filled_vertices").get<int>(),
              6 * 6 * 6 + 2);
    for (const char* shape : {"neutral", "morphed"}) // corners apart, the cubes' faces lie in each other
        EXPECT_LT(report.at("crumple").at(shape).at("mean_degrees").get<double>(), 45.0) << shape;
    EXPECT_EQ(report.at("crumple").at("neutral"), report.at("crumple").at("morphed")); // only lifted
    EXPECT_GE(report.at("slide_mm").at("max").get<double>(), report.at("slide_mm").at("mean").get<double>());
    EXPECT_EQ(report.at("moved_vertices"), 6 * 6 * 6 + 2);
    EXPECT_NEAR(report.at("largest_displacement_mm").get<double>(), 20.0, 1e-2);
    for (const char* stage : {"read", "match", "transfer", "write", "total"})
        EXPECT_GE(report.at("seconds").at(stage).get<double>(), 0.0) << stage;
}

TEST_F(TransferCommand, tells_people_the_same)
{
    const ProgramResult result = run(workspace.path("out.obj"));
    ExpectSuccess(result);
    EXPECT_NE(result.out.find("largest displacement mm  20\n"), std::string::npos) << result.out;
}

TEST_F(TransferCommand, keeps_the_targets_groups_surfaces_and_texture_coordinates)
{
    target =
        workspace.write("target.obj", "mtllib skin.mtl\nv 0 0 1\nv 1 0 1\nv 0 1 1\nvt 0 0\nvt 1 0\nvt 0 1\n"
                                      "g Head\nusemtl Face\nf 1/1 2/2 3/3\n");
    ExpectSuccess(run(workspace.path("out.obj")));

    const geometry::ObjContent written = geometry::ReadObj(workspace.path("out.obj"));
    EXPECT_EQ(written.mesh.topology->groupNames, std::vector<std::string>{"Head"});
    EXPECT_EQ(written.mesh.topology->surfaceNames, std::vector<std::string>{"Face"});
    EXPECT_EQ(written.texCoords.cornerIndices, (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_EQ(written.materialLibraries, std::vector<std::string>{"skin.mtl"});
}

TEST_F(TransferCommand, leaves_nothing_behind_but_the_result)
{
    ExpectSuccess(run(workspace.path("out.obj")));
    EXPECT_EQ(workspace.entries(),
              (std::vector<std::string>{"morphed.obj", "neutral.obj", "out.obj", "target.obj"}));
}

TEST_F(TransferCommand, names_a_file_that_is_missing)
{
    neutral = workspace.path("nowhere.obj");
    ExpectError(run(workspace.path("out.obj")), 1, "Cannot open " + neutral + ": No such file or directory.");
    EXPECT_FALSE(workspace.has("out.obj"));
}

TEST_F(TransferCommand, names_file_and_line_of_what_it_cannot_read)
{
    morphed = workspace.write("morphed.obj", "v 0 0 0\nv 1 zero 0\n");
    ExpectError(run(workspace.path("out.obj")), 1, morphed + ":2: bad number \"zero\".");
}

TEST_F(TransferCommand, refuses_a_folder_as_input)
{
    target = workspace.path("tmp");
    ExpectError(run(workspace.path("out.obj")), 1, "Cannot read " + target + ": Is a directory.");
}

TEST_F(TransferCommand, names_both_files_and_counts_when_the_shapes_do_not_fit)
{
    morphed = target;
    ExpectError(run(workspace.path("out.obj")), 1, target + " has 218 vertices but " + neutral + " has 8.");
    EXPECT_FALSE(workspace.has("out.obj"));
}

TEST_F(TransferCommand, refuses_a_mesh_without_vertices)
{
    morphed = workspace.write("empty.obj", "# nothing\n");
    ExpectError(run(workspace.path("out.obj")), 1, morphed + ": has no vertices.");
}

TEST_F(TransferCommand, refuses_coordinates_beyond_anything_real)
{
    morphed = workspace.write("far.obj", "v 0 0 0\nv 0 1e18 0\nv 1 0 0\nf 1 2 3\n");
    const std::string sentence = morphed + ": vertex 2 lies farther than 1e+09 cm from the origin.";
    ExpectError(run(workspace.path("out.obj")), 1, sentence);
    ExpectError(RunProgram({"render", morphed, "--out", workspace.path("out.png")}), 1, sentence);
}

TEST_F(TransferCommand, refuses_meshes_in_other_units_unless_told_to_go_on)
{
    target = workspace.write("metres.obj", WithLines(FineCubeText(6), 'v', [](double* at) {
                                 return "v " + std::to_string(at[0] / 100) + ' ' +
                                        std::to_string(at[1] / 100) + ' ' + std::to_string(at[2] / 100);
                             }));
    const std::string reason =
        "only 0 of its 218 vertices have a place on " + neutral +
        "; it is 100 times smaller than the source, as if it were in metres and the source "
        "in centimetres";
    ExpectError(run(workspace.path("out.obj")), 1, target + ": " + reason + " (--anyway goes on).");
    EXPECT_FALSE(workspace.has("out.obj"));

    const ProgramResult result = run(workspace.path("out.obj"), {"--anyway", "--json"});
    ExpectSuccess(result);
    EXPECT_TRUE(workspace.has("out.obj"));
    EXPECT_EQ(json::parse(result.out).at("warnings"), json({target + ": " + reason}));
}

TEST_F(TransferCommand, takes_a_target_that_is_inside_out_and_says_so)
{
    neutral = workspace.write("fine.obj", FineCubeText(6));
    morphed = workspace.write("lifted.obj", WithLines(FineCubeText(6), 'v', [](double* at) {
                                  return "v " + std::to_string(at[0]) + ' ' + std::to_string(at[1] + 2.0) +
                                         ' ' + std::to_string(at[2]);
                              }));
    target = workspace.write("turned.obj", WithLines(FineCubeText(6), 'f', [](double* at) {
                                 std::string corners = "f";
                                 for (const int corner : {3, 2, 1, 0})
                                     corners += ' ' + std::to_string(static_cast<int>(at[corner]));
                                 return corners;
                             }));
    const ProgramResult result = run(workspace.path("out.obj"), {"--json"});
    ExpectSuccess(result);
    const json report = json::parse(result.out);
    EXPECT_EQ(report.at("warnings"),
              json({target + ": its faces are wound the other way round than those of " + neutral +
                    "; matched as if they were not"}));
    EXPECT_EQ(report.at("matched_vertices"), 6 * 6 * 6 + 2);
    expectLifted();
    EXPECT_LT(report.at("crumple").at("morphed").at("mean_degrees").get<double>(), 45.0);
}

TEST_F(TransferCommand, moves_whatever_lies_on_the_source)
{
    const std::map<std::string, std::string> targets{
        {"one triangle", "v -1 -1 1\nv 1 -1 1\nv 0 1 1\nf 1 2 3\n"},
        {"a flat face within", "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nf 1 2 3 4\n"},
        {"each vertex twice",
         "v -1 -1 1\nv -1 -1 1\nv 1 -1 1\nv 1 -1 1\nv 0 1 1\nv 0 1 1\nf 1 3 5\nf 2 4 6\n"},
        {"vertices of no face", "v -1 -1 1\nv 1 -1 1\nv 0 1 1\nv 0 0 1\nf 1 2 3\n"},
        {"a face without area", "v -1 -1 1\nv 1 -1 1\nv 0 1 1\nv -1 -1 1\nf 1 2 3\nf 1 2 4\n"},
        {"a piece far away",
         "v -1 -1 1\nv 1 -1 1\nv 0 1 1\nv 90 0 0\nv 91 0 0\nv 90 1 0\nf 1 2 3\nf 4 5 6\n"}};
    for (const auto& [name, text] : targets) {
        SCOPED_TRACE(name);
        target = workspace.write("target.obj", text);
        ExpectSuccess(run(workspace.path("out.obj")));
        expectLifted();
    }
}

TEST_F(TransferCommand, refuses_a_source_without_area)
{
    neutral = morphed = workspace.write("line.obj", "v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n");
    ExpectError(run(workspace.path("out.obj"), {"--anyway"}), 1,
                neutral + ": source mesh has no face with an area.");
    EXPECT_FALSE(workspace.has("out.obj"));
}

TEST_F(TransferCommand, refuses_a_target_without_area)
{
    target = workspace.write("flat.obj", "v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\nf 1 1 2\n");
    ExpectError(run(workspace.path("out.obj")), 1,
                target + ": has no face with an area, so nothing tells which side is out.");
    EXPECT_FALSE(workspace.has("out.obj"));
}

TEST_F(TransferCommand, tells_what_of_the_meshes_it_leaves_out)
{
    target = workspace.write("odd.obj", "f 1 2\n" + FineCubeText(6) + "f 3\n");
    neutral = workspace.write("named.obj", CubeText(0.0) + "f 1/1 2/1 3/1\n");
    const ProgramResult result = run(workspace.path("out.obj"), {"--json"});
    ExpectSuccess(result);
    EXPECT_EQ(
        json::parse(result.out).at("warnings"),
        json({neutral + ": faces name texture coordinates, but none are defined",
              target + ": 2 faces have fewer than three corners and are left out, the first in line 1"}));
    expectLifted();
    const ProgramResult inspected = RunProgram({"inspect", target, "--json"});
    ExpectSuccess(inspected);
    EXPECT_EQ(json::parse(inspected.out).at("faces").at("total"), 6 * 6 * 6);
    EXPECT_EQ(json::parse(inspected.out).at("warnings").size(), 1u);
    const ProgramResult drawn =
        RunProgram({"render", target, "--out", workspace.path("o.png"), "--size", "16x16"});
    EXPECT_EQ(drawn.exitCode, 0);
    EXPECT_NE(drawn.err.find("fewer than three corners"), std::string::npos) << drawn.err;
}

TEST_F(TransferCommand, never_writes_onto_an_input)
{
    std::filesystem::create_symlink(neutral, workspace.path("link.obj"));
    const std::vector<std::pair<std::string, std::string>> inputs{
        {neutral, neutral},
        {morphed, morphed},
        {target, target},
        {workspace.path("link.obj"), neutral},
        {workspace.path("tmp/../target.obj"), target}};
    for (const auto& [out, input] : inputs) {
        const std::string before = workspace.read(std::filesystem::path(input).filename());
        ExpectError(run(out), 1, "Cannot write " + out + ": it is the same file as the input " + input + ".");
        EXPECT_EQ(workspace.read(std::filesystem::path(input).filename()), before);
    }
    ExpectError(RunProgram({"render", target, "--out", target}), 1,
                "Cannot write " + target + ": it is the same file as the input " + target + ".");
}

TEST_F(TransferCommand, refuses_a_mesh_without_faces)
{
    target = workspace.write("points.obj", "v 0 0 0\n");
    ExpectError(run(workspace.path("out.obj")), 1, target + ": has no faces.");
}

TEST_F(TransferCommand, leaves_the_old_output_when_the_work_fails)
{
    const std::string out = workspace.write("out.obj", "old");
    morphed = target;
    EXPECT_EQ(run(out).exitCode, 1);
    EXPECT_EQ(workspace.read("out.obj"), "old");
}

TEST_F(TransferCommand, says_why_the_output_cannot_be_written)
{
    // A path below a file: also a superuser cannot write there.
    const std::string out = neutral + "/out.obj";
    ExpectError(run(out), 1, "Cannot write " + out + ": Not a directory.");
    EXPECT_EQ(workspace.entries(), (std::vector<std::string>{"morphed.obj", "neutral.obj", "target.obj"}));
}

TEST_F(TransferCommand, says_before_the_work_that_the_output_has_too_long_a_name)
{
    const std::string out = workspace.path(std::string(252, 'o') + ".obj");
    target = workspace.path("none.obj");
    ExpectError(run(out), 1, "Cannot write " + out + ": File name too long.");
    ExpectError(RunProgram({"render", target, "--out", out}), 1,
                "Cannot write " + out + ": File name too long.");
}

TEST_F(TransferCommand, leaves_nothing_unfinished_when_the_output_is_a_folder)
{
    const ProgramResult result = run(workspace.path("tmp"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(workspace.entries(), (std::vector<std::string>{"morphed.obj", "neutral.obj", "target.obj"}));
}
