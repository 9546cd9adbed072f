// `gantrel sample-content` and `gantrel make-figure`.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"

#include <csignal>

TEST(SampleContentCommand, ends_between_two_files_when_interrupted)
{
    const Workspace workspace;
    const std::string library = workspace.path("lib");
    const ProgramResult result = InterruptProgram({"sample-content", library},
                                                  library + "/data/DAZ 3D/Genesis 3/Male/Genesis3Male.dsf");
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.find("gantrel: Interrupted; written whole to " + library + ": Genesis 3 Female"), 0u)
        << result.err;
    for (const std::string& entry : workspace.entries())
        EXPECT_EQ(entry.find(".part"), std::string::npos) << entry;
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
