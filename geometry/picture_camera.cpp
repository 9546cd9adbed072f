// Rays through pixels, and framing.
// SPDX-License-Identifier: MIT

#include "geometry/picture_camera.h"

#include <algorithm>
#include <cmath>

namespace geometry {

Ray PictureCamera::ray(float x, float y, float aspect) const
{
    const Vec3f across = right * (x * halfHeight * aspect) + up * (y * halfHeight);
    if (isPerspective)
        return {eye, Normalized(forward + across)};
    return {eye + across, forward};
}

Vec3f PictureCamera::project(Vec3f point, float aspect) const
{
    const Vec3f from = point - eye;
    const float depth = Dot(from, forward);
    const float half = isPerspective ? halfHeight * depth : halfHeight;
    return {Dot(from, right) / (half * aspect), Dot(from, up) / half, depth};
}

float DistanceToSee(const Box3f& frame, const PictureCamera& axes, float halfHeight, float aspect)
{
    constexpr float margin = 0.94f;
    const Vec3f center = frame.center();
    float distance = 1e-3f;
    for (int corner = 0; corner < 8; ++corner) {
        const Vec3f p = Vec3f{corner & 1 ? frame.max.x : frame.min.x, corner & 2 ? frame.max.y : frame.min.y,
                              corner & 4 ? frame.max.z : frame.min.z} -
                        center;
        const float across = std::max(std::abs(Dot(p, axes.right)) / aspect, std::abs(Dot(p, axes.up)));
        distance = std::max(distance, across / (halfHeight * margin) - Dot(p, axes.forward));
    }
    return distance;
}

PictureCamera CameraAround(const Box3f& frame, float turn, float aspect)
{
    constexpr float fieldOfView = 18.0f * 3.14159265f / 180.0f; // from top to bottom
    PictureCamera camera;
    camera.forward = {-std::sin(turn), 0.0f, -std::cos(turn)};
    camera.right = {std::cos(turn), 0.0f, -std::sin(turn)};
    camera.halfHeight = std::tan(fieldOfView * 0.5f);
    camera.eye = frame.center() - camera.forward * DistanceToSee(frame, camera, camera.halfHeight, aspect);
    return camera;
}

} // namespace geometry
