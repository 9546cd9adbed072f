// Taking a figure's place and pose out of positions.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/vec3.h"

#include <vector>

class DzNode;

namespace openhost {

class Pipeline;
struct NodeTransform;
struct SkinPose;

/// World positions in figure space.
/// @throws base::Error  the node is scaled to nothing
std::vector<geometry::Vec3f> UndoPlace(const DzNode& node, std::vector<geometry::Vec3f> positions);
/// The same with a place that can be undone.
std::vector<geometry::Vec3f> UndoPlace(const NodeTransform& place, std::vector<geometry::Vec3f> positions);
/// @throws base::Error  the node is scaled to nothing
void RequireInvertible(const NodeTransform& place, const DzNode& node);

/// Without what the modifiers behind the skin add at present: exact for the shape as it stands, and as good
/// as the change is small. Figure space; the positions are those of the mesh at the level.
std::vector<geometry::Vec3f> UndoShaping(Pipeline& pipeline, std::vector<geometry::Vec3f> positions,
                                         int level);
/// What that takes away, one per vertex of the mesh at the level; empty for nothing.
std::vector<geometry::Vec3f> ShapingOffsets(Pipeline& pipeline, int level);

/// Posed cage positions at rest; both in figure space.
std::vector<geometry::Vec3f> UndoSkin(const Pipeline& pipeline, base::Span<const geometry::Vec3f> posed);
std::vector<geometry::Vec3f> UndoSkin(const SkinPose& pose, base::Span<const geometry::Vec3f> posed);

} // namespace openhost
