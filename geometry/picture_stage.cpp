// Tracing rays against the items of a picture, through Embree.
// SPDX-License-Identifier: MIT

#include "geometry/picture_stage.h"

#include "embree_device.h"
#include "geometry/normals.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace geometry {

namespace {

struct SceneReleaser {
    void operator()(RTCScene scene) const { rtcReleaseScene(scene); }
};

/// All that Embree reads of it.
void SetRay(const Ray& ray, float from, float to, RTCRay* result)
{
    result->org_x = ray.origin.x, result->org_y = ray.origin.y, result->org_z = ray.origin.z;
    result->tnear = from;
    result->dir_x = ray.direction.x, result->dir_y = ray.direction.y, result->dir_z = ray.direction.z;
    result->time = 0.0f;
    result->tfar = to;
    result->mask = ~0u;
    result->id = 0, result->flags = 0;
}

void SetQuery(const Ray& ray, RTCRayHit* query)
{
    SetRay(ray, 0.0f, INFINITY, &query->ray);
    query->hit.geomID = RTC_INVALID_GEOMETRY_ID;
    query->hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
}

} // namespace

struct PictureStage::Impl {
    explicit Impl(base::Span<const PictureItem> shown) : items(shown), scene(rtcNewScene(EmbreeDevice()))
    {
        rtcSetSceneFlags(scene.get(), RTC_SCENE_FLAG_ROBUST);
        for (std::size_t i = 0; i < items.size(); ++i)
            add(items[i], static_cast<unsigned>(i));
        CommitScene(scene.get());
    }

    void add(const PictureItem& item, unsigned id)
    {
        CheckReach(item.mesh.positions);
        triangles.push_back(Triangulate(*item.mesh.topology));
        normals.push_back(VertexNormals(item.mesh));
        const std::vector<std::uint32_t>& corners = triangles.back().corners;
        if (corners.empty())
            return;
        RTCGeometry geometry = rtcNewGeometry(EmbreeDevice(), RTC_GEOMETRY_TYPE_TRIANGLE);
        void* vertices = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                                 sizeof(Vec3f), item.mesh.vertexCount());
        std::copy(item.mesh.positions.begin(), item.mesh.positions.end(), static_cast<Vec3f*>(vertices));
        void* indices = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                                3 * sizeof(std::uint32_t), corners.size() / 3);
        std::copy(corners.begin(), corners.end(), static_cast<std::uint32_t*>(indices));
        rtcCommitGeometry(geometry);
        rtcAttachGeometryByID(scene.get(), geometry, id);
        rtcReleaseGeometry(geometry);
    }

    Vec3f shadingNormal(const RTCHit& hit, Vec3f faceNormal) const
    {
        const std::uint32_t* corner = triangles[hit.geomID].corners.data() + 3 * std::size_t{hit.primID};
        const std::vector<Vec3f>& vertexNormals = normals[hit.geomID];
        const Vec3f normal = Normalized(vertexNormals[corner[0]] * (1.0f - hit.u - hit.v) +
                                        vertexNormals[corner[1]] * hit.u + vertexNormals[corner[2]] * hit.v);
        if (normal == Vec3f{})
            return faceNormal;
        return Dot(normal, faceNormal) < 0.0f ? -normal : normal;
    }

    std::array<float, 3> colorOf(const RTCHit& hit) const
    {
        const PictureItem& item = items[hit.geomID];
        if (item.vertexColors.empty())
            return item.color;
        const std::uint32_t* corner = triangles[hit.geomID].corners.data() + 3 * std::size_t{hit.primID};
        std::array<float, 3> color;
        for (std::size_t k = 0; k < 3; ++k)
            color[k] = item.vertexColors[corner[0]][k] * (1.0f - hit.u - hit.v) +
                       item.vertexColors[corner[1]][k] * hit.u + item.vertexColors[corner[2]][k] * hit.v;
        return color;
    }

    Hit hitOf(const Ray& ray, const RTCRayHit& query) const
    {
        Hit hit;
        if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID)
            return hit;
        hit.isValid = true;
        hit.item = query.hit.geomID;
        hit.face = triangles[hit.item].faces[query.hit.primID];
        hit.position = ray.origin + ray.direction * query.ray.tfar;
        hit.color = colorOf(query.hit);
        hit.faceNormal = Normalized({query.hit.Ng_x, query.hit.Ng_y, query.hit.Ng_z});
        if (Dot(hit.faceNormal, ray.direction) > 0.0f)
            hit.faceNormal = -hit.faceNormal;
        hit.normal = shadingNormal(query.hit, hit.faceNormal);
        return hit;
    }

    base::Span<const PictureItem> items;
    std::unique_ptr<RTCSceneTy, SceneReleaser> scene;
    std::vector<Triangles> triangles;
    std::vector<std::vector<Vec3f>> normals;
};

PictureStage::PictureStage(base::Span<const PictureItem> items) : _impl(new Impl(items)) {}
PictureStage::~PictureStage() = default;
PictureStage::PictureStage(PictureStage&&) noexcept = default;
PictureStage& PictureStage::operator=(PictureStage&&) noexcept = default;

PictureStage::Hit PictureStage::trace(const Ray& ray) const
{
    RTCRayHit query;
    SetQuery(ray, &query);
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcIntersect1(_impl->scene.get(), &context, &query);
    return _impl->hitOf(ray, query);
}

void PictureStage::trace(base::Span<const Ray> rays, Hit* hits) const
{
    constexpr std::size_t bundle = 64;
    std::array<RTCRayHit, bundle> queries;
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    context.flags = RTC_INTERSECT_CONTEXT_FLAG_COHERENT;
    for (std::size_t first = 0; first < rays.size(); first += bundle) {
        const std::size_t count = std::min(bundle, rays.size() - first);
        for (std::size_t i = 0; i < count; ++i)
            SetQuery(rays[first + i], &queries[i]);
        rtcIntersect1M(_impl->scene.get(), &context, queries.data(), static_cast<unsigned>(count),
                       sizeof(RTCRayHit));
        for (std::size_t i = 0; i < count; ++i)
            hits[first + i] = _impl->hitOf(rays[first + i], queries[i]);
    }
}

bool PictureStage::isFree(const Ray& ray, float from, float to) const
{
    RTCRay query;
    SetRay(ray, from, to, &query);
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcOccluded1(_impl->scene.get(), &context, &query);
    return query.tfar >= 0.0f;
}

} // namespace geometry
