// Sparse rows by which one level of a subdivision makes the next.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/cancellation.h"
#include "base/span.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace geometry {

/// Each row is one result: the weighted sum of a few sources. Rows that have the same weights in the same
/// order share them: a refinement has millions of rows, but hardly more than some hundred kinds.
class SparseRows {
public:
    struct Entry {
        std::uint32_t source;
        float weight;
    };

    std::size_t size() const { return _offsets.size() - 1; }
    std::uint32_t sourceCount() const { return _sourceCount; }

    /// @param visit  called with each source and its weight
    template <class Visit>
    void forEachEntry(std::size_t row, const Visit& visit) const
    {
        const float* weight = _weights.data() + _patterns[row];
        for (std::uint32_t i = _offsets[row]; i < _offsets[row + 1]; ++i)
            visit(_sources[i], *weight++);
    }

    /// @param values  one per source
    /// @param result  one per row; must not be the values
    template <class T>
    void apply(base::Span<const T> values, base::Span<T> result) const
    {
        assert(values.size() == _sourceCount && result.size() == size());
        // Bare pointers: checking each index costs as much as the sum.
        const T* const from = values.data();
        T* const to = result.data();
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, size(), 4096), [&](const auto& range) {
            base::ThrowIfCancelled();
            for (std::size_t row = range.begin(); row != range.end(); ++row) {
                const float* weight = _weights.data() + _patterns[row];
                const std::uint32_t* source = _sources.data() + _offsets[row];
                const std::uint32_t* const end = _sources.data() + _offsets[row + 1];
                T sum = from[*source] * *weight;
                while (++source != end)
                    sum += from[*source] * *++weight;
                to[row] = sum;
            }
        });
    }

    template <class T>
    std::vector<T> apply(base::Span<const T> values) const
    {
        std::vector<T> result(size());
        apply(values, base::Span<T>(result));
        return result;
    }

    /// The same entries by source, heavy ones first; a source that nothing uses gets an entry of weight zero,
    /// as rows are never empty.
    SparseRows transposed() const;

private:
    friend class RowsJoiner;

    std::uint32_t _sourceCount = 0;
    std::vector<std::uint32_t> _offsets{0}; ///< into the sources; rows + 1
    std::vector<std::uint32_t> _sources;
    std::vector<std::uint32_t> _patterns; ///< of each row, where its weights begin
    std::vector<float> _weights;
};

/// Finds the weights that rows have in common.
class WeightPatterns {
public:
    /// Where the same weights begin in the list, which grows by them when they are new.
    std::uint32_t find(base::Span<const SparseRows::Entry> row);

    const std::vector<float>& weights() const { return _weights; }

private:
    std::vector<float> _weights;
    std::unordered_multimap<std::size_t, std::pair<std::uint32_t, std::uint32_t>>
        _known;                               ///< by hash: place, length
    std::uint32_t _last = 0, _lastLength = 0; ///< most rows are like the one before
};

/// Rows that lie one after the other, made apart from the others.
class RowPiece {
public:
    explicit RowPiece(std::size_t rows = 0);

    void add(base::Span<const SparseRows::Entry> row);
    /// Gives back what was taken for rows that did not come.
    void close() { _sources.shrink_to_fit(); }

    const std::vector<std::uint32_t>& lengths() const { return _lengths; }
    const std::vector<std::uint32_t>& sources() const { return _sources; }
    const std::vector<std::uint32_t>& patterns() const { return _places; } ///< where a row's weights begin
    const std::vector<float>& weights() const { return _patterns.weights(); }

private:
    WeightPatterns _patterns;
    std::vector<std::uint32_t> _lengths, _sources, _places;
};

/// @param pieces  all rows in order; used up
/// @throws TopologyError  there are more entries than can be counted
SparseRows JoinRows(std::vector<RowPiece>&& pieces, std::uint32_t sourceCount);

/// Works out rows in parallel. Which thread works on which does not show in the result.
/// @param fill  of which each thread has a copy: called with the index of a row and an empty list, to which
/// it
///              adds the row's entries, at least one
template <class Fill>
std::vector<RowPiece> MakePieces(std::size_t rows, const Fill& fill)
{
    constexpr std::size_t pieceSize = 16384;
    std::vector<RowPiece> pieces((rows + pieceSize - 1) / pieceSize);
    tbb::parallel_for(std::size_t{0}, pieces.size(), [&](std::size_t p) {
        base::ThrowIfCancelled();
        Fill own = fill;
        std::vector<SparseRows::Entry> row;
        const std::size_t first = p * pieceSize, end = std::min(rows, first + pieceSize);
        pieces[p] = RowPiece(end - first);
        for (std::size_t r = first; r < end; ++r) {
            row.clear();
            own(r, row);
            pieces[p].add(row);
        }
        pieces[p].close();
    });
    return pieces;
}

} // namespace geometry
