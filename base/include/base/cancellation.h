// Ending long work before it is done.
// SPDX-License-Identifier: MIT

#pragma once

namespace base {

/// Work was told to end. No std::exception: whoever turns failures into messages, or goes on without what
/// failed, must not take it for one.
class Cancelled {
public:
    Cancelled() noexcept;
    Cancelled(const Cancelled&) noexcept;
    ~Cancelled();
    Cancelled& operator=(const Cancelled&) = default;
};

/// Whether work is to end; called often and on any thread.
using CancellationSource = bool (*)();

/// Who says so from now on. At first, and with null, work is never told to end.
/// @return who said so before
CancellationSource SetCancellationSource(CancellationSource source) noexcept;

/// Whether ThrowIfCancelled() would throw, for what must not.
bool IsCancelled() noexcept;

/// Asked by every long loop, at least every tenth of a second. Asks go unanswered while a Cancelled is on its
/// way, since what is put back in order then must not be cut short.
/// @throws Cancelled  the work is to end
void ThrowIfCancelled();

} // namespace base
