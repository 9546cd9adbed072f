// Host meshes as geometry meshes, without copies.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzfacetmesh.h"
#include "geometry/subdivision.h"

namespace openhost {

class MeshAccess {
public:
    /// Valid until the host mesh changes or goes.
    static const geometry::PolygonMesh& mesh(const DzVertexMesh& mesh);
    /// Shares the topology; the mesh is to be valid.
    static DzFacetMesh* create(geometry::PolygonMesh mesh, int subdivisionLevel = 0);
    /// Replaces all; the topology's facets and groups are made anew only if it is another one.
    static void assign(DzFacetMesh& target, geometry::PolygonMesh mesh, int subdivisionLevel);
    static geometry::BoundaryRule boundaryRule(const DzFacetMesh& mesh);
};

inline DzVec3 ToDz(geometry::Vec3f v)
{
    return DzVec3(v.x, v.y, v.z);
}
inline geometry::Vec3f FromDz(const DzVec3& v)
{
    return {v.m_x, v.m_y, v.m_z};
}

} // namespace openhost
