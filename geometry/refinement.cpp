// Making and transposing sparse rows.
// SPDX-License-Identifier: MIT

#include "refinement.h"

#include "for_each_index.h"
#include "geometry/errors.h"
#include "inversion.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

namespace geometry {

namespace {

std::size_t HashOf(base::Span<const SparseRows::Entry> row)
{
    std::size_t hash = row.size();
    for (const SparseRows::Entry& entry : row)
        hash = hash * 1000003 + std::hash<float>()(entry.weight);
    return hash;
}

/// Brings entries into one order for all rows, or vertices of the same kind would not have the same pattern:
/// heavy ones first, equals as they come. There are but few weights.
class WeightOrder {
public:
    void sort(base::Span<const SparseRows::Entry> entries, std::vector<SparseRows::Entry>& sorted)
    {
        for (const SparseRows::Entry& entry : entries) {
            std::size_t k = 0;
            while (k < _count && _weights[k] != entry.weight)
                ++k;
            if (k == most)
                return sortMany(entries, sorted);
            if (k == _count) {
                _weights[_count] = entry.weight;
                _ends[_count++] = 0;
            }
            ++_ends[k];
        }
        placeWeights();
        sorted.resize(entries.size());
        for (const SparseRows::Entry& entry : entries) {
            std::size_t k = 0;
            while (_weights[k] != entry.weight)
                ++k;
            sorted[_ends[k]++] = entry;
        }
    }

private:
    static constexpr std::size_t most = 16;

    static void sortMany(base::Span<const SparseRows::Entry> entries, std::vector<SparseRows::Entry>& sorted)
    {
        sorted.assign(entries.begin(), entries.end());
        std::stable_sort(sorted.begin(), sorted.end(),
                         [](const auto& a, const auto& b) { return a.weight > b.weight; });
    }

    /// From how many there are of each to where the first of them goes.
    void placeWeights()
    {
        for (std::size_t i = 1; i < _count; ++i)
            for (std::size_t k = i; k > 0 && _weights[k - 1] < _weights[k]; --k) {
                std::swap(_weights[k - 1], _weights[k]);
                std::swap(_ends[k - 1], _ends[k]);
            }
        std::uint32_t first = 0;
        for (std::size_t k = 0; k < _count; ++k)
            first += std::exchange(_ends[k], first);
    }

    float _weights[most];
    std::uint32_t _ends[most];
    std::size_t _count = 0;
};

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
    const auto entriesOf = [this](std::size_t row, const auto& visit) {
        forEachEntry(row, [&](std::uint32_t source, float weight) {
            visit(source, Entry{static_cast<std::uint32_t>(row), weight});
        });
    };
    Inversion bySource(size(), _sourceCount, entriesOf);
    // Not set to zero first: that would take one thread longer than all of them take to fill them.
    std::unique_ptr<Entry[]> entries(new Entry[bySource.size()]);
    bySource.fill(entries.get());
    const std::vector<std::uint32_t> offsets = bySource.takeOffsets();
    std::vector<RowPiece> pieces = MakePieces(_sourceCount, [&](std::size_t s, auto& row) {
        WeightOrder().sort({entries.get() + offsets[s], offsets[s + 1] - offsets[s]}, row);
        if (row.empty())
            row.push_back({0, 0.0f});
    });
    entries.reset(); // as much as what comes now
    return JoinRows(std::move(pieces), static_cast<std::uint32_t>(size()));
}

} // namespace geometry
