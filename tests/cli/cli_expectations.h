// What every run of the program has to keep to.
// SPDX-License-Identifier: MIT

#pragma once

#include "cli_run_program.h"

#include <algorithm>

#include <gtest/gtest.h>

/// One sentence on stderr, nothing on stdout.
inline void ExpectError(const ProgramResult& result, int exitCode, const std::string& sentence)
{
    EXPECT_EQ(result.exitCode, exitCode);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "gantrel: " + sentence + "\n");
}

/// As above where the sentence's wording is the parser's.
inline void ExpectWrongUse(const ProgramResult& result, const std::string& namedThing)
{
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.compare(0, 9, "gantrel: "), 0) << result.err;
    EXPECT_NE(result.err.find(namedThing), std::string::npos) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
}

inline void ExpectSuccess(const ProgramResult& result)
{
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
}
