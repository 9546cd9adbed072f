// The rows of lashes on the canonical body's left lids.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_field.h"

namespace content {

/// A place along a lash.
struct LashPlace {
    bool isUpper = true;
    float root = 0.0f; ///< x of where the lash leaves the lid, cm
    float rise = 0.0f; ///< 0 at the root, 1 at the tip of the row's longest lash
};
Vec3f FromLash(const LashPlace& place);

/// The lash that a place in front of the lids is on, of those that could stand anywhere along the lids.
LashPlace LashAt(Vec3f p);

} // namespace content
