// Closest points and rays through an Embree scene of runs of the fan triangles.
// SPDX-License-Identifier: MIT

#include "geometry/surface_tree.h"

#include "embree_device.h"
#include "fan_blocks.h"
#include "geometry/transform.h"

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

/// A step in Embree's tree is dearer than a look at a block where many triangles are of a size, as in a mesh
/// that was subdivided, and the tree is a small one; in a coarse mesh a block's box holds much else.
std::uint32_t StepSizeFor(std::size_t triangles)
{
    constexpr std::size_t fine = 200000;
    return triangles < fine ? 1 : FanBlocks::blockSize;
}

/// A float rounded down by more than what was lost on the way to it.
constexpr float surelyBelow = 1.0f - 1e-5f;

} // namespace

struct SurfaceTree::Impl {
    Triangles triangles;
    FanBlocks blocks;
    std::uint32_t stepSize; ///< cells that are one to Embree
    std::unique_ptr<RTCSceneTy, decltype(&rtcReleaseScene)> scene{rtcNewScene(EmbreeDevice()),
                                                                  rtcReleaseScene};

    Impl(const PolygonMeshView& mesh, bool keepsTriangles)
        : triangles(Triangulate(*mesh.topology)), blocks(mesh.positions, triangles),
          stepSize(StepSizeFor(triangles.count()))
    {
        if (!keepsTriangles)
            triangles = {};
        buildScene();
    }

    static void findBounds(const RTCBoundsFunctionArguments* arguments)
    {
        const auto& self = *static_cast<const Impl*>(arguments->geometryUserPtr);
        const Box3f box = self.blocks.box(arguments->primID * self.stepSize, self.stepSize);
        RTCBounds& bounds = *arguments->bounds_o;
        bounds.lower_x = box.min.x, bounds.lower_y = box.min.y, bounds.lower_z = box.min.z;
        bounds.upper_x = box.max.x, bounds.upper_y = box.max.y, bounds.upper_z = box.max.z;
    }

    /// Where a ray meets a triangle (Möller and Trumbore, "Fast, minimum storage ray-triangle intersection",
    /// 1997).
    void intersect(std::uint32_t cell, std::uint32_t half, RTCRayHit& ray) const
    {
        const std::array<Vec3f, 3> corners = blocks.corners(cell, half);
        const Vector3d origin(ray.ray.org_x, ray.ray.org_y, ray.ray.org_z),
            direction(ray.ray.dir_x, ray.ray.dir_y, ray.ray.dir_z);
        const Vector3d a = ToEigen(corners[0]), ab = ToEigen(corners[1]) - a, ac = ToEigen(corners[2]) - a;
        const Vector3d across = direction.cross(ac);
        const double determinant = ab.dot(across);
        if (determinant == 0.0)
            return;
        const double u = (origin - a).dot(across) / determinant;
        const Vector3d along = (origin - a).cross(ab);
        const double v = direction.dot(along) / determinant, distance = ac.dot(along) / determinant;
        if (!(u >= 0.0 && v >= 0.0 && u + v <= 1.0 && distance >= ray.ray.tnear && distance <= ray.ray.tfar))
            return;
        ray.ray.tfar = static_cast<float>(distance);
        ray.hit.u = static_cast<float>(u), ray.hit.v = static_cast<float>(v);
        ray.hit.geomID = 0;
        ray.hit.primID = blocks.triangle(cell, half);
    }

    static void findHit(const RTCIntersectFunctionNArguments* arguments)
    {
        assert(arguments->N == 1);
        const auto& self = *static_cast<const Impl*>(arguments->geometryUserPtr);
        auto& ray = *reinterpret_cast<RTCRayHit*>(arguments->rayhit);
        if (arguments->valid[0] == 0)
            return;
        const std::uint32_t first = arguments->primID * self.stepSize;
        for (std::uint32_t cell = first; cell < first + self.stepSize; ++cell)
            for (std::uint32_t half = 0; half < 2; ++half)
                self.intersect(cell, half, ray);
    }

    void buildScene()
    {
        rtcSetSceneFlags(scene.get(), RTC_SCENE_FLAG_ROBUST);
        if (!blocks.isEmpty()) {
            RTCGeometry geometry = rtcNewGeometry(EmbreeDevice(), RTC_GEOMETRY_TYPE_USER);
            rtcSetGeometryUserPrimitiveCount(geometry, blocks.cellCount() / stepSize);
            rtcSetGeometryUserData(geometry, this);
            rtcSetGeometryBoundsFunction(geometry, findBounds, nullptr);
            rtcSetGeometryIntersectFunction(geometry, findHit);
            rtcCommitGeometry(geometry);
            rtcAttachGeometry(scene.get(), geometry);
            rtcReleaseGeometry(geometry);
        }
        CommitScene(scene.get());
    }

    template <class Accept>
    struct Query {
        const Impl* tree;
        Vec3f at;
        Vector3d point;
        const Accept* accept;
        double best;  ///< square of the distance to beat
        bool anyDoes; ///< rather than the closest one
        SurfacePoint found;

        /// A hair wider than the best, so that rounding in the box tests cannot hide an equal triangle.
        float radius() const
        {
            if (anyDoes && found.isValid())
                return 0.0f;
            return std::nextafter(static_cast<float>(std::sqrt(best) * (1.0 + 1e-6)), INFINITY);
        }

        /// @return whether one of the step's triangles is the best so far
        bool considerStep(std::uint32_t step)
        {
            if (anyDoes && found.isValid())
                return false;
            return tree->stepSize == 1 ? considerCell(step) : considerBlock(step);
        }

    private:
        bool considerCell(std::uint32_t cell)
        {
            bool isNearer = false;
            for (std::uint32_t half = 0; half < 2; ++half)
                if (!isBeyond(tree->blocks.corners(cell, half)))
                    isNearer |= consider(cell, half);
            return isNearer;
        }

        /// Whether the box around a triangle is too far already.
        bool isBeyond(const std::array<Vec3f, 3>& corners) const
        {
            const auto& [a, b, c] = corners;
            float square = 0.0f;
            for (int k = 0; k < 3; ++k) {
                const float low = std::min({a[k], b[k], c[k]}) - at[k],
                            high = at[k] - std::max({a[k], b[k], c[k]});
                const float gap = std::max({low, high, 0.0f});
                square += gap * gap;
            }
            return double(square * surelyBelow) > best;
        }

        bool considerBlock(std::uint32_t block)
        {
            const Lanes boxes = tree->blocks.boxSquares(block, at) * surelyBelow;
            if (!IsAny(boxes <= bestAtMost()))
                return false;
            // The most promising one first: as a rule it makes the others too far.
            Lanes squares[2] = {tree->blocks.leastSquares(block, 0, at),
                                tree->blocks.leastSquares(block, 1, at)};
            bool isNearer = false;
            for (;;) {
                std::uint32_t least = 0;
                float square = INFINITY;
                for (std::uint32_t k = 0; k < 2 * FanBlocks::blockSize; ++k)
                    if (const float own = squares[k % 2][k / 2]; own < square) {
                        square = own;
                        least = k;
                    }
                // With no bound, infinity would not be too far.
                if (std::isinf(square) || !(double(square) <= best))
                    return isNearer;
                squares[least % 2][least / 2] = INFINITY;
                isNearer |= consider(block * FanBlocks::blockSize + least / 2, least % 2);
            }
        }

        /// Not less than the best in doubles.
        float bestAtMost() const { return std::nextafter(static_cast<float>(best), INFINITY); }

        bool consider(std::uint32_t cell, std::uint32_t half)
        {
            const std::uint32_t t = tree->blocks.triangle(cell, half);
            const std::array<Vec3f, 3> corners = tree->blocks.corners(cell, half);
            const Closest closest =
                ClosestOnTriangle(point, ToEigen(corners[0]), ToEigen(corners[1]), ToEigen(corners[2]));
            const double distance = (closest.position - point).squaredNorm();
            // The first of equals wins by index, so that the answer does not hang on the order of the visit.
            const bool better =
                distance < best || (distance == best && (!found.isValid() || t < found.triangle));
            if (!better)
                return false;
            const SurfacePoint candidate = ToSurfacePoint(t, closest, std::sqrt(distance));
            if (!(*accept)(t, candidate))
                return false;
            best = distance;
            found = candidate;
            return true;
        }
    };

    template <class Accept>
    static bool visit(RTCPointQueryFunctionArguments* arguments)
    {
        auto& query = *static_cast<Query<Accept>*>(arguments->userPtr);
        if (!query.considerStep(arguments->primID))
            return false;
        const float radius = query.radius();
        if (radius >= arguments->query->radius)
            return false;
        arguments->query->radius = radius;
        return true;
    }

    template <class Accept>
    SurfacePoint closest(Vec3f at, float maxDistance, std::uint32_t start, const Accept& accept,
                         bool anyDoes = false) const
    {
        if (!IsFinite(at) || !(maxDistance >= 0.0f) || blocks.isEmpty())
            return {};
        Query<Accept> state{this,    at, ToEigen(at), &accept, double(maxDistance) * double(maxDistance),
                            anyDoes, {}};
        float radius = maxDistance;
        if (start < blocks.triangleCount() && state.considerStep(blocks.cellOf(start) / stepSize)) {
            radius = std::min(radius, state.radius());
            if (anyDoes)
                return state.found;
        }
        RTCPointQuery query{at.x, at.y, at.z, 0.0f, radius};
        RTCPointQueryContext context;
        rtcInitPointQueryContext(&context);
        rtcPointQuery(scene.get(), &query, &context, visit<Accept>, &state);
        return state.found;
    }
};

SurfaceTree::SurfaceTree(const PolygonMeshView& mesh, bool keepsTriangles)
{
    assert(mesh.topology->vertexCount == mesh.vertexCount());
    CheckReach(mesh.positions);
    _impl = std::make_unique<Impl>(mesh, keepsTriangles);
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
    const auto [a, b, c] = _impl->blocks.cornersOf(triangle);
    return Normalized(Cross(b - a, c - a));
}

SurfacePoint SurfaceTree::closestPoint(Vec3f query, float maxDistance, std::uint32_t start) const
{
    return _impl->closest(query, maxDistance, start, [](std::uint32_t, const SurfacePoint&) { return true; });
}

SurfacePoint SurfaceTree::anyPoint(Vec3f query, float maxDistance, std::uint32_t start) const
{
    constexpr bool anyDoes = true;
    return _impl->closest(
        query, maxDistance, start, [](std::uint32_t, const SurfacePoint&) { return true; }, anyDoes);
}

SurfacePoint SurfaceTree::closestPoint(Vec3f query, float maxDistance, const TriangleFilter& accept) const
{
    return _impl->closest(query, maxDistance, UINT32_MAX, accept);
}

SurfacePoint SurfaceTree::firstHit(Vec3f origin, Vec3f direction, float minDistance, float maxDistance) const
{
    if (!IsFinite(origin) || !IsFinite(direction) || _impl->blocks.isEmpty())
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
    rtcIntersect1(_impl->scene.get(), &context, &ray);
    if (ray.hit.geomID == RTC_INVALID_GEOMETRY_ID)
        return {};
    const double u = std::clamp(double(ray.hit.u), 0.0, 1.0), v = std::clamp(double(ray.hit.v), 0.0, 1.0 - u);
    const std::uint32_t t = ray.hit.primID;
    const std::array<Vec3f, 3> corners = _impl->blocks.cornersOf(t);
    const Vector3d a = ToEigen(corners[0]);
    const Vector3d position = a + u * (ToEigen(corners[1]) - a) + v * (ToEigen(corners[2]) - a);
    return ToSurfacePoint(t, {{1.0 - u - v, u, v}, position}, ray.ray.tfar);
}

} // namespace geometry
