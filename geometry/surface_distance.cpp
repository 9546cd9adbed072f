// Distances from points to a surface, and their summary.
// SPDX-License-Identifier: MIT

#include "geometry/surface_distance.h"

#include "base/cancellation.h"
#include "geometry/errors.h"
#include "geometry/surface_tree.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace geometry {

namespace {

constexpr float farAway = std::numeric_limits<float>::infinity();

/// How far a point is from the nearest of some surfaces, and where that is.
struct NearestPlace {
    float distance = farAway;
    Vec3f position;
    std::size_t surface = 0;
    std::uint32_t triangle = UINT32_MAX;
};

class Surfaces {
public:
    explicit Surfaces(base::Span<const PolygonMeshView> meshes)
    {
        for (const PolygonMeshView& mesh : meshes) {
            if (mesh.faceCount() == 0)
                throw TopologyError("the surface to measure to has no faces");
            constexpr bool keepsTriangles = false;
            _trees.emplace_back(mesh, keepsTriangles);
        }
    }

    /// @param nearby  any place on the surfaces, from which the answer is faster the nearer it is
    NearestPlace nearest(Vec3f from, const NearestPlace& nearby) const
    {
        NearestPlace best;
        if (nearby.triangle != UINT32_MAX)
            best = on(nearby.surface, from, farAway, nearby.triangle);
        for (std::size_t s = 0; s < _trees.size(); ++s) {
            if (nearby.triangle != UINT32_MAX && s == nearby.surface)
                continue;
            const NearestPlace found = on(s, from, best.distance, UINT32_MAX);
            if (found.distance < best.distance)
                best = found;
        }
        return best;
    }

    /// A place within some distance, or one that is infinitely far where there is none.
    NearestPlace any(Vec3f from, float within, const NearestPlace& nearby) const
    {
        for (std::size_t i = 0; i < _trees.size(); ++i) {
            const std::size_t surface = (nearby.surface + i) % _trees.size(); // the likeliest first
            const std::uint32_t start = i == 0 ? nearby.triangle : UINT32_MAX;
            const SurfacePoint found = _trees[surface].anyPoint(from, within, start);
            if (found.isValid())
                return {found.distance, found.position, surface, found.triangle};
        }
        return {};
    }

private:
    NearestPlace on(std::size_t surface, Vec3f from, float within, std::uint32_t start) const
    {
        const SurfacePoint found = _trees[surface].closestPoint(from, within, start);
        return {found.distance, found.position, surface, found.triangle};
    }

    std::vector<SurfaceTree> _trees;
};

/// Well mixed bits of a number; for the method see Steele, Lea and Flood, "Fast splittable pseudorandom
/// number generators", 2014.
std::uint64_t Mixed(std::uint64_t x)
{
    x += 0x9e3779b97f4a7c15u;
    x = (x ^ x >> 30) * 0xbf58476d1ce4e5b9u;
    x = (x ^ x >> 27) * 0x94d049bb133111ebu;
    return x ^ x >> 31;
}

/// Some points, of which one in each run of so many is measured.
class Sample {
public:
    Sample(base::Span<const Vec3f> points, std::size_t step)
        : _points(points), _step(step), _places((points.size() + step - 1) / step)
    {
    }

    void measure(const Surfaces& surfaces)
    {
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, _places.size(), 256), [&](const auto& range) {
            base::ThrowIfCancelled();
            NearestPlace nearby;
            for (std::size_t run = range.begin(); run != range.end(); ++run)
                nearby = _places[run] = surfaces.nearest(_points[chosen(run)], nearby);
        });
    }

    void append(std::vector<float>& distances) const
    {
        for (const NearestPlace& place : _places)
            distances.push_back(place.distance);
    }

    /// The largest distance of all points that is larger than the given one, or that.
    float largest(const Surfaces& surfaces, float known) const
    {
        std::vector<float> largest(_places.size(), known);
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, _places.size(), 64), [&](const auto& range) {
            base::ThrowIfCancelled();
            float own = known;
            for (std::size_t run = range.begin(); run != range.end(); ++run) {
                NearestPlace nearby = _places[run];
                for (std::size_t v = run * _step; v < std::min((run + 1) * _step, _points.size()); ++v) {
                    if (Length(nearby.position - _points[v]) <= own)
                        continue;
                    const NearestPlace place = surfaces.any(_points[v], own, nearby);
                    nearby = place.distance < farAway ? place : surfaces.nearest(_points[v], nearby);
                    own = std::max(own, nearby.distance);
                }
                largest[run] = own;
            }
        });
        return largest.empty() ? known : *std::max_element(largest.begin(), largest.end());
    }

private:
    std::size_t chosen(std::size_t run) const
    {
        const std::size_t first = run * _step, count = std::min(_step, _points.size() - first);
        return first + Mixed(run) % count;
    }

    base::Span<const Vec3f> _points;
    std::size_t _step;
    std::vector<NearestPlace> _places; ///< of the chosen points
};

std::size_t VertexCount(base::Span<const PolygonMeshView> meshes)
{
    std::size_t count = 0;
    for (const PolygonMeshView& mesh : meshes)
        count += mesh.vertexCount();
    return count;
}

/// Measures one way and adds to the distances.
/// @return the largest distance of all vertices, if larger than the largest one known
float MeasureOneWay(base::Span<const PolygonMeshView> from, base::Span<const PolygonMeshView> to,
                    std::size_t step, float known, std::vector<float>& distances)
{
    const Surfaces surfaces(to);
    for (const PolygonMeshView& mesh : from) {
        Sample sample(mesh.positions, step);
        sample.measure(surfaces);
        const std::size_t first = distances.size();
        sample.append(distances);
        for (std::size_t i = first; i < distances.size(); ++i)
            known = std::max(known, distances[i]);
        if (step > 1)
            known = sample.largest(surfaces, known);
    }
    return known;
}

/// The value that so large a share of the values does not exceed.
float Quantile(std::vector<float>& values, double share)
{
    const auto last = static_cast<double>(values.size() - 1);
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(std::clamp(share * last, 0.0, last));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

void SetErrors(DistanceEstimate& estimate, std::vector<float>& distances)
{
    constexpr double sigmas = 1.96; // 19 of 20 cases
    const auto count = static_cast<double>(distances.size());
    double squares = 0.0;
    for (const float distance : distances)
        squares += (distance - estimate.summary.mean) * (distance - estimate.summary.mean);
    const double left = 1.0 - count / static_cast<double>(estimate.all);
    estimate.meanError = sigmas * std::sqrt(squares / (count - 1.0) / count * left);
    const double shareError = sigmas * std::sqrt(0.95 * 0.05 / count * left);
    estimate.p95Low = Quantile(distances, 0.95 - shareError);
    estimate.p95High = Quantile(distances, 0.95 + shareError);
}

} // namespace

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
    const Surfaces surfaces({&to, 1});
    Sample all(from, 1);
    all.measure(surfaces);
    std::vector<float> distances;
    distances.reserve(from.size());
    all.append(distances);
    return distances;
}

DistanceEstimate EstimateDistances(base::Span<const PolygonMeshView> a, base::Span<const PolygonMeshView> b,
                                   std::size_t mostMeasured)
{
    DistanceEstimate estimate;
    estimate.all = VertexCount(a) + VertexCount(b);
    const std::size_t step = std::max<std::size_t>(1, (estimate.all + mostMeasured - 1) / mostMeasured);
    std::vector<float> distances;
    const float largest = MeasureOneWay(b, a, step, MeasureOneWay(a, b, step, 0.0f, distances), distances);
    estimate.measured = distances.size();
    estimate.summary = Summarize(distances);
    estimate.summary.max = largest;
    estimate.p95Low = estimate.p95High = estimate.summary.p95;
    if (step > 1)
        SetErrors(estimate, distances);
    return estimate;
}

} // namespace geometry
