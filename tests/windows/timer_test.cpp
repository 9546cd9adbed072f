// Delayed and repeated callbacks, and the sleep that keeps the windows alive.
// SPDX-License-Identifier: MIT

#include "ks_timer.h"

#include "ks_exception.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QtTest/QTest>

#include <memory>

namespace {

const int patienceMilliseconds = 20000; // far beyond what a loaded machine needs

template <class Condition>
bool WaitFor(Condition condition)
{
    return QTest::qWaitFor(condition, patienceMilliseconds);
}

class Timer : public HostTest {};
class GuiSleep : public HostTest {};

TEST_F(Timer, calls_back_once_and_not_before_its_time)
{
    int calls = 0;
    kst::Timer timer, later;
    bool isLater = false;
    QElapsedTimer clock;
    clock.start();
    timer.launchSingle(50, [&] { ++calls; });
    ASSERT_TRUE(WaitFor([&] { return calls > 0; }));
    EXPECT_GE(clock.elapsed(), 50);
    later.launchSingle(150, [&] { isLater = true; }); // room for two more calls
    ASSERT_TRUE(WaitFor([&] { return isLater; }));
    EXPECT_EQ(calls, 1);
}

TEST_F(Timer, calls_back_again_and_again_until_it_is_destroyed)
{
    int calls = 0;
    auto timer = std::make_unique<kst::Timer>();
    QElapsedTimer clock;
    clock.start();
    timer->launchRepeat(10, [&] { ++calls; });
    ASSERT_TRUE(WaitFor([&] { return calls >= 3; }));
    EXPECT_GE(clock.elapsed(), 3 * 10);
    timer.reset();
    const int callsThen = calls;
    kst::Timer later;
    bool isLater = false;
    later.launchSingle(50, [&] { isLater = true; });
    ASSERT_TRUE(WaitFor([&] { return isLater; }));
    EXPECT_EQ(calls, callsThen);
}

TEST_F(Timer, does_not_call_back_once_it_is_destroyed)
{
    int calls = 0;
    auto timer = std::make_unique<kst::Timer>();
    timer->launchSingle(1, [&] { ++calls; });
    timer.reset();
    kst::Timer later;
    bool isLater = false;
    later.launchSingle(50, [&] { isLater = true; });
    ASSERT_TRUE(WaitFor([&] { return isLater; }));
    EXPECT_EQ(calls, 0);
}

TEST_F(Timer, may_be_launched_anew_by_its_own_callback)
{
    int calls = 0;
    kst::Timer timer;
    timer.launchSingle(1, [&] { timer.launchSingle(1, [&] { ++calls; }); });
    EXPECT_TRUE(WaitFor([&] { return calls == 1; }));
}

TEST_F(Timer, may_be_destroyed_by_its_own_callback)
{
    bool done = false;
    auto timer = std::make_unique<kst::Timer>();
    timer->launchRepeat(1, [&] {
        timer.reset();
        done = true;
    });
    EXPECT_TRUE(WaitFor([&] { return done; }));
}

TEST_F(Timer, shows_what_its_callback_throws)
{
    ModalAnswer box(Press("OK"));
    kst::Timer timer;
    timer.launchSingle(1, [] { throw kst::Exception("failed to find active 3D viewport"); });
    ASSERT_TRUE(WaitFor([&] { return box.seen; }));
    EXPECT_EQ(kst::str::ToStd(box.text), "<p><b>Unhandled exception in timer handler.</b></p>\n"
                                         "<p>Failed to find active 3D viewport.</p>");
}

TEST_F(Timer, shows_an_empty_callback_as_an_error)
{
    ModalAnswer box(Press("OK"));
    kst::Timer timer;
    timer.launchSingle(1, std::function<void()>());
    ASSERT_TRUE(WaitFor([&] { return box.seen; }));
    EXPECT_TRUE(box.text.contains(QStringLiteral("Bad_function_call."))) << kst::str::ToStd(box.text);
}

TEST_F(GuiSleep, blocks_for_its_time_and_lets_other_timers_run)
{
    int ticks = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, [&] { ++ticks; });
    ticking.start(5);
    QElapsedTimer clock;
    clock.start();
    const kst::GuiSleep sleep(100);
    EXPECT_GE(clock.elapsed(), 100);
    EXPECT_GT(ticks, 0);
}

TEST_F(GuiSleep, may_be_nested)
{
    QElapsedTimer outer;
    outer.start();
    qint64 innerMilliseconds = 0;
    QTimer::singleShot(0, qApp, [&] {
        QElapsedTimer inner;
        inner.start();
        const kst::GuiSleep sleep(60);
        innerMilliseconds = inner.elapsed();
    });
    const kst::GuiSleep sleep(20);
    EXPECT_GE(innerMilliseconds, 60);
    EXPECT_GE(outer.elapsed(), innerMilliseconds);
}

using GuiSleepDeathTest = GuiSleep;

TEST_F(GuiSleepDeathTest, ends_the_process_when_its_timer_comes_without_a_loop)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            kst::GuiSleep sleep(0);
            QMetaObject::invokeMethod(&sleep, "slotTimer");
        },
        "_pEventLoop");
}

} // namespace
