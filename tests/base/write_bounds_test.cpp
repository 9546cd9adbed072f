// Where files may be put while somebody works who is not trusted with all of them.
// SPDX-License-Identifier: MIT

#include "base/write_bounds.h"

#include "base/atomic_file.h"
#include "base/errors.h"
#include "base/file_set.h"
#include "base/folders.h"
#include "tests/base/refusal.h"
#include "tests/base/scratch_folder.h"

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

TEST(WriteBounds, let_files_be_put_below_their_folders_only)
{
    const ScratchFolder inside, outside;
    const fs::path file = outside.write("Vera.dsf", "old");
    {
        const base::WriteBounds bounds({inside.path()}, "the house is closed");
        EXPECT_EQ(Refusal(inside.path() / "Vera.dsf"), "");
        EXPECT_EQ(Refusal(file), "cannot write " + file.string() + ": the house is closed");
        EXPECT_THROW(base::FileSet{outside.path()}, base::IoError);
    }
    EXPECT_EQ(outside.contents(), (std::map<std::string, std::string>{{"Vera.dsf", "old"}}));
    EXPECT_EQ(Refusal(file), "");
}

TEST(WriteBounds, let_folders_be_made_below_their_folders_only)
{
    const ScratchFolder inside, outside;
    const fs::path taken = outside.path() / "there";
    base::MakeFolders(taken);
    {
        const base::WriteBounds bounds({inside.path()}, "the house is closed");
        base::MakeFolders(inside.path() / "a" / "b");
        EXPECT_TRUE(fs::is_directory(inside.path() / "a" / "b"));
        base::MakeFolders(taken); // nothing to be made
        EXPECT_THROW(base::MakeFolders(outside.path() / "c" / "d"), base::IoError);
        base::MadeFolders made;
        EXPECT_THROW(made.make(outside.path() / "e" / "f"), base::IoError);
        made.make(taken);
    }
    EXPECT_FALSE(fs::exists(outside.path() / "c"));
    EXPECT_FALSE(fs::exists(outside.path() / "e"));
    EXPECT_TRUE(fs::exists(taken));
}

TEST(WriteBounds, hold_where_a_path_really_leads)
{
    const ScratchFolder inside, outside;
    fs::create_directory_symlink(outside.path(), inside.path() / "link");
    fs::create_symlink(outside.path() / "Vera.dsf", inside.path() / "Link.dsf");
    const base::WriteBounds bounds({inside.path() / ""}, "no");
    EXPECT_NE(Refusal(inside.path() / "link/Vera.dsf"), "");
    EXPECT_NE(Refusal(inside.path() / "Link.dsf"), "");
    EXPECT_NE(Refusal(inside.path() / ".." / outside.path().filename() / "Vera.dsf"), "");
    EXPECT_NE(Refusal(inside.path().string() + "-beside.dsf"), "");
    EXPECT_TRUE(bounds.hold(inside.path()));
    EXPECT_TRUE(outside.contents().empty());
}

} // namespace
