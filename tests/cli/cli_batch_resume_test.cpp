// Batches that go on where an earlier run ended.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"
#include "cli_held_file.h"
#include "cli_traced_program.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

using Resume = BatchTest;

} // namespace

TEST_F(Resume, does_nothing_twice)
{
    ExpectCounts(batchReport({"--resume"}), 3, 0, 0);
    const Contents first = saved();
    ExpectCounts(batchReport({"--resume"}), 0, 3, 0);
    writeTable(4);
    ExpectCounts(batchReport({"--resume"}), 1, 3, 0);
    for (const auto& [name, bytes] : first)
        EXPECT_TRUE(saved().at(name) == bytes) << name;
}

TEST_F(Resume, does_again_what_has_changed)
{
    ExpectCounts(batchReport(), 3, 0, 0);
    const Contents all = saved();
    fs::remove(savedFile("B Head.dsf"));
    ExpectCounts(batchReport({"--resume"}), 1, 2, 0);
    EXPECT_TRUE(saved() == all);
    const std::string source = workspace.read(std::string("lib") + sourcePath);
    workspace.write("jobs.csv", "name,dial\nC,Wide=0.800000;Bulge=0.5\nA,Wide=0.5\n");
    ExpectCounts(batchReport({"--resume"}), 1, 1, 0);
    EXPECT_FALSE(saved().at("A Body.dsf") == all.at("A Body.dsf"));
    writeTable(3);
    ExpectCounts(batchReport({"--resume"}), 1, 2, 0);
    EXPECT_TRUE(saved() == all);
    workspace.write(std::string("lib") + sourcePath, source + '\n');
    ExpectCounts(batchReport({"--resume"}), 3, 0, 0);
    EXPECT_TRUE(saved() == all);
}

TEST_F(Resume, replaces_nothing_that_somebody_has_changed)
{
    ExpectCounts(batchReport(), 3, 0, 0);
    const std::string file = std::string("saved/") + savedFolder + "/B Head.dsf";
    const std::string changed = workspace.read(file) + "\n";
    workspace.write(file, changed);
    const nlohmann::json report = batchReport({"--resume"});
    ExpectCounts(report, 0, 2, 1);
    EXPECT_NE(report["failures"][0]["error"].get<std::string>().find("; --overwrite replaces it."),
              std::string::npos);
    EXPECT_EQ(workspace.read(file), changed);
    ExpectCounts(batchReport({"--resume", "--overwrite"}), 1, 2, 0);
}

TEST_F(Resume, is_not_needed_to_refuse_what_is_there)
{
    ExpectCounts(batchReport(), 3, 0, 0);
    ExpectCounts(batchReport(), 0, 0, 3);
    ExpectCounts(batchReport({"--resume"}), 0, 3, 0);
}

TEST_F(Resume, is_what_a_row_does_that_is_run_alone)
{
    ExpectCounts(batchReport({"--row", "2"}), 1, 0, 0);
    EXPECT_EQ(saved().count("B Head.dsf"), 1u);
    EXPECT_EQ(saved().size(), 2u);
    ExpectCounts(batchReport({"--row", "2"}), 0, 1, 0);
    ExpectCounts(batchReport({"--resume"}), 2, 1, 0);
}

TEST_F(Resume, is_what_a_range_of_rows_does)
{
    writeTable(4);
    ExpectCounts(batchReport({"--row", "2-3"}), 2, 0, 0);
    EXPECT_EQ(saved().count("A Head.dsf"), 0u);
    EXPECT_EQ(saved().count("B Head.dsf"), 1u);
    EXPECT_EQ(saved().count("C Head.dsf"), 1u);
    ExpectCounts(batchReport({"--row", "1-4"}), 2, 2, 0);
}

TEST_F(Resume, looks_at_other_rows_of_a_large_table_only_once)
{
    std::string text = "name,dial,source\n";
    for (int row = 1; row < 600; ++row)
        text += "N" + std::to_string(row) + ",Wide=1," + (row == 7 ? sourceFile() : "/none.duf") + '\n';
    workspace.write("jobs.csv", text + "N7,,/none.duf\n");
    const ProgramResult wrong = batch({"--row", "7"});
    ExpectError(wrong, 2, table() + ": line 601: would write the morph \"N7 Head\", as line 8 does.");
    EXPECT_FALSE(workspace.has("jobs.csv.gantrel-batch-checked"));
    workspace.write("jobs.csv", text);
    ExpectCounts(batchReport({"--row", "7"}), 1, 0, 0);
    const std::string checked = workspace.read("jobs.csv.gantrel-batch-checked");
    ExpectCounts(batchReport({"--row", "7"}), 0, 1, 0);
    workspace.write("jobs.csv", text + "N7,,/none.duf\n");
    ExpectError(batch({"--row", "7"}), 2,
                table() + ": line 601: would write the morph \"N7 Head\", as line 8 does.");
    workspace.write("jobs.csv", text);
    workspace.write("jobs.csv.gantrel-batch-checked", "");
    ExpectCounts(batchReport({"--row", "7"}), 0, 1, 0);
    EXPECT_EQ(workspace.read("jobs.csv.gantrel-batch-checked"), checked);
}

TEST_F(Resume, leaves_a_row_alone_that_another_program_is_at)
{
    HeldFile file(library("/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"));
    nlohmann::json second;
    constexpr int noSignal = 0; // the first goes on when the second has ended
    const ProgramResult first = SignalProgram(
        batchArguments({"--row", "1"}), noSignal, [&file] { return file.isWaitedFor(); },
        [&] {
            const ProgramResult result = batch({"--row", "1", "--json"});
            second = nlohmann::json::parse(result.out, nullptr, false);
            file.letGo();
        });
    ExpectSuccess(first);
    ExpectCounts(second, 0, 0, 1);
    EXPECT_EQ(second["failures"][0]["error"], "Another program is at work on this row.");
    ExpectCounts(batchReport({"--row", "1"}), 0, 1, 0);
}

TEST_F(Resume, needs_a_state_that_can_be_relied_on)
{
    const std::string state = table() + ".gantrel-batch";
    workspace.write("jobs.csv.gantrel-batch", "no database at all, but long enough to be taken for one");
    ExpectError(batch({"--resume"}), 1, state + ": file is not a database.");
    const nlohmann::json report = batchReport();
    ExpectCounts(report, 3, 0, 0);
    EXPECT_EQ(report["diagnostics"][0]["what"],
              state + ": file is not a database; so a later --resume does not know 3 rows");
}

TEST_F(Resume, completes_what_was_cut_off_anywhere_to_the_same_bytes)
{
    writeTable(2);
    const Contents expected = savedOneByOne(2);
    constexpr std::size_t places = 16; // of hundreds; each takes a second
    expectCompletedWhereverCutOff(expected, places);
}

TEST_F(Resume, gives_each_row_the_reason_of_a_full_disk)
{
    const TracedProgram whole = RunProgramTraced(workspace.path(""), batchArguments({"--workers", "1"}));
    fs::remove_all(workspace.path("saved"));
    fs::remove(table() + ".gantrel-batch");
    const auto firstSave = std::find_if(whole.calls.begin(), whole.calls.end(), [](const std::string& call) {
        return call.find("/saved") != std::string::npos;
    });
    ASSERT_NE(firstSave, whole.calls.end());
    Interference full{static_cast<std::size_t>(firstSave - whole.calls.begin()) + 1, ENOSPC};
    full.isLasting = true;
    const TracedProgram result =
        RunProgramTraced(workspace.path(""), batchArguments({"--workers", "1", "--json"}), full);
    EXPECT_EQ(result.exitCode, 1);
    const nlohmann::json report = nlohmann::json::parse(result.out, nullptr, false);
    ASSERT_TRUE(report.is_object()) << result.out << result.err;
    ExpectCounts(report, 0, 0, 3);
    for (const nlohmann::json& failure : report["failures"])
        EXPECT_NE(failure["error"].get<std::string>().find("No space left on device"), std::string::npos)
            << failure;
    ExpectCounts(batchReport({"--resume"}), 3, 0, 0);
}
