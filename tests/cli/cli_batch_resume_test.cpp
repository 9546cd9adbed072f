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

void ExpectCounts(const nlohmann::json& report, int done, int skipped, int failed)
{
    EXPECT_EQ(report["done"], done);
    EXPECT_EQ(report["skipped"], skipped);
    EXPECT_EQ(report["failed"], failed) << report["failures"];
}

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
              state + ": file is not a database; so nothing is kept for a later --resume");
}

TEST_F(Resume, completes_what_was_cut_off_anywhere_to_the_same_bytes)
{
    writeTable(2);
    const Contents expected = savedOneByOne(2);
    const auto restart = [this] {
        fs::remove_all(workspace.path("saved"));
        for (const char* const end : {".gantrel-batch", ".gantrel-batch-locks", ".gantrel-batch-journal"})
            fs::remove(table() + end);
    };
    const TracedProgram whole = RunProgramTraced(workspace.path(""), batchArguments({"--workers", "1"}));
    if (!whole.isPossible)
        GTEST_SKIP() << "this system lets nobody trace a process";
    ASSERT_EQ(whole.exitCode, 0) << whole.err;
    ASSERT_TRUE(saved() == expected);
    constexpr std::size_t places = 16; // of a few hundred; each takes a second
    for (std::size_t i = 0; i < places; ++i) {
        const std::size_t at = 1 + i * (whole.calls.size() - 1) / (places - 1);
        restart();
        const TracedProgram killed =
            RunProgramTraced(workspace.path(""), batchArguments({"--workers", "1"}), {at});
        const std::string what = "killed before " + whole.calls[at - 1];
        const ProgramResult resumed = batch({"--resume"});
        EXPECT_EQ(resumed.exitCode, 0) << what << ": " << resumed.out;
        EXPECT_EQ(resumed.err, "") << what;
        EXPECT_TRUE(saved() == expected) << what;
    }
    expectNoTraces();
}

TEST_F(Resume, gives_each_row_the_reason_of_a_full_disk)
{
    const TracedProgram whole = RunProgramTraced(workspace.path(""), batchArguments({"--workers", "1"}));
    if (!whole.isPossible)
        GTEST_SKIP() << "this system lets nobody trace a process";
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
