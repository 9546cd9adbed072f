// Ear clipping of the faces that are not convex.
// SPDX-License-Identifier: MIT

#include "face_cuts.h"

#include "base/cancellation.h"
#include "geometry/limits.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <cmath>
#include <mutex>

namespace geometry {

namespace {

using Corners = base::Span<const std::uint32_t>;

/// Twice the area of a triangle of the fan, along its normal.
/// As a call for each face of a dense mesh it would take twice the time.
[[gnu::always_inline]] inline Vec3f FanArea(base::Span<const Vec3f> positions, Corners face, std::size_t last)
{
    const Vec3f first = positions[face[0]];
    return Cross(positions[face[last - 1]] - first, positions[face[last]] - first);
}

Vec3f AreaOf(base::Span<const Vec3f> positions, Corners face)
{
    Vec3f sum;
    for (std::size_t i = 2; i < face.size(); ++i)
        sum += FanArea(positions, face, i);
    return sum;
}

/// Whether no triangle of the fan lies upside down over the others.
bool IsFilledByFan(base::Span<const Vec3f> positions, Corners face)
{
    if (face.size() == 4 && Dot(FanArea(positions, face, 2), FanArea(positions, face, 3)) >= 0.0f)
        return true; // as nearly all are
    constexpr float rounding = 1e-6f;
    const Vec3f whole = AreaOf(positions, face);
    const float least = -rounding * LengthSquared(whole);
    for (std::size_t i = 2; i < face.size(); ++i)
        if (Dot(FanArea(positions, face, i), whole) < least)
            return false;
    return true;
}

/// A corner in the plane across the face's normal.
struct FlatCorner {
    double x, y;
    std::uint32_t vertex;
};

/// Positive where the way from a over b to c turns left.
double Turn(const FlatCorner& a, const FlatCorner& b, const FlatCorner& c)
{
    return (b.x - a.x) * (c.y - b.y) - (b.y - a.y) * (c.x - b.x);
}

/// Counter-clockwise, without the coordinate along which the face has most of its area.
std::vector<FlatCorner> Flattened(base::Span<const Vec3f> positions, Corners face)
{
    const Vec3f area = AreaOf(positions, face);
    int along = std::abs(area.x) > std::abs(area.y) ? 0 : 1;
    if (std::abs(area.z) > std::abs(area[along]))
        along = 2;
    const int first = (along + 1) % 3, second = (along + 2) % 3;
    const double sign = area[along] < 0.0f ? -1.0 : 1.0;
    std::vector<FlatCorner> flat;
    for (const std::uint32_t vertex : face)
        flat.push_back({positions[vertex][first], sign * positions[vertex][second], vertex});
    return flat;
}

bool IsWithin(const FlatCorner& p, const FlatCorner& a, const FlatCorner& b, const FlatCorner& c)
{
    const auto isAt = [&p](const FlatCorner& q) { return p.x == q.x && p.y == q.y; };
    return Turn(a, b, p) >= 0.0 && Turn(b, c, p) >= 0.0 && Turn(c, a, p) >= 0.0 && !isAt(a) && !isAt(b) &&
           !isAt(c);
}

bool IsEar(const std::vector<FlatCorner>& ring, std::size_t at)
{
    const FlatCorner &a = ring[(at + ring.size() - 1) % ring.size()], &b = ring[at],
                     &c = ring[(at + 1) % ring.size()];
    if (Turn(a, b, c) <= 0.0)
        return false;
    for (std::size_t i = 2; i + 1 < ring.size(); ++i)
        if (IsWithin(ring[(at + i) % ring.size()], a, b, c))
            return false;
    return true;
}

std::vector<std::uint32_t> CutIntoTriangles(std::vector<FlatCorner> ring)
{
    std::vector<std::uint32_t> triangles;
    std::size_t at = 0, tried = 0;
    while (ring.size() >= 3) {
        base::ThrowIfCancelled();
        // A ring that crosses itself may have no ear: any corner does.
        if (!IsEar(ring, at) && ++tried < ring.size()) {
            at = (at + 1) % ring.size();
            continue;
        }
        triangles.insert(triangles.end(), {ring[(at + ring.size() - 1) % ring.size()].vertex, ring[at].vertex,
                                           ring[(at + 1) % ring.size()].vertex});
        ring.erase(ring.begin() + static_cast<std::ptrdiff_t>(at));
        at %= ring.size();
        tried = 0;
    }
    return triangles;
}

} // namespace

FaceCuts::FaceCuts(const PolygonMeshView& mesh)
{
    std::mutex adding;
    const auto faces = static_cast<std::uint32_t>(mesh.faceCount());
    tbb::parallel_for(tbb::blocked_range<std::uint32_t>(0, faces, 8192), [&](const auto& range) {
        base::ThrowIfCancelled();
        for (std::uint32_t f = range.begin(); f != range.end(); ++f) {
            const Corners face = mesh.face(f);
            if (face.size() <= 3 || face.size() > mostCutCorners || IsFilledByFan(mesh.positions, face))
                continue;
            std::vector<std::uint32_t> triangles = CutIntoTriangles(Flattened(mesh.positions, face));
            const std::lock_guard<std::mutex> lock(adding);
            _cuts.emplace(f, std::move(triangles));
        }
    });
}

} // namespace geometry
