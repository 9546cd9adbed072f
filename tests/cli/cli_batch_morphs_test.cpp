// Tables whose rows convert single morphs.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

using nlohmann::json;

class MorphRows : public BatchTest {
protected:
    MorphRows() { workspace.write("jobs.csv", "morphs,suffix\nWide,\" A\"\nWide;Bulge,\" B\"\n"); }

    /// What `convert-morphs` saves, without the time at which it was written.
    Contents savedAlone(const std::vector<std::vector<std::string>>& runs) const
    {
        for (const std::vector<std::string>& more : runs) {
            std::vector<std::string> all =
                argumentsFor(sourceFile(), targetFile(), saving(workspace.path("saved")));
            all.front() = "convert-morphs";
            all.insert(all.end(), more.begin(), more.end());
            ExpectSuccess(RunProgram(all));
        }
        const Contents contents = saved();
        fs::remove_all(workspace.path("saved"));
        return contents;
    }
    Contents savedByBoth() const
    {
        return savedAlone(
            {{"--morphs", "Wide", "--suffix", " A"}, {"--morphs", "Wide", "Bulge", "--suffix", " B"}});
    }
};

std::string FirstError(const json& report)
{
    const json failures = report.value("failures", json::array());
    return failures.empty() ? std::string() : failures[0].value("error", "");
}

} // namespace

TEST_F(MorphRows, save_what_single_runs_do)
{
    const Contents expected = savedByBoth();
    ASSERT_EQ(expected.size(), 3u);
    for (const char* const workers : {"1", "2"}) {
        const json report = batchReport({"--workers", workers});
        ExpectCounts(report, 2, 0, 0);
        for (const json& row : report["results"])
            EXPECT_EQ(row["report"]["created"].size(), row["row"] == 1 ? 1u : 2u);
        EXPECT_TRUE(saved() == expected);
        fs::remove_all(workspace.path("saved"));
    }
}

TEST_F(MorphRows, stand_beside_rows_of_characters)
{
    workspace.write("morphs.txt", "# shapes\nBulge\n");
    workspace.write("jobs.csv", "name,dial,list,command\nA,Wide=1,,\n,," + workspace.path("morphs.txt") +
                                    ",convert-morphs\nC,Bulge=1,,convert\n");
    ExpectCounts(batchReport(), 3, 0, 0);
    EXPECT_EQ(saved().size(), 5u);
    EXPECT_EQ(saved().count("Bulge.dsf"), 1u);
}

TEST_F(MorphRows, fail_where_single_runs_do_and_keep_what_is_saved)
{
    workspace.write("jobs.csv", "morphs\nWide\n*\n");
    const json report = batchReport({"--workers", "1"});
    ExpectCounts(report, 1, 0, 1);
    EXPECT_EQ(FirstError(report),
              "1 morph was not converted; 2 are saved; \"Wide\": there is a morph \"Wide\" "
              "already, in " +
                  savedFile("Wide.dsf") + "; --overwrite replaces it.");
    const json& skipped = report["results"][1]["report"]["skipped"];
    ASSERT_EQ(skipped.size(), 1u);
    EXPECT_EQ(skipped[0]["name"], "Wide");
    EXPECT_EQ(saved().size(), 3u);
}

TEST_F(MorphRows, go_on_with_what_is_their_own_when_they_had_failed_in_part)
{
    const Contents expected = savedAlone({{"--morphs", "*"}});
    workspace.write("jobs.csv", "morphs\n*\n");
    fs::create_directories(workspace.path(std::string("saved/") + savedFolder));
    const std::string stranger = workspace.write(std::string("saved/") + savedFolder + "/Wide.dsf", "{}");
    ExpectCounts(batchReport(), 0, 0, 1);
    EXPECT_TRUE(workspace.read(std::string("saved/") + savedFolder + "/Wide.dsf") == "{}");
    ExpectCounts(batchReport({"--resume"}), 0, 0, 1);
    EXPECT_TRUE(workspace.read(std::string("saved/") + savedFolder + "/Wide.dsf") == "{}");
    fs::remove(stranger);
    ExpectCounts(batchReport({"--resume"}), 1, 0, 0);
    EXPECT_TRUE(saved() == expected);
}

TEST_F(MorphRows, write_over_no_morphs_of_each_other)
{
    workspace.write("jobs.csv", "morphs\nWide\n*\n");
    const json report = batchReport({"--workers", "1", "--overwrite"});
    ExpectCounts(report, 1, 0, 1);
    EXPECT_EQ(FirstError(report), "Would write " + savedFile("Wide.dsf") + ", as line 2 does.");
    EXPECT_EQ(saved().size(), 1u);
}

TEST_F(MorphRows, are_done_again_when_something_has_changed)
{
    const std::string list = workspace.write("morphs.txt", "Wide\n");
    workspace.write("jobs.csv", "list\n" + list + '\n');
    ExpectCounts(batchReport({"--resume"}), 1, 0, 0);
    ExpectCounts(batchReport({"--resume"}), 0, 1, 0);
    workspace.write("morphs.txt", "Wide\nBulge\n");
    ExpectCounts(batchReport({"--resume"}), 1, 0, 0);
    const Contents all = saved();
    EXPECT_EQ(all.size(), 2u);
    fs::remove(savedFile("Bulge.dsf"));
    ExpectCounts(batchReport({"--row", "1"}), 1, 0, 0);
    EXPECT_TRUE(saved() == all);
}

TEST_F(MorphRows, replace_nothing_that_somebody_has_changed)
{
    ExpectCounts(batchReport(), 2, 0, 0);
    const std::string file = std::string("saved/") + savedFolder + "/Wide B.dsf";
    const std::string changed = workspace.read(file) + "\n";
    workspace.write(file, changed);
    fs::remove(savedFile("Bulge B.dsf"));
    const json report = batchReport({"--resume"});
    ExpectCounts(report, 0, 1, 1);
    EXPECT_EQ(FirstError(report),
              "1 morph was not converted; 1 is saved; \"Wide\": there is a morph \"Wide B\" "
              "already, in " +
                  savedFile("Wide B.dsf") + "; --overwrite replaces it.");
    EXPECT_TRUE(workspace.read(file) == changed);
    EXPECT_EQ(saved().count("Bulge B.dsf"), 1u);
}

TEST_F(MorphRows, that_were_cut_off_anywhere_are_completed_to_the_same_bytes)
{
    const Contents expected = savedByBoth();
    constexpr std::size_t places = 12; // of hundreds; each takes a second
    expectCompletedWhereverCutOff(expected, places);
}
