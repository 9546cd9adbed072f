// Closest points and rays on a triangulated surface, through Embree.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace geometry {

/// A place on a surface: a triangle and barycentric weights of its three corners (sum 1, none negative).
struct SurfacePoint {
    std::uint32_t triangle = UINT32_MAX; ///< index into the tree's triangles; UINT32_MAX for none
    float weights[3] = {0, 0, 0};
    Vec3f position;                                          ///< cm
    float distance = std::numeric_limits<float>::infinity(); ///< cm, from the query point

    bool isValid() const { return triangle != UINT32_MAX; }
};

/// A bounding volume hierarchy over the fan triangulation of a mesh. Zero-area triangles are left out: they
/// have no barycentric frame. Queries are const and may be made from several threads at once.
class SurfaceTree {
public:
    /// Copies the positions and triangulates the faces; the mesh may go afterwards.
    /// @param keepsTriangles  false where only distances and positions are asked for: triangles() is empty
    /// then,
    ///                        which saves 16 bytes a triangle
    /// @throws base::Error    the ray tracer cannot be started
    /// @throws TopologyError  a position is beyond farthestPosition
    explicit SurfaceTree(const PolygonMeshView& mesh, bool keepsTriangles = true);
    ~SurfaceTree();
    SurfaceTree(SurfaceTree&&) noexcept;
    SurfaceTree& operator=(SurfaceTree&&) noexcept;

    const Triangles& triangles() const;
    Vec3f triangleNormal(std::uint32_t triangle) const; ///< unit

    /// The closest point within maxDistance (cm), or an invalid one.
    /// @param start  a triangle that is probably near, such as that of a neighbour's closest point: the
    /// search
    ///               is then a shorter one, with the same result; UINT32_MAX for none
    SurfacePoint closestPoint(Vec3f query, float maxDistance = std::numeric_limits<float>::infinity(),
                              std::uint32_t start = UINT32_MAX) const;

    /// Some point within maxDistance (cm), or an invalid one where there is none: faster than the closest one
    /// where only that is the question. Parameters as above.
    SurfacePoint anyPoint(Vec3f query, float maxDistance, std::uint32_t start = UINT32_MAX) const;

    /// As closestPoint, over triangles that the filter accepts.
    using TriangleFilter = std::function<bool(std::uint32_t triangle, const SurfacePoint& candidate)>;
    SurfacePoint closestPoint(Vec3f query, float maxDistance, const TriangleFilter& accept) const;

    /// First hit of a ray from origin along a unit direction, or an invalid one. `distance` is along the ray.
    SurfacePoint firstHit(Vec3f origin, Vec3f direction, float minDistance = 0.0f,
                          float maxDistance = std::numeric_limits<float>::infinity()) const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace geometry
