// The normals of those vertices of a mesh that are looked at.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <vector>

namespace geometry {

/// Vertex normals as VertexNormals() finds them, found when they are wanted: of a dense mesh a picture shows
/// a part only. Who looks a second time, from elsewhere, will look again: then all are found.
class SeenNormals {
public:
    /// @param mesh  must outlive it
    explicit SeenNormals(const PolygonMeshView& mesh);

    void findAll();
    /// @param isSeen  one a face; the normals of its vertices are wanted where it is not 0
    void find(const std::vector<char>& isSeen);
    bool areAllFound() const { return _found == Found::All; }

    /// One per vertex; zero where nobody has asked.
    const std::vector<Vec3f>& normals() const { return _normals; }

private:
    enum class Found { None, Part, All };

    PolygonMeshView _mesh;
    std::vector<Vec3f> _normals;
    Found _found = Found::None;
};

} // namespace geometry
