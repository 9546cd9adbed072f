// Making and transposing sparse rows.
// SPDX-License-Identifier: MIT

#include "refinement.h"

#include "geometry/errors.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace geometry {

namespace {

std::size_t HashOf(base::Span<const SparseRows::Entry> row)
{
    std::size_t hash = row.size();
    for (const SparseRows::Entry& entry : row)
        hash = hash * 1000003 + std::hash<float>()(entry.weight);
    return hash;
}

} // namespace

std::uint32_t WeightPatterns::find(base::Span<const SparseRows::Entry> row, std::vector<float>& weights)
{
    const auto isAt = [&](std::uint32_t place, std::uint32_t length) {
        return length == row.size() && std::equal(row.begin(), row.end(), weights.begin() + place,
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
    _last = static_cast<std::uint32_t>(weights.size());
    for (const SparseRows::Entry& entry : row)
        weights.push_back(entry.weight);
    _known.emplace(hash, std::pair(_last, _lastLength));
    return _last;
}

SparseRowsMaker::SparseRowsMaker(std::size_t rows, std::size_t entries, std::uint32_t sourceCount)
{
    if (entries > UINT32_MAX)
        throw TopologyError("a refinement of {} vertices is too large", rows);
    _rows._sourceCount = sourceCount;
    _rows._offsets.reserve(rows + 1);
    _rows._patterns.reserve(rows);
    _rows._sources.reserve(entries);
}

void SparseRowsMaker::add(base::Span<const SparseRows::Entry> row)
{
    assert(!row.empty());
    for (const SparseRows::Entry& entry : row)
        _rows._sources.push_back(entry.source);
    _rows._offsets.push_back(static_cast<std::uint32_t>(_rows._sources.size()));
    _rows._patterns.push_back(_patterns.find(row, _rows._weights));
}

SparseRows SparseRowsMaker::finish()
{
    return std::move(_rows);
}

SparseRows SparseRows::transposed() const
{
    std::vector<std::uint32_t> offsets(_sourceCount + std::size_t{1}, 0);
    for (const std::uint32_t source : _sources)
        ++offsets[source + 1];
    std::size_t unused = 0;
    for (std::size_t s = 0; s < _sourceCount; ++s) {
        unused += offsets[s + 1] == 0;
        offsets[s + 1] += offsets[s];
    }
    std::vector<Entry> entries(_sources.size());
    std::vector<std::uint32_t> next(offsets.begin(), offsets.end() - 1);
    for (std::size_t row = 0; row < size(); ++row)
        forEachEntry(row, [&](std::uint32_t source, float weight) {
            entries[next[source]++] = {static_cast<std::uint32_t>(row), weight};
        });
    // In one order for all, or vertices of the same kind would not have the same pattern.
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, _sourceCount, 4096), [&](const auto& range) {
        base::ThrowIfCancelled();
        for (std::size_t s = range.begin(); s != range.end(); ++s)
            std::sort(entries.begin() + offsets[s], entries.begin() + offsets[s + 1],
                      [](const Entry& a, const Entry& b) {
                          return a.weight != b.weight ? a.weight > b.weight : a.source < b.source;
                      });
    });
    SparseRowsMaker maker(_sourceCount, entries.size() + unused, static_cast<std::uint32_t>(size()));
    constexpr Entry nothing{0, 0.0f};
    for (std::size_t s = 0; s < _sourceCount; ++s) {
        const std::size_t count = offsets[s + 1] - offsets[s];
        maker.add(count > 0 ? base::Span<const Entry>(entries.data() + offsets[s], count)
                            : base::Span<const Entry>(&nothing, 1));
    }
    return maker.finish();
}

} // namespace geometry
