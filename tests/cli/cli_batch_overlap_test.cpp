// Rows of a table that would write the same morphs.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"
#include "cli_held_file.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

class Overlap : public BatchTest {
protected:
    Overlap() { workspace.write("jobs.csv", "morphs\nWide\nW*\n"); }

    std::string refusal(const std::string& end) const
    {
        return "Would write " + savedFile("Wide.dsf") + ", as line 2 does" + end;
    }
};

} // namespace

TEST_F(Overlap, leaves_a_file_to_the_row_that_is_done_when_a_batch_goes_on)
{
    EXPECT_EQ(batchReport({"--overwrite", "--workers", "1"})["done"], 1);
    const auto before = fs::last_write_time(savedFile("Wide.dsf"));
    for (const std::vector<std::string>& more :
         {std::vector<std::string>{"--resume"}, {"--row", "2"}, {"--row", "1-2"}}) {
        std::vector<std::string> all{"--overwrite"};
        all.insert(all.end(), more.begin(), more.end());
        const nlohmann::json report = batchReport(all);
        ASSERT_EQ(report["failed"], 1);
        EXPECT_EQ(report["failures"][0]["error"],
                  more.back() == "2"
                      ? "Would write " + savedFile("Wide.dsf") + ", as another row does, which is done."
                      : refusal(", which is done."));
        EXPECT_EQ(fs::last_write_time(savedFile("Wide.dsf")), before);
    }
}

TEST_F(Overlap, leaves_nothing_to_a_row_that_the_table_has_no_more)
{
    EXPECT_EQ(batchReport()["done"], 1);
    workspace.write("jobs.csv", "morphs\nW*\n");
    EXPECT_EQ(batchReport({"--resume", "--overwrite"})["done"], 1);
}

TEST_F(Overlap, leaves_a_file_to_the_upper_row_when_the_lower_one_is_faster)
{
    fs::copy(library(), workspace.path("slow"), fs::copy_options::recursive);
    workspace.write("jobs.csv", "morphs,content\nWide," + workspace.path("slow") + "\nW*,\n");
    HeldFile file(workspace.path("slow/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"));
    constexpr int noSignal = 0;
    int looks = 100; // by which the lower one would have been ready
    const ProgramResult result = SignalProgram(
        batchArguments({"--workers", "2", "--log", workspace.path("log.jsonl")}), noSignal,
        [&] { return file.isWaitedFor() && (fs::exists(savedFile("Wide.dsf")) || --looks < 0); },
        [&] { file.letGo(); });
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(workspace.read("log.jsonl").find(refusal(".")), std::string::npos)
        << workspace.read("log.jsonl");
}
