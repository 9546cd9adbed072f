// Batches on a disk that fills while they run: table, state, log, page and what is saved lie on it.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"
#include "cli_small_disk.h"

#include <cstdlib>
#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

namespace {

const char* const noRoom = "No space left on device";

class FullDisk : public BatchTest {
protected:
    void SetUp() override
    {
        room = "disk/";
        if (!_disk.whyNot().empty())
            GTEST_SKIP() << _disk.whyNot();
        writeTable(rows);
        _expected = savedOneByOne(rows);
        const std::size_t before = _disk.usedBlocks();
        expectWhole(run());
        _needed = _disk.usedBlocks() - before;
    }

    ProgramResult run(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> all{"--workers", "1", "--json", "--log", log(), "--report", page()};
        all.insert(all.end(), more.begin(), more.end());
        return batch(all);
    }
    std::string page() const { return workspace.path(room + "page.html"); }
    void expectWhole(const ProgramResult& result) const
    {
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_TRUE(saved() == _expected);
        const std::string text = workspace.read(room + "page.html"), end = "</html>\n";
        EXPECT_TRUE(text.size() > end.size() && text.substr(text.size() - end.size()) == end);
        const ProgramResult merged = RunProgram({"batch", "--merge", log()});
        EXPECT_EQ(merged.exitCode, 0) << merged.err;
        EXPECT_EQ(merged.out.find("rows             4\n"), 0u) << merged.out;
    }
    static nlohmann::json reportOf(const ProgramResult& result)
    {
        nlohmann::json report = nlohmann::json::parse(result.out, nullptr, false);
        EXPECT_TRUE(report.is_object()) << result.out << result.err;
        return report.is_object() ? report : nlohmann::json::object();
    }
    /// Whole files of rows that are done, and nothing else.
    void expectNothingHalfWritten(const nlohmann::json& report) const
    {
        Contents there = saved();
        for (const nlohmann::json& row : report["results"])
            for (const char* const half : {" Head.dsf", " Body.dsf"}) {
                const std::string name = row["name"].get<std::string>() + half;
                EXPECT_EQ(there.count(name), row["status"] == "done" ? 1u : 0u) << name;
                EXPECT_TRUE(there.count(name) == 0 || there[name] == _expected.at(name)) << name;
                there.erase(name);
            }
        there.erase(".gantrel-saving"); // goes with the next save
        EXPECT_TRUE(there.empty()) << there.begin()->first;
        const std::string text = workspace.read(room + "page.html");
        EXPECT_TRUE(text.empty() || text.find("</html>\n") != std::string::npos);
    }

    static constexpr std::size_t rows = 4;
    SmallDisk _disk{workspace.path("disk")};
    Contents _expected;
    std::size_t _needed = 0; ///< blocks, for a whole batch
};

} // namespace

TEST_F(FullDisk, at_any_place_takes_what_does_not_fit_and_nothing_else)
{
    const std::size_t places = std::getenv("TEST_ALL_ERRORS") ? _needed : 12;
    std::size_t partly = 0;
    for (std::size_t place = 0; place <= places; ++place) {
        const std::size_t free = _needed * place / places;
        SCOPED_TRACE(std::to_string(free) + " of " + std::to_string(_needed) + " blocks free");
        forgetRuns();
        fs::remove(page());
        _disk.leaveFree(free);
        const ProgramResult result = run();
        const nlohmann::json report = reportOf(result);
        ASSERT_EQ(report.value("rows", std::size_t{0}), rows) << result.err;
        for (const nlohmann::json& failure : report["failures"])
            EXPECT_NE(failure["error"].get<std::string>().find(noRoom), std::string::npos) << failure;
        EXPECT_TRUE(result.exitCode == 0 || report["failed"] > 0 ||
                    result.err.find(noRoom) != std::string::npos)
            << result.err;
        expectNothingHalfWritten(report);
        partly += report["done"] > 0 && report["failed"] > 0;
        _disk.makeRoom();
        const ProgramResult resumed = run({"--resume"});
        expectWhole(resumed);
        EXPECT_EQ(reportOf(resumed)["failed"], 0) << resumed.out;
    }
    EXPECT_GT(partly, 2u);
    expectNoTraces();
}

TEST_F(FullDisk, for_the_page_of_logs_takes_nothing_from_the_summary)
{
    fs::remove(page());
    _disk.leaveFree(0);
    const ProgramResult merged = RunProgram({"batch", "--merge", log(), "--report", page()});
    EXPECT_EQ(merged.exitCode, 1);
    EXPECT_EQ(merged.out.find("rows             4\ndone             4\n"), 0u) << merged.out;
    EXPECT_NE(merged.out.find(page() + ": " + noRoom), std::string::npos) << merged.out;
    EXPECT_EQ(merged.err, "gantrel: Cannot write " + page() + ": " + noRoom + ".\n");
    EXPECT_FALSE(workspace.has(room + "page.html"));
}
