// What every run of the program has to keep to.
// SPDX-License-Identifier: MIT

#pragma once

#include "cli_run_program.h"

#include <algorithm>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

/// Of a run that may be the first one after a save was stopped, and is told to finish it.
inline void ExpectSuccessBehindSave(const ProgramResult& result)
{
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.err.empty() ||
                result.err.find("a save was interrupted here and is finished now") != result.err.npos)
        << result.err;
}

/// One sentence on stderr, nothing on stdout.
inline void ExpectError(const ProgramResult& result, int exitCode, const std::string& sentence)
{
    EXPECT_EQ(result.exitCode, exitCode);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "gantrel: " + sentence + "\n");
}

/// With --json, stdout has one object with the same sentence.
inline nlohmann::json ExpectJsonError(const ProgramResult& result, int exitCode, const std::string& sentence)
{
    EXPECT_EQ(result.exitCode, exitCode);
    EXPECT_EQ(result.err, "gantrel: " + sentence + "\n");
    const nlohmann::json report = nlohmann::json::parse(result.out, nullptr, false);
    EXPECT_TRUE(report.is_object()) << result.out;
    EXPECT_EQ(report.value("error", ""), sentence);
    return report;
}

/// As ExpectError where the sentence's wording is the parser's.
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
