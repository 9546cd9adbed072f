// The triangles of a picture's items in one ray tracing scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture.h"
#include "geometry/picture_camera.h"

#include <memory>
#include <vector>

namespace geometry {

/// Reads the items' positions at construction and their colours later: the items must outlive it. Queries are
/// const and may be made from several threads at once.
class PictureStage {
public:
    /// @throws base::Error    the ray tracer cannot be started
    /// @throws TopologyError  a position is beyond farthestPosition
    explicit PictureStage(base::Span<const PictureItem> items);
    ~PictureStage();
    PictureStage(PictureStage&&) noexcept;
    PictureStage& operator=(PictureStage&&) noexcept;

    struct Hit {
        Vec3f position;   ///< cm
        Vec3f normal;     ///< interpolated over the triangle
        Vec3f faceNormal; ///< of the flat triangle; both turned to the viewer's side of the face
        std::array<float, 3> color{};
        std::uint32_t item = 0, face = 0; ///< the item, and its polygon
        bool isValid = false;
    };
    /// The first thing that a ray hits.
    Hit trace(const Ray& ray) const;
    /// Many rays that go nearly the same way, such as neighbours in a picture: faster than one by one.
    /// @param hits  one per ray
    void trace(base::Span<const Ray> rays, Hit* hits) const;
    /// Whether nothing is in the way between two distances (cm) along a ray.
    bool isFree(const Ray& ray, float from, float to) const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace geometry
