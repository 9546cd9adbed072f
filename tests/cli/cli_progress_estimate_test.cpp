// How far work is, and how long it still takes.
// SPDX-License-Identifier: MIT

#include "apps/cli/progress_estimate.h"

#include <cmath>

#include <gtest/gtest.h>

using cli::ProgressEstimate;

namespace {

struct Step {
    const char* name;
    double expected, taken; ///< seconds
};

/// Looks four times a second while the steps go on as they do.
template <typename Look>
void PlayOut(const std::vector<Step>& steps, const Look& look)
{
    ProgressEstimate estimate;
    std::vector<cli::ExpectedStep> expected;
    for (const Step& step : steps)
        expected.push_back({step.name, step.expected});
    estimate.begin(steps.front().name, 0);
    estimate.expect(expected);
    double now = 0, whole = 0;
    for (const Step& step : steps)
        whole += step.taken;
    for (const Step& step : steps) {
        estimate.begin(step.name, now);
        const double end = now + step.taken;
        for (; now < end; now += 0.25)
            look(now, whole, estimate.tell(now));
    }
}

} // namespace

TEST(ProgressEstimate, says_nothing_of_work_that_nothing_is_known_of)
{
    ProgressEstimate estimate;
    estimate.begin("reading", 0);
    const ProgressEstimate::Told told = estimate.tell(100);
    EXPECT_FALSE(told.percent);
    EXPECT_FALSE(told.secondsLeft);
}

TEST(ProgressEstimate, tells_the_share_of_steps_that_take_what_was_expected)
{
    PlayOut({{"a", 10, 10}, {"b", 30, 30}, {"c", 60, 60}}, [](double now, double, const auto& told) {
        ASSERT_TRUE(told.percent);
        // Within a step that nears its end, the share is held back by at most a fifth of the step.
        EXPECT_LE(*told.percent, now + 1e-6);
        EXPECT_GE(*told.percent, now - 13);
    });
}

TEST(ProgressEstimate, learns_how_fast_this_machine_is)
{
    for (const double slowness : {0.25, 1.0, 5.0})
        PlayOut({{"a", 40, 40 * slowness}, {"b", 40, 40 * slowness}, {"c", 80, 80 * slowness}},
                [slowness](double now, double whole, const auto& told) {
                    if (now < 0.6 * whole || now > 0.8 * whole)
                        return;
                    ASSERT_TRUE(told.secondsLeft) << slowness;
                    EXPECT_NEAR(*told.secondsLeft, whole - now, 0.15 * whole) << slowness << " at " << now;
                });
}

TEST(ProgressEstimate, tells_no_time_before_something_is_known)
{
    PlayOut({{"a", 1, 1}, {"b", 99, 99}}, [](double now, double, const auto& told) {
        EXPECT_EQ(told.secondsLeft.has_value(), now >= 10) << now; // a tenth of what is expected
    });
    PlayOut({{"a", 0.5, 0.5}, {"b", 0.5, 1.25}},
            [](double now, double, const auto& told) { EXPECT_FALSE(told.secondsLeft) << now; });
}

TEST(ProgressEstimate, never_goes_back_and_does_not_leap)
{
    // The first takes much longer than expected, the second much less.
    int before = 0;
    std::optional<double> end;
    PlayOut({{"a", 10, 40}, {"b", 50, 5}, {"c", 40, 40}}, [&](double now, double, const auto& told) {
        EXPECT_GE(*told.percent, before);
        EXPECT_LE(*told.percent, 99);
        before = *told.percent;
        if (!told.secondsLeft)
            return;
        EXPECT_GE(*told.secondsLeft, 0);
        if (end) { // by a twelfth of the way to what is thought by now, which is below 400 s here
            EXPECT_LT(std::abs(now + *told.secondsLeft - *end), 35) << now;
        }
        end = now + *told.secondsLeft;
    });
    EXPECT_TRUE(end);
}

TEST(ProgressEstimate, stays_below_the_whole_when_the_last_step_goes_on_and_on)
{
    PlayOut({{"a", 10, 10}, {"b", 10, 500}}, [](double, double, const auto& told) {
        EXPECT_LE(*told.percent, 99);
        EXPECT_GE(told.secondsLeft.value_or(0), 0);
    });
}

TEST(ProgressEstimate, counts_steps_that_are_not_expected_to_the_one_before)
{
    ProgressEstimate estimate;
    estimate.expect({{"a", 10}, {"b", 10}, {"a", 10}});
    estimate.begin("a", 0); // the one at work
    EXPECT_EQ(estimate.tell(0).percent, 0);
    estimate.begin("other", 5);
    const int within = *estimate.tell(5).percent;
    EXPECT_GT(within, 0);
    EXPECT_LT(within, 33);
    estimate.begin("b", 10);
    EXPECT_EQ(estimate.tell(10).percent, 33);
    estimate.begin("a", 20);
    EXPECT_EQ(estimate.tell(20).percent, 66);
}

TEST(ProgressEstimate, tells_of_pieces_by_those_that_are_done)
{
    ProgressEstimate estimate;
    estimate.begin("pieces", 5);
    estimate.count({0, 200, 0, 4}, 5);
    EXPECT_EQ(estimate.tell(5).percent, 0);
    estimate.count({103, 200, 3, 4}, 15); // a hundred of them had been done before
    EXPECT_EQ(estimate.tell(15).percent, 51);
    EXPECT_FALSE(estimate.tell(15).secondsLeft); // four are worked on at once
    estimate.count({110, 200, 10, 4}, 15);
    EXPECT_EQ(estimate.tell(15).percent, 55);
    EXPECT_NEAR(estimate.tell(15).secondsLeft.value(), 90, 1e-6);
    estimate.count({200, 200, 100, 4}, 105);
    EXPECT_EQ(estimate.tell(105).percent, 99);
    estimate.begin("the page", 106);
    EXPECT_FALSE(estimate.tell(106).percent);
}

TEST(RoughTime, is_what_one_reads_at_a_glance)
{
    EXPECT_EQ(cli::RoughTime(0), "1 s");
    EXPECT_EQ(cli::RoughTime(7.6), "8 s");
    EXPECT_EQ(cli::RoughTime(19.7), "20 s");
    EXPECT_EQ(cli::RoughTime(38), "40 s");
    EXPECT_EQ(cli::RoughTime(57.4), "55 s");
    EXPECT_EQ(cli::RoughTime(96), "100 s");
    EXPECT_EQ(cli::RoughTime(130), "2 min");
    EXPECT_EQ(cli::RoughTime(7100), "118 min");
    EXPECT_EQ(cli::RoughTime(7300), "2 h");
}
