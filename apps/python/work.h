// Long work without the interpreter's lock, which an interrupt ends.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/cancellation.h"

#include <chrono>
#include <optional>

#include <pybind11/pybind11.h>

namespace python {

namespace py = pybind11;

/// Work is told to end when a handler of a signal, or a function of the caller's, has raised an exception;
/// called once.
void WatchForInterrupts();

/// A stretch of work on one thread. Signals are looked after meanwhile, as Python does it between its own
/// steps: on the main thread only.
class Work {
public:
    Work();
    ~Work();
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    /// That of the calling thread; null for none.
    static Work* current();

    /// Looks after signals, now and then. The caller does not have the interpreter's lock.
    void look();
    /// Ends the work with the exception that Python has now, as soon as it asks. The caller has the lock.
    void endWithError();
    /// Throws what ended the work, if anything did. The caller has the lock.
    void throwError();

private:
    Work* _outer;
    std::chrono::steady_clock::time_point _lookedAt;
    std::optional<py::error_already_set> _error;
};

/// Does the work without the interpreter's lock, which the caller has, and hands back its result.
/// @throws py::error_already_set  an interrupt or a function of the caller's ended it
template <class Function>
auto RunFreely(Function&& function)
{
    Work work;
    const auto run = [&] {
        const py::gil_scoped_release released;
        return function();
    };
    try {
        if constexpr (std::is_void_v<decltype(function())>) {
            run();
            work.throwError();
        } else {
            auto result = run();
            work.throwError();
            return result;
        }
    } catch (const py::error_already_set&) {
        throw;
    } catch (...) {
        // A call of the system that was interrupted may have been taken for one that failed.
        work.throwError();
        throw;
    }
}

} // namespace python
