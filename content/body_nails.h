// The canonical body's nails, left side.
// SPDX-License-Identifier: MIT

#pragma once

#include "body_landmarks.h"

#include <array>

namespace content {

/// A nail's plate over the skin of a finger or a toe.
struct Nail {
    Vec3f center;            ///< on the skin
    Vec3f along, across, up; ///< unit; towards the tip, to the side, off the skin
    float halfLength = 0.0f, halfWidth = 0.0f;

    /// 0 in the middle, 1 at the border, whose shape is a rounded rectangle's.
    float border(Vec3f p) const;
    /// The place at a part of the border's size; turn 0 is the tip's side.
    Vec3f place(float turn, float size) const;
};
constexpr int nailCount = landmarks::fingerCount + landmarks::toeCount;
const std::array<Nail, nailCount>& Nails(); ///< fingers first

/// Whether a place on the body's skin, of either side, is on a plate.
bool IsOnNail(Vec3f p);

/// Raises the plates and lowers what is around them.
float AddNails(Vec3f p, float d);

} // namespace content
