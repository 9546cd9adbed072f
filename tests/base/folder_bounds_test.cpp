// Folders that hold what somebody may have.
// SPDX-License-Identifier: MIT

#include "base/folder_bounds.h"

#include "tests/base/scratch_folder.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

TEST(FolderBounds, hold_what_is_below_their_folders_and_these_themselves)
{
    const ScratchFolder place;
    fs::create_directories(place.path() / "in");
    fs::create_directories(place.path() / "inner");
    const base::FolderBounds bounds({place.path() / "in"});
    EXPECT_TRUE(bounds.hold(place.path() / "in"));
    EXPECT_TRUE(bounds.hold(place.path() / "in" / "not there" / "yet"));
    EXPECT_TRUE(bounds.hold(place.path() / "inner" / ".." / "in" / "a"));
    EXPECT_FALSE(bounds.hold(place.path() / "inner")) << "the beginning of a name is no folder";
    EXPECT_FALSE(bounds.hold(place.path()));
    EXPECT_FALSE(bounds.hold(place.path() / "in" / ".." / "a"));
    EXPECT_FALSE(base::FolderBounds().hold(place.path()));
}

TEST(FolderBounds, hold_no_name_that_the_system_would_cut)
{
    const ScratchFolder place;
    fs::create_directories(place.path() / "in");
    const base::FolderBounds bounds({place.path() / "in"});
    // Its steps lead inside, but what the system makes of it is a file beside.
    const std::string name = (place.path() / "out").string() + '\0' + "/../in/a";
    EXPECT_FALSE(bounds.hold(name));
    EXPECT_FALSE(bounds.hold((place.path() / "in" / "a").string() + '\0'));
}

TEST(FolderBounds, follow_links_to_where_they_lead)
{
    const ScratchFolder place;
    fs::create_directories(place.path() / "in");
    fs::create_directories(place.path() / "out");
    fs::create_directory_symlink(place.path() / "out", place.path() / "in" / "away");
    fs::create_directory_symlink(place.path() / "in", place.path() / "back");
    const base::FolderBounds bounds({place.path() / "in"});
    EXPECT_FALSE(bounds.hold(place.path() / "in" / "away" / "a"));
    EXPECT_TRUE(bounds.hold(place.path() / "back" / "a"));
}
