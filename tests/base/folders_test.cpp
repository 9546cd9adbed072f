// What is in the way of a folder that is to be made.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "base/folders.h"
#include "tests/base/scratch_folder.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

std::string Refusal(const fs::path& folder)
{
    try {
        base::MakeFolders(folder);
        return {};
    } catch (const base::IoError& error) {
        return error.what();
    }
}

class FoldersTest : public testing::Test {
protected:
    fs::path path(const char* name) const { return scratch.path() / name; }

    ScratchFolder scratch;
};

} // namespace

TEST_F(FoldersTest, are_made_with_those_around_them)
{
    EXPECT_EQ(Refusal(path("a/b/c")), "");
    EXPECT_TRUE(fs::is_directory(path("a/b/c")));
    EXPECT_EQ(Refusal(path("a/b/c/")), "") << "it is there already";
}

TEST_F(FoldersTest, are_made_where_a_link_leads)
{
    fs::create_directory(path("there"));
    fs::create_symlink("there", path("link"));
    EXPECT_EQ(Refusal(path("link/inner")), "");
    EXPECT_TRUE(fs::is_directory(path("there/inner")));
    EXPECT_EQ(base::DescribeLostLink(path("link/inner")), "");
}

TEST_F(FoldersTest, are_not_made_behind_a_link_that_leads_nowhere)
{
    fs::create_symlink("gone", path("link"));
    const std::string reason = "the link " + path("link").string() + " leads to gone, which is not there";
    for (const char* const name : {"link", "link/Heroes"})
        EXPECT_EQ(Refusal(path(name)), "cannot create folder " + path(name).string() + ": " + reason);
}

TEST_F(FoldersTest, are_not_made_where_a_file_is)
{
    std::ofstream(path("file")) << "text";
    for (const char* const name : {"file", "file/Heroes"})
        EXPECT_EQ(Refusal(path(name)), "cannot create folder " + path(name).string() + ": Not a directory");
}

TEST_F(FoldersTest, are_not_made_in_a_circle_of_links)
{
    fs::create_symlink("b", path("a"));
    fs::create_symlink("a", path("b"));
    EXPECT_EQ(Refusal(path("a/Heroes")),
              "cannot create folder " + path("a/Heroes").string() + ": Too many levels of symbolic links");
}

TEST_F(FoldersTest, that_stay_empty_are_removed_by_whoever_made_them)
{
    fs::create_directories(path("there"));
    {
        base::MadeFolders made;
        made.make(path("there/a/b/"));
        made.make(path("there/a/c/d"));
        EXPECT_TRUE(fs::is_directory(path("there/a/c/d")));
        scratch.write("there/a/c/file", "text");
    }
    EXPECT_FALSE(fs::exists(path("there/a/b")));
    EXPECT_FALSE(fs::exists(path("there/a/c/d")));
    EXPECT_TRUE(fs::exists(path("there/a/c/file")));
    {
        base::MadeFolders made;
        made.make(path("there"));
        EXPECT_THROW(made.make(path("there/new/") / std::string(300, 'x')), base::IoError);
    }
    EXPECT_FALSE(fs::exists(path("there/new"))) << "made on the way to one that cannot be";
    EXPECT_TRUE(fs::exists(path("there"))) << "which was there before";
}
