// Distances from points to a surface, and their summary.
// SPDX-License-Identifier: MIT

#include "geometry/surface_distance.h"

#include "base/cancellation.h"
#include "geometry/errors.h"
#include "geometry/surface_tree.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <numeric>

namespace geometry {

DistanceSummary Summarize(std::vector<float> distances)
{
    DistanceSummary summary;
    if (distances.empty())
        return summary;
    summary.mean = std::accumulate(distances.begin(), distances.end(), 0.0) / double(distances.size());
    const auto p95 = distances.begin() + static_cast<std::ptrdiff_t>((distances.size() - 1) * 95 / 100);
    std::nth_element(distances.begin(), p95, distances.end());
    summary.p95 = *p95;
    summary.max = *std::max_element(p95, distances.end());
    return summary;
}

std::vector<float> SurfaceDistances(base::Span<const Vec3f> from, const PolygonMeshView& to)
{
    if (to.faceCount() == 0)
        throw TopologyError("the surface to measure to has no faces");
    const SurfaceTree tree(to);
    std::vector<float> distances(from.size());
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, from.size(), 1024), [&](const auto& range) {
        base::ThrowIfCancelled();
        for (std::size_t v = range.begin(); v != range.end(); ++v)
            distances[v] = tree.closestPoint(from[v]).distance;
    });
    return distances;
}

} // namespace geometry
