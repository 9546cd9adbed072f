// What a ray meets first.
// SPDX-License-Identifier: MIT

#include "viewport_hit.h"

#include <cmath>

namespace openhost {

using geometry::Vec3f;

namespace {

/// Two planes along a ray: what lies on one side of either cannot be met.
class Quarters {
public:
    explicit Quarters(const geometry::Ray& ray) : _origin(ray.origin)
    {
        const Vec3f d = ray.direction;
        const Vec3f other = std::abs(d.x) < 0.5f ? Vec3f{1, 0, 0} : Vec3f{0, 1, 0};
        _across = Normalized(Cross(d, other));
        _along = Cross(d, _across);
    }

    bool mayMeet(const geometry::PolygonMeshView& mesh, std::size_t face) const
    {
        bool isLeft = false, isRight = false, isBelow = false, isAbove = false;
        for (const std::uint32_t v : mesh.face(face)) {
            const Vec3f way = mesh.positions[v] - _origin;
            const float x = Dot(way, _across), y = Dot(way, _along);
            isLeft |= x <= 0.0f, isRight |= x >= 0.0f;
            isBelow |= y <= 0.0f, isAbove |= y >= 0.0f;
        }
        return isLeft && isRight && isBelow && isAbove;
    }

private:
    Vec3f _origin, _across, _along;
};

/// How far along the ray; infinite where the face is beside it or behind.
float DistanceTo(const geometry::PictureStage::Hit& hit, const geometry::Ray& ray)
{
    constexpr float slack = 1e-4f; // of the distance: some float steps
    if (!hit.isValid)
        return INFINITY;
    const float distance = Dot(hit.position - ray.origin, ray.direction);
    const float beside = Length(hit.position - ray.origin - ray.direction * distance);
    return distance > 0.0f && beside <= slack * distance ? distance : INFINITY;
}

} // namespace

geometry::PictureStage::Hit FirstHit(const geometry::PictureStage& stage, const geometry::Ray& ray)
{
    const Quarters quarters(ray);
    geometry::PictureStage::Hit first;
    float nearest = INFINITY;
    for (const geometry::NumberedMesh& one : stage.meshes())
        for (std::size_t f = 0; f < one.mesh.faceCount(); ++f) {
            if (!quarters.mayMeet(one.mesh, f))
                continue;
            const geometry::PictureStage::Hit hit =
                stage.hitOn(one.firstFace + static_cast<std::uint32_t>(f), ray);
            if (const float distance = DistanceTo(hit, ray); distance < nearest) {
                nearest = distance;
                first = hit;
            }
        }
    return first;
}

} // namespace openhost
