// Commands that write one file or several, on disks that fail.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"
#include "cli_traced_program.h"
#include "tests/plugin/mini_library.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

class WriteFaults : public ::testing::Test {
protected:
    /// Each call below the folder fails once: what is told names a file there, and why.
    /// @param expectedCalls  at least
    void expectTold(const std::vector<std::string>& arguments, std::size_t expectedCalls)
    {
        const fs::path out = workspace.path("out");
        fs::create_directory(out);
        const TracedProgram whole = RunProgramTraced(out, arguments);
        ASSERT_EQ(whole.exitCode, 0) << whole.err;
        ASSERT_GE(whole.calls.size(), expectedCalls);
        std::size_t told = 0;
        for (std::size_t at = 1; at <= whole.calls.size(); ++at)
            for (const int error : ErrorsFor(at, {ENOSPC, EIO, EINTR, ENOENT})) {
                fs::remove_all(out);
                fs::create_directory(out);
                const TracedProgram failed = RunProgramTraced(out, arguments, {at, error});
                const std::string what = failed.calls.at(at - 1) + ": " + failed.err;
                // Files that change together are put in place by whoever comes next.
                const bool isDecided = failed.err.find("as soon as that is possible") != failed.err.npos;
                for (const std::string& entry : workspace.entries())
                    EXPECT_TRUE((isDecided || entry.find(".part") == entry.npos) &&
                                entry.compare(0, 4, "tmp/") != 0)
                        << what << entry;
                if (failed.exitCode == 0) {
                    EXPECT_EQ(failed.err, "") << what;
                    continue;
                }
                ++told;
                EXPECT_EQ(failed.exitCode, 1) << what;
                EXPECT_NE(failed.err.find(out.string()), failed.err.npos) << what;
                EXPECT_NE(failed.err.find(std::strerror(error)), failed.err.npos) << what;
                EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'), 1) << what;
            }
        EXPECT_GE(told, expectedCalls / 2);
    }

    const Workspace workspace;
};

} // namespace

TEST_F(WriteFaults, of_a_mesh_are_told)
{
    const std::string cube = workspace.write("cube.obj", CubeText(0.0)),
                      moved = workspace.write("moved.obj", CubeText(0.1));
    expectTold({"transfer", "--source-neutral", cube, "--source-morphed", moved, "--target-neutral", cube,
                "--out", workspace.path("out/result.obj")},
               4);
}

TEST_F(WriteFaults, of_a_picture_are_told)
{
    expectTold({"render", workspace.write("cube.obj", CubeText(0.0)), "--out", workspace.path("out/cube.png"),
                "--size", "8x8"},
               4);
}

TEST_F(WriteFaults, of_a_figure_are_told)
{
    const std::string mesh = workspace.write("cube.obj", CubeText(0.0));
    const std::string skeleton = workspace.write("skeleton.json", R"({"units": "cm",
        "bones": [{"name": "hip", "parent": null}], "only": {"hip": {"head": [0, 0, 0], "tail": [0, 1, 0]}}})");
    const std::string weights = workspace.write("weights.json", R"({"bones": ["hip"], "vertex_count": 8,
        "weights": {"hip": {"i": [0, 1], "w": [1, 0.5]}}})");
    const std::string morph = workspace.write("morph.obj", CubeText(0.5));
    expectTold({"make-figure", "--kind", "genesis8female", "--mesh", mesh, "--skeleton", skeleton,
                "--weights", weights, "--morph", "Up=" + morph, "--library", workspace.path("out")},
               10);
}

TEST_F(WriteFaults, of_a_report_are_told)
{
    WriteMiniLibrary(workspace.path("lib"));
    expectTold({"convert", "--content", workspace.path("lib"), "--source",
                workspace.path("lib/People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf"),
                "--target", workspace.path("lib/People/Genesis 9/Genesis 9.duf"), "--dial", "Wide=1",
                "--report", workspace.path("out/report.html")},
               4);
}

TEST_F(WriteFaults, of_a_report_leave_the_morphs_saved)
{
    WriteMiniLibrary(workspace.path("lib"));
    const fs::path out = workspace.path("out");
    fs::create_directory(out);
    const TracedProgram failed = RunProgramTraced(
        out,
        {"convert",
         "--content",
         workspace.path("lib"),
         "--source",
         workspace.path("lib/People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf"),
         "--target",
         workspace.path("lib/People/Genesis 9/Genesis 9.duf"),
         "--dial",
         "Wide=1",
         "--jobs",
         "full",
         "--name",
         "Ann",
         "--save-library",
         workspace.path("saved"),
         "--vendor",
         "Acme",
         "--product",
         "Heroes",
         "--report",
         workspace.path("out/report.html")},
        {1, ENOSPC});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_EQ(failed.err, "gantrel: Cannot write " + workspace.path("out/report.html") + ": " +
                              std::strerror(ENOSPC) + "; the morphs are saved.\n");
    EXPECT_TRUE(workspace.has("saved/data/DAZ 3D/Genesis 9/Base/Morphs/Acme/Heroes/Ann.dsf"));
    EXPECT_TRUE(fs::is_empty(out));
}

TEST_F(WriteFaults, of_a_page_of_a_batch_are_told)
{
    const std::string log =
        workspace.write("log.jsonl", "{\"row\":1,\"line\":2,\"status\":\"done\",\"seconds\":2.5}\n");
    expectTold({"batch", "--merge", log, "--report", workspace.path("out/batch.html")}, 4);
}
