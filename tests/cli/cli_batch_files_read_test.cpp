// Batches that go on when files of the libraries have changed.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"

#include <filesystem>

#include <sqlite3.h>

namespace fs = std::filesystem;

namespace {

class FilesRead : public BatchTest {
protected:
    FilesRead() { workspace.write("jobs.csv", "name,dial\nA,Wide=1\nB,Bulge=1\n"); }

    static std::string morph(const std::string& name)
    {
        return "lib/data/Daz 3D/Genesis 8/Female/Morphs/Test/Base/" + name + ".dsf";
    }
    static std::string figure() { return "lib/data/Daz 3D/Genesis 8/Female/Genesis8Female.dsf"; }
    /// As another program saves it that writes the same numbers.
    void append(const std::string& file) const { workspace.write(file, workspace.read(file) + "\n"); }
    void expectResumed(int done, int skipped) const
    {
        const nlohmann::json report = batchReport({"--resume"});
        EXPECT_EQ(report["done"], done);
        EXPECT_EQ(report["skipped"], skipped);
        EXPECT_EQ(report["failed"], 0) << report["failures"];
    }
};

} // namespace

TEST_F(FilesRead, of_a_shape_make_those_rows_new_that_wear_it)
{
    expectResumed(2, 0);
    append(morph("Bulge"));
    expectResumed(1, 1);
    expectResumed(0, 2);
}

TEST_F(FilesRead, of_a_figure_make_all_rows_new)
{
    expectResumed(2, 0);
    append(figure());
    expectResumed(2, 0);
    append("lib/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf");
    expectResumed(2, 0);
}

TEST_F(FilesRead, that_were_only_written_again_make_no_row_new)
{
    expectResumed(2, 0);
    for (const std::string& file : {morph("Wide"), figure()})
        fs::last_write_time(workspace.path(file),
                            fs::last_write_time(workspace.path(file)) + std::chrono::hours(1));
    expectResumed(0, 2);
}

TEST_F(FilesRead, that_are_gone_make_a_row_fail)
{
    expectResumed(2, 0);
    fs::remove(workspace.path(morph("Bulge")));
    const nlohmann::json report = batchReport({"--resume"});
    EXPECT_EQ(report["skipped"], 1);
    EXPECT_EQ(report["failed"], 1);
}

TEST_F(FilesRead, of_single_morphs_make_a_row_of_them_new)
{
    workspace.write("jobs.csv", "morphs\nWide\nBulge\n");
    expectResumed(2, 0);
    append(morph("Wide"));
    expectResumed(1, 1);
    expectResumed(0, 2);
}

TEST_F(FilesRead, are_in_no_report_and_no_log)
{
    const nlohmann::json report = batchReport({"--log", workspace.path("log.jsonl")});
    EXPECT_FALSE(report["results"][0].contains("files_used"));
    EXPECT_EQ(workspace.read("log.jsonl").find("files_used"), std::string::npos);
}

TEST_F(FilesRead, are_not_known_of_a_state_that_kept_none)
{
    expectResumed(2, 0);
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open((table() + ".gantrel-batch").c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, "ALTER TABLE row DROP COLUMN files; PRAGMA user_version=2", nullptr,
                           nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(database);
    expectResumed(0, 2);
    fs::remove(savedFile("B Head.dsf"));
    expectResumed(1, 1);
    append(morph("Bulge"));
    expectResumed(1, 1);
}
