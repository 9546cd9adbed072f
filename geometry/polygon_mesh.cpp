// Polygon meshes: checks, boxes and triangulation.
// SPDX-License-Identifier: MIT

#include "geometry/polygon_mesh.h"

#include "base/counted.h"
#include "for_each_index.h"
#include "geometry/errors.h"

namespace geometry {

namespace {

void CheckFaceLabels(const std::vector<std::uint32_t>& labels, const std::vector<std::string>& names,
                     std::size_t faceCount, const char* kind)
{
    if (labels.empty())
        return;
    if (labels.size() != faceCount)
        throw TopologyError("mesh has {} but {} {} {}", base::Counted(faceCount, "face", "faces"),
                            labels.size(), kind, labels.size() == 1 ? "entry" : "entries");
    for (std::size_t f = 0; f < faceCount; ++f)
        if (labels[f] >= names.size())
            throw TopologyError("face {} names {} {} but only {} defined", f, kind, labels[f],
                                base::Counted(names.size(), "is", "are"));
}

} // namespace

void Validate(const Topology& topology)
{
    if (topology.faceOffsets.empty() || topology.faceOffsets.front() != 0 ||
        topology.faceOffsets.back() != topology.cornerVertices.size())
        throw TopologyError("the face offsets do not span the corners");
    for (std::size_t f = 0; f < topology.faceCount(); ++f) {
        if (topology.faceOffsets[f + 1] < topology.faceOffsets[f] + 3)
            throw TopologyError("face {} has fewer than three corners", f);
        for (const std::uint32_t vertex : topology.face(f))
            if (vertex >= topology.vertexCount)
                throw TopologyError("face {} names vertex {} but only {} defined", f, vertex,
                                    base::Counted(topology.vertexCount, "is", "are"));
    }
    CheckFaceLabels(topology.faceGroups, topology.groupNames, topology.faceCount(), "group");
    CheckFaceLabels(topology.faceSurfaces, topology.surfaceNames, topology.faceCount(), "surface");
}

Box3f BoundingBox(base::Span<const Vec3f> positions)
{
    Box3f box;
    for (const Vec3f position : positions)
        box.include(position);
    return box;
}

Triangles Triangulate(const Topology& topology)
{
    Triangles result;
    const std::size_t count = topology.cornerCount() - 2 * topology.faceCount();
    result.corners.resize(3 * count);
    result.faces.resize(count);
    ForEachIndex(topology.faceCount(), 8192, [&](std::size_t f) {
        const base::Span<const std::uint32_t> face = topology.face(f);
        std::size_t triangle = topology.faceOffsets[f] - 2 * f; // each face before has two fewer than corners
        for (std::size_t c = 2; c < face.size(); ++c, ++triangle) {
            std::uint32_t* const corners = result.corners.data() + 3 * triangle;
            corners[0] = face[0], corners[1] = face[c - 1], corners[2] = face[c];
            result.faces[triangle] = static_cast<std::uint32_t>(f);
        }
    });
    return result;
}

} // namespace geometry
