// Files that appear all together or not at all, whatever comes between.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "base/file_set.h"
#include "base/process_mark.h"
#include "tests/base/journal_text.h"
#include "tests/base/scratch_folder.h"
#include "tests/base/traced_run.h"

#include <cerrno>
#include <map>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

using Contents = std::map<std::string, std::string>;

const Contents oldFiles{{"Vera.dsf", "old morph"}, {"Vera.dhdm", "old detail"}, {"Otto.dsf", "old"}};
const Contents newFiles{{"Vera.dsf", "new morph"}, {"Vera.dhdm", "new detail"}, {"Ida.dsf", "new"}};

class FileSetTest : public testing::Test {
protected:
    void SetUp() override { fill(); }

    void fill() const
    {
        folder.clear();
        for (const auto& [name, content] : oldFiles)
            folder.write(name, content);
    }
    /// Replaces the old files by the new ones.
    int save() const
    {
        try {
            base::FileSet set(folder.path());
            for (const auto& [name, content] : newFiles)
                set.write(name, content);
            set.remove("Otto.dsf");
            set.commit();
            return 0;
        } catch (const base::IoError&) {
            return 1;
        }
    }
    TracedRun traced(const Interference& interference = {}) const
    {
        return RunTraced(
            folder.path(), [this] { return save(); }, interference);
    }

    ScratchFolder folder;
};

TEST_F(FileSetTest, replaces_all)
{
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(folder.contents(), newFiles);
}

TEST_F(FileSetTest, without_a_commit_changes_nothing)
{
    {
        base::FileSet set(folder.path());
        set.write("Vera.dsf", "new");
        set.remove("Otto.dsf");
    }
    EXPECT_EQ(folder.contents(), oldFiles);
}

TEST_F(FileSetTest, killed_at_any_call_leaves_all_old_files_or_all_new_ones)
{
    const TracedRun whole = traced();
    ASSERT_EQ(whole.exitCode, 0);
    ASSERT_GE(whole.calls.size(), 20u);
    std::size_t keptOld = 0, keptNew = 0;
    for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
        fill();
        const TracedRun run = traced({at});
        EXPECT_TRUE(run.wasKilled) << at;
        base::FinishFileSet(folder.path());
        // Without a journal nobody but the next save has a reason to look at the folder.
        base::FileSet(folder.path());
        const Contents now = folder.contents();
        EXPECT_TRUE(now == oldFiles || now == newFiles) << "killed before " << whole.calls[at - 1];
        ++(now == oldFiles ? keptOld : keptNew);
    }
    EXPECT_GT(keptOld, 5u);
    EXPECT_GT(keptNew, 5u);
}

TEST_F(FileSetTest, with_a_call_that_fails_leaves_all_old_files_or_all_new_ones)
{
    const TracedRun whole = traced();
    for (const int error : {ENOSPC, EIO, EACCES, ENOENT, EROFS})
        for (const bool isLasting : {false, true})
            for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
                fill();
                const TracedRun run = traced({at, error, isLasting});
                base::FileSet(folder.path());
                const Contents now = folder.contents();
                const std::string what = whole.calls[at - 1] + ": " + std::strerror(error);
                EXPECT_TRUE(now == oldFiles || now == newFiles) << what;
                EXPECT_FALSE(run.exitCode == 0 && now == oldFiles) << "success was told after " << what;
            }
}

TEST_F(FileSetTest, goes_on_after_a_call_that_was_interrupted)
{
    const TracedRun whole = traced();
    for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
        const bool isWaiting = whole.calls[at - 1].compare(0, 5, "fsync") == 0 ||
                               whole.calls[at - 1].compare(0, 6, "fchmod") == 0;
        if (!isWaiting)
            continue;
        fill();
        EXPECT_EQ(traced({at, EINTR}).exitCode, 0) << whole.calls[at - 1];
        EXPECT_EQ(folder.contents(), newFiles);
    }
}

TEST_F(FileSetTest, waits_for_another_program_and_then_says_so)
{
    int ready[2], done[2];
    ASSERT_EQ(pipe(ready), 0);
    ASSERT_EQ(pipe(done), 0);
    const pid_t other = fork();
    if (other == 0) {
        base::FileSet set(folder.path());
        char sign = 0;
        _exit(::write(ready[1], &sign, 1) == 1 && ::read(done[0], &sign, 1) == 1 ? 0 : 1);
    }
    char sign = 0;
    ASSERT_EQ(::read(ready[0], &sign, 1), 1);
    EXPECT_FALSE(base::FinishFileSet(folder.path()));
    try {
        base::FileSet set(folder.path());
        ADD_FAILURE() << "two programs have the folder";
    } catch (const base::IoError& error) {
        EXPECT_EQ(error.what(), "another program is saving into " + folder.path().string());
    }
    ASSERT_EQ(::write(done[1], &sign, 1), 1);
    int status = 0;
    waitpid(other, &status, 0);
    EXPECT_EQ(save(), 0);
}

TEST_F(FileSetTest, follows_no_journal_out_of_its_folder)
{
    const ScratchFolder outside;
    outside.write("victim", "mine");
    const std::string victim = "../" + outside.path().filename().string() + "/victim";
    const std::string part = "Vera.dsf." + base::ProcessMark() + ".1.part";
    const std::vector<std::vector<std::string>> journals{
        {"gantrel file set 2", "remove", victim, IdentityText(outside.path() / "victim"), "end"},
        {"gantrel file set 2", "put", part, victim, "-", "-", "end"},
        {"gantrel file set 2", "remove", "Vera.dsf", IdentityText(folder.path() / "Vera.dsf")},
        {"noise"}};
    for (const std::vector<std::string>& words : journals) {
        fill();
        folder.write(base::fileSetJournal, JournalText(words));
        EXPECT_FALSE(base::FinishFileSet(folder.path()));
        EXPECT_EQ(folder.contents(), oldFiles);
        EXPECT_EQ(outside.contents(), (Contents{{"victim", "mine"}}));
    }
}

TEST_F(FileSetTest, takes_nothing_but_a_file_for_its_journal)
{
    const fs::path journal = folder.path() / base::fileSetJournal;
    ASSERT_EQ(mkfifo(journal.c_str(), 0600), 0);
    EXPECT_FALSE(base::FinishFileSet(folder.path())) << "which would wait for a writer";
    EXPECT_TRUE(fs::is_fifo(journal));
    fs::remove(journal);
    fs::create_directories(journal / "within");
    EXPECT_FALSE(base::FinishFileSet(folder.path()));
    EXPECT_TRUE(fs::exists(journal / "within"));
}

/// A set that was decided on, and stopped before anything of it was in place.
class LeftFileSet : public FileSetTest {
protected:
    void SetUp() override
    {
        fill();
        write(part(), "new morph");
        _journal = JournalText({"gantrel file set 2", "put", part(), "Vera.dsf", identity(part()),
                                identity("Vera.dsf"), "remove", "Otto.dsf", identity("Otto.dsf"), "end"});
        write(base::fileSetJournal, _journal);
    }
    static std::string part()
    {
        std::string ended = base::ProcessMark();
        return "Vera.dsf." + ended.replace(ended.rfind('-') + 1, std::string::npos, "1") + ".1.part";
    }
    void write(const std::string& name, const std::string& content) const { folder.write(name, content); }
    std::string identity(const std::string& name) const { return IdentityText(folder.path() / name); }
    /// As programs do that put a whole file in another's place.
    void replace(const std::string& name, const std::string& content) const
    {
        write("anew", content);
        fs::rename(folder.path() / "anew", folder.path() / name);
    }
    std::vector<std::string> finish() const
    {
        base::Diagnostics told;
        base::FinishFileSet(folder.path(), &told);
        std::vector<std::string> lines;
        for (const base::Diagnostic& one : told)
            lines.push_back(base::ToLine(one));
        return lines;
    }
    std::string line(const std::string& what) const { return folder.path().string() + ": " + what; }

    std::string _journal;
};

TEST_F(LeftFileSet, is_finished_and_told)
{
    EXPECT_EQ(finish(), std::vector<std::string>{
                            line("a save was interrupted here and is finished now: 2 files have changed")});
    EXPECT_EQ(folder.contents(), (Contents{{"Vera.dsf", "new morph"}, {"Vera.dhdm", "old detail"}}));
    EXPECT_EQ(finish(), std::vector<std::string>());
}

TEST_F(LeftFileSet, is_told_by_the_next_save)
{
    EXPECT_EQ(base::FileSet(folder.path()).diagnostics().size(), 1u);
    EXPECT_EQ(base::FileSet(folder.path()).diagnostics().size(), 0u);
}

TEST_F(LeftFileSet, leaves_what_was_changed_since_as_it_is)
{
    replace("Vera.dsf", "changed");
    replace("Otto.dsf", "changed, too");
    EXPECT_EQ(finish(), std::vector<std::string>{line("2 files are others than an interrupted save knew and "
                                                      "stay as they are, such as " +
                                                      (folder.path() / "Vera.dsf").string())});
    EXPECT_EQ(folder.contents(),
              (Contents{{"Vera.dsf", "changed"}, {"Vera.dhdm", "old detail"}, {"Otto.dsf", "changed, too"}}));
}

TEST_F(LeftFileSet, changes_nothing_where_it_was_brought_to)
{
    const ScratchFolder copy;
    for (const auto& [name, content] : folder.contents())
        copy.write(name, content);
    base::Diagnostics told;
    EXPECT_FALSE(base::FinishFileSet(copy.path(), &told));
    EXPECT_EQ(copy.contents(), oldFiles);
    EXPECT_EQ(told.size(), 1u);
}

TEST_F(LeftFileSet, that_tells_of_a_folder_stands_in_nobodys_way)
{
    fs::create_directories(folder.path() / "Morphs" / "within");
    write(base::fileSetJournal,
          JournalText({"gantrel file set 2", "remove", "Morphs", identity("Otto.dsf"), "end"}));
    EXPECT_EQ(finish().size(), 1u);
    EXPECT_EQ(finish().size(), 0u);
    EXPECT_TRUE(fs::exists(folder.path() / "Morphs" / "within"));
}

TEST_F(FileSetTest, follows_no_link_for_its_journal)
{
    const ScratchFolder outside;
    outside.write("victim", "mine");
    for (const char* const name : {"victim", "nothing"}) {
        fill();
        fs::create_symlink(outside.path() / name, folder.path() / base::fileSetJournal);
        EXPECT_EQ(save(), 0);
        EXPECT_EQ(folder.contents(), newFiles);
        EXPECT_EQ(outside.contents(), (Contents{{"victim", "mine"}}));
    }
}

TEST_F(FileSetTest, removes_the_leavings_of_ended_programs_alone)
{
    const std::string own = "Vera.dsf." + base::ProcessMark() + ".7.part";
    std::string ended = base::ProcessMark();
    ended.replace(ended.rfind('-') + 1, std::string::npos, "1"); // a process of our number before us
    folder.write(own, "mine");
    folder.write("Vera.dsf." + ended + ".7.part", "nobody's");
    folder.write("Vera.dsf.0123456789abcdef-1-1.7.part", "another machine's");
    folder.write("notes.part", "somebody's");
    base::FileSet(folder.path());
    Contents expected = oldFiles;
    expected[own] = "mine";
    expected["Vera.dsf.0123456789abcdef-1-1.7.part"] = "another machine's";
    expected["notes.part"] = "somebody's";
    EXPECT_EQ(folder.contents(), expected);
}

} // namespace
