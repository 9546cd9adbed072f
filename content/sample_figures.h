// The seven sample figures: their neutral shapes, joints, weights and morphs.
// SPDX-License-Identifier: MIT

#pragma once

#include "body_skeleton.h"
#include "geometry/polygon_mesh.h"
#include "geometry/transform.h"
#include "sample_content/figure_kinds.h"
#include "shape_fields.h"

#include <memory>
#include <string>
#include <vector>

namespace content {

/// A topology laid over the canonical body, with what is the same for all figures that use it.
struct SampleTopology {
    geometry::PolygonMesh body;      ///< one closed piece
    geometry::PolygonMesh canonical; ///< the body first, then what lies loose in its openings; with surfaces
    std::vector<geometry::JointWeights> weights; ///< one a bone of BodyBones()
};
SampleTopology MakeSampleTopology(FigureKind kind); ///< of the kind's generation

/// The fields that make a kind's neutral shape of the canonical body.
const std::vector<ShapePart>& NeutralParts(FigureKind kind);
Vec3f NeutralPlace(FigureKind kind, Vec3f canonical);
std::vector<Vec3f> NeutralPositions(FigureKind kind, base::Span<const Vec3f> canonical);

/// A bone's centre and end.
struct JointPlaces {
    Vec3f center, end;
};
/// In the neutral shape, one a bone of BodyBones().
std::vector<JointPlaces> NeutralJoints(FigureKind kind);

/// A dial of a sample figure.
struct SampleMorph {
    std::string name, label, group;
    std::vector<ShapePart> parts;
    float lowest = 0.0f;
};
const std::vector<SampleMorph>& SourceMorphs(); ///< of all older figures
const std::vector<SampleMorph>& TargetMorphs(); ///< of the newest; without base dials and clones

/// How a clone shape misses the shape it stands for: a few tenths of a millimetre, smooth, as hand-made
/// clones do. A transfer that only works on a perfect fit shows here.
Vec3f CloneFlaw(Vec3f canonical);

/// The newest figure's shape that stands for an older neutral.
struct CloneShape {
    std::vector<Vec3f> deltas;       ///< cm, one per vertex, from the newest neutral
    std::vector<JointPlaces> joints; ///< where the clone's joints lie
};
/// @param kind  one of the four base shapes. Those of generation 8 stand with legs apart, so their clones are
/// right once
///              the thighs are turned out by spreadDegrees.
CloneShape MakeClone(FigureKind kind, const SampleTopology& newest);

/// The newest figure's joints with both thighs turned outwards.
std::vector<geometry::Joint> PosedJoints(const std::vector<JointPlaces>& places, double thighDegrees);

} // namespace content
