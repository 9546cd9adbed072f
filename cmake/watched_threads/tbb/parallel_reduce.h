// Sums over pieces, on threads that the thread sanitizer sees through.
// SPDX-License-Identifier: MIT

#pragma once

#include <tbb/parallel_for.h>

namespace tbb {

template <typename Range, typename Value, typename Body, typename Join>
Value parallel_deterministic_reduce(const Range& range, const Value& identity, const Body& body,
                                    const Join& join)
{
    const std::size_t size = range.grainsize(), pieces = (range.size() + size - 1) / size;
    std::vector<Value> parts(pieces, identity);
    parallel_for(std::size_t(0), pieces, [&](std::size_t piece) {
        const std::size_t first = piece * size, last = std::min(first + size, range.size());
        parts[piece] = body(Range(range.begin() + first, range.begin() + last), identity);
    });
    Value sum = identity;
    for (const Value& part : parts)
        sum = join(sum, part);
    return sum;
}

template <typename Range, typename Value, typename Body, typename Join>
Value parallel_reduce(const Range& range, const Value& identity, const Body& body, const Join& join)
{
    return parallel_deterministic_reduce(range, identity, body, join);
}

} // namespace tbb
