// Loops over indices, on several threads at once.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/cancellation.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace geometry {

/// Calls with each index below the count, in any order. Throws what the body throws; ends with
/// base::Cancelled where the work is cancelled, which is asked once in a run of indices.
/// @param grain  indices that are worth a task of their own, at the least
template <class Body>
void ForEachIndex(std::size_t count, std::size_t grain, const Body& body)
{
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, count, grain), [&](const auto& range) {
        base::ThrowIfCancelled();
        for (std::size_t i = range.begin(); i != range.end(); ++i)
            body(i);
    });
}

} // namespace geometry
