// Processes of the program: nothing ends it while it starts one, and what it starts goes with it.
// SPDX-License-Identifier: MIT

#include "openhost/dependent_process.h"

#include <gtest/gtest.h>

#include <pthread.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

bool isEnding = false;
int ends = 0, endsBeforeChild = -1;

void CountEnd(int)
{
    ++ends;
}

/// Where the child is there and has not heard of its parent yet.
void EndAfterFork()
{
    if (!isEnding)
        return;
    raise(SIGTERM);
    endsBeforeChild = ends;
}

/// Ends at once where it would not be told of its parent's end.
class CarefulProcess : public openhost::DependentProcess {
protected:
    void setupChildProcess() override
    {
        DependentProcess::setupChildProcess();
        int signal = 0;
        prctl(PR_GET_PDEATHSIG, &signal);
        if (signal != SIGTERM)
            _exit(3);
    }
};

TEST(DependentProcess, has_begun_before_the_program_is_ended)
{
    ASSERT_EQ(pthread_atfork(nullptr, EndAfterFork, nullptr), 0);
    struct sigaction counting = {}, before, after;
    counting.sa_handler = CountEnd;
    ASSERT_EQ(sigaction(SIGTERM, &counting, &before), 0);
    isEnding = true;
    openhost::DependentProcess process;
    process.begin(QStringLiteral("grep"), {QStringLiteral("SigCgt"), QStringLiteral("/proc/self/status")});
    isEnding = false;
    sigaction(SIGTERM, &before, &after);
    EXPECT_EQ(endsBeforeChild, 0);
    EXPECT_EQ(ends, 1) << "afterwards, by who saw to it before";
    EXPECT_EQ(after.sa_handler, CountEnd);
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0) << "the child heard of its parent";
}

TEST(DependentProcess, is_asked_to_end_with_its_parent)
{
    CarefulProcess process;
    process.begin(QStringLiteral("/bin/sleep"), {QStringLiteral("0")});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0);
}

} // namespace
