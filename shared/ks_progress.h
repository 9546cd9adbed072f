// The host's progress display for a fixed list of steps.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_debug.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kst {
namespace daz {

/// Shows one named step after the other; ends the display when it goes away.
class SimpleProgress {
public:
    /// Shows the first step. The list must not be empty.
    explicit SimpleProgress(std::vector<std::string> steps);
    ~SimpleProgress();
    SimpleProgress(const SimpleProgress&) = delete;
    SimpleProgress& operator=(const SimpleProgress&) = delete;

    /// Goes on to the next step, which must exist.
    /// @param confirm  asks the user before going on
    /// @throws CanceledException  the user does not want to
    void step_X(bool confirm) const;
    /// As step_X; then the caller's own count of steps must agree with getStep().
    void stepAssert_X(bool confirm, std::size_t expected) const;
    std::size_t getStep() const;
    void done() const;

private:
    struct Impl;
    std::unique_ptr<Impl> _pImpl;
};

/// Writes one line to the host's log.
void Log(std::string_view text);

} // namespace daz
} // namespace kst

/// Writes "Entering {}" and, at the end of the scope, "Leaving {}".
class KsLogEnteringLeaving {
public:
    explicit KsLogEnteringLeaving(std::string_view name) : _scope(name) {}

private:
    kst::Debug _scope;
};
