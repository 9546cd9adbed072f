// What is not there when a batch needs it.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"
#include "cli_held_file.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

using Lost = BatchTest;

} // namespace

TEST_F(Lost, save_library_is_not_made_anew_in_the_middle)
{
    fs::copy(library(), workspace.path("slow"), fs::copy_options::recursive);
    workspace.write("jobs.csv",
                    "name,dial,content\nA,Wide=1,\nB,Wide=1," + workspace.path("slow") + "\nC,Wide=1,\n");
    workspace.write("saved/here.txt", "a library with something in it");
    HeldFile file(workspace.path("slow/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"));
    constexpr int noSignal = 0;
    const ProgramResult result = SignalProgram(
        batchArguments({"--workers", "1", "--json"}), noSignal, [&file] { return file.isWaitedFor(); },
        [&] {
            fs::rename(workspace.path("saved"), workspace.path("away"));
            file.letGo();
        });
    EXPECT_EQ(result.exitCode, 1);
    const nlohmann::json report = nlohmann::json::parse(result.out, nullptr, false);
    ASSERT_TRUE(report.is_object()) << result.out << result.err;
    EXPECT_EQ(report["done"], 1);
    ASSERT_EQ(report["failures"].size(), 2u);
    for (const nlohmann::json& failure : report["failures"])
        EXPECT_EQ(failure["error"],
                  "The save library " + workspace.path("saved") + " has gone since the batch has begun.");
    EXPECT_FALSE(workspace.has("saved"));
    fs::rename(workspace.path("away"), workspace.path("saved"));
    const nlohmann::json resumed = batchReport({"--resume"});
    EXPECT_EQ(resumed["done"], 2);
    EXPECT_EQ(resumed["skipped"], 1);
}

TEST_F(Lost, files_are_told_with_their_lines_before_the_others_are_converted)
{
    const std::string none = workspace.path("none.duf");
    workspace.write("jobs.csv", "name,dial,source,report\nA,Wide=1,,\nB,," + none + ",\nC,Wide=1,,\nD,," +
                                    none + "," + workspace.path("away/d.html") + "\n");
    const ProgramResult result = batch({"--workers", "1"});
    EXPECT_EQ(result.exitCode, 1);
    const std::string first = table() + ": line 3: " + none + " is not there; the same of 1 more row\n",
                      second = table() + ": line 5: " + workspace.path("away") + " is not there\n";
    for (const std::string& one : {first, second})
        EXPECT_NE(result.err.find(one), std::string::npos) << result.err;
    EXPECT_EQ(saved().count("A Head.dsf") + saved().count("C Head.dsf"), 2u);
}

TEST_F(Lost, results_are_told_where_logs_have_none)
{
    const std::string log = workspace.write("log.jsonl", "no result\n");
    const ProgramResult result = RunProgram({"batch", "--merge", log});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("No log has the result of a row."), std::string::npos) << result.err;
}
