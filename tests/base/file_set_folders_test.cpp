// Files of several folders that appear all together or not at all.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "base/file_set.h"
#include "base/limits.h"
#include "base/process_mark.h"
#include "tests/base/journal_text.h"
#include "tests/base/scratch_folder.h"
#include "tests/base/traced_run.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

using Contents = std::map<std::string, std::string>;

const Contents oldFiles{{"People/Vera.duf", "old load"},
                        {"data/Vera/Morphs/Otto.dsf", "old"},
                        {"data/Vera/Morphs/Tall.dsf", "old morph"},
                        {"data/Vera/Vera.dsf", "old figure"}};
const Contents newFiles{{"People/Vera.duf", "new load"},
                        {"data/Vera/Morphs/Ida.dsf", "new"},
                        {"data/Vera/Morphs/Tall.dsf", "new morph"},
                        {"data/Vera/Vera.dsf", "new figure"}};
const char* const memberNames[] = {"People", "data/Vera", "data/Vera/Morphs"};

/// A process of our number before us.
std::string EndedMark()
{
    std::string mark = base::ProcessMark();
    return mark.replace(mark.rfind('-') + 1, std::string::npos, "1");
}

class SeveralFolders : public testing::Test {
protected:
    void SetUp() override { fill(); }

    void fill() const
    {
        library.clear();
        for (const auto& [name, content] : oldFiles)
            write(name, content);
    }
    void write(const std::string& name, const std::string& content) const
    {
        fs::create_directories((library.path() / name).parent_path());
        library.write(name, content);
    }
    fs::path path(const std::string& name) const { return library.path() / name; }
    std::vector<fs::path> members() const
    {
        std::vector<fs::path> folders;
        for (const char* const name : memberNames)
            folders.push_back(path(name));
        return folders;
    }
    /// Of all files.
    Contents contents() const
    {
        Contents all;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(library.path()))
            if (entry.is_regular_file()) {
                const std::string name = entry.path().lexically_relative(library.path()).string();
                all[name] = library.read(name);
            }
        return all;
    }
    /// Of those that somebody would read.
    Contents finished() const
    {
        Contents all = contents();
        for (auto file = all.begin(); file != all.end();)
            file = isInternal(file->first) ? all.erase(file) : std::next(file);
        return all;
    }
    static bool isInternal(const std::string& name)
    {
        const fs::path file = name;
        return file.extension() == ".part" || file.filename() == base::fileSetJournal;
    }
    /// Replaces the old files by the new ones.
    int save() const
    {
        try {
            base::FileSet set(members());
            for (const auto& [name, content] : newFiles)
                set.write(path(name), content);
            set.remove(path("data/Vera/Morphs/Otto.dsf"));
            set.commit();
            return 0;
        } catch (const base::IoError&) {
            return 1;
        }
    }
    TracedRun traced(const Interference& interference = {}) const
    {
        return RunTraced(
            library.path(), [this] { return save(); }, interference);
    }
    /// A save that was decided on, and killed before the first file was in its place.
    void leaveDecided() const
    {
        const std::string journal = path("People").string() + '/' + base::fileSetJournal;
        fill();
        const std::vector<std::string> calls = traced().calls;
        std::size_t first = calls.size(); // behind the call that puts the journal in the draft's place
        while (first > 0 && calls[first - 1].compare(0, 7 + journal.size(), "rename " + journal) != 0)
            --first;
        for (++first; first <= calls.size() && calls[first - 1].compare(0, 7, "rename ") != 0;)
            ++first;
        fill();
        ASSERT_TRUE(traced({first}).wasKilled);
        ASSERT_EQ(finished(), oldFiles);
        ASSERT_TRUE(fs::exists(journal));
    }

    ScratchFolder library;
};

TEST_F(SeveralFolders, replace_all)
{
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(contents(), newFiles);
}

TEST_F(SeveralFolders, without_a_commit_change_nothing)
{
    {
        base::FileSet set(members());
        set.write(path("People/Vera.duf"), "new");
        set.remove(path("data/Vera/Vera.dsf"));
    }
    EXPECT_EQ(contents(), oldFiles);
}

TEST_F(SeveralFolders, are_made_and_go_again_when_nothing_comes)
{
    const fs::path deep = path("data/Ida/Morphs"), used = path("data/Ida");
    {
        const base::FileSet set(std::vector<fs::path>{deep, path("People")});
        EXPECT_TRUE(fs::is_directory(deep));
    }
    EXPECT_FALSE(fs::exists(used));
    EXPECT_TRUE(fs::exists(path("People")));
    base::FileSet set(std::vector<fs::path>{deep, used});
    set.write(used / "Ida.dsf", "new");
    set.commit();
    EXPECT_EQ(library.read("data/Ida/Ida.dsf"), "new");
}

TEST_F(SeveralFolders, killed_at_any_call_have_all_old_files_or_all_new_ones_after_a_look_at_any_of_them)
{
    const TracedRun whole = traced();
    ASSERT_EQ(whole.exitCode, 0);
    ASSERT_GE(whole.calls.size(), 50u);
    std::size_t keptOld = 0, keptNew = 0;
    for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
        fill();
        EXPECT_TRUE(traced({at}).wasKilled) << at;
        // Whichever is looked at first; each is at another call.
        const fs::path visited = path(memberNames[at % std::size(memberNames)]);
        const bool isKnown = fs::exists(visited / base::fileSetJournal);
        base::FinishFileSet(visited);
        const Contents now = finished();
        EXPECT_TRUE(now == oldFiles || now == newFiles) << "killed before " << whole.calls[at - 1];
        if (isKnown) {
            EXPECT_EQ(contents(), now) << "killed before " << whole.calls[at - 1];
        }
        ++(now == oldFiles ? keptOld : keptNew);
        const base::FileSet next(members());
        EXPECT_EQ(contents(), now) << "killed before " << whole.calls[at - 1];
    }
    EXPECT_GT(keptOld, 5u);
    EXPECT_GT(keptNew, 5u);
}

TEST_F(SeveralFolders, with_a_call_that_fails_have_all_old_files_or_all_new_ones)
{
    const TracedRun whole = traced();
    for (const bool isLasting : {false, true})
        for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
            fill();
            constexpr int errors[] = {ENOSPC, EIO, EACCES, ENOENT, EROFS};
            const int error = errors[(at + (isLasting ? 2 : 0)) % std::size(errors)];
            const TracedRun run = traced({at, error, isLasting});
            const std::string what = whole.calls[at - 1] + ": " + std::strerror(error);
            base::FinishFileSet(path(memberNames[at % std::size(memberNames)]));
            const Contents seen = finished();
            EXPECT_TRUE(seen == oldFiles || seen == newFiles) << what;
            EXPECT_FALSE(run.exitCode == 0 && seen == oldFiles) << "success was told after " << what;
            const base::FileSet next(members());
            EXPECT_EQ(contents(), seen) << what;
        }
}

TEST_F(SeveralFolders, are_finished_whenever_who_finishes_them_is_stopped)
{
    const auto finish = [this] { return base::FinishFileSet(path("data/Vera/Morphs")) ? 0 : 1; };
    leaveDecided();
    const TracedRun whole = RunTraced(library.path(), finish);
    EXPECT_EQ(whole.exitCode, 0);
    EXPECT_EQ(contents(), newFiles);
    ASSERT_GE(whole.calls.size(), 10u);
    for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
        leaveDecided();
        EXPECT_TRUE(RunTraced(library.path(), finish, {at}).wasKilled);
        base::FinishFileSet(path(memberNames[at % std::size(memberNames)]));
        EXPECT_EQ(finished(), newFiles) << "killed before " << whole.calls[at - 1];
    }
}

TEST_F(SeveralFolders, are_not_taken_back_because_something_cannot_be_read)
{
    const auto look = [this] {
        base::FinishFileSet(path("data/Vera"));
        return 0;
    };
    leaveDecided();
    const std::vector<std::string> calls = RunTraced(library.path(), look, {}, Counted::Reads).calls;
    ASSERT_GE(calls.size(), 10u);
    for (std::size_t at = 1; at <= calls.size(); ++at)
        for (const bool isLasting : {false, true}) {
            leaveDecided();
            RunTraced(library.path(), look, {at, EIO, isLasting}, Counted::Reads);
            base::FinishFileSet(path("People"));
            EXPECT_EQ(finished(), newFiles) << calls[at - 1];
        }
}

TEST_F(SeveralFolders, are_finished_before_anything_newer_is_written)
{
    leaveDecided();
    base::WriteFileAtomically(path("data/Vera/Morphs/Otto.dsf"), "newer");
    base::FinishFileSet(path("People"));
    Contents expected = newFiles;
    expected["data/Vera/Morphs/Otto.dsf"] = "newer";
    EXPECT_EQ(contents(), expected);
    fill();
    leaveDecided();
    {
        base::FileSet set(path("data/Vera"));
        set.write("Vera.dsf", "newer");
        set.commit();
    }
    expected = newFiles;
    expected["data/Vera/Vera.dsf"] = "newer";
    EXPECT_EQ(contents(), expected);
}

TEST_F(SeveralFolders, are_left_alone_while_a_program_works_on_one_of_them)
{
    leaveDecided();
    const Contents before = contents();
    int ready[2], done[2];
    ASSERT_EQ(pipe(ready), 0);
    ASSERT_EQ(pipe(done), 0);
    const pid_t other = fork();
    if (other == 0) {
        // As a program that has just come would, before it finds the journal.
        const int folder = open(path("data/Vera").c_str(), O_RDONLY | O_DIRECTORY);
        char sign = 0;
        _exit(flock(folder, LOCK_EX) == 0 && ::write(ready[1], &sign, 1) == 1 &&
                      ::read(done[0], &sign, 1) == 1
                  ? 0
                  : 1);
    }
    char sign = 0;
    ASSERT_EQ(::read(ready[0], &sign, 1), 1);
    try {
        const base::FileSet set(path("People"));
        ADD_FAILURE() << "some of the files are another program's";
    } catch (const base::IoError& error) {
        EXPECT_EQ(error.what(), "another program is saving into " + path("data/Vera").string());
    }
    EXPECT_EQ(contents(), before);
    ASSERT_EQ(::write(done[1], &sign, 1), 1);
    int status = 0;
    waitpid(other, &status, 0);
    EXPECT_TRUE(base::FinishFileSet(path("People")));
    EXPECT_EQ(contents(), newFiles);
}

TEST_F(SeveralFolders, count_once_when_links_lead_to_them_as_well)
{
    fs::create_directory_symlink("data/Vera", path("again"));
    {
        base::FileSet set(std::vector<fs::path>{path("again"), path("data/Vera"), path("People")});
        set.write(path("again/Vera.dsf"), "new figure");
        set.write(path("People/Vera.duf"), "new load");
        set.commit();
    }
    EXPECT_EQ(library.read("data/Vera/Vera.dsf"), "new figure");
    EXPECT_EQ(library.read("People/Vera.duf"), "new load");
    EXPECT_TRUE(fs::is_symlink(path("again")));
}

TEST_F(SeveralFolders, keep_files_that_are_links_to_elsewhere)
{
    const ScratchFolder elsewhere;
    elsewhere.write("Vera.duf", "old");
    fs::remove(path("People/Vera.duf"));
    fs::create_symlink(elsewhere.path() / "Vera.duf", path("People/Vera.duf"));
    EXPECT_EQ(save(), 0);
    EXPECT_TRUE(fs::is_symlink(path("People/Vera.duf")));
    EXPECT_EQ(elsewhere.contents(), (Contents{{"Vera.duf", "new load"}}));
    EXPECT_EQ(library.read("data/Vera/Vera.dsf"), "new figure");
}

/// Whether somebody who may change one of the folders only finds something to do.
bool IsFinishedByAnother(const fs::path& folder)
{
    const pid_t other = fork();
    if (other == 0) {
        constexpr uid_t nobody = 65534;
        const bool isOther = geteuid() != 0 || setresuid(nobody, nobody, nobody) == 0;
        base::Diagnostics told;
        _exit(!isOther ? 2 : base::FinishFileSet(folder, &told) ? 1 : told.size() == 1 ? 0 : 3);
    }
    int status = 0;
    waitpid(other, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) <= 1) << status;
    return WEXITSTATUS(status) == 1;
}

TEST_F(SeveralFolders, are_not_begun_with_where_one_of_them_may_not_be_changed)
{
    leaveDecided();
    fs::permissions(library.path(), fs::perms(0755));
    fs::permissions(path("People"), fs::perms(0777));
    fs::permissions(path("data/Vera"), fs::perms(0555));
    EXPECT_FALSE(IsFinishedByAnother(path("People")));
    EXPECT_EQ(finished(), oldFiles);
    fs::permissions(path("data/Vera"), fs::perms(0755));
    base::FinishFileSet(path("People"));
    EXPECT_EQ(contents(), newFiles);
}

/// A journal and its pointer as files of text, and what another program finds in them.
class SeveralFoldersByHand : public SeveralFolders {
protected:
    void SetUp() override
    {
        fill();
        write(figurePart(), "new figure");
        write(loadPart(), "new load");
    }
    static std::string figurePart() { return "data/Vera/Vera.dsf." + EndedMark() + ".2.part"; }
    static std::string loadPart() { return "People/Vera.duf." + EndedMark() + ".1.part"; }
    static std::string name(const std::string& file) { return fs::path(file).filename(); }
    std::string identity(const std::string& file) const { return IdentityText(path(file)); }
    std::string journal(const std::string& id, const std::string& figureFolder = "data/Vera") const
    {
        return JournalText({"gantrel file set 2", "set", id, "folder", "People", "put", name(loadPart()),
                            "Vera.duf", identity(loadPart()), identity("People/Vera.duf"), "folder",
                            figureFolder, "put", name(figurePart()), "Vera.dsf", identity(figurePart()),
                            identity("data/Vera/Vera.dsf"), "end"});
    }
    static std::string pointer(const std::string& id, const std::string& folder = "data/Vera")
    {
        return JournalText({"gantrel file set 2", "member", id, folder, "People", "end"});
    }
    void leave(const std::string& folder, const std::string& text) const
    {
        write(folder + "/" + base::fileSetJournal, text);
    }
    /// By whoever comes to one of them and then the other.
    Contents afterLooks(const std::string& first, const std::string& second) const
    {
        base::FinishFileSet(path(first));
        base::FinishFileSet(path(second));
        return contents();
    }
};

TEST_F(SeveralFoldersByHand, are_finished_when_journal_and_pointer_agree)
{
    leave("People", journal("7"));
    leave("data/Vera", pointer("7"));
    Contents expected = oldFiles;
    expected["People/Vera.duf"] = "new load";
    expected["data/Vera/Vera.dsf"] = "new figure";
    EXPECT_TRUE(base::FinishFileSet(path("data/Vera")));
    EXPECT_EQ(contents(), expected);
}

TEST_F(SeveralFoldersByHand, are_taken_back_when_a_pointer_has_no_journal)
{
    leave("data/Vera", pointer("7"));
    EXPECT_EQ(afterLooks("data/Vera", "People"), oldFiles);
}

TEST_F(SeveralFoldersByHand, are_taken_back_together_when_there_is_but_a_draft)
{
    for (const char* const visited : {"People", "data/Vera"}) {
        SetUp();
        leave("People", JournalText({"gantrel file set 2", "draft", "7", "folder", "People", "folder",
                                     "data/Vera", "end"}));
        leave("data/Vera", pointer("7"));
        EXPECT_FALSE(base::FinishFileSet(path(visited)));
        EXPECT_EQ(contents(), oldFiles) << visited;
    }
    // What has been begun since is another set's.
    leave("People", JournalText({"gantrel file set 2", "draft", "7", "folder", "People", "folder",
                                 "data/Vera", "end"}));
    leave("data/Vera", pointer("8"));
    base::FinishFileSet(path("People"));
    EXPECT_TRUE(fs::exists(path("data/Vera") / base::fileSetJournal));
}

TEST_F(SeveralFoldersByHand, take_nothing_from_a_journal_of_another_set)
{
    for (const std::string& id : {std::string("8"), std::string("")}) {
        SetUp();
        leave("People", journal("7"));
        leave("data/Vera", pointer(id));
        Contents expected = oldFiles;
        expected["People/Vera.duf"] = "new load"; // which the journal is about, where it lies
        EXPECT_EQ(afterLooks("data/Vera", "People"), expected);
    }
}

TEST_F(SeveralFoldersByHand, take_nothing_from_a_journal_that_does_not_point_to_them)
{
    leave("People", journal("7"));
    Contents expected = oldFiles;
    expected["People/Vera.duf"] = "new load";
    EXPECT_EQ(afterLooks("People", "data/Vera"), expected);
}

TEST_F(SeveralFoldersByHand, are_those_that_lie_where_the_journal_says)
{
    // Copied from another library, with its journal: not the folder that the pointer speaks of.
    leave("People", journal("7"));
    leave("data/Vera", pointer("7", "data/Ida"));
    Contents expected = oldFiles;
    expected["People/Vera.duf"] = "new load";
    EXPECT_EQ(afterLooks("data/Vera", "People"), expected);
}

TEST_F(SeveralFoldersByHand, are_not_reached_by_links_or_ways_up)
{
    const ScratchFolder outside;
    const std::string up = "../" + outside.path().filename().string();
    for (const std::string& folder : {std::string("link"), up, "data/../" + up, outside.path().string()}) {
        SetUp();
        outside.clear();
        outside.write("Vera.dsf", "mine");
        outside.write(name(figurePart()), "theirs");
        outside.write(base::fileSetJournal, pointer("7", folder));
        fs::create_directory_symlink(outside.path(), path("link"));
        leave("People", journal("7", folder));
        base::FinishFileSet(path("People"));
        EXPECT_EQ(outside.read("Vera.dsf"), "mine") << folder;
        EXPECT_EQ(finished()["data/Vera/Vera.dsf"], "old figure") << folder;
    }
}

TEST_F(SeveralFoldersByHand, are_named_by_whole_journals_only)
{
    const std::string whole = journal("7");
    Contents expected = oldFiles;
    for (std::size_t length = 1; length < whole.size(); ++length) {
        SetUp();
        leave("People", whole.substr(0, length));
        leave("data/Vera", pointer("7"));
        const Contents now = afterLooks("People", "data/Vera");
        // The last NUL says nothing.
        if (length + 1 < whole.size()) {
            EXPECT_EQ(now, oldFiles) << length;
        }
    }
}

TEST_F(SeveralFoldersByHand, are_not_listed_by_journals_without_end)
{
    const std::string longest(255, 'x');
    std::string words =
        JournalText({"gantrel file set 2", "remove", "Vera.duf", identity("People/Vera.duf")});
    while (words.size() <= base::longestJournal)
        words += JournalText({"remove", longest, "-"});
    leave("People", words + JournalText({"end"}));
    EXPECT_FALSE(base::FinishFileSet(path("People")));
    EXPECT_EQ(finished(), oldFiles);
    base::FileSet set(path("People"));
    for (std::size_t size = 0; size <= base::longestJournal; size += longest.size())
        set.remove(longest);
    try {
        set.commit();
        ADD_FAILURE() << "which nobody would read";
    } catch (const base::IoError& error) {
        EXPECT_EQ(error.what(), "cannot write " + path("People").string() + ": too many files at a time");
    }
}

TEST_F(SeveralFoldersByHand, are_not_those_beside_a_folder_that_was_renamed)
{
    leave("Leute", journal("7"));
    leave("data/Vera", pointer("7"));
    EXPECT_FALSE(base::FinishFileSet(path("Leute")));
    EXPECT_EQ(finished(), oldFiles);
    EXPECT_FALSE(fs::exists(path("Leute") / base::fileSetJournal));
}

TEST_F(SeveralFoldersByHand, put_unfinished_files_of_their_own_in_place_and_nothing_else)
{
    write("People/Box/" + name(loadPart()), "another folder's");
    const std::pair<std::string, std::string> renames[] = {
        {"Vera.duf", "Ida.duf"}, {"Box/" + name(loadPart()), "Ida.duf"}, {name(loadPart()), ".."}};
    for (const auto& [from, to] : renames) {
        leave("People", JournalText({"gantrel file set 2", "put", from, to, identity("People/" + from),
                                     identity("People/" + to), "end"}));
        EXPECT_FALSE(base::FinishFileSet(path("People"))) << from;
        EXPECT_EQ(finished(), oldFiles) << from;
        EXPECT_FALSE(fs::exists(path("People") / base::fileSetJournal)) << from;
    }
}

} // namespace
