// Clothes and other parts that move with the figure they are fitted to.
// SPDX-License-Identifier: MIT

#pragma once

class DzMorph;
class DzNode;
class DzSkeleton;

namespace openhost {

/// The node is the other one or below it in the tree.
bool IsBelow(const DzNode& node, const DzNode& above);

/// Makes one figure follow another: it moves with it, unless it hangs on it anyway; its bones turn, move and
/// scale as the bones of equal names do, its joints shift as theirs do where nothing else shifts them, and
/// its dials follow those of the same name that may be followed. Shapes for which it has no dial move its
/// mesh as they move the surface around it, see Pipeline. What it has in its own right is added to that. All
/// of it ends when the follow target changes.
/// @param follower  must not be the target or above it in the tree
void FitTo(DzSkeleton& follower, DzSkeleton& target);

/// Whether one of the follower's own dials stands for a morph of the figure that it is fitted to: it follows
/// the morph's dial, or would if that could be followed.
bool HasDialFor(const DzSkeleton& follower, const DzMorph& morph);

} // namespace openhost
