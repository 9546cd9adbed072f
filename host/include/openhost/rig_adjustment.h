// Joints that follow the shape of new morphs.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <vector>

class DzMorph;
class DzNode;

namespace openhost {

/// New morphs of one figure, whatever their dials are at.
struct NewMorphs {
    DzMorph* whole = nullptr; ///< the whole change; null if not made
    /// Parts of it that can be worn instead and add up to it, as far as they are made.
    std::vector<DzMorph*> parts;
};

/// Of morphs that were made together, the one that all others are parts of, if there is one: none of them
/// moves a vertex in another direction or further. A single morph is whole.
NewMorphs WholeAndParts(const std::vector<DzMorph*>& morphs);

/// What was done to the joints that one morph drives.
struct AdjustedRig {
    const DzMorph* morph;
    std::size_t joints = 0;      ///< whose centre or end the morph moves
    double largestShiftCm = 0.0; ///< at a dial of 1
    std::string furthest;        ///< label of that joint
};

/// Links centre and end point of the figure's joints to the morphs' dials, so that the joints are where they
/// belong when the morphs are worn together with the other dials as they stand now.
///
/// What other dials say of the joints themselves is believed. Shapes worn now that say nothing of them are
/// made up for along with the new ones: by the whole, and among the parts by those that move the flesh around
/// a joint, or by the last of them where none does. Joint links that the morphs have already are replaced.
/// The morphs' files are to be saved afterwards. How far joints go is told as a note.
///
/// @return one entry per morph, the whole first
/// @throws base::Error  the node is no figure with a mesh and bones, or the morphs are not its own
std::vector<AdjustedRig> AdjustRig(DzNode& figure, const NewMorphs& morphs);

} // namespace openhost
