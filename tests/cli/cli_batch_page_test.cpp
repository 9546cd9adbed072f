// The page of a batch.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"
#include "cli_held_file.h"

#include <csignal>
#include <filesystem>

#include <sqlite3.h>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t statusCell = 6, pictureCell = 18;

class BatchPage : public BatchTest {
protected:
    std::string page() const { return workspace.path("batch.html"); }
    nlohmann::json data() const
    {
        const std::string text = workspace.read("batch.html"), begin = "id=\"page-data\">";
        const std::size_t at = text.find(begin) + begin.size();
        const nlohmann::json found =
            nlohmann::json::parse(text.substr(at, text.find("</script>", at) - at), nullptr, false);
        EXPECT_TRUE(found.is_object());
        return found;
    }
    /// What each row says at a place.
    std::vector<nlohmann::json> cells(std::size_t place) const
    {
        std::vector<nlohmann::json> found;
        const nlohmann::json all = data();
        for (const nlohmann::json& row : all["rows"])
            found.push_back(place < row.size() ? row[place] : nlohmann::json());
        return found;
    }
    std::vector<std::string> statuses() const
    {
        const nlohmann::json texts = data()["texts"];
        std::vector<std::string> found;
        for (const nlohmann::json& cell : cells(statusCell))
            found.push_back(texts[cell.get<std::size_t>()]);
        return found;
    }
    void expectPictures() const
    {
        for (const nlohmann::json& picture : cells(pictureCell))
            EXPECT_EQ(picture.get<std::string>().compare(0, 8, "iVBORw0K"), 0) << "a PNG begins so";
    }
};

} // namespace

TEST_F(BatchPage, does_not_change_what_is_saved)
{
    const Contents expected = savedOneByOne(3);
    ExpectSuccess(batch({"--report", page()}));
    EXPECT_TRUE(saved() == expected);
    EXPECT_EQ(statuses(), std::vector<std::string>(3, "done"));
    expectPictures();
}

TEST_F(BatchPage, has_rows_that_were_done_before_with_all_that_was_known_of_them)
{
    ExpectSuccess(batch({"--row", "1", "--thumbnails"}));
    ExpectSuccess(batch({"--resume", "--workers", "1", "--report", page()}));
    EXPECT_EQ(statuses(), (std::vector<std::string>{"skipped", "done", "done"}));
    expectPictures();
    constexpr std::size_t p95Cell = 8, morphsCell = 10;
    EXPECT_GT(cells(p95Cell)[0], 0.0);
    EXPECT_EQ(cells(morphsCell), std::vector<nlohmann::json>(3, 2));
}

TEST_F(BatchPage, of_merged_logs_is_that_of_the_batch)
{
    const std::string log = workspace.path("log.jsonl");
    ExpectSuccess(batch({"--workers", "1", "--log", log, "--report", page()}));
    const nlohmann::json rows = data()["rows"], texts = data()["texts"];
    fs::remove(page());
    ExpectSuccess(RunProgram({"batch", "--merge", log, "--report", page()}));
    EXPECT_EQ(data()["rows"], rows);
    EXPECT_EQ(data()["texts"], texts);
}

TEST_F(BatchPage, has_the_last_result_of_each_row_of_logs)
{
    const std::string log = workspace.write(
        "log.jsonl", "{\"row\":1,\"line\":2,\"status\":\"failed\",\"error\":\"No.\"}\n"
                     "{\"row\":2,\"line\":3,\"status\":\"done\",\"picture\":7,\"report\":{\"warnings\":3}}\n"
                     "{\"row\":1,\"line\":2,\"status\":\"done\",\"picture\":\"iVBORw0KGgo=\"}\n");
    ExpectSuccess(RunProgram({"batch", "--merge", log, "--report", page()}));
    EXPECT_EQ(statuses(), (std::vector<std::string>{"done", "done"}));
    EXPECT_EQ(cells(pictureCell)[0], "iVBORw0KGgo=");
    EXPECT_TRUE(cells(pictureCell)[1].is_null()) << "what is no text is no picture";
}

TEST_F(BatchPage, is_written_of_what_is_done_when_the_batch_is_interrupted)
{
    ExpectSuccess(batch({"--row", "1"}));
    HeldFile file(library("/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"));
    const ProgramResult result = InterruptProgram(batchArguments({"--resume", "--report", page()}),
                                                  [&file] { return file.isWaitedFor(); });
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_NE(result.err.find(page() + " is written"), std::string::npos) << result.err;
    EXPECT_EQ(data()["wasInterrupted"], true);
    EXPECT_EQ(data()["rowsNotBegun"], 2);
    EXPECT_EQ(statuses(), std::vector<std::string>{"skipped"});
}

TEST_F(BatchPage, is_refused_before_the_work_where_it_cannot_be_written)
{
    const auto expectRefused = [this](const std::string& file, const std::string& reason) {
        const ProgramResult result = batch({"--report", file});
        EXPECT_NE(result.exitCode, 0);
        EXPECT_NE(result.err.find(reason), std::string::npos) << result.err;
        EXPECT_FALSE(workspace.has("saved"));
    };
    expectRefused(workspace.path("batch.duf"), "a report is an .html file");
    expectRefused(workspace.path("none/batch.html"), "there is no folder");
    fs::create_directory(workspace.path("folder.html"));
    expectRefused(workspace.path("folder.html"), "Cannot write");
}

TEST_F(BatchPage, of_a_row_is_not_that_of_the_batch)
{
    const std::string own = workspace.path("row.html");
    workspace.write("jobs.csv", "name,dial,report\nA,Wide=1," + own + "\nB,Wide=0.5,\n");
    ExpectSuccess(batch({"--report", page(), "--workers", "1"}));
    EXPECT_TRUE(workspace.has("row.html"));
    constexpr std::size_t pageCell = 17;
    EXPECT_EQ(cells(pageCell)[0], "row.html") << "as it is seen from the page of the batch";
    EXPECT_EQ(cells(pageCell)[1], "");
}

TEST_F(BatchPage, finds_rows_in_a_state_that_knew_no_results)
{
    ExpectSuccess(batch());
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open((table() + ".gantrel-batch").c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database,
                           "ALTER TABLE row DROP COLUMN result; ALTER TABLE row DROP COLUMN files; "
                           "PRAGMA user_version=1",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(database);
    ExpectSuccess(batch({"--resume", "--report", page()}));
    EXPECT_EQ(statuses(), std::vector<std::string>(3, "skipped"));
}

TEST_F(BatchPage, may_have_a_name_without_a_folder)
{
    const fs::path before = fs::current_path();
    fs::current_path(workspace.path(""));
    ExpectSuccess(batch({"--report", "batch.html"}));
    fs::current_path(before);
    EXPECT_EQ(statuses().size(), 3u);
}
