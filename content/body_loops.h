// Rings of quads over ears and nails and around the openings of the face.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_field.h"
#include "geometry/polygon_mesh.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace content {

/// An opening, an ear or a nail as its rings see it. `turn` counts around it from 0 to 1, counter-clockwise
/// seen from outside.
struct Opening {
    /// Negative where the surface gives way to rings.
    std::function<float(Vec3f)> region;
    std::function<float(Vec3f)> turnOf;
    /// Near the place of a ring's vertex; outermost ring first, the last one is closed by a strip of quads.
    std::vector<std::function<Vec3f(float turn)>> rings;
    int softRings = 3; ///< so many of the outermost even out with the surface around
};
/// Those of the left half, where those of the right have their mirror images.
std::vector<Opening> LeftOpenings();
Opening MirrorImage(const Opening& left);
/// Those on the middle line, which are their own mirror images.
std::vector<Opening> MiddleOpenings();

/// A mesh whose vertices may have a mirror image.
struct MirroredMesh {
    geometry::Topology topology;
    std::vector<Vec3f> positions;
    /// The mirror image's vertex, a middle one's own; empty without symmetry.
    std::vector<std::uint32_t> twin;
};

/// Cuts the openings' regions out of a mesh that lies on the closed body and puts their rings there, on the
/// open one: quads again, closed, of the same genus.
MirroredMesh WithLoops(const MirroredMesh& closed);

} // namespace content
