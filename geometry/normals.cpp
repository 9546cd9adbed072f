// Face normals by Newell's method and angle-weighted vertex normals.
// SPDX-License-Identifier: MIT

#include "geometry/normals.h"

#include "for_each_index.h"
#include "geometry/incidence.h"

#include <Eigen/Core>

#include <algorithm>
#include <cassert>
#include <limits>

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

using Lanes = Eigen::Array4f;

/// Angles between pairs of vectors from their dot products and the lengths of their cross products; to 2e-8
/// by the polynomial of Abramowitz and Stegun, "Handbook of mathematical functions", 1964, 4.4.49.
Lanes AngleOf(const Lanes& crossLength, const Lanes& dot)
{
    constexpr float halfTurn = 3.14159265f, smallest = std::numeric_limits<float>::min();
    constexpr float coefficients[] = {-0.0161657367f, 0.0429096138f, -0.0752896400f, 0.1065626393f,
                                      -0.1420889944f, 0.1999355085f, -0.3333314528f};
    const Lanes across = dot.abs(), larger = across.max(crossLength).max(smallest);
    const Lanes ratio = across.min(crossLength) / larger, square = ratio * ratio;
    Lanes sum = Lanes::Constant(0.0028662257f);
    for (const float coefficient : coefficients)
        sum = sum * square + coefficient;
    const Lanes acute = (sum * square + 1.0f) * ratio;
    const Lanes right = (crossLength > across).select(halfTurn / 2.0f - acute, acute);
    return (dot < 0.0f).select(halfTurn - right, right);
}

/// The face's angles at up to four of its corners, from the given one on.
Lanes AnglesFrom(const PolygonMeshView& mesh, base::Span<const std::uint32_t> face, std::size_t first)
{
    Lanes here[3], previous[3], next[3];
    const auto put = [&](Lanes(&values)[3], Eigen::Index lane, std::size_t corner) {
        const Vec3f at = mesh.positions[face[corner % face.size()]];
        values[0][lane] = at.x, values[1][lane] = at.y, values[2][lane] = at.z;
    };
    for (Eigen::Index lane = 0; lane < 4; ++lane) {
        const std::size_t corner = first + static_cast<std::size_t>(lane);
        put(previous, lane, corner + face.size() - 1);
        put(here, lane, corner);
        put(next, lane, corner + 1);
    }
    const Lanes a[3] = {previous[0] - here[0], previous[1] - here[1], previous[2] - here[2]};
    const Lanes b[3] = {next[0] - here[0], next[1] - here[1], next[2] - here[2]};
    const Lanes cross[3] = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    return AngleOf((cross[0].square() + cross[1].square() + cross[2].square()).sqrt(),
                   a[0] * b[0] + a[1] * b[1] + a[2] * b[2]);
}

/// The angle of each face at each of its corners, in radians.
std::vector<float> CornerAngles(const PolygonMeshView& mesh)
{
    std::vector<float> angles(mesh.topology->cornerCount());
    ForEachIndex(mesh.faceCount(), 4096, [&](std::size_t f) {
        const base::Span<const std::uint32_t> face = mesh.face(f);
        float* const own = angles.data() + mesh.topology->faceOffsets[f];
        for (std::size_t first = 0; first < face.size(); first += 4) {
            const Lanes found = AnglesFrom(mesh, face, first);
            std::copy_n(found.data(), std::min<std::size_t>(4, face.size() - first), own + first);
        }
    });
    return angles;
}

} // namespace

std::vector<Vec3f> FaceNormals(const PolygonMeshView& mesh)
{
    std::vector<Vec3f> normals(mesh.faceCount());
    ForEachIndex(normals.size(), 4096, [&](std::size_t f) { normals[f] = NewellNormal(mesh, f); });
    return normals;
}

std::vector<Vec3f> VertexNormals(const PolygonMeshView& mesh)
{
    assert(mesh.topology->vertexCount == mesh.vertexCount());
    const std::vector<Vec3f> faceNormals = FaceNormals(mesh);
    const std::vector<float> angles = CornerAngles(mesh);
    const IndexLists vertexFaces = VertexFaces(*mesh.topology);
    std::vector<Vec3f> normals(mesh.vertexCount());
    ForEachIndex(normals.size(), 4096, [&](std::size_t v) {
        Vec3f sum;
        std::uint32_t last = UINT32_MAX;
        for (const std::uint32_t f : vertexFaces[v]) {
            const base::Span<const std::uint32_t> face = mesh.face(f);
            for (std::size_t c = 0; c < face.size() && f != last; ++c)
                if (face[c] == v)
                    sum += faceNormals[f] * angles[mesh.topology->faceOffsets[f] + c];
            last = f; // a face that visits the vertex twice stands twice in a row
        }
        normals[v] = Normalized(sum);
    });
    return normals;
}

} // namespace geometry
