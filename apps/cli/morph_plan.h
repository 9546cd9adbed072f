// What single morphs of a figure are to be called on another.
// SPDX-License-Identifier: MIT

#pragma once

#include "morph_conversion.h"

class DzNode;

namespace cli {

/// A morph to be made, and what of.
struct PlannedMorph {
    ShapeDial source;
    std::string name;
};

/// Names for all that can have one; the others are skipped with the reason. Morphs of the target that are to
/// be replaced are taken off.
/// @param diagnostics  hears of dials that look as if they had a new morph's name
std::vector<PlannedMorph> PlanMorphs(const std::vector<ShapeDial>& chosen, DzNode& target,
                                     const MorphConversionRequest& request,
                                     std::vector<SkippedMorph>& skipped, base::Diagnostics& diagnostics);

/// The group for the new dial of one in the group, beginning with a slash.
std::string GroupFor(const std::string& sourceGroup, const std::string& prefix);

} // namespace cli
