// Which faces and vertices meet at each vertex, as flat arrays.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <vector>

namespace geometry {

/// Lists of indices, one a row, in one array.
struct IndexLists {
    std::vector<std::uint32_t> offsets{0}; ///< rows + 1
    std::vector<std::uint32_t> indices;

    std::size_t size() const { return offsets.size() - 1; }
    base::Span<const std::uint32_t> operator[](std::size_t row) const
    {
        return {indices.data() + offsets[row], offsets[row + 1] - offsets[row]};
    }
};

/// The faces around each vertex, ascending; one row a vertex, empty for one that no face uses.
IndexLists VertexFaces(const Topology& topology);

/// The vertices that share a face's edge with each vertex, ascending, each once; one row a vertex.
IndexLists VertexNeighbours(const Topology& topology);

/// Vertices on an edge that only one face uses.
std::vector<bool> BoundaryVertices(const Topology& topology);

/// How many edges there are, by the faces that meet at them.
struct EdgeCounts {
    std::size_t total = 0;
    std::size_t boundary = 0;    ///< of one face
    std::size_t nonManifold = 0; ///< of more than two faces

    bool isClosed() const { return total > 0 && boundary == 0 && nonManifold == 0; }
};
EdgeCounts CountEdges(const Topology& topology);

} // namespace geometry
