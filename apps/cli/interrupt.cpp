// Ctrl+C and requests to end.
// SPDX-License-Identifier: MIT

#include "interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace cli {

namespace {

std::atomic<int> receivedSignal{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may not wait for a lock");

std::atomic<void (*)()> interruptAction{nullptr};

void Note(int signal)
{
    receivedSignal = signal;
    if (void (*const action)() = interruptAction)
        action();
}

} // namespace

void NoteInterrupts()
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        // A program started in the background with a signal ignored keeps ignoring it.
        if (std::signal(signal, Note) == SIG_IGN)
            std::signal(signal, SIG_IGN);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

int InterruptSignal()
{
    return receivedSignal;
}

void ThrowIfInterrupted()
{
    if (InterruptSignal() != 0)
        throw InterruptedError();
}

InterruptAction::InterruptAction(void (*action)())
{
    interruptAction = action;
    if (InterruptSignal() != 0)
        action();
}

InterruptAction::~InterruptAction()
{
    interruptAction = nullptr;
}

void EndBySignal(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(1);
}

} // namespace cli
