// A subdivided mesh in a new shape, split into the cage's deltas and detail per level.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/deltas.h"
#include "geometry/multires_detail.h"
#include "morph_load_settings.h"

namespace openhost {

class Pipeline;

/// Mirrors one delta per vertex; nothing for DoNotMirror.
void Mirror(std::vector<geometry::Vec3f>& deltas, base::Span<const geometry::Vec3f> neutral,
            DzMorphLoader::MirroringType type);

/// Splits the shape that the mesh has at the level at which the file was made. The new morph at 1 then gives
/// that shape: with reversed deformations under the present pose and dials, otherwise on the plain base mesh.
/// With a smooth cage the cage is the one whose own subdivision comes nearest; otherwise its vertices stand
/// where they stand in the file. Levels outside the settings' range are left out.
/// @param fine  in figure space, cm, one per vertex of the level
void SplitMorph(const MorphLoadSettings& settings, Pipeline& pipeline, base::Span<const geometry::Vec3f> fine,
                geometry::SparseDeltas* deltas, geometry::MultiresDetail* detail);

} // namespace openhost
