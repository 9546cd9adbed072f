// A subdivided mesh in a new shape, split into the cage's deltas and detail per level.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/deltas.h"
#include "geometry/mirroring.h"
#include "geometry/multires_detail.h"
#include "geometry/skinning.h"

#include <climits>
#include <optional>

namespace geometry {

/// How a cage is posed by its skin; at rest without weights.
struct CagePose {
    const SkinWeights* weights = nullptr;
    base::Span<const JointPose> joints;
    SkinBlend blend;
};

/// What a new shape is seen against. All positions in cm, one per vertex of the cage.
struct PresentShape {
    base::Span<const Vec3f> neutral; ///< neither morphed nor posed; where mirrored vertices are looked for
    base::Span<const Vec3f> rest;    ///< what the new deltas are added to: with other morphs, but not posed
    base::Span<const Vec3f> posed;   ///< the same in its pose
    CagePose pose;                   ///< that turns `rest` into `posed`
    base::Span<const ActiveDetail> details; ///< of other morphs
};

struct MorphSplitOptions {
    /// The cage is the one whose own subdivision comes nearest to the shape; otherwise its vertices stand
    /// where they stand in the shape.
    bool smoothCage = true;
    float tolerance = 0.01f;                      ///< cm; shorter displacements are dropped
    int coarsestLevel = 0, finestLevel = INT_MAX; ///< other levels are left out; 0 is the cage
    std::optional<Mirroring> mirroring;           ///< of the whole morph, at rest
};

/// A morph of a subdivided mesh.
struct SubdividedMorph {
    SparseDeltas deltas; ///< of the cage
    MultiresDetail detail;
};

/// The morph that at dial 1, with the present pose and the other morphs, makes the subdivided mesh the given
/// shape. Detail makes up for what is dropped from the cage.
/// @param fine   cm, one per vertex of the level
/// @param level  0 to the subdivision's own
/// @throws TopologyError  a number of vertices does not fit
SubdividedMorph SplitMorph(const Subdivision& subdivision, base::Span<const Vec3f> fine, int level,
                           const PresentShape& present, const MorphSplitOptions& options = {});

} // namespace geometry
