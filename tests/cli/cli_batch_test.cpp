// Tables of conversions, run.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"
#include "cli_held_file.h"
#include "cli_terminal.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <regex>
#include <thread>

namespace fs = std::filesystem;

namespace {

using Batch = BatchTest;

const char* const heldPath = "/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf";

/// Kills who waits for the file, so many times, and lets go of it then.
class KillingWaiters {
public:
    KillingWaiters(const std::string& path, int times)
        : _file(path), _thread([this, times] {
              for (int killed = 0; killed < times && !_isOver;) {
                  killed += _file.isWaitedFor() && killWorker();
                  std::this_thread::sleep_for(std::chrono::milliseconds(5));
              }
              _file.letGo();
          })
    {
    }
    ~KillingWaiters()
    {
        _isOver = true;
        _thread.join();
    }

private:
    bool killWorker()
    {
        const std::vector<pid_t> workers = WorkersOfBatches();
        if (workers.empty() || workers.front() == _last)
            return false;
        _last = workers.front();
        // Until it has come to the file, too, and waits for it as the one before did.
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return kill(_last, SIGKILL) == 0;
    }

    HeldFile _file;
    std::atomic<bool> _isOver{false};
    pid_t _last = 0;
    std::thread _thread;
};

/// Waits for it.
bool WorkersHaveEnded()
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!WorkersOfBatches().empty() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return WorkersOfBatches().empty();
}

} // namespace

TEST_F(Batch, saves_what_single_conversions_do)
{
    const Contents expected = savedOneByOne(3);
    ASSERT_EQ(expected.size(), 6u) << "head and body of each";
    for (const char* const workers : {"1", "2"}) {
        const nlohmann::json report = batchReport({"--workers", workers});
        EXPECT_EQ(report["done"], 3);
        EXPECT_EQ(report["results"].size(), 3u);
        for (const nlohmann::json& row : report["results"]) {
            EXPECT_EQ(row["tries"], 1);
            EXPECT_EQ(row["report"]["created_morphs"].size(), 2u);
            EXPECT_GT(row["peak_memory_mib"], 1.0);
        }
        EXPECT_TRUE(saved() == expected);
        fs::remove_all(workspace.path("saved"));
    }
}

TEST_F(Batch, says_where_morphs_log_and_page_are)
{
    const std::string page = workspace.path("jobs.html"), other = workspace.path("other");
    workspace.write("jobs.csv", "name,dial,save-library\nA,Wide=1,\nB,Wide=1," + other + "\n");
    const auto tells = [](const ProgramResult& result, const std::string& lines) {
        return result.out.find("\n" + lines + "\n") != std::string::npos;
    };
    const ProgramResult both = batch({"--log", log(), "--report", page});
    EXPECT_TRUE(tells(both, "save libraries\n  " + workspace.path("saved") + "\n  " + other)) << both.out;
    EXPECT_TRUE(tells(both, "log              " + log())) << both.out;
    EXPECT_TRUE(tells(both, "report           " + page)) << both.out;
    const ProgramResult first = batch({"--row", "1"});
    EXPECT_TRUE(tells(first, "save library     " + workspace.path("saved"))) << first.out;
    EXPECT_EQ(first.out.find("log "), std::string::npos) << "there is none: " << first.out;
    EXPECT_EQ(batch({"--quiet", "--overwrite", "--log", log()}).out, "");
    const ProgramResult merged = RunProgram({"batch", "--merge", log(), "--report", page});
    EXPECT_TRUE(tells(merged, "report           " + page)) << merged.out;
}

TEST_F(Batch, goes_on_when_a_row_fails)
{
    workspace.write("jobs.csv", "name,dial,source\nA,Wide=1,\nB,Slim=1,\nC,Wide=1,/none.duf\nD,Bulge=1,\n");
    const ProgramResult result = batch();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "gantrel: warning: " + table() +
                              ": line 4: /none.duf is not there\ngantrel: 2 of 4 rows failed.\n");
    EXPECT_NE(result.out.find("\ndone             2\n"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("\n  2    3     " + sourceFile() + "  "), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("\n  3    4     /none.duf"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("Cannot open /none.duf: No such file or directory.\n"), std::string::npos)
        << result.out;
    EXPECT_EQ(saved().size(), 4u);
    expectNoTraces();
}

TEST_F(Batch, keeps_a_line_of_its_log_for_each_row)
{
    workspace.write("jobs.csv", "name,dial\nA,Wide=1\nB,Slim=1\n");
    const std::string log = workspace.path("log.jsonl");
    EXPECT_EQ(batch({"--log", log, "--workers", "1"}).exitCode, 1);
    const std::string text = workspace.read("log.jsonl");
    ASSERT_EQ(std::count(text.begin(), text.end(), '\n'), 2) << text;
    const std::size_t end = text.find('\n');
    const nlohmann::json done = nlohmann::json::parse(text.substr(0, end)),
                         failed = nlohmann::json::parse(text.substr(end + 1));
    EXPECT_EQ(done["status"], "done");
    EXPECT_EQ(done["line"], 2);
    EXPECT_EQ(done["report"]["created_morphs"][0]["name"], "A Head");
    EXPECT_EQ(failed["status"], "failed");
    EXPECT_EQ(failed["row"], 2);
    EXPECT_EQ(failed["source"], sourceFile());
    EXPECT_NE(failed["error"].get<std::string>().find("\"Slim\""), std::string::npos) << failed;
}

TEST_F(Batch, sums_logs_up_of_which_the_last_counts)
{
    const std::string first = workspace.write(
        "1.jsonl", "{\"row\":1,\"line\":2,\"status\":\"done\",\"seconds\":2.5}\n"
                   "{\"row\":2,\"line\":3,\"status\":\"failed\",\"error\":\"No.\"}\n{\"row\":3,\"li");
    const std::string second = workspace.write("2.jsonl", "{\"row\":2,\"line\":3,\"status\":\"done\"}\n"
                                                          "{\"row\":1,\"line\":2,\"status\":\"skipped\"}\n");
    const ProgramResult merged = RunProgram({"batch", "--merge", first, second, "--json"});
    EXPECT_EQ(merged.exitCode, 0) << merged.err;
    const nlohmann::json report = nlohmann::json::parse(merged.out);
    EXPECT_EQ(report["rows"], 2);
    EXPECT_EQ(report["done"], 2) << "one of them is still done when it is skipped";
    EXPECT_EQ(report["seconds"], 2.5);
    EXPECT_EQ(report["warnings"], nlohmann::json({first + ": line 3 is not the result of a row, left out"}));
    const ProgramResult alone = RunProgram({"batch", "--merge", first});
    EXPECT_EQ(alone.exitCode, 1);
    EXPECT_EQ(alone.err, "gantrel: 1 of 2 rows failed.\n");
}

TEST_F(Batch, leaves_lines_of_logs_out_whose_members_are_something_else)
{
    const std::string good = R"({"row":1,"line":2,"status":"done"})"
                             "\n";
    for (const char* const odd :
         {R"({"row":2,"line":"x","status":"done"})", R"({"row":2,"line":3,"status":"done","busy":"x"})",
          R"({"row":2,"line":3,"status":7})", R"({"row":-2,"line":3,"status":"done"})",
          R"({"row":2,"line":3,"status":"failed","error":{}})",
          R"({"row":2,"line":3,"status":"done","report":[]})"}) {
        const std::string log = workspace.write("1.jsonl", odd + ("\n" + good));
        const ProgramResult merged =
            RunProgram({"batch", "--merge", log, "--json", "--report", workspace.path("page.html")});
        EXPECT_EQ(merged.exitCode, 0) << odd << merged.err;
        const nlohmann::json report = nlohmann::json::parse(merged.out, nullptr, false);
        ASSERT_TRUE(report.is_object()) << odd << merged.err;
        EXPECT_EQ(report["rows"], 1) << odd;
        EXPECT_EQ(report["warnings"],
                  nlohmann::json({log + ": line 1 is not the result of a row, left out"}));
    }
    // What the result is about is read with care.
    const std::string log = workspace.write(
        "1.jsonl", R"({"row":1,"line":2,"status":"done","name":7,"picture":[],"warnings":{"a":1},"report":)"
                   R"({"surface_distance_mm":{"p95":"x"},"created_morphs":{},"warnings":[7],"figures":[]}})"
                   "\n");
    ExpectSuccess(RunProgram({"batch", "--merge", log, "--report", workspace.path("page.html")}));
}

TEST_F(Batch, sums_logs_up_beside_their_table)
{
    const auto line = [this](int row, const char* name, const std::string& rest) {
        return R"({"row":)" + std::to_string(row) + R"(,"line":)" + std::to_string(row + 1) +
               R"(,"command":"gantrel convert --source=a --target=t --name=)" + name + "\"," + rest + "}\n";
    };
    const std::string done = R"("status":"done","seconds":1)", failed = R"("status":"failed","error":"No.")",
                      busy = R"("status":"failed","error":"Busy.","busy":true)";
    workspace.write("jobs.csv", "source,target,name\na,t,A\na,t,B\na,t,C\na,t,D\na,t,E\na,t,F\n");
    const std::string first =
                          workspace.write("1.jsonl", line(1, "A", done) + line(2, "B", failed) + "{\n7\n" +
                                                         line(3, "Old", done) + line(9, "X", done)),
                      second = workspace.write("2.jsonl",
                                               line(1, "A", busy) + line(2, "B", done) + line(4, "Y", done));
    const ProgramResult merged = RunProgram({"batch", table(), "--merge", first, second, "--json"});
    EXPECT_EQ(merged.exitCode, 1);
    EXPECT_EQ(merged.err, "gantrel: 4 rows are in no log.\n");
    const nlohmann::json report = nlohmann::json::parse(merged.out);
    EXPECT_EQ(report["rows"], 2);
    EXPECT_EQ(report["done"], 2) << "one that was busy elsewhere, and one that failed at first";
    EXPECT_EQ(report["missing"], 4);
    EXPECT_EQ(
        report["warnings"],
        nlohmann::json({first + ": line 3 is not the result of a row, left out; the same of 1 line",
                        table() + ": the logs have 3 rows of other commands than the table, left out: 3-4, 9",
                        table() + ": 4 rows are in no log: 3-6"}));
    const std::string third = workspace.write("3.jsonl", line(3, "C", done) + line(4, "D", done) +
                                                             line(5, "E", done) + line(6, "F", done));
    const ProgramResult whole = RunProgram({"batch", table(), "--merge", first, second, third, "--json"});
    EXPECT_EQ(whole.exitCode, 0) << whole.err;
    EXPECT_EQ(
        nlohmann::json::parse(whole.out)["warnings"][1],
        "the logs are of different tables: row 3 is another one in a later log, which counts; the same of "
        "1 row");
}

TEST_F(Batch, tries_a_row_once_more_whose_worker_is_killed)
{
    ProgramResult result;
    {
        const KillingWaiters killing(library(heldPath), 1);
        result = batch({"--workers", "1", "--json"});
    }
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const nlohmann::json report = nlohmann::json::parse(result.out);
    EXPECT_EQ(report["done"], 3);
    EXPECT_EQ(report["results"][0]["tries"], 2);
    EXPECT_EQ(report["results"][1]["tries"], 1);
    expectNoTraces();
}

TEST_F(Batch, loses_the_row_alone_whose_workers_are_killed)
{
    ProgramResult result;
    {
        const KillingWaiters killing(library(heldPath), 2);
        result = batch({"--workers", "1", "--json"});
    }
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "gantrel: 1 of 3 rows failed.\n");
    const nlohmann::json report = nlohmann::json::parse(result.out);
    EXPECT_EQ(report["failures"][0]["error"], "The worker ended by signal 9.");
    EXPECT_EQ(report["done"], 2);
    expectNoTraces();
}

TEST_F(Batch, ends_its_workers_when_it_is_killed)
{
    HeldFile file(library(heldPath));
    const ProgramResult killed =
        SignalProgram(batchArguments({"--workers", "2"}), SIGKILL, [&file] { return file.isWaitedFor(); });
    EXPECT_EQ(killed.signal, SIGKILL);
    EXPECT_TRUE(WorkersHaveEnded()) << "the file is still held";
    expectNoTraces();
}

TEST_F(Batch, keeps_one_processor_busy_for_each_worker_that_is_asked_for)
{
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"--workers", "1"}, "--threads=1"}, {{"--workers", "1", "--threads", "3"}, "--threads=3"}};
    for (const auto& [options, expected] : cases) {
        HeldFile file(library(heldPath));
        std::string command;
        SignalProgram(batchArguments(options), SIGINT, [&] {
            const std::vector<pid_t> workers = WorkersOfBatches();
            if (!file.isWaitedFor() || workers.empty())
                return false;
            command = CommandOf(workers.front());
            return true;
        });
        EXPECT_NE(command.find(expected), std::string::npos) << command;
    }
}

TEST_F(Batch, ends_at_once_with_its_workers_when_it_is_interrupted_twice)
{
    HeldFile file(library(heldPath));
    const ProgramResult result =
        InterruptProgramTwice(batchArguments(), [&file] { return file.isWaitedFor(); });
    EXPECT_TRUE(result.signal == SIGINT || result.signal == SIGTERM) << result.signal;
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(WorkersHaveEnded()) << "the file is still held";
    EXPECT_FALSE(workspace.has("saved"));
}

TEST_F(Batch, tells_each_row_when_the_library_has_gone)
{
    HeldFile file(library(heldPath));
    constexpr int noSignal = 0;
    const ProgramResult result = SignalProgram(
        batchArguments({"--workers", "1", "--json"}), noSignal, [&file] { return file.isWaitedFor(); },
        [&] {
            fs::rename(library(), workspace.path("elsewhere"));
            file.letGo();
        });
    EXPECT_EQ(result.exitCode, 1);
    const nlohmann::json report = nlohmann::json::parse(result.out, nullptr, false);
    ASSERT_TRUE(report.is_object()) << result.out << result.err;
    EXPECT_EQ(report["failed"], 3);
    EXPECT_EQ(report["failures"][1]["error"], library() + ": there is no such content directory.");
    EXPECT_EQ(report["failures"][2]["error"], library() + ": there is no such content directory.");
    expectNoTraces();
}

TEST_F(Batch, of_named_rows_goes_on_by_the_same_command)
{
    const auto toldWhenInterrupted = [this](const char* rows) {
        const HeldFile file(library(heldPath));
        return InterruptProgram(batchArguments({"--row", rows}), [&file] { return file.isWaitedFor(); }).err;
    };
    EXPECT_EQ(toldWhenInterrupted("2"), "gantrel: Interrupted; 0 of 1 row is done.\n");
    EXPECT_EQ(toldWhenInterrupted("2-3"),
              "gantrel: Interrupted; 0 of 2 rows are done; the same command goes on with the others.\n");
}

TEST_F(Batch, drops_what_runs_when_it_is_interrupted_and_goes_on_later)
{
    const Contents expected = savedOneByOne(3);
    ExpectSuccess(batch({"--row", "1"}));
    {
        HeldFile file(library(heldPath));
        const ProgramResult result =
            InterruptProgram(batchArguments({"--resume"}), [&file] { return file.isWaitedFor(); });
        EXPECT_EQ(result.signal, SIGINT);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err,
                  "gantrel: Interrupted; 1 of 3 rows are done; --resume goes on with the others.\n");
        EXPECT_TRUE(WorkersOfBatches().empty());
        expectNoTraces();
    }
    const nlohmann::json report = batchReport({"--resume"});
    EXPECT_EQ(report["skipped"], 1);
    EXPECT_EQ(report["done"], 2);
    EXPECT_TRUE(saved() == expected);
}

TEST_F(Batch, tells_on_a_terminal_how_far_it_is)
{
    const TerminalResult result = RunOnTerminal(batchArguments({"--workers", "1"}), 100);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.bytes.find("Converting the rows ..."), std::string::npos);
    const std::regex line("\\x1b\\[K(33 %  Converting the rows: 1|66 %  Converting the rows: 2) of 3");
    EXPECT_TRUE(std::regex_search(result.bytes, line)) << result.bytes;
    ASSERT_FALSE(result.screen.empty());
    EXPECT_EQ(result.screen.front(), "rows             3");
}

TEST_F(Batch, writes_a_table_of_all_characters_that_it_can_read)
{
    const std::string preset = R"({"file_version": "0.6.0.0", "asset_info": {"id": "/x.duf", "type": "TYPE"},
        "scene": {"nodes": [{"id": "f", "label": "Vera, tall",
            "url": "/data/DAZ 3D/Genesis 8/Female/Genesis8Female.dsf#Genesis8Female"}],
        "modifiers": [{"id": "w", "url": "/data/w.dsf#w", "channel": {"id": "value", "current_value": VALUE}}]}})";
    const auto write = [&](const std::string& name, const std::string& type, const std::string& value) {
        std::string text = preset;
        text.replace(text.find("TYPE"), 4, type);
        text.replace(text.find("VALUE"), 5, value);
        workspace.write("people/" + name, text);
    };
    fs::create_directories(workspace.path("people/more"));
    write("Vera.duf", "character", "1");
    write("more/Vera.duf", "character", "0.5");
    write("Bare.duf", "character", "0");
    write("Street.duf", "scene", "1");
    workspace.write("people/Broken.duf", "{");
    const ProgramResult result =
        RunProgram({"batch", "--init", workspace.path("people"), "--target", targetFile()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "source,target,name\n" + workspace.path("people/Vera.duf") + ',' + targetFile() +
                              ",\"Vera, tall converted to G9\"\n" + workspace.path("people/more/Vera.duf") +
                              ',' + targetFile() + ",\"Vera, tall converted to G9 2\"\n");
    EXPECT_EQ(result.err.find("gantrel: warning: " + workspace.path("people/Broken.duf")), 0u) << result.err;
    const std::string file = workspace.path("new.csv");
    const ProgramResult dry = RunProgram({"batch", "--init", workspace.path("people"), "--dry-run"});
    EXPECT_TRUE(std::regex_search(dry.out, std::regex("\\n +no +standard output\\n"))) << dry.out << dry.err;
    EXPECT_EQ(RunProgram({"batch", file, "--init", workspace.path("people")}).exitCode, 0);
    EXPECT_EQ(workspace.read("new.csv").compare(0, 12, "source,name\n"), 0);
    ExpectError(RunProgram({"batch", file, "--init", workspace.path("people")}), 1,
                file + ": is there already.");
}

TEST_F(Batch, is_told_what_it_lacks)
{
    ExpectError(RunProgram({"batch"}), 2, "A table is required.");
    ExpectError(RunProgram({"batch", "-", "--resume"}), 2,
                "--resume needs a table that is a file, beside which it is kept what is done.");
    ExpectError(batch({"--row", "4"}), 2, "--row 4: " + table() + " has 3 rows.");
    ExpectError(batch({"--row", "3-4"}), 2, "--row 3-4: " + table() + " has 3 rows.");
    for (const char* const row : {"0", "x", "2-1", "2-", "-2", "1-2-3"})
        ExpectError(batch({"--row=" + std::string(row)}), 2,
                    "--row " + std::string(row) +
                        ": it is to be a number such as 7, or a range such as 7-12.");
    ExpectError(batch({"--log", table()}), 1,
                "Cannot write " + table() + ": it is the same file as the input " + table() + ".");
    ExpectError(batch({"--log", workspace.path("none/log")}), 1,
                "Cannot write " + workspace.path("none/log") + ": No such file or directory.");
}
