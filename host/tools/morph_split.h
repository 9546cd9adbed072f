// Morph Loader Pro's settings as the mesh library's options.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/morph_split.h"
#include "morph_load_settings.h"

namespace openhost {

class Pipeline;

/// Nothing for DoNotMirror.
std::optional<geometry::Mirroring> MirroringOf(DzMorphLoader::MirroringType type);

/// Splits the shape that the mesh has at the level at which the file was made. The new morph at 1 then gives
/// that shape: with reversed deformations under the present pose and dials, otherwise on the plain base mesh.
/// @param fine  in figure space, cm, one per vertex of the level
geometry::SubdividedMorph SplitMorph(const MorphLoadSettings& settings, Pipeline& pipeline,
                                     base::Span<const geometry::Vec3f> fine);

} // namespace openhost
