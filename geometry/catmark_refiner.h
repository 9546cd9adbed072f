// OpenSubdiv's refinement of a topology.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/subdivision.h"

#include <opensubdiv/far/topologyRefiner.h>

#include <memory>

namespace geometry {

/// Values that have seams: which of them each corner has. Nothing where a mesh has none.
struct FaceVarying {
    std::size_t count = 0;
    base::Span<const std::uint32_t> cornerIndices; ///< below count
};

/// @throws TopologyError  the finest level would exceed 2^31 corners
void CheckRefinedSize(const Topology& cage, int levels);

/// Refined to all levels. Values with seams are smooth along these but for their corners.
/// @throws TopologyError  a crease names a vertex that is not there, or OpenSubdiv cannot hold the mesh
std::unique_ptr<OpenSubdiv::Far::TopologyRefiner> MakeCatmarkRefiner(const Topology& cage, int levels,
                                                                     BoundaryRule rule,
                                                                     base::Span<const Crease> creases,
                                                                     const FaceVarying& values = {});

} // namespace geometry
