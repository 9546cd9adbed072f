// Texture coordinates and their refinement.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/subdivision.h"

#include <cstdint>
#include <vector>

namespace geometry {

/// Texture coordinates, one index a corner; empty without.
struct TexCoords {
    struct Uv {
        float u = 0.0f, v = 0.0f;
    };
    std::vector<Uv> coordinates;
    std::vector<std::uint32_t>
        cornerIndices; ///< one per corner of the topology; empty when any corner has none
};

/// Those of a level of the cage's Subdivision, corner by corner. They are smoothed like the surface, also
/// along their seams, but stay where they are at the seams' corners and ends.
/// @param level          1 or more
/// @param rule, creases  of the subdivision
/// @throws TopologyError  the indices are not one a corner or name a coordinate that is not there, or the
///                        cage cannot be subdivided
TexCoords RefineTexCoords(const TexCoords& texCoords, const Topology& cage, int level, BoundaryRule rule,
                          base::Span<const Crease> creases);

} // namespace geometry
