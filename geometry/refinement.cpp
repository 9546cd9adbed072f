// Transposing sparse rows.
// SPDX-License-Identifier: MIT

#include "refinement.h"

namespace geometry {

SparseRows SparseRows::transposed() const
{
    SparseRows result;
    result.sourceCount = static_cast<std::uint32_t>(size());
    result.offsets.assign(sourceCount + std::size_t{1}, 0);
    for (const Entry& entry : entries)
        ++result.offsets[entry.source + 1];
    for (std::size_t s = 0; s < sourceCount; ++s) {
        const bool isUnused = result.offsets[s + 1] == 0;
        result.offsets[s + 1] += result.offsets[s] + isUnused;
    }
    result.entries.assign(result.offsets.back(), {0, 0.0f});
    std::vector<std::uint64_t> next(result.offsets.begin(), result.offsets.end() - 1);
    for (std::size_t row = 0; row < size(); ++row)
        for (std::uint64_t i = offsets[row]; i < offsets[row + 1]; ++i)
            result.entries[next[entries[i].source]++] = {static_cast<std::uint32_t>(row), entries[i].weight};
    return result;
}

} // namespace geometry
