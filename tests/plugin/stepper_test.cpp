// The steps of a conversion, begun by their names.
// SPDX-License-Identifier: MIT

#include "gnt_steps.h"
#include "tests/host/host_fixture.h"

namespace {

class StepperDeathTest : public HostTest {
protected:
    StepperDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }

    static GntStepper stepper()
    {
        return GntStepper({GntStep::AdjustTarget, GntStep::ExportSource, GntStep::LoadStockFigure},
                          {"one", "two", "three"}, false);
    }
};

TEST_F(StepperDeathTest, takes_the_steps_in_the_order_of_the_list)
{
    GntStepper steps = stepper();
    steps.begin_X(GntStep::ExportSource);
    steps.begin_X(GntStep::LoadStockFigure);
    steps.done();
}

TEST_F(StepperDeathTest, stops_at_a_step_that_comes_too_early)
{
    GntStepper steps = stepper();
    EXPECT_DEATH(steps.begin_X(GntStep::LoadStockFigure), "begin_X.*_steps\\[_begun\\] == step");
}

TEST_F(StepperDeathTest, stops_at_a_step_that_comes_again)
{
    GntStepper steps = stepper();
    EXPECT_DEATH(steps.begin_X(GntStep::AdjustTarget), "begin_X.*_steps\\[_begun\\] == step");
    steps.begin_X(GntStep::ExportSource);
    EXPECT_DEATH(steps.begin_X(GntStep::ExportSource), "begin_X.*_steps\\[_begun\\] == step");
}

TEST_F(StepperDeathTest, stops_at_a_step_that_is_not_in_the_list)
{
    GntStepper steps = stepper();
    EXPECT_DEATH(steps.begin_X(GntStep::CreateBodyMorph), "begin_X.*_steps\\[_begun\\] == step");
}

TEST_F(StepperDeathTest, stops_at_a_step_after_the_last)
{
    GntStepper steps = stepper();
    steps.begin_X(GntStep::ExportSource);
    steps.begin_X(GntStep::LoadStockFigure);
    EXPECT_DEATH(steps.begin_X(GntStep::ExportStockFigure), "begin_X.*_begun < _steps.size\\(\\)");
}

TEST_F(StepperDeathTest, stops_at_the_end_when_a_step_was_left_out)
{
    GntStepper steps = stepper();
    steps.begin_X(GntStep::ExportSource);
    EXPECT_DEATH(steps.done(), "done.*_begun == _steps.size\\(\\)");
}

TEST_F(StepperDeathTest, has_no_text_for_a_step_that_there_is_not)
{
    EXPECT_STREQ(GntStepText(GntStep::NormalizeTarget), "Normalizing target G9 figure");
    EXPECT_DEATH(GntStepText(static_cast<GntStep>(20)), "it != mapSteps.end\\(\\)");
}

} // namespace
