// Delayed and repeated callbacks, and a sleep that keeps the windows alive.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>

#include <QObject>

class QEventLoop;
class QTimer;

namespace kst {

/// Calls back once or again and again, as long as it exists. GUI thread only. Whatever std::exception a
/// callback throws is shown in the critical box, an empty callback's too.
class Timer : public QObject {
    Q_OBJECT

public:
    Timer();
    ~Timer() override;

    /// Calls back once. A timer holds one callback: launch it again only when this one has run.
    void launchSingle(int milliseconds, std::function<void()> callback);
    /// Calls back after every interval until the timer is destroyed; a later call replaces callback and
    /// interval.
    void launchRepeat(int milliseconds, std::function<void()> callback);

private slots:
    void slotElapsedOneshot();
    void slotElapsedRepeat();

private:
    void runCallback();

    std::function<void()> _callback;
    std::unique_ptr<QTimer> _pTimer;
};

/// Blocks the caller for a while, in which the host goes on painting and handling events: expect other slots
/// and timers to run. GUI thread only.
class GuiSleep : public QObject {
    Q_OBJECT

public:
    explicit GuiSleep(int milliseconds);
    ~GuiSleep() override;

private slots:
    void slotTimer();

private:
    std::unique_ptr<QEventLoop> _pEventLoop; ///< exists while the caller is blocked
};

} // namespace kst
