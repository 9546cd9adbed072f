// `gantrel sample-content` and `gantrel make-figure`.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;

TEST(SampleContentCommand, leaves_nothing_when_interrupted)
{
    const Workspace workspace;
    const std::string library = workspace.path("lib");
    const ProgramResult result =
        InterruptProgram({"sample-content", library}, library + "/data/DAZ 3D/Genesis 3/Male/Morphs");
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "gantrel: Interrupted; nothing was saved.\n");
    EXPECT_EQ(workspace.entries(), std::vector<std::string>());
}

TEST(SampleContentCommand, leaves_what_was_there_when_interrupted)
{
    const Workspace workspace;
    const std::string library = workspace.path("lib");
    const fs::path folder = library + "/People/Genesis 3 Male";
    fs::create_directories(folder);
    workspace.write("lib/People/Genesis 3 Male/Genesis 3 Male.duf", "mine");
    const ProgramResult result =
        InterruptProgram({"sample-content", library}, library + "/data/DAZ 3D/Genesis 3/Male/Morphs");
    EXPECT_EQ(result.err, "gantrel: Interrupted; nothing was saved.\n");
    EXPECT_EQ(workspace.entries(),
              (std::vector<std::string>{"lib", "lib/People", "lib/People/Genesis 3 Male",
                                        "lib/People/Genesis 3 Male/Genesis 3 Male.duf"}));
    EXPECT_EQ(workspace.read("lib/People/Genesis 3 Male/Genesis 3 Male.duf"), "mine");
}

TEST(SampleContentCommand, says_why_it_cannot_write)
{
    const Workspace workspace;
    const std::string file = workspace.write("file", "text");
    const ProgramResult result = RunProgram({"sample-content", file + "/lib"});
    ExpectError(result, 1, "Cannot create folder " + file + "/lib: Not a directory.");
    EXPECT_EQ(workspace.read("file"), "text");
}

TEST(MakeFigureCommand, writes_nothing_when_an_input_is_missing)
{
    const Workspace workspace;
    const std::string mesh = workspace.write("cube.obj", CubeText(0.0));
    const std::string skeleton = workspace.path("skeleton.json");
    const ProgramResult result =
        RunProgram({"make-figure", "--kind", "genesis9", "--mesh", mesh, "--skeleton", skeleton, "--weights",
                    skeleton, "--library", workspace.path("lib")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find(skeleton), std::string::npos) << result.err;
    EXPECT_EQ(workspace.entries(), std::vector<std::string>{"cube.obj"});
}
