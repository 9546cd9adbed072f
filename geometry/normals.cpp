// Face normals by Newell's method and angle-weighted vertex normals.
// SPDX-License-Identifier: MIT

#include "geometry/normals.h"

#include "for_each_index.h"
#include "geometry/incidence.h"
#include "lanes.h"

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

/// Angles between pairs of vectors from their dot products and the lengths of their cross products; to 2e-8
/// by the polynomial of Abramowitz and Stegun, "Handbook of mathematical functions", 1964, 4.4.49.
GEOMETRY_INLINED Lanes AngleOf(Lanes crossLength, Lanes dot)
{
    constexpr float halfTurn = 3.14159265f, smallest = std::numeric_limits<float>::min();
    constexpr float coefficients[] = {-0.0161657367f, 0.0429096138f, -0.0752896400f, 0.1065626393f,
                                      -0.1420889944f, 0.1999355085f, -0.3333314528f};
    const Lanes across = Abs(dot), larger = Max(Max(across, crossLength), AllLanes(smallest));
    const Lanes ratio = Min(across, crossLength) / larger, square = ratio * ratio;
    Lanes sum = AllLanes(0.0028662257f);
    for (const float coefficient : coefficients)
        sum = sum * square + coefficient;
    const Lanes acute = (sum * square + 1.0f) * ratio;
    const Lanes right = crossLength > across ? halfTurn / 2.0f - acute : acute;
    return dot < 0.0f ? halfTurn - right : right;
}

/// Angles between the ways from a corner to the one before it and to the next one.
GEOMETRY_INLINED Lanes AnglesAt(const LaneVectors& previous, const LaneVectors& here, const LaneVectors& next)
{
    const LaneVectors a = previous - here, b = next - here, cross = Cross(a, b);
    return AngleOf(SquareRoot(Dot(cross, cross)), Dot(a, b));
}

/// A quad's vectors turned by a corner: each lane has what was in the next one.
GEOMETRY_INLINED LaneVectors Turned(const LaneVectors& quad)
{
    const auto turned = [](Lanes lanes) { return Lanes{lanes[1], lanes[2], lanes[3], lanes[0]}; };
    return {turned(quad.x), turned(quad.y), turned(quad.z)};
}

Lanes QuadAngles(const PolygonMeshView& mesh, base::Span<const std::uint32_t> face)
{
    const Vec3f a = mesh.positions[face[0]], b = mesh.positions[face[1]], c = mesh.positions[face[2]],
                d = mesh.positions[face[3]];
    const LaneVectors here{{a.x, b.x, c.x, d.x}, {a.y, b.y, c.y, d.y}, {a.z, b.z, c.z, d.z}};
    const LaneVectors next = Turned(here);
    return AnglesAt(Turned(Turned(next)), here, next);
}

/// The face's angles at up to four of its corners, from the given one on.
Lanes AnglesFrom(const PolygonMeshView& mesh, base::Span<const std::uint32_t> face, std::size_t first)
{
    LaneVectors here, previous, next;
    const auto put = [&](LaneVectors& values, std::size_t lane, std::size_t corner) {
        const Vec3f at = mesh.positions[face[corner % face.size()]];
        values.x[lane] = at.x, values.y[lane] = at.y, values.z[lane] = at.z;
    };
    for (std::size_t lane = 0; lane < 4; ++lane) {
        put(previous, lane, first + lane + face.size() - 1);
        put(here, lane, first + lane);
        put(next, lane, first + lane + 1);
    }
    return AnglesAt(previous, here, next);
}

/// The angle of each face at each of its corners, in radians.
std::vector<float> CornerAngles(const PolygonMeshView& mesh)
{
    std::vector<float> angles(mesh.topology->cornerCount());
    ForEachIndex(mesh.faceCount(), 4096, [&](std::size_t f) {
        const base::Span<const std::uint32_t> face = mesh.face(f);
        float* const own = angles.data() + mesh.topology->faceOffsets[f];
        for (std::size_t first = 0; first < face.size(); first += 4) {
            const Lanes found = face.size() == 4 ? QuadAngles(mesh, face) : AnglesFrom(mesh, face, first);
            for (std::size_t lane = 0; lane < std::min<std::size_t>(4, face.size() - first); ++lane)
                own[first + lane] = found[lane];
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
            if (f == last)
                continue;
            const base::Span<const std::uint32_t> face = mesh.face(f);
            const float* const own = angles.data() + mesh.topology->faceOffsets[f];
            float angle = 0.0f; // which corner it is no processor can foresee
            for (std::size_t c = 0; c < face.size(); ++c)
                angle += face[c] == v ? own[c] : 0.0f;
            sum += faceNormals[f] * angle;
            last = f; // a face that visits the vertex twice stands twice in a row
        }
        normals[v] = Normalized(sum);
    });
    return normals;
}

} // namespace geometry
