// Errors as one sentence.
// SPDX-License-Identifier: MIT

#include "error_sentence.h"

#include <gtest/gtest.h>

using app::ErrorSentence;

TEST(ErrorSentence, begins_with_an_upper_case_letter_and_ends_with_a_full_stop)
{
    EXPECT_EQ(ErrorSentence("there is not enough memory"), "There is not enough memory.");
    EXPECT_EQ(ErrorSentence("cannot open a/b.obj: gone"), "Cannot open a/b.obj: gone.");
}

TEST(ErrorSentence, leaves_a_name_at_the_beginning_as_it_is)
{
    EXPECT_EQ(ErrorSentence("body.obj:3: bad number"), "body.obj:3: bad number.");
    EXPECT_EQ(ErrorSentence("lib/body: is not valid JSON"), "lib/body: is not valid JSON.");
    EXPECT_EQ(ErrorSentence("body: has no faces"), "body: has no faces.");
    EXPECT_EQ(ErrorSentence("a.obj has 3 vertices but b.obj has 4"), "a.obj has 3 vertices but b.obj has 4.");
}

TEST(ErrorSentence, keeps_an_end_that_ends_a_sentence)
{
    EXPECT_EQ(ErrorSentence("Really?"), "Really?");
    EXPECT_EQ(ErrorSentence("Done."), "Done.");
}

TEST(ErrorSentence, puts_lines_together)
{
    EXPECT_EQ(ErrorSentence("one\n  two\n"), "One two.");
}

TEST(ErrorSentence, says_something_when_there_is_nothing_to_say)
{
    EXPECT_EQ(ErrorSentence(" \n"), "Unknown error.");
}

TEST(ErrorSentence, shows_control_characters_and_ends_at_none)
{
    EXPECT_EQ(ErrorSentence(std::string("a.duf: \"x\0y\x1b[31m\x7f\" is no name", 29)),
              "a.duf: \"x\\x00y\\x1b[31m\\x7f\" is no name.");
    EXPECT_EQ(ErrorSentence("a.duf: \xc2\x9b is \xc3\x84"),
              "a.duf: \\x9b is \xc3\x84."); // of two bytes as well
}
