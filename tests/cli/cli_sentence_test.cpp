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
