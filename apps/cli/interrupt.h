// Ctrl+C and requests to end.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace cli {

/// From now on interrupt, hang-up and termination signals cancel the work (base::ThrowIfCancelled) instead of
/// ending the program at once, so that no file is left half-written and no folder behind. A second one does
/// end it at once. A pipe that nobody reads shows up as a write error,
/// so that what the run has made is cleared away before it ends.
void NoteInterrupts();
/// The signal that asked to end; 0 as long as there was none.
int InterruptSignal();
/// While it lives, a signal that asks to end also does this. One at a time.
class InterruptAction {
public:
    /// @param action  async-signal-safe
    explicit InterruptAction(void (*action)());
    ~InterruptAction();
    InterruptAction(const InterruptAction&) = delete;
    InterruptAction& operator=(const InterruptAction&) = delete;
};

/// The run is there to write files, so that one that is interrupted tells which are in place.
void ExpectFiles();
/// Files are in place, also when the run is interrupted later.
/// @param clause  such as "the morphs are saved: Vera.dsf"
void NoteWritten(const std::string& clause);
/// All that was noted so, for who tells it elsewhere.
const std::vector<std::string>& WrittenSoFar();
/// Another run begins in the same process: what was noted of former ones is not its own.
void ForgetNotes();
/// Instead of all that was noted as written before.
void NoteAllWritten(const std::string& clause);
/// What else is to be said of an interrupted run, behind the files.
void NoteForInterrupt(const std::string& clause);
/// What an interrupted run says, in the manner of errors.
std::string InterruptSentence();

/// Ends the program the way the signal would have done, so that a calling shell knows.
[[noreturn]] void EndBySignal(int signal);

} // namespace cli
