// How far one surface lies from another.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <vector>

namespace geometry {

/// Summary of a list of distances.
struct DistanceSummary {
    double mean = 0.0, p95 = 0.0, max = 0.0; ///< cm; p95 is what 95 % do not exceed
};
DistanceSummary Summarize(std::vector<float> distances); ///< all zero for an empty list

/// Distance of each vertex of `from` to the closest point on the surface of `to`, in cm. Infinite where a
/// position is not finite.
/// @throws TopologyError  `to` has no faces
std::vector<float> SurfaceDistances(base::Span<const Vec3f> from, const PolygonMeshView& to);

/// A summary of the distances between two bodies, each of one or more meshes, from a sample of their
/// vertices.
struct DistanceEstimate {
    DistanceSummary summary;  ///< mean and p95 of the sample; max of all vertices
    std::size_t measured = 0; ///< vertices in the sample
    std::size_t all = 0;      ///< vertices of both bodies
    double meanError = 0.0; ///< cm; in 19 of 20 cases the mean of all is not further from that of the sample
    double p95Low = 0.0, p95High = 0.0; ///< cm; in 19 of 20 cases the p95 of all lies between them
};

/// Distances as of SurfaceDistances, from the vertices of each body to whichever mesh of the other is the
/// closest. One vertex of every few is measured, so many as it takes to stay at or below the limit, chosen at
/// random but the same ones on every run; the errors are those of a simple random sample (Cochran, "Sampling
/// Techniques", 1977), and nothing where all are measured. For the maximum all vertices count: of those that
/// are near enough to the other body no more than that is found out.
/// @throws TopologyError  a mesh has no faces
DistanceEstimate EstimateDistances(base::Span<const PolygonMeshView> a, base::Span<const PolygonMeshView> b,
                                   std::size_t mostMeasured = 100000);

} // namespace geometry
