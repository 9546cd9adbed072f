// Small named meshes, each for the one thing it shows.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <initializer_list>

namespace shapes {

geometry::PolygonMesh FromFaces(std::vector<geometry::Vec3f> positions,
                                std::initializer_list<std::initializer_list<std::uint32_t>> faces);

geometry::PolygonMesh Triangle();
/// Six quads around the origin, outward normals.
geometry::PolygonMesh Cube(float edge);
/// Quads between latitudes and longitudes, triangles at the poles.
geometry::PolygonMesh Sphere(float radius, int rings, int segments);
/// A flat square in the XY plane, from (0, 0) to (size, size), facing +Z.
geometry::PolygonMesh Grid(int cells, float size);
/// A cone without its base: one vertex of high valence and an open rim.
geometry::PolygonMesh OpenCone(int segments);
/// A triangle and a second one without area beside it.
geometry::PolygonMesh Sliver();
/// Two grids that share nothing, the second one shifted along X.
geometry::PolygonMesh TwoIslands(int cells, float size, float shift);
/// Two facing sheets a little apart, as lips: the lower one faces up, the upper one down.
geometry::PolygonMesh Lips(int cells, float size, float gap);
/// A quad, a triangle and a pentagon that share edges.
geometry::PolygonMesh Mixed();
/// A triangle and a vertex that no face uses.
geometry::PolygonMesh LooseVertex();

geometry::PolygonMesh Joined(const geometry::PolygonMesh& a, const geometry::PolygonMesh& b);
geometry::PolygonMesh Moved(geometry::PolygonMesh mesh, geometry::Vec3f by);
/// With two groups and two surfaces, changing from face to face.
geometry::PolygonMesh Labelled(const geometry::PolygonMesh& mesh);

} // namespace shapes
