// Asserting an exception's whole text.
// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>

#include <string>

/// Fails unless the call throws exactly this type with exactly this text.
#define EXPECT_THROW_MSG(call, type, text)                                                                   \
    do {                                                                                                     \
        std::string thrown = "nothing";                                                                      \
        try {                                                                                                \
            call;                                                                                            \
        } catch (const type& error) {                                                                        \
            thrown = error.what();                                                                           \
        }                                                                                                    \
        EXPECT_EQ(thrown, std::string(text));                                                                \
    } while (false)
