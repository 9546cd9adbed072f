// The items of a picture, made ready to be looked at.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture.h"
#include "geometry/picture_camera.h"

#include <memory>

namespace geometry {

class FaceCuts;

/// A mesh whose faces have numbers of their own among those of several.
struct NumberedMesh {
    PolygonMeshView mesh;
    std::uint32_t firstFace = 0;
    const FaceCuts* cuts = nullptr; ///< of those faces that no fan fills; null where there are none
};

/// Stands where there is no face.
constexpr std::uint32_t noFace = UINT32_MAX;

/// Where a stage knows the normals that shade its faces smoothly.
enum class StageNormals {
    Everywhere,
    WhereAsked ///< as findNormals() is told: soonest ready, for one picture at a time
};

/// Reads the items' positions at construction and their colours later: the items must outlive it. Queries are
/// const and may be made from several threads at once.
class PictureStage {
public:
    /// @throws TopologyError  a position is beyond farthestPosition, or there are too many faces to be
    /// numbered
    explicit PictureStage(base::Span<const PictureItem> items,
                          StageNormals normals = StageNormals::Everywhere);
    ~PictureStage();
    PictureStage(PictureStage&&) noexcept;
    PictureStage& operator=(PictureStage&&) noexcept;

    base::Span<const PictureItem> items() const;
    /// One an item.
    base::Span<const NumberedMesh> meshes() const;

    struct Hit {
        Vec3f position;   ///< cm
        Vec3f normal;     ///< interpolated over the triangle; flat where no normals are known
        Vec3f faceNormal; ///< of the flat triangle; both turned to the viewer's side of the face
        std::array<float, 3> color{};
        std::uint32_t item = 0, face = 0; ///< the item, and its polygon
        bool isValid = false;
    };
    /// Makes normals known on these faces; noFace may be among them. A stage that knows them everywhere stays
    /// as it is; one that learns some may not be asked for anything meanwhile.
    void findNormals(base::Span<const std::uint32_t> faces) const;

    /// Where a ray meets a face of which it is known that it does; the closest point of a triangle's plane
    /// where it only just does. Not valid for noFace and for a face without area.
    Hit hitOn(std::uint32_t number, const Ray& ray) const;

    /// Makes ready for tracing, which otherwise the first ray does. That one must not come from a parallel
    /// loop.
    /// @throws base::Error  the ray tracer cannot be started
    void prepareToTrace() const;
    /// The first thing that a ray hits.
    Hit trace(const Ray& ray) const;
    /// Whether nothing is in the way along each ray between two distances (cm). Rays that go nearly the same
    /// way are best asked for together.
    /// @param areFree  one per ray; 1 or 0
    void findFree(base::Span<const Ray> rays, float from, float to, std::uint8_t* areFree) const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace geometry
