// Polygon meshes: shared, immutable topology and positions over it.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/vec3.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace geometry {

/// Which vertices make up which face, and how faces are grouped. Build it once, share it among all shapes.
///
/// The corners of one face are contiguous, so a face is a pair of offsets. Indices count from 0. All
/// functions but Validate expect a topology that it accepts, and positions for exactly its vertices.
struct Topology {
    std::uint32_t vertexCount = 0;
    std::vector<std::uint32_t> faceOffsets{0}; ///< faceCount + 1 entries, ascending, first is 0
    std::vector<std::uint32_t>
        cornerVertices;                  ///< face f: [faceOffsets[f], faceOffsets[f + 1]); below vertexCount
    std::vector<std::string> groupNames; ///< face groups, for example one per bone
    std::vector<std::uint32_t> faceGroups; ///< one per face, index into groupNames; empty without groups
    std::vector<std::string> surfaceNames; ///< materials
    std::vector<std::uint32_t>
        faceSurfaces; ///< one per face, index into surfaceNames; empty without surfaces

    std::size_t faceCount() const { return faceOffsets.size() - 1; }
    std::size_t cornerCount() const { return cornerVertices.size(); }
    base::Span<const std::uint32_t> face(std::size_t f) const
    {
        return {cornerVertices.data() + faceOffsets[f], faceOffsets[f + 1] - faceOffsets[f]};
    }
    /// Appends a face with these corners (no group, no surface).
    void addFace(base::Span<const std::uint32_t> corners)
    {
        cornerVertices.insert(cornerVertices.end(), corners.begin(), corners.end());
        faceOffsets.push_back(static_cast<std::uint32_t>(cornerVertices.size()));
    }
};

/// Checks offsets, indices and group arrays against each other.
/// @throws TopologyError  names the first face that does not fit
void Validate(const Topology& topology);

/// A read-only view of a polygon mesh; cheap to copy. The owners must outlive it.
struct PolygonMeshView {
    const Topology* topology = nullptr;
    base::Span<const Vec3f> positions; ///< cm, one per vertex

    std::size_t vertexCount() const { return positions.size(); }
    std::size_t faceCount() const { return topology->faceCount(); }
    base::Span<const std::uint32_t> face(std::size_t f) const { return topology->face(f); }
};

/// A mesh that owns its positions and shares its topology.
struct PolygonMesh {
    std::shared_ptr<const Topology> topology = std::make_shared<Topology>();
    std::vector<Vec3f> positions; ///< cm, one per vertex

    std::size_t vertexCount() const { return positions.size(); }
    std::size_t faceCount() const { return topology->faceCount(); }
    PolygonMeshView view() const { return {topology.get(), positions}; }
};

/// The box around all positions, in cm; empty for no positions.
Box3f BoundingBox(base::Span<const Vec3f> positions);

/// Every polygon as a fan around its first corner: quad (0,1,2,3) becomes (0,1,2) and (0,2,3).
struct Triangles {
    std::vector<std::uint32_t> corners; ///< three vertex indices a triangle
    std::vector<std::uint32_t> faces;   ///< the polygon that each triangle comes from

    std::size_t count() const { return faces.size(); }
};
Triangles Triangulate(const Topology& topology);

} // namespace geometry
