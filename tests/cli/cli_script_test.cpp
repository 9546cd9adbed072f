// `gantrel script`.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"
#include "tests/base/limited_memory.h"
#include "tests/plugin/mini_library.h"

#include <algorithm>
#include <csignal>

namespace {

/// A minute in one call.
const char* const lostScript =
    "var row = new Array(1e7), rows = []; for (var i = 0; i < 50; ++i) rows.push(row); rows.join();";

} // namespace

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
    ExpectError(RunProgram({"script", absent}), 1, "Cannot read " + absent + ": No such file or directory.");
}

TEST(ScriptCommand, ends_a_script_that_takes_too_long)
{
    const Workspace workspace;
    const std::string file = workspace.write("loop.js", "while (true) {}");
    ExpectError(RunProgram({"script", file, "--timeout", "0.2"}), 1,
                file + ": the script was stopped after 0.2 s.");
    ExpectWrongUse(RunProgram({"script", file, "--timeout", "-1"}), "--timeout");
    ExpectWrongUse(RunProgram({"script", file, "--timeout", "nan"}), "--timeout");
    ExpectWrongUse(RunProgram({"script"}), "FILE");
}

TEST(ScriptCommand, ends_a_script_that_is_lost_in_a_function_of_the_engine)
{
    // No step of the script is left at which it could be stopped.
    const Workspace workspace;
    const std::string file = workspace.write("lost.js", lostScript);
    ExpectError(RunProgram({"script", file, "--timeout", "0.2"}), 1,
                file + ": the script was stopped after 0.2 s.");
    EXPECT_EQ(workspace.entries(), std::vector<std::string>{"lost.js"}) << "temporary files went";
}

TEST(ScriptCommand, ends_a_lost_script_when_interrupted)
{
    const Workspace workspace;
    const std::string started = workspace.path("started");
    const std::string file =
        workspace.write("lost.js", "new DzMorphLoader().saveObjectSettingsToConfigFile('" + started +
                                       "', 'x', false);\n" + lostScript);
    const ProgramResult result =
        InterruptProgram({"script", file, "--allow-files", workspace.path("")}, started);
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.err, "gantrel: Interrupted.\n");
    EXPECT_EQ(workspace.entries(), (std::vector<std::string>{"lost.js", "started"}));
}

TEST(ScriptCommand, runs_no_part_of_a_file_with_a_nul)
{
    const Workspace workspace;
    const std::string file = workspace.write("cut.js", std::string("print('a');\n\0print('b');\n", 25));
    ExpectError(RunProgram({"script", file}), 1,
                file + ", line 2: character 1 is a NUL, which no script can hold.");
}

TEST(ScriptCommand, ends_a_script_that_takes_all_memory_with_one_sentence)
{
    SKIP_WITHOUT_MEMORY_LIMITS();
    const Workspace workspace;
    const std::string file =
        workspace.write("greedy.js", "print('begun'); var all = [], text = new Array(1e4).join('x');"
                                     "while (true) all.push(new Array(1e3).join(text));");
    const ProgramResult result = RunProgram({"script", file, "--memory", "200"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "begun\n");
    EXPECT_EQ(result.err.compare(0, 9 + file.size(), "gantrel: " + file), 0) << result.err;
    EXPECT_NE(result.err.find(": the script took more than 200 megabytes, which --memory can raise, or met"),
              result.err.npos)
        << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_EQ(workspace.entries(), std::vector<std::string>{"greedy.js"}) << "temporary files went";
    ExpectWrongUse(RunProgram({"script", file, "--memory", "0"}), "--memory");
}

TEST(ScriptCommand, runs_in_the_least_memory_that_it_can_be_given)
{
    SKIP_WITHOUT_MEMORY_LIMITS();
    const Workspace workspace;
    const std::string file = workspace.write("small.js", "print([3, 1, 2].sort());");
    const ProgramResult result = RunProgram({"script", file, "--memory", "64"});
    ExpectSuccess(result);
    EXPECT_EQ(result.out, "1,2,3\n");
}

TEST(ScriptCommand, names_arrays_that_are_too_long)
{
    const Workspace workspace;
    const std::string file = workspace.write("long.js", "new Array(4294967295).join();");
    ExpectError(RunProgram({"script", file}), 1,
                file +
                    ", line 1: RangeError: an array of 4294967295 elements is too long; at most 10000000 are "
                    "taken.");
}

TEST(ScriptCommand, ends_a_script_that_loops_for_ever_when_interrupted)
{
    const Workspace workspace;
    const std::string started = workspace.path("started");
    const std::string file =
        workspace.write("loop.js", "new DzMorphLoader().saveObjectSettingsToConfigFile('" + started +
                                       "', 'x', false);\n"
                                       "while (true) {}");
    const ProgramResult result =
        InterruptProgram({"script", file, "--allow-files", workspace.path("")}, started);
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.err, "gantrel: Interrupted.\n");
    EXPECT_EQ(workspace.entries(), (std::vector<std::string>{"loop.js", "started"}));
}

TEST(ScriptCommand, lets_the_script_write_only_where_it_may)
{
    const Workspace workspace;
    WriteMiniLibrary(workspace.path("lib"));
    std::filesystem::create_directory(workspace.path("out"));
    const std::string file = workspace.write(
        "save.js", "var m = App.getContentMgr();\n"
                   "m.addContentDirectory(getArguments()[1]);\n"
                   "m.openFile(m.getAbsolutePath('People/Genesis 9/Genesis 9.duf', true), true);\n"
                   "var options = new DzFileIOSettings();\n"
                   "options.setIntValue('RunSilent', 1);\n"
                   "print(Scene.saveScene(getArguments()[0] + '.duf'),\n"
                   "      App.getExportMgr().findExporterByClassName('DzObjExporter')"
                   ".writeFile(getArguments()[0] + '.obj', options));\n");
    const auto run = [&](std::vector<std::string> more, const std::string& name) {
        more.insert(more.begin(), {"script", file, workspace.path(name), workspace.path("out"), "--content",
                                   workspace.path("lib")});
        return RunProgram(more);
    };
    const ProgramResult refused = run({}, "out/Saved");
    EXPECT_EQ(refused.out.find("0 "), refused.out.npos) << refused.out;
    EXPECT_EQ(refused.out.find(" 0"), refused.out.npos) << refused.out;
    EXPECT_NE(refused.err.find("--allow-files"), refused.err.npos) << refused.err;
    EXPECT_FALSE(workspace.has("out/Saved.duf"));
    EXPECT_FALSE(workspace.has("out/Saved.obj"));
    const ProgramResult allowed = run({"--allow-files", workspace.path("out")}, "out/Saved");
    EXPECT_EQ(allowed.out, "0 0\n");
    EXPECT_TRUE(workspace.has("out/Saved.duf"));
    EXPECT_TRUE(workspace.has("out/Saved.obj"));
    EXPECT_EQ(run({}, "lib/Saved").out, "0 0\n"); // content folders are for that
}
