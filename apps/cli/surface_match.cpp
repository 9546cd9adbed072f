// Matching meshes that may be inside out.
// SPDX-License-Identifier: MIT

#include "surface_match.h"

#include "geometry/misfit.h"
#include "geometry/normals.h"

#include <algorithm>

namespace cli {

using geometry::PolygonMeshView;
using geometry::Topology;

bool HasArea(const PolygonMeshView& mesh)
{
    const std::vector<geometry::Vec3f> normals = geometry::FaceNormals(mesh);
    return std::any_of(normals.begin(), normals.end(),
                       [](geometry::Vec3f normal) { return geometry::Length(normal) > 0.0f; });
}

Topology TurnedInsideOut(const Topology& topology)
{
    Topology turned = topology;
    for (std::size_t f = 0; f < turned.faceCount(); ++f)
        std::reverse(turned.cornerVertices.begin() + turned.faceOffsets[f],
                     turned.cornerVertices.begin() + turned.faceOffsets[f + 1]);
    return turned;
}

EitherWayMatch MatchEitherWay(const PolygonMeshView& source, const PolygonMeshView& target,
                              const geometry::MatchOptions& options)
{
    geometry::SurfaceMap map = geometry::MatchSurfaces(source, target, options);
    if (!geometry::IsMisfit(map.statistics()))
        return {std::move(map), false, false};
    const Topology topology = TurnedInsideOut(*target.topology);
    geometry::SurfaceMap turned = geometry::MatchSurfaces(source, {&topology, target.positions}, options);
    if (!geometry::IsMisfit(turned.statistics()))
        return {std::move(turned), true, false};
    return {std::move(map), false, true};
}

} // namespace cli
