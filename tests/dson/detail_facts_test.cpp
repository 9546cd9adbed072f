// What a file of morph detail says of itself.
// SPDX-License-Identifier: MIT

#include "dson/dhdm.h"

#include <gtest/gtest.h>

TEST(DetailFacts, of_a_small_file_may_name_more_faces_than_memory_would_hold)
{
    // One level for two hundred million quads, of which it changes none.
    const std::string file("\xD0\xD0\xD0\xD0"
                           "\x01\0\0\0"
                           "\0\0\x80\x3F"
                           "\x01\0\0\0"
                           "\x00\xC2\xEB\x0B"
                           "\x01\0\0\0"
                           "\0\0\0\0"
                           "\0\0\0\0",
                           32);
    const dson::DhdmFacts facts = dson::DescribeDhdm(file, "small.dhdm");
    EXPECT_EQ(facts.faceCount, 200000000u);
    ASSERT_EQ(facts.levels.size(), 1u);
    EXPECT_EQ(facts.levels[0].edits, 0u);
}
