// Delayed and repeated callbacks, and a sleep that keeps the windows alive.
// SPDX-License-Identifier: MIT

#include "ks_timer.h"

#include "ks_assert.h"
#include "ks_critical-box.h"
#include "ks_gui.h"

#include <utility>

#include <QEventLoop>
#include <QTimer>

namespace kst {

Timer::Timer() = default;
Timer::~Timer() = default;

void Timer::launchSingle(int milliseconds, std::function<void()> callback)
{
    gui::AssertGuiThread();
    _callback = std::move(callback);
    QTimer::singleShot(milliseconds, this, SLOT(slotElapsedOneshot()));
}

void Timer::launchRepeat(int milliseconds, std::function<void()> callback)
{
    gui::AssertGuiThread();
    _callback = std::move(callback);
    _pTimer.reset(new QTimer);
    gui::ConnectSignal(*_pTimer, SIGNAL(timeout()), this, SLOT(slotElapsedRepeat()));
    _pTimer->start(milliseconds);
}

void Timer::slotElapsedOneshot()
{
    runCallback();
}

void Timer::slotElapsedRepeat()
{
    runCallback();
}

void Timer::runCallback()
{
    // A copy: the callback may launch the timer anew or destroy it.
    const std::function<void()> callback = _callback;
    daz::CallOutermost("Unhandled exception in timer handler", nullptr, callback);
}

GuiSleep::GuiSleep(int milliseconds) : _pEventLoop(new QEventLoop)
{
    gui::AssertGuiThread();
    QTimer::singleShot(milliseconds, this, SLOT(slotTimer()));
    _pEventLoop->exec();
    _pEventLoop.reset();
}

GuiSleep::~GuiSleep() = default;

void GuiSleep::slotTimer()
{
    assert(_pEventLoop);
    _pEventLoop->exit(0);
}

} // namespace kst
