// Projecting and clipping.
// SPDX-License-Identifier: MIT

#include "projection.h"

#include "for_each_index.h"

#include <tbb/parallel_reduce.h>

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

/// Samples from the picture's corner; farther out, single precision no longer tells neighbouring samples
/// apart.
constexpr float farthestCorner = 524288.0f;

/// Of the farthest point.
float DepthOf(base::Span<const Vec3f> positions, const PictureCamera& camera)
{
    return tbb::parallel_reduce(
        tbb::blocked_range<std::size_t>(0, positions.size(), 16384), -INFINITY,
        [&](const auto& range, float farthest) {
            for (std::size_t v = range.begin(); v != range.end(); ++v)
                farthest = std::max(farthest, Dot(positions[v] - camera.eye, camera.forward));
            return farthest;
        },
        [](float a, float b) { return std::max(a, b); });
}

} // namespace

/// Of what is in sight: offset + x * p.x + y * p.y + z * p.z >= 0.
struct Projection::Plane {
    float offset, x, y, z;
    float distance(Vec3f p) const { return offset + x * p.x + y * p.y + z * p.z; }

    /// From the inside out, so that all that share a line get the same point.
    Vec3f cut(Vec3f inside, Vec3f outside) const
    {
        const float at = distance(inside);
        return inside + (outside - inside) * (at / (at - distance(outside)));
    }
    /// Sutherland and Hodgman, "Reentrant polygon clipping", 1974.
    std::vector<Vec3f> clip(const std::vector<Vec3f>& polygon) const
    {
        std::vector<Vec3f> kept;
        for (std::size_t i = 0; i < polygon.size(); ++i) {
            const Vec3f a = polygon[i], b = polygon[(i + 1) % polygon.size()];
            const bool hasA = distance(a) >= 0.0f, hasB = distance(b) >= 0.0f;
            if (hasA)
                kept.push_back(a);
            if (hasA != hasB)
                kept.push_back(hasA ? cut(a, b) : cut(b, a));
        }
        return kept;
    }
};

Projection::Projection(base::Span<const NumberedMesh> meshes, const PictureCamera& camera, SampleGrid grid)
    : _meshes(meshes), _camera(camera), _grid(grid),
      _across(camera.right * (1.0f / (camera.halfHeight * grid.aspect()))),
      _upwards(camera.up * (1.0f / camera.halfHeight))
{
    if (camera.isPerspective) {
        // So near that it is never missed, and not so near that depths lose their digits.
        constexpr float nearestShare = 1e-4f;
        float farthest = 1.0f;
        for (const NumberedMesh& one : meshes)
            farthest = std::max(farthest, DepthOf(one.mesh.positions, camera));
        _nearest = nearestShare * farthest;
    }
    for (const NumberedMesh& one : meshes) {
        std::vector<RasterCorner>& corners = _corners.emplace_back(one.mesh.vertexCount());
        ForEachIndex(corners.size(), 8192,
                     [&](std::size_t v) { corners[v] = project(one.mesh.positions[v]); });
    }
}

/// In units of the picture's half width and height, at distance 1 with perspective.
Vec3f Projection::fromEye(Vec3f point) const
{
    const Vec3f from = point - _camera.eye;
    return {Dot(from, _across), Dot(from, _upwards), Dot(from, _camera.forward)};
}

RasterCorner Projection::place(Vec3f seen) const
{
    const float scale = _camera.isPerspective ? 1.0f / seen.z : 1.0f;
    return {0.5f * ((seen.x * scale + 1.0f) * static_cast<float>(_grid.width) - 1.0f),
            0.5f * ((1.0f - seen.y * scale) * static_cast<float>(_grid.height) - 1.0f),
            _camera.isPerspective ? scale : -seen.z};
}

RasterCorner Projection::project(Vec3f point) const
{
    const Vec3f seen = fromEye(point);
    RasterCorner corner = place(seen);
    // Written so that no number fails, too.
    if (!(seen.z > _nearest && std::abs(corner.x) < farthestCorner && std::abs(corner.y) < farthestCorner))
        corner.x = NAN;
    return corner;
}

std::array<Projection::Plane, 5> Projection::planes() const
{
    constexpr float margin = 4.0f; // in half pictures
    const float perDepth = _camera.isPerspective ? margin : 0.0f, always = margin - perDepth;
    return {{{-_nearest, 0, 0, 1},
             {always, 1, 0, perDepth},
             {always, -1, 0, perDepth},
             {always, 0, 1, perDepth},
             {always, 0, -1, perDepth}}};
}

std::vector<RasterCorner> Projection::clipped(const std::vector<Vec3f>& polygon) const
{
    std::vector<Vec3f> left;
    for (const Vec3f point : polygon) {
        if (!IsFinite(point))
            return {};
        left.push_back(fromEye(point));
    }
    for (const Plane& plane : planes())
        left = plane.clip(left);
    std::vector<RasterCorner> corners;
    for (const Vec3f seen : left)
        corners.push_back(place(seen));
    return corners;
}

std::vector<RasterCorner> Projection::clipped(Vec3f a, Vec3f b) const
{
    if (!IsFinite(a) || !IsFinite(b))
        return {};
    a = fromEye(a), b = fromEye(b);
    for (const Plane& plane : planes()) {
        const bool hasA = plane.distance(a) >= 0.0f, hasB = plane.distance(b) >= 0.0f;
        if (!hasA && !hasB)
            return {};
        if (hasA != hasB)
            (hasA ? b : a) = hasA ? plane.cut(a, b) : plane.cut(b, a);
    }
    return {place(a), place(b)};
}

} // namespace geometry
