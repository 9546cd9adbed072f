// The start-up check of the string functions, when one of these goes wrong.
// SPDX-License-Identifier: MIT

#include "ks_string.h"
#include "tests/shared/throws.h"

#include <gtest/gtest.h>

namespace {

/// How many calls still go right.
int g_rightCalls = 0;

bool GoesWrong()
{
    return g_rightCalls-- <= 0;
}

std::string Joined(std::string_view separator, const std::vector<std::string>& items)
{
    std::string text;
    for (const std::string& item : items)
        text.append(text.empty() ? "" : separator).append(item);
    return GoesWrong() ? text + "!" : text;
}

/// What the check says when only so many of its calls go right.
std::string SaidAfter(int rightCalls)
{
    g_rightCalls = rightCalls;
    return MessageOf(kst::str::TestCasesOrThrow);
}

} // namespace

// The functions that are checked; this program has no others.

std::string kst::str::Implode(std::string_view separator, const std::set<std::string>& items)
{
    return Joined(separator, {items.begin(), items.end()});
}

std::string kst::str::Implode(std::string_view separator, const std::set<int>& items) noexcept
{
    std::vector<std::string> texts;
    for (const int item : items)
        texts.push_back(std::to_string(item));
    return Joined(separator, texts);
}

std::string_view kst::str::trimmed(std::string_view text)
{
    if (GoesWrong())
        return "?";
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

TEST(StringCheck, names_the_first_condition_that_does_not_hold)
{
    const char* const conditions[] = {
        R"(kst::str::Implode("_!_", StringSet{ "123", "456", "789" }) == "123_!_456_!_789")",
        R"(str2 == "1,2,3,4,5")", R"(str3 == "123")", R"(str4 == "1")", "str5.empty()"};
    int rightCalls = 0;
    for (const char* const condition : conditions)
        EXPECT_EQ(SaidAfter(rightCalls++), std::string("Test failed: ") + condition);
}

TEST(StringCheck, says_nothing_when_all_five_conditions_hold)
{
    EXPECT_EQ(SaidAfter(5), "(nothing was thrown)");
    EXPECT_EQ(g_rightCalls, 0) << "nothing else was called";
}
