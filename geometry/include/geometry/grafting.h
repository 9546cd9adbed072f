// Joining a mesh to another one along vertices that are one in both.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/left_out_faces.h"
#include "geometry/polygon_mesh.h"

#include <array>
#include <vector>

namespace geometry {

/// How a mesh replaces a part of another one.
struct Graft {
    std::uint32_t vertexCount = 0, faceCount = 0;          ///< of the other mesh; 0 where not known
    std::vector<std::array<std::uint32_t, 2>> vertexPairs; ///< an own vertex, and the other's that it becomes
    std::vector<std::uint32_t> hiddenFaces;                ///< of the other mesh

    bool empty() const { return vertexPairs.empty(); }
};

/// @throws TopologyError  it is for another mesh, or names a vertex or face that is not there or one vertex
/// twice
void CheckGraft(const Graft& graft, const Topology& own, const Topology& other);

/// What of a graft is left out, since there is nothing that it could join or hide.
struct GraftLosses {
    std::size_t pairs = 0; ///< of vertices that are not there, or that others join already
    std::size_t hiddenFaces = 0;
};

/// The part of a graft that can be used, as CheckGraft accepts it. Of pairs with one vertex the first counts.
/// @param otherLacks  faces that the graft counts and the other mesh lacks
/// @throws TopologyError  it is for another mesh, or no pair can be used
Graft UsableGraft(const Graft& graft, const Topology& own, const Topology& other,
                  const LeftOutFaces& otherLacks, GraftLosses& losses);

/// A mesh that is grafted onto another one of the list before it.
struct GraftPart {
    std::shared_ptr<const Topology> topology;
    const Graft* graft = nullptr; ///< null for the first part alone, which is grafted onto nothing
    std::size_t onto = 0;         ///< the part that it is grafted onto
};

/// Meshes grown together.
struct GraftedTopology {
    /// The vertices of the first part keep their numbers; the faces that remain stand part by part in their
    /// order. Groups and surfaces are those of all parts.
    std::shared_ptr<const Topology> topology;
    std::vector<std::vector<std::uint32_t>> vertices; ///< by part, by its vertex: the joined vertex
    /// Whose places the joined vertices take, the part and its vertex: of a pair those of the other mesh.
    std::vector<std::array<std::uint32_t, 2>> origins;
    std::vector<std::uint32_t> facesOfFirst; ///< what is left of the first part, by joined face
};

/// @throws TopologyError  a graft does not fit, see CheckGraft
GraftedTopology JoinGrafts(const std::vector<GraftPart>& parts);

} // namespace geometry
