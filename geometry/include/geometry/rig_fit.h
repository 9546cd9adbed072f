// Where joints go when the shape around them changes.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"
#include "geometry/skinning.h"

#include <cstdint>
#include <vector>

namespace geometry {

/// A point of the rig: a joint's centre or end.
struct RigPoint {
    Vec3f position; ///< cm, in the space of the mesh
    /// Joints that it holds together: its own, the parent, the children. Flesh of others, as of the finger
    /// beside it, counts less.
    std::vector<std::uint32_t> joints;
};

struct RigFitOptions {
    /// cm; added to the point's depth, within which all flesh counts alike. A point half bone, half flesh
    /// lies this deep.
    float nearness = 0.25f;
    float foreignFlesh = 0.5f;  ///< how much flesh counts that hangs on none of the point's joints
    int rounds = 10;            ///< of fitting and of judging anew what fits
    std::size_t samples = 1000; ///< vertices that a point looks at, if the mesh has as many
};

/// How far each point moves with a change of shape, for each part of the change.
///
/// Around each point the change is fitted by one move, turn and even growth. For a point below the surface,
/// only what happens along the surface counts: flesh grows along its normals and leaves the bones where they
/// are, while bones take the surface along. A point on the surface goes with it. Flesh that does its own
/// thing loses its say from round to round (iteratively reweighted least squares with Cauchy's weights). A
/// shift no longer than what the fit leaves unexplained is shortened, as an estimate of zero with noise would
/// be. What comes out is linear in the displacements once these weights are known, so the shifts of the parts
/// add up to that of the whole if the parts do.
///
/// @param neutral  the shape before the change; with faces
/// @param weights  of the mesh; without joints for none, and all flesh counts
/// @param whole    cm, one displacement per vertex: what is judged
/// @param parts    cm, the same for each part
/// @return by part, one shift per point; cm
/// @throws TopologyError  the sizes do not fit, or a position or displacement is not finite
std::vector<std::vector<Vec3f>> FitRig(const PolygonMeshView& neutral, const SkinWeights& weights,
                                       base::Span<const RigPoint> points, base::Span<const Vec3f> whole,
                                       base::Span<const std::vector<Vec3f>> parts,
                                       const RigFitOptions& options = {});

} // namespace geometry
