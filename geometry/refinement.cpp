// Making and transposing sparse rows.
// SPDX-License-Identifier: MIT

#include "refinement.h"

#include "for_each_index.h"
#include "geometry/errors.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <memory>

namespace geometry {

namespace {

std::size_t HashOf(base::Span<const SparseRows::Entry> row)
{
    std::size_t hash = row.size();
    for (const SparseRows::Entry& entry : row)
        hash = hash * 1000003 + std::hash<float>()(entry.weight);
    return hash;
}

constexpr std::memory_order relaxed = std::memory_order_relaxed;

} // namespace

std::uint32_t WeightPatterns::find(base::Span<const SparseRows::Entry> row)
{
    const auto isAt = [&](std::uint32_t place, std::uint32_t length) {
        return length == row.size() && std::equal(row.begin(), row.end(), _weights.begin() + place,
                                                  [](const SparseRows::Entry& entry, float weight) {
                                                      return entry.weight == weight;
                                                  });
    };
    if (_lastLength > 0 && isAt(_last, _lastLength))
        return _last;
    const std::size_t hash = HashOf(row);
    const auto [first, end] = _known.equal_range(hash);
    const auto found = std::find_if(
        first, end, [&](const auto& known) { return isAt(known.second.first, known.second.second); });
    _lastLength = static_cast<std::uint32_t>(row.size());
    if (found != end)
        return _last = found->second.first;
    _last = static_cast<std::uint32_t>(_weights.size());
    for (const SparseRows::Entry& entry : row)
        _weights.push_back(entry.weight);
    _known.emplace(hash, std::pair(_last, _lastLength));
    return _last;
}

RowPiece::RowPiece(std::size_t rows)
{
    _lengths.reserve(rows);
    _places.reserve(rows);
}

void RowPiece::add(base::Span<const SparseRows::Entry> row)
{
    assert(!row.empty());
    for (const SparseRows::Entry& entry : row)
        _sources.push_back(entry.source);
    _lengths.push_back(static_cast<std::uint32_t>(row.size()));
    _places.push_back(_patterns.find(row));
}

/// Puts pieces behind one another, with one list of weights for all.
class RowsJoiner {
public:
    RowsJoiner(std::vector<RowPiece>&& pieces, std::uint32_t sourceCount)
        : _pieces(std::move(pieces)), _starts(_pieces.size())
    {
        std::size_t rows = 0, entries = 0;
        for (std::size_t p = 0; p < _pieces.size(); ++p) {
            _starts[p] = {rows, entries};
            rows += _pieces[p].lengths().size();
            entries += _pieces[p].sources().size();
        }
        if (entries > UINT32_MAX)
            throw TopologyError("a refinement of {} vertices is too large", rows);
        _rows._sourceCount = sourceCount;
        _rows._offsets.resize(rows + 1);
        _rows._patterns.resize(rows);
        _rows._sources.resize(entries);
    }

    SparseRows join()
    {
        const std::vector<Places> places = commonPlaces();
        tbb::parallel_for(std::size_t{0}, _pieces.size(), [&](std::size_t p) {
            base::ThrowIfCancelled();
            const RowPiece piece = std::move(_pieces[p]);
            auto [row, entry] = _starts[p];
            std::copy(piece.sources().begin(), piece.sources().end(),
                      _rows._sources.begin() + static_cast<std::ptrdiff_t>(entry));
            for (std::size_t i = 0; i < piece.lengths().size(); ++i, ++row) {
                entry += piece.lengths()[i];
                _rows._offsets[row + 1] = static_cast<std::uint32_t>(entry);
                _rows._patterns[row] = places[p].at(piece.patterns()[i]);
            }
        });
        return std::move(_rows);
    }

private:
    struct Start {
        std::size_t row, entry;
    };
    using Places = std::unordered_map<std::uint32_t, std::uint32_t>; ///< from a piece's to the common ones

    std::vector<Places> commonPlaces()
    {
        WeightPatterns common;
        std::vector<Places> places(_pieces.size());
        std::vector<SparseRows::Entry> row;
        for (std::size_t p = 0; p < _pieces.size(); ++p)
            for (std::size_t i = 0; i < _pieces[p].lengths().size(); ++i) {
                const std::uint32_t place = _pieces[p].patterns()[i];
                if (places[p].count(place) > 0)
                    continue;
                row.clear();
                for (std::uint32_t k = 0; k < _pieces[p].lengths()[i]; ++k)
                    row.push_back({0, _pieces[p].weights()[place + k]});
                places[p].emplace(place, common.find(row));
            }
        _rows._weights = common.weights();
        return places;
    }

    std::vector<RowPiece> _pieces;
    std::vector<Start> _starts;
    SparseRows _rows;
};

SparseRows JoinRows(std::vector<RowPiece>&& pieces, std::uint32_t sourceCount)
{
    return RowsJoiner(std::move(pieces), sourceCount).join();
}

SparseRows SparseRows::transposed() const
{
    std::vector<std::atomic<std::uint32_t>> next(_sourceCount);
    ForEachIndex(_sources.size(), 8192, [&](std::size_t i) { next[_sources[i]].fetch_add(1, relaxed); });
    std::vector<std::uint32_t> offsets(_sourceCount + std::size_t{1}, 0);
    for (std::size_t s = 0; s < _sourceCount; ++s) {
        offsets[s + 1] = offsets[s] + next[s].load(relaxed);
        next[s].store(offsets[s], relaxed);
    }
    // Not set to zero first: that would take one thread longer than all of them take to fill them.
    std::unique_ptr<Entry[]> entries(new Entry[_sources.size()]);
    ForEachIndex(size(), 8192, [&](std::size_t row) {
        forEachEntry(row, [&](std::uint32_t source, float weight) {
            entries[next[source].fetch_add(1, relaxed)] = {static_cast<std::uint32_t>(row), weight};
        });
    });
    std::vector<RowPiece> pieces = MakePieces(_sourceCount, [&](std::size_t s, auto& row) {
        row.assign(entries.get() + offsets[s], entries.get() + offsets[s + 1]);
        // In one order for all, or vertices of the same kind would not have the same pattern.
        std::sort(row.begin(), row.end(), [](const Entry& a, const Entry& b) {
            return a.weight != b.weight ? a.weight > b.weight : a.source < b.source;
        });
        if (row.empty())
            row.push_back({0, 0.0f});
    });
    entries.reset();
    return JoinRows(std::move(pieces), static_cast<std::uint32_t>(size()));
}

} // namespace geometry
