// Refinements shared between figures.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/subdivision.h"

#include <vector>

namespace openhost {

/// The refinement of a topology to at least the given level; one that is in use anywhere, or
/// was in the work that is being done, is handed out again.
/// @throws geometry::TopologyError  see geometry::Subdivision
std::shared_ptr<const geometry::Subdivision>
FindSubdivision(const std::shared_ptr<const geometry::Topology>& cage, int levels,
                geometry::BoundaryRule rule, const std::vector<geometry::Crease>& creases);

} // namespace openhost
