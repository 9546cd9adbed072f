// Counts in sentences.
// SPDX-License-Identifier: MIT

#include "base/counted.h"

#include <gtest/gtest.h>

TEST(Counted, tells_one_from_many)
{
    EXPECT_EQ(base::Counted(0, "file is", "files are"), "0 files are");
    EXPECT_EQ(base::Counted(1, "file is", "files are"), "1 file is");
    EXPECT_EQ(base::Counted(2, "file is", "files are"), "2 files are");
    EXPECT_EQ(base::CountedVertices(1), "1 vertex");
    EXPECT_EQ(base::CountedVertices(33357), "33357 vertices");
}
