// What each vertex of a subdivision level is made of, as sparse rows.
// SPDX-License-Identifier: MIT

#pragma once

#include "refinement.h"

#include <opensubdiv/far/topologyRefiner.h>

namespace geometry {

/// The rows by which the level before makes this one, one per vertex in the level's order. OpenSubdiv's masks
/// say the weights, vertex by vertex; it has no stencils of a single level.
/// @param level  at least 1 and not beyond the refiner's
SparseRows CatmarkRows(const OpenSubdiv::Far::TopologyRefiner& refiner, int level);

} // namespace geometry
