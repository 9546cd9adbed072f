// Smoothing a surface by moving each vertex towards its neighbours.
// SPDX-License-Identifier: MIT

#include "geometry/smoothing.h"

#include "for_each_index.h"
#include "geometry/normals.h"

#include <algorithm>
#include <cassert>

namespace geometry {

namespace {

struct Edge {
    std::uint32_t from, to;

    bool operator<(const Edge& other) const { return from != other.from ? from < other.from : to < other.to; }
    bool operator==(const Edge& other) const { return from == other.from && to == other.to; }
};

/// Both directions of each edge, once for every face at it, sorted.
std::vector<Edge> EdgesOf(const Topology& topology)
{
    std::vector<Edge> edges;
    edges.reserve(2 * topology.cornerCount());
    for (std::size_t f = 0; f < topology.faceCount(); ++f) {
        const auto face = topology.face(f);
        for (std::size_t c = 0; c < face.size(); ++c) {
            const std::uint32_t a = face[c], b = face[c + 1 == face.size() ? 0 : c + 1];
            edges.push_back({a, b});
            edges.push_back({b, a});
        }
    }
    std::sort(edges.begin(), edges.end());
    return edges;
}

IndexLists SmoothingNeighbours(const Topology& topology)
{
    const std::vector<Edge> edges = EdgesOf(topology);
    IndexLists lists;
    std::vector<std::uint32_t> all, border;
    std::size_t at = 0;
    for (std::uint32_t v = 0; v < topology.vertexCount; ++v) {
        all.clear();
        border.clear();
        while (at < edges.size() && edges[at].from == v) {
            const Edge edge = edges[at];
            std::size_t faces = 0;
            for (; at < edges.size() && edges[at] == edge; ++at)
                ++faces;
            all.push_back(edge.to);
            if (faces == 1)
                border.push_back(edge.to);
        }
        const std::vector<std::uint32_t>& row = border.empty() ? all : border;
        lists.indices.insert(lists.indices.end(), row.begin(), row.end());
        lists.offsets.push_back(static_cast<std::uint32_t>(lists.indices.size()));
    }
    return lists;
}

template <class Visit>
void ForEachVertex(std::size_t count, Visit visit)
{
    ForEachIndex(count, 4096, [&](std::size_t v) { visit(v); });
}

/// A right-angled frame on the surface: its normal and the direction of one neighbour along it.
struct Frame {
    Vec3f normal, along, across;

    bool isFlat() const { return Dot(normal, normal) > 0.0f && Dot(along, along) > 0.0f; }
};

Frame FrameOf(Vec3f normal, Vec3f edge)
{
    Frame frame;
    frame.normal = normal;
    frame.along = Normalized(edge - normal * Dot(normal, edge));
    frame.across = Cross(normal, frame.along);
    return frame;
}

/// The vector of one frame as it stands in another; as it is where there is no frame.
Vec3f Turned(Vec3f vector, const Frame& from, const Frame& to)
{
    if (!from.isFlat() || !to.isFlat())
        return vector;
    return to.normal * Dot(vector, from.normal) + to.along * Dot(vector, from.along) +
           to.across * Dot(vector, from.across);
}

} // namespace

Smoother::Smoother(std::shared_ptr<const Topology> topology)
    : _topology(std::move(topology)), _neighbours(SmoothingNeighbours(*_topology))
{
}

Vec3f Smoother::meanAround(base::Span<const Vec3f> positions, std::size_t vertex) const
{
    const auto neighbours = _neighbours[vertex];
    // Relative to the vertex itself: what is flat and even comes out exactly so.
    Vec3f sum;
    for (const std::uint32_t w : neighbours)
        sum += positions[w] - positions[vertex];
    return neighbours.empty() ? positions[vertex]
                              : positions[vertex] + sum * (1.0f / static_cast<float>(neighbours.size()));
}

std::vector<Vec3f> Smoother::detailOf(base::Span<const Vec3f> positions, base::Span<const Vec3f> shape) const
{
    const std::vector<Vec3f> from = VertexNormals({_topology.get(), shape});
    const std::vector<Vec3f> to = VertexNormals({_topology.get(), positions});
    std::vector<Vec3f> detail(shape.size());
    ForEachVertex(detail.size(), [&](std::size_t v) {
        if (_neighbours[v].empty())
            return;
        const std::uint32_t w = _neighbours[v][0];
        detail[v] = Turned(shape[v] - meanAround(shape, v), FrameOf(from[v], shape[w] - shape[v]),
                           FrameOf(to[v], positions[w] - positions[v]));
    });
    return detail;
}

std::vector<Vec3f> Smoother::run(base::Span<const Vec3f> positions, base::Span<const Vec3f> detail,
                                 const SmoothingOptions& options) const
{
    assert(positions.size() == _neighbours.size());
    std::vector<Vec3f> current(positions.begin(), positions.end()), next(current.size());
    for (int round = 0; round < options.iterations; ++round) {
        ForEachVertex(current.size(), [&](std::size_t v) {
            Vec3f target = meanAround(current, v);
            if (!detail.empty())
                target += detail[v];
            next[v] = current[v] + (target - current[v]) * options.weight;
        });
        current.swap(next);
    }
    return current;
}

std::vector<Vec3f> Smoother::smooth(base::Span<const Vec3f> positions, const SmoothingOptions& options) const
{
    return run(positions, {}, options);
}

std::vector<Vec3f> Smoother::smoothTowards(base::Span<const Vec3f> positions, base::Span<const Vec3f> shape,
                                           const SmoothingOptions& options) const
{
    return run(positions, detailOf(positions, shape), options);
}

} // namespace geometry
