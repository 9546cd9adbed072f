// Shapes of the scene as the geometry library has them, for programs.
// SPDX-License-Identifier: MIT

#include "openhost/shapes.h"

#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dzobject.h"
#include "figure/cage_modifier.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"

namespace openhost {

geometry::PolygonMeshView WorldMesh(const DzNode& node)
{
    return MeshAccess::mesh(*node.getObject()->getCachedGeom()).view();
}

geometry::TexCoords WorldTexCoords(const DzNode& node)
{
    const DzObject& object = *node.getObject();
    const auto* const shape = qobject_cast<DzFacetShape*>(object.getCurrentShape());
    const DzFacetMesh* const cage = shape ? shape->getFacetMesh() : nullptr;
    const MeshExtras* const extras = cage ? MeshAccess::extras(*cage) : nullptr;
    if (!extras || extras->texCoords.cornerIndices.empty())
        return {};
    const geometry::Topology* const shown = WorldMesh(node).topology;
    const geometry::Topology& topology = *MeshAccess::mesh(*cage).topology;
    if (shown == &topology)
        return extras->texCoords;
    const int level = object.pipeline().level();
    if (level == 0 || shown != object.pipeline().subdivision(level)->topology(level).get())
        return {};
    return geometry::RefineTexCoords(extras->texCoords, topology, level, MeshAccess::boundaryRule(*cage),
                                     extras->creases);
}

std::size_t CageVertexCount(const DzNode& node)
{
    return node.getObject()->pipeline().base().vertexCount();
}

std::vector<std::string> MeshShapers(const DzNode& node)
{
    std::vector<std::string> labels;
    const DzObject* const object = node.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i) {
        const auto* const shaper = qobject_cast<const CageModifier*>(object->getModifier(i));
        if (shaper && shaper->isActive())
            labels.push_back(shaper->getLabel().toStdString());
    }
    return labels;
}

const geometry::SparseDeltas& MorphDeltas(const DzMorph& morph)
{
    return DeltasAccess::deltas(*morph.getDeltas());
}

const geometry::MultiresDetail& MorphDetail(const DzMorph& morph)
{
    return DeltasAccess::detail(*morph.getDeltas());
}

} // namespace openhost
