// Host meshes as geometry meshes, without copies.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzfacetmesh.h"
#include "geometry/grafting.h"
#include "geometry/obj.h"
#include "geometry/subdivision.h"

namespace openhost {

/// What a mesh file holds besides polygons; belongs to the cage.
struct MeshExtras {
    geometry::TexCoords texCoords;                 ///< one index a corner, or empty
    std::vector<std::vector<std::uint32_t>> lines; ///< vertex indices of each polyline
    std::vector<geometry::Crease> creases;
    geometry::Graft graft;               ///< empty for most; not checked
    geometry::LeftOutFaces leftOutFaces; ///< which a graft onto the mesh may count
};

class MeshAccess {
public:
    /// Valid until the host mesh changes or goes.
    static const geometry::PolygonMesh& mesh(const DzVertexMesh& mesh);
    /// Shares the topology; the mesh is to be valid.
    static DzFacetMesh* create(geometry::PolygonMesh mesh, int subdivisionLevel = 0);
    /// Replaces all; the topology's facets and groups are made anew only if it is another one.
    static void assign(DzFacetMesh& target, geometry::PolygonMesh mesh, int subdivisionLevel);
    /// Null without any.
    static const MeshExtras* extras(const DzFacetMesh& mesh);
    /// Gone with the next change of the topology.
    static void setExtras(DzFacetMesh& mesh, std::shared_ptr<const MeshExtras> extras);
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
