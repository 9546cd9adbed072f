// Errors as texts.
// SPDX-License-Identifier: MIT

#include "ks_exception.h"

#include <gtest/gtest.h>

TEST(Exception, keeps_a_plain_text_with_its_braces)
{
    EXPECT_STREQ(kst::Exception("no {} here").what(), "no {} here");
}

TEST(Exception, formats_its_arguments)
{
    EXPECT_STREQ(kst::Exception("failed to find tool {}", "DzPickTool").what(),
                 "failed to find tool DzPickTool");
    const char name[] = "mesh";
    EXPECT_STREQ(kst::Exception("{} has {} vertices", name, 12).what(), "mesh has 12 vertices");
}

TEST(Exception, keeps_the_text_when_copied)
{
    std::exception_ptr caught;
    try {
        const std::string text = "missing morph name";
        throw kst::Exception(text);
    } catch (...) {
        caught = std::current_exception();
    }
    try {
        std::rethrow_exception(caught);
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "missing morph name");
        const kst::Exception copy = dynamic_cast<const kst::Exception&>(error);
        EXPECT_STREQ(copy.what(), "missing morph name");
    }
}

TEST(Exception, says_operation_canceled_when_the_user_stops)
{
    EXPECT_STREQ(kst::CanceledException().what(), "operation canceled");
    EXPECT_THROW(throw kst::CanceledException(), kst::Exception);
}
