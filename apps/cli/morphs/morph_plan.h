// What single morphs of a figure are to be called on another.
// SPDX-License-Identifier: MIT

#pragma once

#include "morphs/morph_conversion.h"

#include <set>

class DzNode;

namespace cli {

/// A morph to be made, and what of.
struct PlannedMorph {
    ShapeDial source;
    std::string name, file;
};

/// Files that new morphs may be saved over.
class ReplaceableFiles {
public:
    explicit ReplaceableFiles(const MorphConversionRequest& request);
    bool has(const std::filesystem::path& file) const;

private:
    bool _areAll;
    std::set<std::string> _own;
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
