// Smoothing a surface by moving each vertex towards its neighbours.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/incidence.h"
#include "geometry/polygon_mesh.h"

#include <vector>

namespace geometry {

struct SmoothingOptions {
    float weight = 0.5f; ///< 0 to 1: the part of the way to the neighbours' mean that one round goes
    int iterations = 2;  ///< rounds
};

/// Uniform Laplacian smoothing over one topology. Build it once, use it for any number of shapes.
///
/// A vertex of an open border has only its neighbours along the border, so that hems are not drawn in. A
/// vertex without neighbours stays where it is.
class Smoother {
public:
    explicit Smoother(std::shared_ptr<const Topology> topology);

    /// Every round moves all vertices at once. Details vanish and closed surfaces shrink.
    /// @param positions  one per vertex of the topology
    std::vector<Vec3f> smooth(base::Span<const Vec3f> positions, const SmoothingOptions& options) const;

    /// Smooths what bends and stretches the shape only: each vertex is drawn to where it stands among its
    /// neighbours in the shape, turned with the surface around it (Lipman et al., "Differential coordinates
    /// for interactive mesh editing", 2004). The shape itself, moved or turned as a whole, stays as it is.
    /// @param positions, shape  one per vertex of the topology
    std::vector<Vec3f> smoothTowards(base::Span<const Vec3f> positions, base::Span<const Vec3f> shape,
                                     const SmoothingOptions& options) const;

private:
    Vec3f meanAround(base::Span<const Vec3f> positions, std::size_t vertex) const;
    std::vector<Vec3f> detailOf(base::Span<const Vec3f> positions, base::Span<const Vec3f> shape) const;
    std::vector<Vec3f> run(base::Span<const Vec3f> positions, base::Span<const Vec3f> detail,
                           const SmoothingOptions& options) const;

    std::shared_ptr<const Topology> _topology;
    IndexLists _neighbours;
};

} // namespace geometry
