// Ctrl+C and requests to end.
// SPDX-License-Identifier: MIT

#pragma once

#include <stdexcept>

namespace cli {

/// The user asked to end.
class InterruptedError : public std::runtime_error {
public:
    InterruptedError() : std::runtime_error("interrupted") {}
};

/// From now on interrupt, hang-up and termination signals are noted instead of ending the program at once, so
/// that the work ends between two steps, with no file half-written and no folder left behind. A pipe that
/// nobody reads shows up as a write error.
void NoteInterrupts();
/// The signal that asked to end; 0 as long as there was none.
int InterruptSignal();
/// @throws InterruptedError  a signal has asked to end
void ThrowIfInterrupted();
/// While it lives, a signal that asks to end also does this. One at a time.
class InterruptAction {
public:
    /// @param action  async-signal-safe
    explicit InterruptAction(void (*action)());
    ~InterruptAction();
    InterruptAction(const InterruptAction&) = delete;
    InterruptAction& operator=(const InterruptAction&) = delete;
};
/// Ends the program the way the signal would have done, so that a calling shell knows.
[[noreturn]] void EndBySignal(int signal);

} // namespace cli
