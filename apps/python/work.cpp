// Long work without the interpreter's lock, which an interrupt ends.
// SPDX-License-Identifier: MIT

#include "work.h"

#include <atomic>

namespace python {

namespace {

/// How long an interrupt may wait to be seen; a look costs the time to get the interpreter's lock.
constexpr std::chrono::milliseconds patience{50};

thread_local Work* workOfThread = nullptr;
std::atomic<bool> isEnding{false};

bool IsToEnd()
{
    if (Work* const work = Work::current(); work && !isEnding)
        work->look();
    return isEnding;
}

} // namespace

void WatchForInterrupts()
{
    base::SetCancellationSource(&IsToEnd);
}

Work::Work() : _outer(workOfThread), _lookedAt(std::chrono::steady_clock::now())
{
    workOfThread = this;
}

Work::~Work()
{
    workOfThread = _outer;
    if (_error)
        isEnding = false;
}

Work* Work::current()
{
    return workOfThread;
}

void Work::look()
{
    const auto now = std::chrono::steady_clock::now();
    if (now - _lookedAt < patience)
        return;
    const py::gil_scoped_acquire lock;
    if (PyErr_CheckSignals() != 0)
        endWithError();
    _lookedAt = std::chrono::steady_clock::now();
}

void Work::endWithError()
{
    if (_error)
        PyErr_Clear(); // the first one counts
    else
        _error.emplace();
    isEnding = true;
}

void Work::throwError()
{
    if (!_error)
        return;
    isEnding = false;
    py::error_already_set error = *_error;
    _error.reset();
    throw error;
}

} // namespace python
