// Checking an error's kind and its whole text.
// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>

#define EXPECT_THROW_MSG(statement, type, text)                                                              \
    try {                                                                                                    \
        statement;                                                                                           \
        ADD_FAILURE() << "nothing thrown, expected: " << (text);                                             \
    } catch (const type& error) {                                                                            \
        EXPECT_EQ(std::string(error.what()), std::string(text));                                             \
    }
