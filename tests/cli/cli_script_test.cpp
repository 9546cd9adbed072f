// `gantrel script`.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"
#include "tests/plugin/mini_library.h"

#include <algorithm>
#include <csignal>

TEST(ScriptCommand, prints_what_the_script_prints_and_hands_it_its_arguments)
{
    const Workspace workspace;
    const std::string file = workspace.write("hello.dsa", "print('Hello', getArguments().join('+'));");
    const ProgramResult result = RunProgram({"script", file, "a", "b c"});
    ExpectSuccess(result);
    EXPECT_EQ(result.out, "Hello a+b c\n");
}

TEST(ScriptCommand, opens_content_and_sees_the_scene)
{
    const Workspace workspace;
    WriteMiniLibrary(workspace.path("lib"));
    const std::string file = workspace.write(
        "open.js", "var m = App.getContentMgr();\n"
                   "var path = m.getAbsolutePath('People/Genesis 9/Genesis 9.duf', true);\n"
                   "print(m.openFile(path, true), Scene.getPrimarySelection().inherits('DzFigure'));\n");
    const ProgramResult result = RunProgram({"script", file, "--content", workspace.path("lib")});
    ExpectSuccess(result);
    EXPECT_EQ(result.out, "true true\n");
}

TEST(ScriptCommand, tells_what_content_lacks_beside_what_the_script_prints)
{
    const Workspace workspace;
    const std::string scene = workspace.write("Lost.duf", R"({"file_version": "0.6.0.0", "scene": {"nodes": [
            {"id": "Lost", "url": "/data/Gone.dsf#Gone", "label": "Lost"}]}})");
    const std::string opening = "App.getContentMgr().openFile('" + scene + "', true);\nprint('done');\n";
    const ProgramResult result = RunProgram({"script", workspace.write("open.js", opening)});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "done\n");
    EXPECT_EQ(result.err.compare(0, 9, "gantrel: "), 0) << result.err;
    EXPECT_NE(result.err.find("/data/Gone.dsf"), result.err.npos) << result.err;
    const ProgramResult failed = RunProgram({"script", workspace.write("fail.js", opening + "missing();\n")});
    EXPECT_EQ(failed.err.compare(0, result.err.size(), result.err), 0) << failed.err;
    EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'),
              std::count(result.err.begin(), result.err.end(), '\n') + 1)
        << failed.err;
}

TEST(ScriptCommand, names_the_file_and_the_line_of_an_error)
{
    const Workspace workspace;
    const std::string file = workspace.write("broken.js", "var a = 1;\nmissing();\n");
    ExpectError(RunProgram({"script", file}), 1,
                file + ", line 2: ReferenceError: Can't find variable: missing.");
    const std::string absent = workspace.path("absent.js");
    ExpectError(RunProgram({"script", absent}), 1, absent + ": the script cannot be read.");
}

TEST(ScriptCommand, ends_a_script_that_takes_too_long)
{
    const Workspace workspace;
    const std::string file = workspace.write("loop.js", "while (true) {}");
    ExpectError(RunProgram({"script", file, "--timeout", "0.2"}), 1,
                file + ": the script was stopped after 0.2 s.");
    ExpectWrongUse(RunProgram({"script", file, "--timeout", "-1"}), "--timeout");
    ExpectWrongUse(RunProgram({"script"}), "FILE");
}

TEST(ScriptCommand, ends_a_script_that_loops_for_ever_when_interrupted)
{
    const Workspace workspace;
    const std::string started = workspace.path("started");
    const std::string file =
        workspace.write("loop.js", "new DzMorphLoader().saveObjectSettingsToConfigFile('" + started +
                                       "', 'x', false);\n"
                                       "while (true) {}");
    const ProgramResult result = InterruptProgram({"script", file}, started);
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.err, "gantrel: Interrupted.\n");
    EXPECT_EQ(workspace.entries(), (std::vector<std::string>{"loop.js", "started"}));
}
