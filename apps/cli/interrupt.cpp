// Ctrl+C and requests to end.
// SPDX-License-Identifier: MIT

#include "interrupt.h"

#include "base/cancellation.h"
#include "color.h"
#include "error_sentence.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace cli {

namespace {

std::atomic<int> receivedSignal{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may not wait for a lock");

std::atomic<void (*)()> interruptAction{nullptr};

/// What is told of a run that is interrupted.
struct Account {
    bool expectsFiles = false;
    std::vector<std::string> written, notes;
};

Account& TheAccount()
{
    static Account account;
    return account;
}

void Note(int signal)
{
    if (receivedSignal.exchange(signal) != 0) {
        // Who asks twice does not want to wait; what is left over is removed by the next run.
        std::signal(signal, SIG_DFL);
        std::raise(signal);
        return;
    }
    if (void (*const action)() = interruptAction)
        action();
}

/// Where an exception can go no further, such as a destructor, a cancelled run still ends as one.
[[noreturn]] void EndWithoutWayOut()
{
    if (InterruptSignal() == 0)
        std::abort();
    std::fprintf(stderr, "%s%s\n", ProgramPrefix(Color::Error).c_str(),
                 app::ErrorSentence(InterruptSentence()).c_str());
    EndBySignal(InterruptSignal());
}

void Handle(int signal)
{
    struct sigaction former {};
    // A program started in the background with a signal ignored keeps ignoring it.
    if (sigaction(signal, nullptr, &former) != 0 || former.sa_handler == SIG_IGN)
        return;
    struct sigaction wanted {};
    wanted.sa_handler = Note;
    sigemptyset(&wanted.sa_mask);
    wanted.sa_flags = 0; // calls of the system that wait are not taken up again, so that they can be left
    sigaction(signal, &wanted, nullptr);
}

} // namespace

void NoteInterrupts()
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        Handle(signal);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // the write that goes beyond the limit fails with a reason
    base::SetCancellationSource([] { return InterruptSignal() != 0; });
    std::set_terminate(EndWithoutWayOut);
}

int InterruptSignal()
{
    return receivedSignal;
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

void ExpectFiles()
{
    TheAccount().expectsFiles = true;
}

void NoteWritten(const std::string& clause)
{
    TheAccount().written.push_back(clause);
}

const std::vector<std::string>& WrittenSoFar()
{
    return TheAccount().written;
}

void ForgetNotes()
{
    TheAccount() = {};
}

void NoteAllWritten(const std::string& clause)
{
    TheAccount().written = {clause};
}

void NoteForInterrupt(const std::string& clause)
{
    TheAccount().notes.push_back(clause);
}

std::string InterruptSentence()
{
    std::vector<std::string> clauses = TheAccount().written;
    if (clauses.empty() && TheAccount().expectsFiles)
        clauses.push_back("nothing was saved");
    clauses.insert(clauses.begin(), "interrupted");
    clauses.insert(clauses.end(), TheAccount().notes.begin(), TheAccount().notes.end());
    return fmt::format("{}", fmt::join(clauses, "; "));
}

void EndBySignal(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(1);
}

} // namespace cli
