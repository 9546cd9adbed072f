// Recognising a mesh that was made from a coarser one by splitting each face in four.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <optional>
#include <vector>

namespace geometry {

/// How a mesh of quads came from a coarser one: four faces in a row, one a corner, stand for one of its
/// quads, as uniform subdivision numbers them. Only the topology tells, so it does not matter who has
/// subdivided.
class QuadSplit {
public:
    /// Nothing where the mesh cannot have come about so.
    static std::optional<QuadSplit> Find(const Topology& fine);

    /// All quads; neither groups nor surfaces, and no vertices that no face uses.
    const Topology& coarse() const { return _coarse; }

    /// The values at the fine vertices that the coarse ones have become.
    /// @param fine  one per fine vertex
    /// @return      one per coarse vertex
    std::vector<Vec3f> sample(base::Span<const Vec3f> fine) const;

    /// Along each coarse edge and over each coarse face the mean of its corners; zero for a fine vertex that
    /// no face uses.
    /// @param coarse  one per coarse vertex
    /// @return        one per fine vertex
    std::vector<Vec3f> spread(base::Span<const Vec3f> coarse) const;

private:
    Topology _coarse;
    std::vector<std::uint32_t> _fineOfCoarse;
    std::vector<std::uint32_t> _corners; ///< of each fine vertex a corner; UINT32_MAX without a face
};

} // namespace geometry
