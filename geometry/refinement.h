// The linear map from one subdivision level to the next, as sparse rows.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/cancellation.h"
#include "base/span.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <cstdint>
#include <vector>

namespace geometry {

/// Each row is one result: the weighted sum of a few sources.
struct SparseRows {
    struct Entry {
        std::uint32_t source;
        float weight;
    };
    std::vector<std::uint64_t> offsets{0}; ///< rows + 1
    std::vector<Entry> entries;
    std::uint32_t sourceCount = 0;

    std::size_t size() const { return offsets.size() - 1; }

    template <class T>
    std::vector<T> apply(base::Span<const T> values) const
    {
        std::vector<T> result(size());
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, size(), 4096), [&](const auto& range) {
            base::ThrowIfCancelled();
            for (std::size_t row = range.begin(); row != range.end(); ++row) {
                const Entry* entry = entries.data() + offsets[row];
                const Entry* const end = entries.data() + offsets[row + 1];
                T sum = values[entry->source] * entry->weight;
                while (++entry != end)
                    sum += values[entry->source] * entry->weight;
                result[row] = sum;
            }
        });
        return result;
    }

    /// The same entries by source; a source that nothing uses gets an entry of weight zero, as rows are never
    /// empty.
    SparseRows transposed() const;
};

} // namespace geometry
