// `--dry-run`: what is foretold is what a run writes then, and nothing is written before.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"
#include "cli_traced_program.h"

#include <filesystem>
#include <map>
#include <regex>
#include <sstream>
#include <tuple>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

using nlohmann::json;

/// Inode, time and size of every file and folder; a file that is written anew has another inode.
using Tree = std::map<std::string, std::tuple<ino_t, time_t, long, off_t>>;

/// A device, a pipe, what the system tells of the process, or what the test reads its output from.
bool IsNoFile(const std::string& path)
{
    const std::string nameless = " (deleted)";
    if (path.size() > nameless.size() &&
        path.compare(path.size() - nameless.size(), nameless.size(), nameless) == 0)
        return true;
    return path.compare(0, 5, "/dev/") == 0 || path.compare(0, 6, "/proc/") == 0 ||
           path.find(":[") != std::string::npos;
}

class DryRun : public BatchTest {
protected:
    Tree tree() const
    {
        Tree tree;
        for (const std::string& entry : workspace.entries()) {
            struct stat one {};
            EXPECT_EQ(stat(workspace.path(entry).c_str(), &one), 0) << entry;
            tree[workspace.path(entry)] = {one.st_ino, one.st_mtim.tv_sec, one.st_mtim.tv_nsec, one.st_size};
        }
        return tree;
    }

    std::string cacheFolder() const { return workspace.path("cache"); }

    std::map<std::string, bool> filesOf(const Tree& before, const Tree& after) const
    {
        std::map<std::string, bool> written;
        for (const auto& [name, what] : after) {
            if (name.compare(0, cacheFolder().size(), cacheFolder()) == 0)
                continue; // of which nobody wants to be told
            const auto former = before.find(name);
            if (!fs::is_directory(name) && (former == before.end() || former->second != what))
                written[name] = former != before.end();
        }
        return written;
    }

    /// Files in a dry run's text, with whether they are there.
    static std::map<std::string, bool> foretold(const std::string& text)
    {
        static const std::regex line("  (?:[0-9-]+ +)?(yes|no) +(/.*)");
        std::map<std::string, bool> files;
        std::istringstream lines(text);
        std::smatch match;
        for (std::string one; std::getline(lines, one);)
            if (std::regex_match(one, match, line)) {
                EXPECT_TRUE(files.emplace(match[2], match[1] == "yes").second) << one;
            }
        return files;
    }

    /// Its index of morphs is a file like others.
    const ScopedVariable cache{"XDG_CACHE_HOME", workspace.path("cache")};

    void expectForetold(const std::vector<std::string>& arguments) const
    {
        std::vector<std::string> dry = arguments;
        dry.push_back("--dry-run");
        const Tree before = tree();
        const ProgramResult told = RunProgram(dry);
        ExpectSuccess(told);
        EXPECT_EQ(tree(), before);
        EXPECT_EQ(told.out.compare(0, 7, "dry run"), 0) << told.out;
        ExpectSuccess(RunProgram(arguments));
        EXPECT_EQ(foretold(told.out), filesOf(before, tree()));
        EXPECT_FALSE(foretold(told.out).empty());
    }

    /// Every call that could change something, anywhere, is about the run's own temporary files.
    /// @return how many there were
    std::size_t expectNoChanges(std::vector<std::string> arguments) const
    {
        arguments.push_back("--dry-run");
        const TracedProgram run = RunProgramTraced("/", arguments);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(run.out.compare(0, 7, "dry run"), 0) << run.out;
        const std::string temporary = workspace.path("tmp/");
        for (const std::string& call : run.calls) {
            const std::string path = call.substr(call.find(' ') + 1);
            EXPECT_TRUE(path.compare(0, temporary.size(), temporary) == 0 || IsNoFile(path)) << call;
        }
        expectNoTraces();
        return run.calls.size();
    }

    /// It ends as the run does.
    void expectSameFailure(const std::vector<std::string>& arguments) const
    {
        std::vector<std::string> dry = arguments;
        dry.push_back("--dry-run");
        const Tree before = tree();
        const ProgramResult told = RunProgram(dry);
        EXPECT_EQ(tree(), before);
        const ProgramResult failed = RunProgram(arguments);
        EXPECT_NE(failed.exitCode, 0);
        EXPECT_EQ(told.exitCode, failed.exitCode);
        EXPECT_EQ(told.err, failed.err);
    }

    std::vector<std::string> morphs(const std::string& pattern) const
    {
        return saving(workspace.path("saved"), {"convert-morphs", "--content", library(), "--source",
                                                sourceFile(), "--target", targetFile(), "--morphs", pattern});
    }

    std::vector<std::string> figure(const std::string& mesh) const
    {
        const std::string skeleton = workspace.write("skeleton.json", R"({"units": "cm",
            "bones": [{"name": "hip", "parent": null}], "only": {"hip": {"head": [0, 0, 0], "tail": [0, 1, 0]}}})");
        const std::string weights = workspace.write("weights.json", R"({"bones": ["hip"], "vertex_count": 8,
            "weights": {"hip": {"i": [0, 1], "w": [1, 0.5]}}})");
        return {"make-figure", "--kind",    "genesis8female",      "--mesh", mesh,
                "--skeleton",  skeleton,    "--weights",           weights,  "--morph",
                "Up=" + mesh,  "--library", workspace.path("made")};
    }
};

} // namespace

TEST_F(DryRun, makes_and_changes_nothing_meanwhile)
{
    const std::string cube = workspace.write("cube.obj", CubeText(0.0));
    writeTable(2);
    std::vector<std::string> page = morphs("*");
    page.insert(page.end(), {"--report", workspace.path("page.html")});
    const std::vector<std::vector<std::string>> commands{
        {"transfer", "--source-neutral", cube, "--source-morphed", cube, "--target-neutral", cube, "--out",
         workspace.path("new.obj")},
        arguments(saving(workspace.path("saved"),
                         {"--export-obj", workspace.path("vera.obj"), "--pictures",
                          workspace.path("pictures"), "--report", workspace.path("vera.html")})),
        page,
        batchArguments({"--log", workspace.path("log.jsonl"), "--report", workspace.path("all.html")}),
        figure(cube),
        {"render", sourceFile(), "--out", workspace.path("vera.png"), "--size", "8x8"}};
    std::size_t calls = 0;
    for (const std::vector<std::string>& command : commands) {
        SCOPED_TRACE(command.front());
        const Tree before = tree();
        calls += expectNoChanges(command);
        EXPECT_EQ(tree(), before);
    }
    EXPECT_GT(calls, 0u) << "the host has temporary files";
}

TEST_F(DryRun, of_a_conversion_tells_its_files)
{
    expectForetold(arguments(saving(workspace.path("saved"),
                                    {"--export-obj", workspace.path("vera.obj"), "--pictures",
                                     workspace.path("pictures"), "--report", workspace.path("vera.html")})));
    expectForetold(arguments(saving(workspace.path("saved"), {"--jobs", "full,head", "--overwrite"})));
    expectForetold(arguments(saving(workspace.path("other"), {"--resolution", "subd", "--subd", "1"})));
}

TEST_F(DryRun, of_a_conversion_fails_as_it_does)
{
    ExpectSuccess(convert(saving(workspace.path("saved"))));
    expectSameFailure(arguments(saving(workspace.path("saved")))); // the names are taken
    expectSameFailure(arguments({"--base", "height=9"}));
    expectSameFailure(arguments({"--dial", "Wibe=1"}));
    expectSameFailure(arguments({"--export-obj", workspace.path("none/vera.obj")}));
    expectSameFailure(argumentsFor(sourceFile(), targetFile())); // nothing is worn
    expectSameFailure(argumentsFor(sourceFile(), workspace.path("none.duf")));
    fs::remove(library("/People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf"));
    expectSameFailure(arguments());
}

TEST_F(DryRun, keeps_no_temporary_folder)
{
    ExpectSuccess(convert({"--dry-run", "--keep-temp"}));
    expectNoTraces();
}

TEST_F(DryRun, is_told_to_programs_also_when_quiet)
{
    const ProgramResult result =
        convert(saving(workspace.path("saved"), {"--dry-run", "--json", "--quiet", "--jobs", "full"}));
    ExpectSuccess(result);
    const json report = json::parse(result.out);
    EXPECT_EQ(report.at("dry_run"), true);
    const std::string file = workspace.path("saved/") + savedFolder + "/Vera.dsf";
    EXPECT_EQ(report.at("would_write"), json::array({{{"replaces", false}, {"file", file}}}));
    EXPECT_EQ(report.at("morphs"), json::array({"Vera"}));
    EXPECT_FALSE(workspace.has("saved"));
}

TEST_F(DryRun, of_single_morphs_tells_their_files)
{
    expectForetold(morphs("*"));
    std::vector<std::string> again = morphs("W*");
    again.insert(again.end(), {"--overwrite", "--report", workspace.path("page.html")});
    expectForetold(again);
}

TEST_F(DryRun, of_single_morphs_fails_where_one_is_skipped)
{
    ExpectSuccess(RunProgram(morphs("Wide")));
    std::vector<std::string> dry = morphs("*");
    dry.push_back("--dry-run");
    const ProgramResult told = RunProgram(dry);
    EXPECT_EQ(told.exitCode, 1);
    EXPECT_EQ(told.err, "gantrel: 1 morph would not be converted.\n");
    EXPECT_NE(told.out.find("--overwrite replaces it"), told.out.npos) << told.out;
    EXPECT_EQ(RunProgram(morphs("*")).exitCode, 1);
}

TEST_F(DryRun, of_a_transfer_tells_its_file)
{
    const std::string cube = workspace.write("cube.obj", CubeText(0.0)),
                      moved = workspace.write("moved.obj", CubeText(0.1));
    const std::vector<std::string> transfer{
        "transfer", "--source-neutral",       cube, "--source-morphed", moved, "--target-neutral", cube,
        "--out",    workspace.path("new.obj")};
    expectForetold(transfer);
    expectForetold(transfer);
    expectSameFailure({"transfer", "--source-neutral", cube, "--source-morphed",
                       workspace.write("fine.obj", FineCubeText(2)), "--target-neutral", cube, "--out",
                       workspace.path("new.obj")});
}

TEST_F(DryRun, of_a_figure_or_picture_tells_its_files)
{
    const std::string cube = workspace.write("cube.obj", CubeText(0.0));
    expectForetold(figure(cube));
    expectForetold(figure(cube));
    expectSameFailure(figure(workspace.path("none.obj")));
    expectForetold({"render", cube, "--out", workspace.path("cube.png"), "--size", "8x8"});
    expectSameFailure({"render", sourceFile(), "--dial", "Wibe=1", "--out", workspace.path("cube.png")});
}

TEST_F(DryRun, tells_what_would_go_to_standard_output)
{
    const std::string cube = workspace.write("cube.obj", CubeText(0.0));
    const std::regex line("\n +no +standard output\n");
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{arguments({"--export-obj", "-"}),
                                               arguments({"--report", "-"}),
                                               {"render", cube, "--out", "-", "--size", "8x8"},
                                               {"transfer", "--source-neutral", cube, "--source-morphed",
                                                cube, "--target-neutral", cube, "--out", "-"}}) {
        SCOPED_TRACE(command.front());
        std::vector<std::string> dry = command;
        dry.push_back("--dry-run");
        const ProgramResult told = RunProgram(dry);
        EXPECT_EQ(told.exitCode, 0);
        EXPECT_EQ(told.out, ""); // which is for the file alone
        EXPECT_TRUE(std::regex_search(told.err, line)) << told.err;
        EXPECT_EQ(told.err.find("kept"), told.err.npos) << told.err;
        EXPECT_NE(RunProgram(command).out, "");
    }
}

TEST_F(DryRun, of_the_samples_tells_their_files)
{
    expectForetold({"sample-content", workspace.path("samples")});
    const std::string file = workspace.write("file", "text");
    expectSameFailure({"sample-content", file + "/samples"});
}

TEST_F(DryRun, of_a_batch_tells_the_files_of_its_rows)
{
    writeTable(3);
    expectForetold(
        batchArguments({"--log", workspace.path("log.jsonl"), "--report", workspace.path("all.html")}));
    expectForetold(batchArguments({"--overwrite"}));
}

TEST_F(DryRun, of_a_batch_tells_which_rows_would_fail)
{
    writeTable(2);
    const std::string table = workspace.read("jobs.csv");
    workspace.write("jobs.csv", table + "C,Wibe=1\n");
    const Tree before = tree();
    const ProgramResult told = batch({"--dry-run", "--json"});
    EXPECT_EQ(tree(), before);
    EXPECT_EQ(told.exitCode, 1);
    EXPECT_EQ(told.err, "gantrel: 1 of 3 rows failed.\n");
    const json failures = json::parse(told.out).at("failures");
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0].at("row"), 3);
    EXPECT_NE(failures[0].at("error").get<std::string>().find("no dial \"Wibe\""), std::string::npos);
    ExpectWrongUse(batch({"--dry-run", "--resume"}), "--resume");
}

TEST_F(DryRun, of_a_batch_finds_rows_that_would_write_the_same_files)
{
    // Each row learns the names of its morphs when its figures are loaded.
    workspace.write("jobs.csv", "morphs,value,suffix\nWide,1,X\nW*,0.5,X\n");
    const ProgramResult told = batch({"--dry-run"});
    EXPECT_EQ(told.exitCode, 1);
    EXPECT_NE(told.out.find("WideX.dsf, as line 2 does."), told.out.npos) << told.out;
}

TEST_F(DryRun, of_a_setting_tells_the_file)
{
    const ScopedVariable folder("XDG_CONFIG_HOME", workspace.path("config"));
    expectForetold({"config", "set", "vendor", "Me"});
    expectForetold({"config", "unset", "vendor"});
    expectSameFailure({"config", "set", "vendor", "a/b"});
}

TEST_F(DryRun, is_refused_where_it_could_tell_nothing)
{
    const std::string script = workspace.write("a.js", "print(1);");
    ExpectError(RunProgram({"script", script, "--dry-run"}), 2,
                "What a script writes is known only when it has run, so script takes no --dry-run.");
    ExpectError(RunProgram({"inspect", script, "--dry-run"}), 2,
                "Inspect writes nothing, so it takes no --dry-run.");
}
