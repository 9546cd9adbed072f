// The keys of a link with all that bends the curve between them.
// SPDX-License-Identifier: MIT

#pragma once

#include "scene/spline.h"

#include <vector>

class DzERCLink;

namespace openhost {

/// The link itself tells places and values alone.
struct LinkKnots {
    static const std::vector<SplineKnot>& of(const DzERCLink& link); ///< ascending
};

} // namespace openhost
