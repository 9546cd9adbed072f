// Meshes that were meant to lie close to each other, and do not.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/morph_transfer.h"

#include <string>

namespace geometry {

/// So few vertices of the target found a place on the source that nothing sensible can come over.
bool IsMisfit(const MatchStatistics& statistics);

/// The likely reason, from the boxes around the neutral shapes; none of them empty. A sentence about the
/// target, without its subject: "is 100 times larger than the source, as if ...".
std::string LikelyMisfit(const Box3f& source, const Box3f& target);

/// What to say of the target, with the reason.
/// @param source, target  positions of the neutral shapes
std::string DescribeMisfit(const MatchStatistics& statistics, base::Span<const Vec3f> source,
                           base::Span<const Vec3f> target, const std::string& sourceName);

} // namespace geometry
