// Meshes as a camera sees them.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture_stage.h"
#include "raster_tile.h"

#include <array>
#include <vector>

namespace geometry {

/// A picture's samples; their centres are spread over it evenly, the first at the top left.
struct SampleGrid {
    int width = 0, height = 0;

    float aspect() const { return static_cast<float>(width) / static_cast<float>(height); }
    /// A sample's place as PictureCamera::ray() wants it.
    float x(int column) const
    {
        return 2.0f * (static_cast<float>(column) + 0.5f) / static_cast<float>(width) - 1.0f;
    }
    float y(int row) const
    {
        return 1.0f - 2.0f * (static_cast<float>(row) + 0.5f) / static_cast<float>(height);
    }
};

/// The vertices of several meshes on a picture's samples.
class Projection {
public:
    /// @param meshes  must outlive it
    Projection(base::Span<const NumberedMesh> meshes, const PictureCamera& camera, SampleGrid grid);

    base::Span<const NumberedMesh> meshes() const { return _meshes; }
    SampleGrid grid() const { return _grid; }
    /// One a vertex. Its x is no number where it is out of sight or so far out that faces and edges with it
    /// must be cut.
    base::Span<const RasterCorner> corners(std::size_t mesh) const { return _corners[mesh]; }
    /// What is in sight of a convex polygon, without what only somebody far beyond the picture's rim would
    /// see. Empty if nothing is, or if a corner is no number.
    std::vector<RasterCorner> clipped(const std::vector<Vec3f>& polygon) const;
    /// The same of a line.
    std::vector<RasterCorner> clipped(Vec3f a, Vec3f b) const;

private:
    struct Plane;
    std::array<Plane, 5> planes() const;
    Vec3f fromEye(Vec3f point) const;
    RasterCorner place(Vec3f seen) const;
    RasterCorner project(Vec3f point) const;

    base::Span<const NumberedMesh> _meshes;
    PictureCamera _camera;
    SampleGrid _grid;
    Vec3f _across, _upwards; ///< by which a point's way from the eye becomes a share of the picture
    float _nearest = 0.0f;   ///< cm along the view; what is closer to the eye is cut off
    std::vector<std::vector<RasterCorner>> _corners;
};

} // namespace geometry
