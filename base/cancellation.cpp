// Ending long work before it is done.
// SPDX-License-Identifier: MIT

#include "base/cancellation.h"

#include "told_to_end.h"

#include <atomic>

namespace base {

namespace {

std::atomic<CancellationSource> currentSource{nullptr};
/// Of all threads: a loop that is divided among them is put in order by the one that began it.
std::atomic<int> onTheirWay{0};

} // namespace

Cancelled::Cancelled() noexcept
{
    ++onTheirWay;
}

Cancelled::Cancelled(const Cancelled&) noexcept
{
    ++onTheirWay;
}

Cancelled::~Cancelled()
{
    --onTheirWay;
}

CancellationSource SetCancellationSource(CancellationSource source) noexcept
{
    return currentSource.exchange(source);
}

bool IsToldToEnd() noexcept
{
    const CancellationSource source = currentSource.load(std::memory_order_relaxed);
    return source && source();
}

bool IsCancelled() noexcept
{
    return IsToldToEnd() && onTheirWay == 0;
}

void ThrowIfCancelled()
{
    if (IsCancelled())
        throw Cancelled();
}

} // namespace base
