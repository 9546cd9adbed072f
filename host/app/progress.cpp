// Progress of long work, on a terminal or on a display.
// SPDX-License-Identifier: MIT

#include "dzprogress.h"

#include "app/app_access.h"
#include "app/app_parts.h"
#include "app/current_attendant.h"
#include "app/progress_display.h"
#include "app/work_memory.h"
#include "dzapp.h"
#include "openhost/events.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <vector>

struct DzProgress::Impl {
    QString info;
    int total = 0;
    int position = 0;
    bool cancellable = false;
    bool showTime = false;
    bool enabled = true;
    bool cancelled = false;
    bool closeOnFinish = true;
    bool finished = false;
    QElapsedTimer timer;
};

namespace {

/// Outermost first.
std::vector<DzProgress*>& Stack()
{
    static std::vector<DzProgress*> stack;
    return stack;
}

bool ShowsOnTerminal()
{
    return dzApp && dzApp->showsTerminalProgress() && isatty(STDERR_FILENO) != 0;
}

QString Described(const DzProgress& progress)
{
    const int total = progress.getTotalSteps();
    const QString info = progress.getInfo();
    return total > 0 ? QStringLiteral("%1 (%2/%3)")
                           .arg(info, QString::number(progress.getPosition()), QString::number(total))
                     : info;
}

// One line, written over each time; cleared with the last progress.
void ShowOnTerminal()
{
    QStringList parts;
    for (const DzProgress* progress : Stack())
        parts.append(Described(*progress));
    constexpr int width = 79;
    std::fprintf(stderr, "\r\033[K%s", parts.join(QLatin1String(": ")).left(width).toUtf8().constData());
    std::fflush(stderr);
}

/// Null without windows.
openhost::ProgressDisplay* Display()
{
    return dzApp ? openhost::AppAccess::Parts(*dzApp).progressDisplay.get() : nullptr;
}

void CancelAll()
{
    for (DzProgress* progress : Stack())
        progress->cancel();
}

} // namespace

void DzProgress::showOn(openhost::ProgressDisplay& display)
{
    const std::vector<DzProgress*>& stack = Stack();
    std::vector<openhost::ProgressLevel> levels;
    bool isCancellable = false, showsTime = false;
    for (const DzProgress* const progress : stack) {
        levels.push_back({progress->_impl->info, progress->_impl->position, progress->_impl->total});
        isCancellable = isCancellable || progress->_impl->cancellable;
        showsTime = showsTime || progress->_impl->showTime;
    }
    display.show(levels, showsTime ? double(stack.front()->_impl->timer.elapsed()) / 1000.0 : -1.0,
                 isCancellable ? std::function<void()>(CancelAll) : std::function<void()>());
}

void DzProgress::show()
{
    if (ShowsOnTerminal())
        ShowOnTerminal();
    else if (Display() && !Stack().empty())
        showOn(*Display());
}

DzProgress::DzProgress(const QString& info, int totalSteps, bool isCancellable, bool showTimeElapsed)
    : _impl(new Impl)
{
    // Before this is among the others, where an exception would leave it.
    openhost::CurrentAttendant().beforeProgress();
    _impl->info = info;
    _impl->total = std::max(0, totalSteps);
    _impl->cancellable = isCancellable;
    _impl->showTime = showTimeElapsed;
    _impl->timer.start();
    Stack().push_back(this);
    emit openhost::Events().progressTextShown(info);
    show();
}

DzProgress::~DzProgress()
{
    finish();
}

void DzProgress::step(int count)
{
    update(_impl->position + count);
}

void DzProgress::update(int position)
{
    _impl->position = std::max(0, _impl->total > 0 ? std::min(position, _impl->total) : position);
    if (_impl->enabled)
        show();
}

void DzProgress::setInfo(const QString& info)
{
    openhost::CurrentAttendant().beforeProgress();
    _impl->info = info;
    emit openhost::Events().progressTextShown(info);
    if (_impl->enabled)
        show();
}

void DzProgress::setCurrentInfo(const QString& info)
{
    if (!Stack().empty())
        Stack().back()->setInfo(info);
}

void DzProgress::finish()
{
    if (_impl->finished)
        return;
    _impl->finished = true;
    std::vector<DzProgress*>& stack = Stack();
    stack.erase(std::remove(stack.begin(), stack.end(), this), stack.end());
    if (_impl->showTime && dzApp)
        dzApp->log(QStringLiteral("%1: %2 s")
                       .arg(_impl->info, QString::number(double(_impl->timer.elapsed()) / 1000.0, 'f', 1)));
    show();
    if (!stack.empty())
        return;
    openhost::EndWork();
    if (Display())
        Display()->end(_impl->closeOnFinish);
}

void DzProgress::cancel()
{
    if (_impl->cancellable)
        _impl->cancelled = true;
}

void DzProgress::enable(bool onOff)
{
    _impl->enabled = onOff;
}
void DzProgress::setCloseOnFinish(bool onOff)
{
    _impl->closeOnFinish = onOff;
}

bool DzProgress::isCancelled() const
{
    for (const DzProgress* progress : Stack()) {
        if (progress->_impl->cancelled)
            return true;
        if (progress == this)
            break;
    }
    return _impl->cancelled;
}

QString DzProgress::getInfo() const
{
    return _impl->info;
}
int DzProgress::getPosition() const
{
    return _impl->position;
}
int DzProgress::getTotalSteps() const
{
    return _impl->total;
}
int DzProgress::getDepth()
{
    return static_cast<int>(Stack().size());
}
