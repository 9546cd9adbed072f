// The canonical body's bones and the skin weights they give.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "distance_field.h"
#include "geometry/skinning.h"

#include <string>
#include <vector>

namespace content {

enum class BonePart { Torso, Head, Arms, Legs };

/// A bone of the canonical body, under the names of both families of figures.
struct BodyBone {
    std::string newName; ///< of the newest generation, such as l_thigh
    std::string oldName; ///< of the older ones, such as lThighBend
    int parent = -1;     ///< index, -1 for the first
    Vec3f center, end;   ///< cm, canonical
    Vec3f orientation;   ///< degrees
    geometry::RotationOrder order = geometry::RotationOrder::YZX;
    BonePart part = BonePart::Torso;
    // What the skin weights are measured from.
    Vec3f reachStart, reachEnd;
    float radius = 1.0f; ///< cm, of the body around the bone
    int side = 0;        ///< 1 left, -1 right, 0 both
};

/// Parents before children; the first is the hip.
const std::vector<BodyBone>& BodyBones();

/// Weights of each place on the canonical body, smooth and summing to 1; at most eight bones each.
/// @return one list a bone, in the bones' order
std::vector<geometry::JointWeights> BodyWeights(base::Span<const Vec3f> canonical);

} // namespace content
