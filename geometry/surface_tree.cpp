// Closest points and rays through an Embree scene of the fan triangles.
// SPDX-License-Identifier: MIT

#include "geometry/surface_tree.h"

#include "base/cancellation.h"
#include "embree_device.h"
#include "geometry/transform.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <atomic>
#include <cassert>

namespace geometry {

namespace {

using Eigen::Vector3d;

struct Closest {
    double weights[3];
    Vector3d position;
};

Closest OnCorner(int corner, const Vector3d& p)
{
    Closest result{{0, 0, 0}, p};
    result.weights[corner] = 1.0;
    return result;
}

Closest OnEdge(int from, int to, double t, const Vector3d& a, const Vector3d& b)
{
    Closest result{{0, 0, 0}, a + t * (b - a)};
    result.weights[from] = 1.0 - t;
    result.weights[to] = t;
    return result;
}

/// Walks the Voronoi regions of the triangle's features (Ericson, "Real-Time Collision Detection",
/// 2005, 5.1.5). Exact at the corners: a point that is a corner gets weights 1, 0, 0.
Closest ClosestOnTriangle(const Vector3d& p, const Vector3d& a, const Vector3d& b, const Vector3d& c)
{
    const Vector3d ab = b - a, ac = c - a, ap = p - a;
    const double d1 = ab.dot(ap), d2 = ac.dot(ap);
    if (d1 <= 0.0 && d2 <= 0.0)
        return OnCorner(0, a);
    const Vector3d bp = p - b;
    const double d3 = ab.dot(bp), d4 = ac.dot(bp);
    if (d3 >= 0.0 && d4 <= d3)
        return OnCorner(1, b);
    const Vector3d cp = p - c;
    const double d5 = ab.dot(cp), d6 = ac.dot(cp);
    if (d6 >= 0.0 && d5 <= d6)
        return OnCorner(2, c);
    const double vc = d1 * d4 - d3 * d2;
    if (vc <= 0.0 && d1 >= 0.0 && d3 <= 0.0)
        return OnEdge(0, 1, d1 / (d1 - d3), a, b);
    const double vb = d5 * d2 - d1 * d6;
    if (vb <= 0.0 && d2 >= 0.0 && d6 <= 0.0)
        return OnEdge(0, 2, d2 / (d2 - d6), a, c);
    const double va = d3 * d6 - d5 * d4;
    if (va <= 0.0 && d4 - d3 >= 0.0 && d5 - d6 >= 0.0)
        return OnEdge(1, 2, (d4 - d3) / ((d4 - d3) + (d5 - d6)), b, c);
    const double v = vb / (va + vb + vc), w = vc / (va + vb + vc);
    return {{1.0 - v - w, v, w}, a + v * ab + w * ac};
}

SurfacePoint ToSurfacePoint(std::uint32_t triangle, const Closest& closest, double distance)
{
    SurfacePoint point;
    point.triangle = triangle;
    for (int k = 0; k < 3; ++k)
        point.weights[k] = static_cast<float>(std::max(closest.weights[k], 0.0));
    point.position = FromEigen(closest.position);
    point.distance = static_cast<float>(distance);
    return point;
}

} // namespace

struct SurfaceTree::Impl {
    std::vector<Vec3f> positions; ///< and one more: Embree, which looks at this array, reads beyond the last
    Triangles triangles;
    bool allHaveArea = true;
    std::vector<std::uint32_t> kept;        ///< unless all have an area: Embree's primitive to our triangle
    std::vector<std::uint32_t> keptCorners; ///< theirs
    RTCScene scene = nullptr;

    ~Impl()
    {
        if (scene)
            rtcReleaseScene(scene);
    }

    Vec3f corner(std::uint32_t triangle, int k) const
    {
        return positions[triangles.corners[3 * std::size_t{triangle} + static_cast<std::size_t>(k)]];
    }

    bool hasArea(std::uint32_t t) const
    {
        const Vector3d a = ToEigen(corner(t, 0)), b = ToEigen(corner(t, 1)), c = ToEigen(corner(t, 2));
        const double longest =
            std::max({(b - a).squaredNorm(), (c - b).squaredNorm(), (a - c).squaredNorm()});
        const double area = (b - a).cross(c - a).norm();
        return std::isfinite(area) && area > 1e-9 * longest; // false for a point as well
    }

    bool haveAllAnArea() const
    {
        std::atomic<bool> all = true;
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, triangles.count(), 8192),
                          [&](const auto& range) {
                              base::ThrowIfCancelled();
                              for (std::size_t t = range.begin(); t != range.end() && all; ++t)
                                  if (!hasArea(static_cast<std::uint32_t>(t)))
                                      all = false;
                          });
        return all;
    }

    void keepTrianglesWithArea()
    {
        allHaveArea = haveAllAnArea();
        if (allHaveArea)
            return;
        for (std::uint32_t t = 0; t < triangles.count(); ++t) {
            if (!hasArea(t))
                continue;
            kept.push_back(t);
            const auto corners = triangles.corners.begin() + 3 * std::ptrdiff_t{t};
            keptCorners.insert(keptCorners.end(), corners, corners + 3);
        }
    }

    const std::vector<std::uint32_t>& cornersToFind() const
    {
        return allHaveArea ? triangles.corners : keptCorners;
    }
    bool isEmpty() const { return cornersToFind().empty(); }
    std::uint32_t triangleOf(unsigned primitive) const { return allHaveArea ? primitive : kept[primitive]; }

    void buildScene()
    {
        scene = rtcNewScene(EmbreeDevice());
        rtcSetSceneFlags(scene, RTC_SCENE_FLAG_ROBUST | RTC_SCENE_FLAG_COMPACT);
        if (!isEmpty()) {
            RTCGeometry geometry = rtcNewGeometry(EmbreeDevice(), RTC_GEOMETRY_TYPE_TRIANGLE);
            rtcSetSharedGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                       positions.data(), 0, sizeof(Vec3f), positions.size() - 1);
            rtcSetSharedGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                       cornersToFind().data(), 0, 3 * sizeof(std::uint32_t),
                                       cornersToFind().size() / 3);
            rtcCommitGeometry(geometry);
            rtcAttachGeometry(scene, geometry);
            rtcReleaseGeometry(geometry);
        }
        CommitScene(scene);
    }

    template <class Accept>
    struct Query {
        const Impl* tree;
        Vector3d point;
        const Accept* accept;
        double best; ///< square of the distance to beat
        SurfacePoint found;
    };

    template <class Accept>
    static bool visit(RTCPointQueryFunctionArguments* arguments)
    {
        auto& query = *static_cast<Query<Accept>*>(arguments->userPtr);
        const std::uint32_t t = query.tree->triangleOf(arguments->primID);
        const Closest closest =
            ClosestOnTriangle(query.point, ToEigen(query.tree->corner(t, 0)),
                              ToEigen(query.tree->corner(t, 1)), ToEigen(query.tree->corner(t, 2)));
        const double distance = (closest.position - query.point).squaredNorm();
        // The first of equals wins by index, so that the answer does not hang on the order of the visit.
        const bool better = distance < query.best ||
                            (distance == query.best && (!query.found.isValid() || t < query.found.triangle));
        if (!better)
            return false;
        const SurfacePoint candidate = ToSurfacePoint(t, closest, std::sqrt(distance));
        if (!(*query.accept)(t, candidate))
            return false;
        query.best = distance;
        query.found = candidate;
        // A hair wider than the best, so that rounding in the box tests cannot hide an equal triangle.
        const float radius = std::nextafter(static_cast<float>(std::sqrt(distance) * (1.0 + 1e-6)), INFINITY);
        if (radius >= arguments->query->radius)
            return false;
        arguments->query->radius = radius;
        return true;
    }

    template <class Accept>
    SurfacePoint closest(Vec3f at, float maxDistance, const Accept& accept) const
    {
        if (!IsFinite(at) || !(maxDistance >= 0.0f) || isEmpty())
            return {};
        Query<Accept> state{this, ToEigen(at), &accept, double(maxDistance) * double(maxDistance), {}};
        RTCPointQuery query{at.x, at.y, at.z, 0.0f, maxDistance};
        RTCPointQueryContext context;
        rtcInitPointQueryContext(&context);
        rtcPointQuery(scene, &query, &context, visit<Accept>, &state);
        return state.found;
    }
};

SurfaceTree::SurfaceTree(const PolygonMeshView& mesh) : _impl(std::make_unique<Impl>())
{
    assert(mesh.topology->vertexCount == mesh.vertexCount());
    CheckReach(mesh.positions);
    _impl->positions.reserve(mesh.positions.size() + 1);
    _impl->positions.assign(mesh.positions.begin(), mesh.positions.end());
    _impl->positions.emplace_back();
    _impl->triangles = Triangulate(*mesh.topology);
    _impl->keepTrianglesWithArea();
    _impl->buildScene();
}

SurfaceTree::~SurfaceTree() = default;
SurfaceTree::SurfaceTree(SurfaceTree&&) noexcept = default;
SurfaceTree& SurfaceTree::operator=(SurfaceTree&&) noexcept = default;

const Triangles& SurfaceTree::triangles() const
{
    return _impl->triangles;
}

Vec3f SurfaceTree::triangleNormal(std::uint32_t triangle) const
{
    const Vec3f a = _impl->corner(triangle, 0);
    return Normalized(Cross(_impl->corner(triangle, 1) - a, _impl->corner(triangle, 2) - a));
}

SurfacePoint SurfaceTree::closestPoint(Vec3f query, float maxDistance) const
{
    return _impl->closest(query, maxDistance, [](std::uint32_t, const SurfacePoint&) { return true; });
}

SurfacePoint SurfaceTree::closestPoint(Vec3f query, float maxDistance, const TriangleFilter& accept) const
{
    return _impl->closest(query, maxDistance, accept);
}

SurfacePoint SurfaceTree::firstHit(Vec3f origin, Vec3f direction, float minDistance, float maxDistance) const
{
    if (!IsFinite(origin) || !IsFinite(direction) || _impl->isEmpty())
        return {};
    RTCRayHit ray{};
    ray.ray.org_x = origin.x, ray.ray.org_y = origin.y, ray.ray.org_z = origin.z;
    ray.ray.dir_x = direction.x, ray.ray.dir_y = direction.y, ray.ray.dir_z = direction.z;
    ray.ray.tnear = minDistance;
    ray.ray.tfar = maxDistance;
    ray.ray.mask = ~0u;
    ray.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcIntersect1(_impl->scene, &context, &ray);
    if (ray.hit.geomID == RTC_INVALID_GEOMETRY_ID)
        return {};
    const double u = std::clamp(double(ray.hit.u), 0.0, 1.0), v = std::clamp(double(ray.hit.v), 0.0, 1.0 - u);
    const std::uint32_t t = _impl->triangleOf(ray.hit.primID);
    const Vector3d a = ToEigen(_impl->corner(t, 0));
    const Vector3d position =
        a + u * (ToEigen(_impl->corner(t, 1)) - a) + v * (ToEigen(_impl->corner(t, 2)) - a);
    return ToSurfacePoint(t, {{1.0 - u - v, u, v}, position}, ray.ray.tfar);
}

} // namespace geometry
