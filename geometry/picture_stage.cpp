// The items of a picture: their faces by number, and rays among them through Embree.
// SPDX-License-Identifier: MIT

#include "geometry/picture_stage.h"

#include "embree_device.h"
#include "face_cuts.h"
#include "geometry/errors.h"
#include "seen_normals.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <deque>
#include <mutex>

namespace geometry {

namespace {

struct SceneReleaser {
    void operator()(RTCScene scene) const { rtcReleaseScene(scene); }
};

constexpr std::size_t packetSize = 8;

/// All that Embree reads of it.
template <class RayPacket>
void SetRay(const Ray& ray, float from, float to, std::size_t i, RayPacket* packet)
{
    packet->org_x[i] = ray.origin.x, packet->org_y[i] = ray.origin.y, packet->org_z[i] = ray.origin.z;
    packet->dir_x[i] = ray.direction.x, packet->dir_y[i] = ray.direction.y,
    packet->dir_z[i] = ray.direction.z;
    packet->tnear[i] = from, packet->tfar[i] = to;
    packet->time[i] = 0.0f;
    packet->mask[i] = ~0u;
    packet->id[i] = 0, packet->flags[i] = 0;
}

/// Polygons as quads that Embree splits where a fan of triangles would be: it takes half the time of
/// triangles to be made ready.
struct Quads {
    std::vector<std::uint32_t> corners; ///< four vertices a quad; the last two are one for a triangle
    std::vector<std::uint32_t> faces;   ///< the polygon that each quad comes from

    void addFan(base::Span<const std::uint32_t> face, std::uint32_t number)
    {
        for (std::size_t c = 2; c < face.size(); c += 2) {
            if (c + 1 < face.size())
                corners.insert(corners.end(), {face[c - 1], face[c], face[c + 1], face[0]});
            else
                corners.insert(corners.end(), {face[0], face[c - 1], face[c], face[c]});
            faces.push_back(number);
        }
    }
};

Quads CutIntoQuads(const NumberedMesh& one)
{
    Quads quads;
    const auto count = static_cast<std::uint32_t>(one.mesh.faceCount());
    quads.corners.reserve(4 * one.mesh.faceCount());
    quads.faces.reserve(count);
    for (std::uint32_t f = 0; f < count; ++f)
        if (one.cuts && one.cuts->find(f))
            ForEachTriangle(one, f, [&](const std::array<std::uint32_t, 3>& corners) {
                quads.addFan({corners.data(), 3}, f);
            });
        else
            quads.addFan(one.mesh.face(f), f);
    return quads;
}

/// Where a ray meets a triangle's plane: Möller and Trumbore, "Fast, minimum storage ray/triangle
/// intersection", 1997.
struct Crossing {
    float u = 0.0f, v = 0.0f;  ///< weights of the second and third corner
    float inside = -INFINITY;  ///< the least of the three weights
    float distance = INFINITY; ///< cm along the ray
    std::array<std::uint32_t, 3> corners{};

    /// What the ray meets first, as far as it meets any.
    bool isBetterThan(const Crossing& other) const
    {
        if (inside >= 0.0f && other.inside >= 0.0f)
            return distance < other.distance;
        return inside > other.inside;
    }
};

Crossing MeetTriangle(const PolygonMeshView& mesh, std::array<std::uint32_t, 3> corners, const Ray& ray)
{
    Crossing crossing;
    crossing.corners = corners;
    const Vec3f a = mesh.positions[corners[0]];
    const Vec3f ab = mesh.positions[corners[1]] - a, ac = mesh.positions[corners[2]] - a;
    const Vec3f p = Cross(ray.direction, ac);
    const float scale = 1.0f / Dot(ab, p);
    if (!std::isfinite(scale))
        return crossing;
    const Vec3f from = ray.origin - a;
    crossing.u = Dot(from, p) * scale;
    const Vec3f q = Cross(from, ab);
    crossing.v = Dot(ray.direction, q) * scale;
    crossing.distance = Dot(ac, q) * scale;
    crossing.inside = std::min({crossing.u, crossing.v, 1.0f - crossing.u - crossing.v});
    return crossing;
}

/// Back into the triangle, along its plane.
void MoveInside(Crossing& crossing)
{
    const float u = std::max(crossing.u, 0.0f), v = std::max(crossing.v, 0.0f);
    const float sum = std::max(u + v, 1.0f);
    crossing.u = u / sum, crossing.v = v / sum;
}

template <class Value>
Value Mixed(const Crossing& at, const Value* values)
{
    return values[at.corners[0]] * (1.0f - at.u - at.v) + values[at.corners[1]] * at.u +
           values[at.corners[2]] * at.v;
}

} // namespace

struct PictureStage::Impl {
    Impl(base::Span<const PictureItem> shown, StageNormals wanted) : items(shown)
    {
        std::size_t faces = 0;
        for (const PictureItem& item : items) {
            CheckReach(item.mesh.positions);
            const FaceCuts& cut = cuts.emplace_back(item.mesh);
            meshes.push_back({item.mesh, static_cast<std::uint32_t>(faces), cut.isEmpty() ? nullptr : &cut});
            normals.emplace_back(item.mesh);
            if (wanted == StageNormals::Everywhere)
                normals.back().findAll();
            faces += item.mesh.faceCount();
            if (faces >= noFace)
                throw TopologyError("a picture cannot show {} faces", faces);
        }
    }

    void findNormals(base::Span<const std::uint32_t> faces)
    {
        if (std::all_of(normals.begin(), normals.end(), [](const SeenNormals& n) { return n.areAllFound(); }))
            return;
        std::vector<std::vector<char>> isSeen(meshes.size());
        for (std::size_t i = 0; i < meshes.size(); ++i)
            isSeen[i].resize(meshes[i].mesh.faceCount());
        for (const std::uint32_t face : faces)
            if (face != noFace) {
                const std::size_t item = itemOf(face);
                isSeen[item][face - meshes[item].firstFace] = 1;
            }
        for (std::size_t i = 0; i < meshes.size(); ++i)
            normals[i].find(isSeen[i]);
    }

    void makeScene()
    {
        std::unique_ptr<RTCSceneTy, SceneReleaser> made(rtcNewScene(EmbreeDevice()));
        // Not robust: a ray that slips through an edge is one of the hundred or so that a pixel's light comes
        // from, and the tests against it cost a fifteenth of a picture.
        // A better order of so many faces takes longer than it saves.
        constexpr std::uint32_t manyFaces = 200000;
        std::size_t faces = 0;
        for (const NumberedMesh& one : meshes)
            faces += one.mesh.faceCount();
        quadFaces.clear(); // of a try that was cancelled
        rtcSetSceneBuildQuality(made.get(),
                                faces > manyFaces ? RTC_BUILD_QUALITY_LOW : RTC_BUILD_QUALITY_MEDIUM);
        for (std::size_t i = 0; i < meshes.size(); ++i)
            add(meshes[i], static_cast<unsigned>(i), made.get());
        CommitScene(made.get());
        scene = std::move(made);
    }

    void add(const NumberedMesh& one, unsigned id, RTCScene to)
    {
        const PolygonMeshView& mesh = one.mesh;
        Quads quads = CutIntoQuads(one);
        quadFaces.push_back(std::move(quads.faces));
        if (quads.corners.empty())
            return;
        RTCGeometry geometry = rtcNewGeometry(EmbreeDevice(), RTC_GEOMETRY_TYPE_QUAD);
        void* vertices = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                                 sizeof(Vec3f), mesh.vertexCount());
        std::copy(mesh.positions.begin(), mesh.positions.end(), static_cast<Vec3f*>(vertices));
        void* indices = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT4,
                                                4 * sizeof(std::uint32_t), quads.corners.size() / 4);
        std::copy(quads.corners.begin(), quads.corners.end(), static_cast<std::uint32_t*>(indices));
        rtcCommitGeometry(geometry);
        rtcAttachGeometryByID(to, geometry, id);
        rtcReleaseGeometry(geometry);
    }

    std::size_t itemOf(std::uint32_t number) const
    {
        std::size_t item = meshes.size() - 1;
        while (number < meshes[item].firstFace)
            --item;
        return item;
    }

    std::array<float, 3> colorOf(std::size_t item, std::uint32_t face) const
    {
        const PictureItem& shown = items[item];
        const std::vector<std::uint32_t>& surfaces = shown.mesh.topology->faceSurfaces;
        return shown.surfaceColors.empty() || surfaces.empty() ? shown.color
                                                               : shown.surfaceColors[surfaces[face]];
    }

    std::array<float, 3> colorAt(std::size_t item, std::uint32_t face, const Crossing& at) const
    {
        const base::Span<const std::array<float, 3>> colors = items[item].vertexColors;
        if (colors.empty())
            return colorOf(item, face);
        std::array<float, 3> color;
        for (std::size_t k = 0; k < 3; ++k)
            color[k] = colors[at.corners[0]][k] * (1.0f - at.u - at.v) + colors[at.corners[1]][k] * at.u +
                       colors[at.corners[2]][k] * at.v;
        return color;
    }

    Hit hitAt(std::size_t item, std::uint32_t face, const Crossing& at, const Ray& ray) const
    {
        const PolygonMeshView& mesh = meshes[item].mesh;
        const Vec3f a = mesh.positions[at.corners[0]];
        Hit hit;
        hit.isValid = true;
        hit.item = static_cast<std::uint32_t>(item), hit.face = face;
        hit.position = Mixed(at, mesh.positions.data());
        hit.color = colorAt(item, face, at);
        hit.faceNormal =
            Normalized(Cross(mesh.positions[at.corners[1]] - a, mesh.positions[at.corners[2]] - a));
        if (Dot(hit.faceNormal, ray.direction) > 0.0f)
            hit.faceNormal = -hit.faceNormal;
        hit.normal = Normalized(Mixed(at, normals[item].normals().data()));
        if (hit.normal == Vec3f{})
            hit.normal = hit.faceNormal;
        else if (Dot(hit.normal, hit.faceNormal) < 0.0f)
            hit.normal = -hit.normal;
        return hit;
    }

    base::Span<const PictureItem> items;
    std::deque<FaceCuts> cuts; ///< stay where they are
    std::vector<NumberedMesh> meshes;
    std::vector<SeenNormals> normals;
    std::once_flag isReady;
    std::unique_ptr<RTCSceneTy, SceneReleaser> scene;
    std::vector<std::vector<std::uint32_t>> quadFaces;
};

PictureStage::PictureStage(base::Span<const PictureItem> items, StageNormals normals)
    : _impl(new Impl(items, normals))
{
}
PictureStage::~PictureStage() = default;
PictureStage::PictureStage(PictureStage&&) noexcept = default;
PictureStage& PictureStage::operator=(PictureStage&&) noexcept = default;

base::Span<const PictureItem> PictureStage::items() const
{
    return _impl->items;
}

base::Span<const NumberedMesh> PictureStage::meshes() const
{
    return _impl->meshes;
}

void PictureStage::findNormals(base::Span<const std::uint32_t> faces) const
{
    _impl->findNormals(faces);
}

PictureStage::Hit PictureStage::hitOn(std::uint32_t number, const Ray& ray) const
{
    if (number == noFace)
        return {};
    const std::size_t item = _impl->itemOf(number);
    const NumberedMesh& one = _impl->meshes[item];
    const std::uint32_t f = number - one.firstFace;
    Crossing best;
    ForEachTriangle(one, f, [&](const std::array<std::uint32_t, 3>& corners) {
        const Crossing crossing = MeetTriangle(one.mesh, corners, ray);
        if (crossing.isBetterThan(best))
            best = crossing;
    });
    if (best.inside == -INFINITY)
        return {};
    MoveInside(best);
    return _impl->hitAt(item, f, best, ray);
}

void PictureStage::prepareToTrace() const
{
    std::call_once(_impl->isReady, [this] { _impl->makeScene(); });
}

PictureStage::Hit PictureStage::trace(const Ray& ray) const
{
    prepareToTrace();
    RTCRayHit query;
    query.ray = {ray.origin.x,
                 ray.origin.y,
                 ray.origin.z,
                 0.0f,
                 ray.direction.x,
                 ray.direction.y,
                 ray.direction.z,
                 0.0f,
                 INFINITY,
                 ~0u,
                 0,
                 0};
    query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcIntersect1(_impl->scene.get(), &context, &query);
    if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID)
        return {};
    return hitOn(_impl->meshes[query.hit.geomID].firstFace +
                     _impl->quadFaces[query.hit.geomID][query.hit.primID],
                 ray);
}

void PictureStage::findFree(base::Span<const Ray> rays, float from, float to, std::uint8_t* areFree) const
{
    prepareToTrace();
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    for (std::size_t first = 0; first < rays.size(); first += packetSize) {
        const std::size_t count = std::min(packetSize, rays.size() - first);
        alignas(32) std::array<int, packetSize> isAsked{};
        RTCRay8 packet;
        std::fill_n(isAsked.begin(), count, -1);
        // Where a processor has no packets as large, Embree looks at the places not asked about as well.
        for (std::size_t i = 0; i < packetSize; ++i)
            SetRay(rays[first + std::min(i, count - 1)], from, to, i, &packet);
        rtcOccluded8(isAsked.data(), _impl->scene.get(), &context, &packet);
        for (std::size_t i = 0; i < count; ++i)
            areFree[first + i] = packet.tfar[i] >= 0.0f;
    }
}

} // namespace geometry
