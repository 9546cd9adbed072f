// What the open host's viewport shows and does besides what the scene's own classes tell of.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbox3.h"

#include <array>
#include <map>
#include <vector>

class Dz3DViewport;
class DzNode;
class DzSkeleton;

namespace openhost {

/// Linear RGB, one per vertex of the node's mesh as pictures show it. Of a mesh that has another number of
/// vertices by now they are not shown.
using NodeColors = std::map<const DzNode*, std::vector<std::array<float, 3>>>;

/// Colours that mean something, in place of those of the surfaces and under a light that lets them be read.
/// None end that.
void SetNodeColors(Dz3DViewport& view, NodeColors colors);

/// Shows two figures, with what follows them, each in its half of the view and about its own origin, through
/// the same camera. Null, and the end of either, brings the scene back.
void ShowSideBySide(Dz3DViewport& view, DzSkeleton* left, DzSkeleton* right);

/// A grid on the floor with the axes, behind the figures; not at first.
void ShowGround(Dz3DViewport& view, bool isShown);

/// What there is to see, world space: that of the scene, or of two figures as if they stood in one place.
DzBox3 BoxInView(const Dz3DViewport& view);
/// Of one node, where the view shows it.
DzBox3 BoxInView(const Dz3DViewport& view, const DzNode& node);
/// Moves the camera back or forth until the box can be seen; nothing for an invalid one.
void FrameInView(Dz3DViewport& view, const DzBox3& box);

} // namespace openhost
