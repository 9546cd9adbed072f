// Flat incidence lists by counting, filling and, for neighbours, sorting the short rows.
// SPDX-License-Identifier: MIT

#include "geometry/incidence.h"

#include "for_each_index.h"
#include "inversion.h"

#include <tbb/parallel_sort.h>

#include <algorithm>

namespace geometry {

namespace {

/// Sorts each row and drops repeats, then closes the gaps.
IndexLists Compact(IndexLists lists)
{
    std::vector<std::uint32_t> kept(lists.size());
    ForEachIndex(lists.size(), 4096, [&](std::size_t row) {
        const auto first = lists.indices.begin() + lists.offsets[row];
        const auto last = lists.indices.begin() + lists.offsets[row + 1];
        std::sort(first, last);
        kept[row] = static_cast<std::uint32_t>(std::unique(first, last) - first);
    });
    std::uint32_t end = 0;
    for (std::size_t row = 0; row < kept.size(); ++row) {
        const auto first = lists.indices.begin() + lists.offsets[row];
        std::copy(first, first + kept[row], lists.indices.begin() + end);
        lists.offsets[row] = end;
        end += kept[row];
    }
    lists.offsets.back() = end;
    lists.indices.resize(end);
    return lists;
}

template <class Row>
IndexLists Inverted(std::size_t rows, std::size_t targets, const Row& row)
{
    Inversion inversion(rows, targets, row);
    IndexLists lists;
    lists.indices.resize(inversion.size());
    inversion.fill(lists.indices.data());
    lists.offsets = inversion.takeOffsets();
    return lists;
}

/// The other end of each edge at a vertex, once for every face that uses the edge.
IndexLists EdgeEnds(const Topology& topology)
{
    return Inverted(topology.faceCount(), topology.vertexCount, [&](std::size_t f, const auto& visit) {
        const base::Span<const std::uint32_t> face = topology.face(f);
        for (std::size_t c = 0; c < face.size(); ++c) {
            const std::uint32_t a = face[c], b = face[c + 1 == face.size() ? 0 : c + 1];
            visit(a, b);
            visit(b, a);
        }
    });
}

} // namespace

IndexLists VertexFaces(const Topology& topology)
{
    return Inverted(topology.faceCount(), topology.vertexCount, [&](std::size_t f, const auto& visit) {
        for (const std::uint32_t vertex : topology.face(f))
            visit(vertex, static_cast<std::uint32_t>(f));
    });
}

IndexLists VertexNeighbours(const Topology& topology)
{
    return Compact(EdgeEnds(topology));
}

std::vector<bool> BoundaryVertices(const Topology& topology)
{
    IndexLists ends = EdgeEnds(topology);
    std::vector<char> isBoundary(ends.size());
    ForEachIndex(ends.size(), 4096, [&](std::size_t v) {
        auto end = ends.indices.begin() + ends.offsets[v];
        const auto last = ends.indices.begin() + ends.offsets[v + 1];
        std::sort(end, last);
        while (end != last && !isBoundary[v]) {
            const auto next = std::upper_bound(end, last, *end);
            isBoundary[v] = next - end == 1;
            end = next;
        }
    });
    return {isBoundary.begin(), isBoundary.end()};
}

EdgeCounts CountEdges(const Topology& topology)
{
    std::vector<std::uint64_t> edges;
    edges.reserve(topology.cornerCount());
    for (std::size_t f = 0; f < topology.faceCount(); ++f) {
        const base::Span<const std::uint32_t> face = topology.face(f);
        for (std::size_t c = 0; c < face.size(); ++c) {
            const auto [low, high] = std::minmax(face[c], face[(c + 1) % face.size()]);
            edges.push_back(std::uint64_t{low} << 32 | high);
        }
    }
    tbb::parallel_sort(edges.begin(), edges.end());

    EdgeCounts counts;
    for (auto first = edges.begin(); first != edges.end();) {
        const auto next =
            std::find_if(first, edges.end(), [&](std::uint64_t edge) { return edge != *first; });
        ++counts.total;
        counts.boundary += next - first == 1;
        counts.nonManifold += next - first > 2;
        first = next;
    }
    return counts;
}

} // namespace geometry
