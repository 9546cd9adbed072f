// Merging and dropping vertices.
// SPDX-License-Identifier: MIT

#include "geometry/mesh_cleanup.h"

#include <map>
#include <tuple>

namespace geometry {

namespace {

/// For each vertex the first one at its place.
std::vector<std::uint32_t> FirstAtSamePlace(base::Span<const Vec3f> positions)
{
    std::map<std::tuple<float, float, float>, std::uint32_t> firsts;
    std::vector<std::uint32_t> first(positions.size());
    for (std::uint32_t v = 0; v < positions.size(); ++v)
        first[v] =
            firsts.emplace(std::make_tuple(positions[v].x, positions[v].y, positions[v].z), v).first->second;
    return first;
}

std::vector<std::uint32_t> Unchanged(std::size_t count)
{
    std::vector<std::uint32_t> same(count);
    for (std::uint32_t v = 0; v < count; ++v)
        same[v] = v;
    return same;
}

/// A face's corners after merging, without repeats of the corner before.
std::vector<std::uint32_t> MergedFace(base::Span<const std::uint32_t> face,
                                      const std::vector<std::uint32_t>& first)
{
    std::vector<std::uint32_t> corners;
    for (const std::uint32_t vertex : face)
        if (corners.empty() || corners.back() != first[vertex])
            corners.push_back(first[vertex]);
    while (corners.size() > 1 && corners.front() == corners.back())
        corners.pop_back();
    return corners;
}

} // namespace

PolygonMesh CleanUp(const PolygonMeshView& mesh, const CleanUpOptions& options)
{
    const Topology& old = *mesh.topology;
    const std::vector<std::uint32_t> first =
        options.weld ? FirstAtSamePlace(mesh.positions) : Unchanged(mesh.vertexCount());
    auto topology = std::make_shared<Topology>();
    topology->groupNames = old.groupNames;
    topology->surfaceNames = old.surfaceNames;
    std::vector<bool> isKept(mesh.vertexCount(), !options.dropUnused);
    for (std::size_t f = 0; f < old.faceCount(); ++f) {
        const std::vector<std::uint32_t> corners = MergedFace(old.face(f), first);
        if (corners.size() < 3)
            continue;
        for (const std::uint32_t vertex : corners)
            isKept[vertex] = true;
        topology->addFace(corners);
        if (!old.faceGroups.empty())
            topology->faceGroups.push_back(old.faceGroups[f]);
        if (!old.faceSurfaces.empty())
            topology->faceSurfaces.push_back(old.faceSurfaces[f]);
    }
    PolygonMesh result;
    std::vector<std::uint32_t> renumbered(mesh.vertexCount());
    for (std::uint32_t v = 0; v < mesh.vertexCount(); ++v) {
        if (!isKept[v] || first[v] != v)
            continue;
        renumbered[v] = static_cast<std::uint32_t>(result.positions.size());
        result.positions.push_back(mesh.positions[v]);
    }
    for (std::uint32_t& vertex : topology->cornerVertices)
        vertex = renumbered[vertex];
    topology->vertexCount = static_cast<std::uint32_t>(result.positions.size());
    result.topology = std::move(topology);
    return result;
}

} // namespace geometry
