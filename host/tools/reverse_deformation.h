// Taking a figure's place and pose out of positions.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/vec3.h"

#include <vector>

class DzNode;

namespace openhost {

class Pipeline;

/// World positions in figure space.
/// @throws base::Error  the node is scaled to nothing
std::vector<geometry::Vec3f> UndoPlace(const DzNode& node, base::Span<const geometry::Vec3f> world);

/// Without what the modifiers behind the skin add at present: exact for the shape as it stands, and as good
/// as the change is small. Figure space; the positions are those of the mesh at the level.
std::vector<geometry::Vec3f> UndoShaping(Pipeline& pipeline, std::vector<geometry::Vec3f> positions,
                                         int level);

/// Posed cage positions at rest; both in figure space.
std::vector<geometry::Vec3f> UndoSkin(const Pipeline& pipeline, base::Span<const geometry::Vec3f> posed);

} // namespace openhost
