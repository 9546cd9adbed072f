// Pushing a surface out along its normals.
// SPDX-License-Identifier: MIT

#include "geometry/push.h"

#include "geometry/normals.h"

#include <cassert>

namespace geometry {

std::vector<Vec3f> PushAlongNormals(const PolygonMeshView& mesh, float distance,
                                    base::Span<const float> weights)
{
    assert(weights.empty() || weights.size() == mesh.vertexCount());
    std::vector<Vec3f> pushed = VertexNormals(mesh);
    for (std::size_t v = 0; v < pushed.size(); ++v)
        pushed[v] = mesh.positions[v] + pushed[v] * (weights.empty() ? distance : distance * weights[v]);
    return pushed;
}

} // namespace geometry
