// Files that appear whole or not at all.
// SPDX-License-Identifier: MIT

#include "base/atomic_file.h"
#include "base/errors.h"
#include "base/file_set.h"
#include "base/process_mark.h"
#include "tests/base/journal_text.h"
#include "tests/base/refusal.h"
#include "tests/base/scratch_folder.h"

#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

using Contents = std::map<std::string, std::string>;

std::string ThatItCannot(const fs::path& file, const char* reason)
{
    return "cannot write " + file.string() + ": " + reason;
}

TEST(AtomicFile, replaces_a_file_and_leaves_nothing_else)
{
    const ScratchFolder folder;
    const fs::path file = folder.write("Vera.dsf", "old");
    {
        base::AtomicFile unfinished(file);
        unfinished.write("new");
        EXPECT_EQ(folder.read("Vera.dsf"), "old");
    }
    EXPECT_EQ(folder.contents(), (Contents{{"Vera.dsf", "old"}}));
    EXPECT_EQ(Refusal(file), "");
    EXPECT_EQ(folder.contents(), (Contents{{"Vera.dsf", "new"}}));
}

TEST(AtomicFile, replaces_nothing_but_files)
{
    const char* const notFile = "it is no file, but a device, pipe or socket";
    EXPECT_EQ(Refusal("/dev/null"), ThatItCannot("/dev/null", notFile));
    EXPECT_EQ(Refusal("/dev/full"), ThatItCannot("/dev/full", notFile));
    const ScratchFolder folder;
    const fs::path pipe = folder.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(Refusal(pipe), ThatItCannot(pipe, notFile));
    EXPECT_TRUE(fs::is_fifo(pipe));
    EXPECT_EQ(Refusal(folder.path()), ThatItCannot(folder.path(), "Is a directory"));
    const fs::path link = folder.path() / "link";
    fs::create_symlink("/dev/full", link);
    EXPECT_EQ(Refusal(link), ThatItCannot(link, notFile));
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST(AtomicFile, tells_before_it_is_made_where_it_cannot_be)
{
    const ScratchFolder folder;
    const auto refusal = [](const fs::path& file) -> std::string {
        try {
            base::CheckWritable(file);
            return {};
        } catch (const base::IoError& error) {
            return error.what();
        }
    };
    EXPECT_EQ(refusal(folder.path() / "new"), "");
    EXPECT_EQ(refusal(folder.write("old", "")), "");
    const fs::path below = folder.path() / "old" / "new", lost = folder.path() / "gone" / "new";
    EXPECT_EQ(refusal(below), ThatItCannot(below, "Not a directory"));
    EXPECT_EQ(refusal(lost), ThatItCannot(lost, "No such file or directory"));
    const fs::path link = folder.path() / "link", nearby = folder.path() / "nearby";
    fs::create_symlink("gone/new", link);
    fs::create_symlink("new", nearby);
    const std::string said = "the link " + link.string() + " leads to gone/new, which is not there";
    EXPECT_EQ(refusal(link), ThatItCannot(link, said.c_str()));
    EXPECT_EQ(refusal(nearby), "");
    EXPECT_FALSE(fs::exists(lost.parent_path()) || fs::exists(folder.path() / "new"));
}

TEST(AtomicFile, writes_through_links)
{
    const ScratchFolder folder, elsewhere;
    elsewhere.write("real", "old");
    fs::create_symlink(elsewhere.path() / "real", folder.path() / "far");
    fs::create_symlink("far", folder.path() / "near");
    EXPECT_EQ(Refusal(folder.path() / "near"), "");
    EXPECT_EQ(elsewhere.contents(), (Contents{{"real", "new"}}));
    EXPECT_TRUE(fs::is_symlink(folder.path() / "near"));
    EXPECT_TRUE(fs::is_symlink(folder.path() / "far"));
    fs::create_symlink(elsewhere.path() / "none yet", folder.path() / "hopeful");
    EXPECT_EQ(Refusal(folder.path() / "hopeful"), "");
    EXPECT_EQ(elsewhere.read("none yet"), "new");
    fs::create_symlink("round", folder.path() / "round");
    EXPECT_EQ(Refusal(folder.path() / "round"),
              ThatItCannot(folder.path() / "round", "Too many levels of symbolic links"));
}

TEST(AtomicFile, keeps_mode_and_owner_of_the_file_that_it_replaces)
{
    const ScratchFolder folder;
    const fs::path file = folder.write("Vera.dsf", "old");
    ASSERT_EQ(chmod(file.c_str(), 0646), 0);
    constexpr uid_t other = 4321;
    const bool isGiven = geteuid() == 0 && chown(file.c_str(), other, other) == 0;
    EXPECT_EQ(Refusal(file), "");
    struct stat now {};
    ASSERT_EQ(stat(file.c_str(), &now), 0);
    EXPECT_EQ(now.st_mode & 07777, 0646u);
    EXPECT_EQ(now.st_uid, isGiven ? other : geteuid());
    EXPECT_EQ(folder.read("Vera.dsf"), "new");
}

TEST(AtomicFile, leaves_protected_files_alone)
{
    const ScratchFolder folder;
    const fs::path file = folder.write("Vera.dsf", "old");
    ASSERT_EQ(chmod(file.c_str(), 0444), 0);
    EXPECT_EQ(Refusal(file), ThatItCannot(file, "it is write-protected"));
    EXPECT_EQ(folder.contents(), (Contents{{"Vera.dsf", "old"}}));
}

TEST(AtomicFile, removes_what_writers_left_that_have_ended)
{
    const ScratchFolder folder;
    std::string ended = base::ProcessMark();
    ended.replace(ended.rfind('-') + 1, std::string::npos, "1"); // a process of our number before us
    const std::string left = "Vera.dsf." + ended + ".7.part",
                      own = "Vera.dsf." + base::ProcessMark() + ".7.part";
    folder.write(left, "nobody's");
    folder.write(own, "mine");
    EXPECT_EQ(Refusal(folder.path() / "Otto.dsf"), "");
    EXPECT_EQ(folder.contents(), (Contents{{"Otto.dsf", "new"}, {own, "mine"}}));
}

TEST(AtomicFile, takes_its_place_behind_what_a_journal_has_yet_to_put_there)
{
    const ScratchFolder folder;
    std::string ended = base::ProcessMark();
    ended.replace(ended.rfind('-') + 1, std::string::npos, "1");
    const std::string left = "Vera.dsf." + ended + ".7.part";
    folder.write("Otto.dsf", "old");
    folder.write(left, "part of a set");
    folder.write(
        base::fileSetJournal,
        JournalText({"gantrel file set 2", "put", left, "Vera.dsf", IdentityText(folder.path() / left), "-",
                     "remove", "Otto.dsf", IdentityText(folder.path() / "Otto.dsf"), "end"}));
    base::RemoveUnfinishedFiles(folder.path());
    EXPECT_EQ(folder.read(left), "part of a set");
    EXPECT_EQ(Refusal(folder.path() / "Otto.dsf"), "");
    base::FinishFileSet(folder.path());
    EXPECT_EQ(folder.contents(), (Contents{{"Otto.dsf", "new"}, {"Vera.dsf", "part of a set"}}));
}

TEST(AtomicFile, may_have_the_longest_of_names)
{
    const ScratchFolder folder;
    const std::string longest(255, 'x');
    EXPECT_EQ(Refusal(folder.path() / longest), "");
    EXPECT_EQ(folder.contents(), (Contents{{longest, "new"}}));
    EXPECT_EQ(Refusal(folder.path() / (longest + 'x')),
              ThatItCannot(folder.path() / (longest + 'x'), "File name too long"));
}

} // namespace
