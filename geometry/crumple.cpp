// Angles between faces and the surface they came from.
// SPDX-License-Identifier: MIT

#include "geometry/crumple.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "geometry/errors.h"
#include "geometry/normals.h"

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

constexpr double steepDegrees = 30.0;
constexpr double degreesPerRadian = 180.0 / 3.14159265358979323846;

struct Leaning {
    double degrees, area;
};

/// Half of the sum of the cross products of its fan, which has the face's mean normal and its area.
Vec3f AreaNormal(const PolygonMeshView& mesh, base::Span<const std::uint32_t> face)
{
    Vec3f sum;
    const Vec3f origin = mesh.positions[face[0]];
    for (std::size_t c = 2; c < face.size(); ++c)
        sum += Cross(mesh.positions[face[c - 1]] - origin, mesh.positions[face[c]] - origin);
    return sum * 0.5f;
}

std::vector<Leaning> Leanings(const PolygonMeshView& target, const std::vector<Vec3f>& sourceNormals)
{
    std::vector<Leaning> leanings;
    leanings.reserve(target.faceCount());
    for (std::size_t f = 0; f < target.faceCount(); ++f) {
        if (f % 4096 == 0)
            base::ThrowIfCancelled();
        const base::Span<const std::uint32_t> face = target.face(f);
        Vec3f surface;
        for (const std::uint32_t vertex : face)
            surface += sourceNormals[vertex];
        const Vec3f own = AreaNormal(target, face);
        const double area = Length(own), length = Length(surface);
        if (!(area > 0.0) || !(length > 0.0))
            continue;
        const double cosine = std::clamp(double{Dot(own, surface)} / (area * length), -1.0, 1.0);
        leanings.push_back({std::acos(cosine) * degreesPerRadian, area});
    }
    return leanings;
}

} // namespace

Crumple MeasureCrumple(const SurfaceMap& map, const PolygonMeshView& source, const PolygonMeshView& target)
{
    if (target.vertexCount() != map.targetVertexCount())
        throw TopologyError("the map is for {} but the mesh has {}",
                            base::CountedVertices(map.targetVertexCount()), target.vertexCount());
    std::vector<Leaning> leanings = Leanings(target, map.transfer(VertexNormals(source)));
    std::sort(leanings.begin(), leanings.end(),
              [](const Leaning& a, const Leaning& b) { return a.degrees < b.degrees; });
    double area = 0.0, steep = 0.0;
    Crumple crumple;
    for (const Leaning& leaning : leanings) {
        area += leaning.area;
        crumple.meanDegrees += leaning.degrees * leaning.area;
        if (leaning.degrees > steepDegrees)
            steep += leaning.area;
    }
    if (!(area > 0.0))
        return {};
    crumple.meanDegrees /= area;
    crumple.steepShare = steep / area;
    double reached = 0.0;
    for (const Leaning& leaning : leanings) {
        reached += leaning.area;
        crumple.p95Degrees = leaning.degrees;
        if (reached >= 0.95 * area)
            break;
    }
    return crumple;
}

} // namespace geometry
