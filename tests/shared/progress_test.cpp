// The progress of fixed steps.
// SPDX-License-Identifier: MIT

#include "ks_progress.h"
#include "tests/host/host_fixture.h"

namespace {

class ProgressTest : public HostTest {};
using ProgressDeathTest = ProgressTest;

TEST_F(ProgressTest, shows_one_text_after_the_other)
{
    const Recorder recorder;
    {
        const kst::daz::SimpleProgress progress({"one", "two", "three"});
        EXPECT_EQ(progress.getStep(), 2u);
        progress.step_X(false);
        EXPECT_EQ(progress.getStep(), 3u);
        progress.step_X(false);
        progress.done();
    }
    EXPECT_EQ(recorder.lines, (std::vector<std::string>{"progress one", "progress two", "progress three"}));
}

TEST_F(ProgressTest, agrees_with_the_callers_own_count)
{
    const kst::daz::SimpleProgress progress({"one", "two", "three"});
    progress.stepAssert_X(false, 3);
    EXPECT_EQ(progress.getStep(), 3u);
}

TEST_F(ProgressDeathTest, ends_the_process_when_stepped_past_the_list)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(kst::daz::SimpleProgress({"one"}).step_X(false), "currentStep < cSteps");
    EXPECT_DEATH(kst::daz::SimpleProgress(std::vector<std::string>()), "cSteps > 0");
    EXPECT_DEATH(kst::daz::SimpleProgress({"one", "two", "three"}).stepAssert_X(false, 2),
                 "_pImpl->currentStep \\+ 1 == iAssert");
}

} // namespace
