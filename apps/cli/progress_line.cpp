// One line of a terminal that is written anew while work goes on.
// SPDX-License-Identifier: MIT

#include "progress_line.h"

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <thread>
#include <utility>

#include <sys/ioctl.h>
#include <unistd.h>

namespace cli {

namespace {

bool isInLines = false;

/// A line that the terminal breaks cannot be taken back as a whole.
std::string FitToTerminal(std::string line)
{
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || line.size() < size.ws_col)
        return line;
    std::size_t end = size.ws_col - 1u;
    while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80)
        --end; // not within a character
    line.resize(end);
    return line;
}

/// In the background, somebody else writes there.
bool IsInForeground()
{
    const pid_t group = tcgetpgrp(STDERR_FILENO);
    return group < 0 || group == getpgrp();
}

/// Signals are for the thread that works, whose calls they interrupt.
class SignalsBlocked {
public:
    SignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &_before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &_before, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t _before{};
};

} // namespace

struct ProgressLine::Impl {
    std::mutex mutex;
    std::condition_variable ended;
    bool isEnded = false;
    std::function<std::string()> text;
    std::string shown;
    std::thread thread;

    void draw()
    {
        if (!text || (!isInLines && !IsInForeground()))
            return;
        std::string line = isInLines ? text() : FitToTerminal(text());
        if (line == shown)
            return;
        std::fprintf(stderr, isInLines ? "progress: %s\n" : "\r\x1b[K%s", line.c_str());
        std::fflush(stderr);
        shown = std::move(line);
    }

    void clear()
    {
        text = nullptr;
        if (shown.empty())
            return;
        if (!isInLines) {
            std::fputs("\r\x1b[K", stderr);
            std::fflush(stderr);
        }
        shown.clear();
    }

    void run()
    {
        constexpr std::chrono::milliseconds readable{250};
        std::unique_lock<std::mutex> lock(mutex);
        while (!ended.wait_for(lock, readable, [this] { return isEnded; }))
            draw();
    }
};

ProgressLine::ProgressLine() : _impl(std::make_unique<Impl>())
{
    const SignalsBlocked blocked;
    _impl->thread = std::thread([impl = _impl.get()] { impl->run(); });
}

ProgressLine::~ProgressLine()
{
    {
        const std::lock_guard<std::mutex> lock(_impl->mutex);
        _impl->isEnded = true;
        _impl->clear();
    }
    _impl->ended.notify_one();
    _impl->thread.join();
}

void ProgressLine::tellInLines()
{
    isInLines = true;
}

bool ProgressLine::isPossible()
{
    return isInLines || isatty(STDERR_FILENO) == 1;
}

void ProgressLine::change(const std::function<void()>& work)
{
    const std::lock_guard<std::mutex> lock(_impl->mutex);
    work();
}

void ProgressLine::show(std::function<std::string()> text)
{
    const std::lock_guard<std::mutex> lock(_impl->mutex);
    _impl->text = std::move(text);
    _impl->draw();
}

void ProgressLine::clear()
{
    const std::lock_guard<std::mutex> lock(_impl->mutex);
    _impl->clear();
}

} // namespace cli
