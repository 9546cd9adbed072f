// Face normals by Newell's method and angle-weighted vertex normals.
// SPDX-License-Identifier: MIT

#include "geometry/normals.h"

#include "base/cancellation.h"
#include "geometry/incidence.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <cassert>

namespace geometry {

namespace {

Vec3f NewellNormal(const PolygonMeshView& mesh, std::size_t f)
{
    const base::Span<const std::uint32_t> face = mesh.face(f);
    const Vec3f base = mesh.positions[face[0]]; // relative to one corner, or far-off meshes lose digits
    Vec3f sum;
    for (std::size_t c = 2; c < face.size(); ++c)
        sum += Cross(mesh.positions[face[c - 1]] - base, mesh.positions[face[c]] - base);
    return Normalized(sum);
}

float CornerAngle(Vec3f toPrevious, Vec3f toNext)
{
    return std::atan2(Length(Cross(toPrevious, toNext)), Dot(toPrevious, toNext));
}

/// The angle of the face at the vertex; the sum of them where a face visits a vertex twice.
float AngleAt(const PolygonMeshView& mesh, base::Span<const std::uint32_t> face, std::uint32_t vertex)
{
    float angle = 0.0f;
    for (std::size_t c = 0; c < face.size(); ++c) {
        if (face[c] != vertex)
            continue;
        const Vec3f here = mesh.positions[vertex];
        const Vec3f previous = mesh.positions[face[c == 0 ? face.size() - 1 : c - 1]];
        const Vec3f next = mesh.positions[face[c + 1 == face.size() ? 0 : c + 1]];
        angle += CornerAngle(previous - here, next - here);
    }
    return angle;
}

} // namespace

std::vector<Vec3f> FaceNormals(const PolygonMeshView& mesh)
{
    std::vector<Vec3f> normals(mesh.faceCount());
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, normals.size(), 4096), [&](const auto& range) {
        base::ThrowIfCancelled();
        for (std::size_t f = range.begin(); f != range.end(); ++f)
            normals[f] = NewellNormal(mesh, f);
    });
    return normals;
}

std::vector<Vec3f> VertexNormals(const PolygonMeshView& mesh)
{
    assert(mesh.topology->vertexCount == mesh.vertexCount());
    const std::vector<Vec3f> faceNormals = FaceNormals(mesh);
    const IndexLists vertexFaces = VertexFaces(*mesh.topology);
    std::vector<Vec3f> normals(mesh.vertexCount());
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, normals.size(), 4096), [&](const auto& range) {
        base::ThrowIfCancelled();
        for (std::size_t v = range.begin(); v != range.end(); ++v) {
            Vec3f sum;
            std::uint32_t last = UINT32_MAX;
            for (const std::uint32_t f : vertexFaces[v]) {
                if (f != last) // a face that visits the vertex twice stands twice in a row
                    sum += faceNormals[f] * AngleAt(mesh, mesh.face(f), static_cast<std::uint32_t>(v));
                last = f;
            }
            normals[v] = Normalized(sum);
        }
    });
    return normals;
}

} // namespace geometry
