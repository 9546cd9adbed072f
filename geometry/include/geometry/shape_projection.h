// Taking a shape along: eyes, teeth, hair and clothes that move with the surface they belong to.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <array>
#include <vector>

namespace geometry {

/// How each vertex of a mesh moves with a surface that it lies on, near or inside of. Linear in the
/// displacements and smooth in space: build it once per pair, apply it to any number of shapes.
///
/// A vertex takes a blend of the displacements of the vertices around it, by inverse distance (Franke and
/// Nielson, "Smooth interpolation of large sets of scattered data", 1980) about the displacements' linear
/// trend, so that a shift arrives as it is and a turn or a scale to first order. A small piece that is about
/// as deep as it is wide, such as an eyeball or a tooth, takes shift and trend as a whole and stays as smooth
/// as it was. What lies in or on such a piece goes with it.
class ShapeProjection {
public:
    /// The meshes are read during the call only.
    /// @throws TopologyError  no face of the source has a vertex, or a position is not finite
    ShapeProjection(const PolygonMeshView& source, const PolygonMeshView& target);

    std::size_t sourceVertexCount() const { return _sourceVertexCount; }
    std::size_t targetVertexCount() const { return _rowOffsets.size() - 1; }
    /// How many pieces move as a whole.
    std::size_t wholePieceCount() const { return _pieces.size(); }

    /// @param displacements  cm, one per source vertex
    /// @return  cm, one per target vertex
    /// @throws TopologyError  the number of displacements is not the source's vertex count
    std::vector<Vec3f> project(base::Span<const Vec3f> displacements) const;

private:
    /// Moves by a linear function of the place: shift and trend are sums over source vertices.
    struct Piece {
        std::vector<std::uint32_t> vertices; ///< of the target
        std::vector<Vec3f> places;           ///< of the vertices, relative to the piece
        std::vector<std::uint32_t> sources;
        std::vector<std::array<float, 4>> weights; ///< for the shift, then for the trend along x, y, z
    };

    void projectPiece(const Piece& piece, base::Span<const Vec3f> displacements,
                      std::vector<Vec3f>& result) const;

    std::size_t _sourceVertexCount = 0;
    std::vector<std::uint32_t> _rowOffsets{0}; ///< by target vertex; empty rows for those of pieces
    std::vector<std::uint32_t> _rowSources;
    std::vector<float> _rowWeights;
    std::vector<Piece> _pieces;

    friend class ShapeProjectionBuilder;
};

} // namespace geometry
