// Marks of processes that have ended, and of others.
// SPDX-License-Identifier: MIT

#include "base/process_mark.h"

#include <gtest/gtest.h>

#include <functional>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// A process that writes its mark, if it has one, and ends.
class Child {
public:
    explicit Child(const std::function<bool()>& prepare)
    {
        int ends[2];
        if (pipe(ends) != 0)
            return;
        _process = fork();
        if (_process == 0) {
            const std::string own = prepare() ? base::ProcessMark() : std::string();
            _exit(write(ends[1], own.data(), own.size()) < 0 ? 1 : 0);
        }
        close(ends[1]);
        char text[200];
        for (ssize_t size; (size = read(ends[0], text, sizeof text)) > 0;)
            mark.append(text, static_cast<std::size_t>(size));
        close(ends[0]);
        // It has ended, and is waited for later.
        siginfo_t ended{};
        waitid(P_PID, static_cast<id_t>(_process), &ended, WEXITED | WNOWAIT);
    }
    ~Child() { waitpid(_process, nullptr, 0); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    std::string mark;

private:
    pid_t _process = -1;
};

/// The mark of this process with another text for one of its parts.
std::string WithPart(std::size_t which, const std::string& text)
{
    const std::string mark = base::ProcessMark();
    std::size_t at = 0;
    for (; which > 0; --which)
        at = mark.find('-', at) + 1;
    return mark.substr(0, at) + text + mark.substr(mark.find('-', at));
}

} // namespace

TEST(ProcessMark, is_of_a_process_that_runs)
{
    EXPECT_FALSE(base::HasEnded(base::ProcessMark()));
}

TEST(ProcessMark, of_one_that_nobody_has_waited_for_yet_has_ended)
{
    const Child child([] { return true; });
    ASSERT_NE(child.mark, "");
    EXPECT_TRUE(base::HasEnded(child.mark)) << child.mark;
}

TEST(ProcessMark, says_nothing_of_processes_that_are_numbered_apart)
{
    const Child child([] {
        constexpr int apart = CLONE_NEWPID | CLONE_NEWNS;
        if (unshare(apart) != 0 && unshare(CLONE_NEWUSER | apart) != 0)
            return false;
        const pid_t inside = fork(); // the first one that is numbered anew, and sees its like alone
        if (inside == 0)
            return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                   mount("proc", "/proc", "proc", 0, nullptr) == 0;
        waitpid(inside, nullptr, 0);
        _exit(0);
    });
    if (child.mark.empty())
        GTEST_SKIP() << "this system lets this user number no processes apart";
    EXPECT_FALSE(base::HasEnded(child.mark)) << child.mark;
}

TEST(ProcessMark, of_the_machine_before_it_was_started_anew_has_ended)
{
    EXPECT_TRUE(base::HasEnded(WithPart(1, "00000000")));
}

TEST(ProcessMark, says_nothing_of_processes_of_other_machines)
{
    EXPECT_FALSE(base::HasEnded(WithPart(0, "00000000")));
    EXPECT_FALSE(base::HasEnded(WithPart(2, "00000000")));
    EXPECT_FALSE(base::HasEnded(WithPart(3, "x")));
    EXPECT_FALSE(base::HasEnded(""));
    EXPECT_FALSE(base::HasEnded("-----"));
}
