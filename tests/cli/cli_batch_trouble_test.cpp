// Batches that lose files while they run, and processes that grow or hang.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"
#include "cli_held_file.h"
#include "cli_traced_program.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <set>

namespace fs = std::filesystem;

namespace {

const char* const heldPath = "/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf";

class BatchTrouble : public BatchTest {
protected:
    std::string state() const { return table() + ".gantrel-batch"; }
    /// How many processes have had a folder for temporary files.
    std::size_t workersOf(const std::vector<std::string>& more) const
    {
        std::vector<std::string> all{"--workers", "1"};
        all.insert(all.end(), more.begin(), more.end());
        const TracedProgram run = RunProgramTraced(workspace.path("tmp"), batchArguments(all));
        EXPECT_EQ(run.exitCode, 0) << run.err;
        std::set<std::string> processes;
        for (const std::string& call : run.calls)
            if (call.compare(0, 6, "mkdir ") == 0)
                processes.insert(call.substr(0, call.rfind('-')));
        return processes.size();
    }
};

} // namespace

TEST_F(BatchTrouble, with_its_state_gone_keeps_a_new_one)
{
    ExpectCounts(reportWith({}, [this] { fs::remove(state()); }), 3, 0, 0);
    ExpectCounts(batchReport({"--resume"}), 0, 3, 0);
}

TEST_F(BatchTrouble, with_another_file_for_its_state_leaves_that_alone)
{
    const std::string others = "something that somebody else keeps here, in the name of the state";
    const nlohmann::json report = reportWith({}, [&] {
        fs::remove(state());
        workspace.write("jobs.csv.gantrel-batch", others);
    });
    ExpectCounts(report, 3, 0, 0);
    EXPECT_EQ(
        report["warnings"],
        nlohmann::json({state() + ": file is not a database; so a later --resume does not know 3 rows"}));
    EXPECT_EQ(workspace.read("jobs.csv.gantrel-batch"), others);
}

TEST_F(BatchTrouble, with_its_table_replaced_ends_as_it_began)
{
    const nlohmann::json report = reportWith({}, [this] { workspace.write("jobs.csv", "name\nZ\n"); });
    ExpectCounts(report, 3, 0, 0);
    EXPECT_EQ(saved().count("C Head.dsf"), 1u);
    EXPECT_EQ(saved().count("Z Head.dsf"), 0u);
    writeTable(4);
    ExpectCounts(batchReport({"--resume"}), 1, 3, 0);
}

TEST_F(BatchTrouble, with_saved_files_gone_makes_them_again)
{
    const Contents expected = savedOneByOne(3);
    ExpectCounts(batchReport({"--row", "1"}), 1, 0, 0);
    ExpectCounts(reportWith({"--resume"},
                            [this] { fs::remove_all(workspace.path(std::string("saved/") + savedFolder)); }),
                 2, 1, 0);
    EXPECT_EQ(saved().size(), 4u);
    ExpectCounts(batchReport({"--resume"}), 1, 2, 0);
    EXPECT_TRUE(saved() == expected);
}

TEST_F(BatchTrouble, with_the_library_gone_goes_on_when_it_is_back)
{
    const Contents expected = savedOneByOne(3);
    ExpectCounts(batchReport({"--row", "1"}), 1, 0, 0);
    const nlohmann::json report =
        reportWith({"--resume"}, [this] { fs::rename(library(), workspace.path("elsewhere")); });
    ExpectCounts(report, 0, 1, 2);
    fs::rename(workspace.path("elsewhere"), library());
    ExpectCounts(batchReport({"--resume"}), 2, 1, 0);
    EXPECT_TRUE(saved() == expected);
}

TEST_F(BatchTrouble, with_a_file_in_place_of_its_folder_tells_each_row_and_goes_on_when_that_is_gone)
{
    const Contents expected = savedOneByOne(3);
    ExpectCounts(batchReport({"--row", "1"}), 1, 0, 0);
    const nlohmann::json report = reportWith({"--resume"}, [this] {
        fs::rename(workspace.path("saved"), workspace.path("elsewhere"));
        workspace.write("saved", "");
    });
    ExpectCounts(report, 0, 1, 2);
    for (const nlohmann::json& failure : report["failures"])
        EXPECT_NE(failure["error"].get<std::string>().find("Not a directory"), std::string::npos) << failure;
    EXPECT_EQ(workspace.read("saved"), "");
    fs::remove(workspace.path("saved"));
    fs::rename(workspace.path("elsewhere"), workspace.path("saved"));
    ExpectCounts(batchReport({"--resume"}), 2, 1, 0);
    EXPECT_TRUE(saved() == expected);
}

TEST_F(BatchTrouble, with_a_folder_that_takes_no_files_converts_without_a_state)
{
    fs::create_directory(workspace.path("table"));
    const std::string file = workspace.write("table/jobs.csv", workspace.read("jobs.csv"));
    std::vector<std::string> all = batchArguments({"--workers", "1"});
    all[1] = file;
    Interference lasting{1, EROFS};
    lasting.isLasting = true;
    const TracedProgram run = RunProgramTraced(workspace.path("table"), all, lasting);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("cannot write " + file +
                           ".gantrel-batch: Read-only file system; so a later --resume does not know 3 rows"),
              std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("; so other programs may work on the same rows"), std::string::npos) << run.out;
    EXPECT_EQ(saved().size(), 6u);
    all.push_back("--resume");
    const TracedProgram resumed = RunProgramTraced(workspace.path("table"), all, lasting);
    EXPECT_EQ(resumed.exitCode, 1);
    EXPECT_EQ(resumed.err, "gantrel: Cannot write " + file + ".gantrel-batch: Read-only file system.\n");
}

TEST_F(BatchTrouble, with_a_full_disk_for_its_log_tells_so_and_converts)
{
    fs::create_directory(workspace.path("log"));
    const std::string log = workspace.write("log/log.jsonl", "");
    Interference full{2, ENOSPC}; // behind the first, which opens it
    full.isLasting = true;
    const TracedProgram run =
        RunProgramTraced(workspace.path("log"), batchArguments({"--workers", "1", "--log", log}), full);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("cannot write " + log + ": No space left on device"), std::string::npos)
        << run.out;
    EXPECT_EQ(saved().size(), 6u);
}

TEST_F(BatchTrouble, begins_a_new_line_behind_a_log_that_was_cut_off)
{
    const std::string log = workspace.write("log.jsonl", "{\"row\":7,\"line\":8,\"sta");
    ExpectCounts(batchReport({"--resume", "--log", log}), 3, 0, 0);
    const ProgramResult merged = RunProgram({"batch", "--merge", log, "--json"});
    const nlohmann::json report = nlohmann::json::parse(merged.out);
    ExpectCounts(report, 3, 0, 0);
    EXPECT_EQ(report["warnings"], nlohmann::json({log + ": line 1 is not the result of a row, left out"}));
}

TEST_F(BatchTrouble, with_the_state_of_another_version_says_so)
{
    ExpectCounts(batchReport(), 3, 0, 0);
    std::fstream file(state(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(63); // the last byte of the number that the head of the file has for its owner
    file.put(77);
    file.close();
    ExpectError(batch({"--resume"}), 1,
                state() + ": is not the state of a batch of this version of Gantrel.");
}

TEST_F(BatchTrouble, with_a_damaged_state_replaces_nothing)
{
    ExpectCounts(batchReport(), 3, 0, 0);
    const Contents all = saved();
    std::fstream file(state(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(4096); // the page behind the head
    file << std::string(4096, 'x');
    file.close();
    const nlohmann::json report = batchReport({"--resume"});
    ExpectCounts(report, 0, 0, 3);
    EXPECT_NE(report["warnings"].dump().find("database disk image is malformed"), std::string::npos)
        << report["warnings"];
    EXPECT_TRUE(saved() == all);
}

TEST_F(BatchTrouble, ends_a_row_that_takes_too_long_and_goes_on)
{
    nlohmann::json report;
    {
        const HeldFile file(library(heldPath));
        const ProgramResult result = batch({"--workers", "1", "--timeout", "0.5", "--json"});
        report = nlohmann::json::parse(result.out, nullptr, false);
    }
    ExpectCounts(report, 0, 0, 3);
    for (const nlohmann::json& row : report["results"]) {
        EXPECT_EQ(row.value("error", ""), "The row was stopped after 0.5 s.");
        EXPECT_EQ(row["tries"], 1);
    }
    ExpectCounts(batchReport({"--resume", "--timeout", "600"}), 3, 0, 0);
}

TEST_F(BatchTrouble, takes_new_processes_for_those_that_have_grown)
{
    EXPECT_EQ(workersOf({}), 1u);
    fs::remove_all(workspace.path("saved"));
    EXPECT_EQ(workersOf({"--memory", "1"}), 3u);
}
