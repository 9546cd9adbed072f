// Work that is cancelled when it has asked so many times.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/cancellation.h"

#include <atomic>

/// As long as it lives, it is what long work asks. One at a time.
class CountedAsks {
public:
    /// @param cancelledAt  number of the ask, from 1, that is the first to be told to end; 0 for none
    explicit CountedAsks(int cancelledAt = 0)
    {
        Count() = 0;
        CancelledAt() = cancelledAt;
        _former = base::SetCancellationSource([] {
            const int ask = ++Count();
            return CancelledAt() > 0 && ask >= CancelledAt();
        });
    }
    ~CountedAsks() { base::SetCancellationSource(_former); }
    CountedAsks(const CountedAsks&) = delete;
    CountedAsks& operator=(const CountedAsks&) = delete;

    int count() const { return Count(); }

private:
    static std::atomic<int>& Count()
    {
        static std::atomic<int> count{0};
        return count;
    }
    static std::atomic<int>& CancelledAt()
    {
        static std::atomic<int> at{0};
        return at;
    }

    base::CancellationSource _former;
};
