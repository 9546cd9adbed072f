// Refinements shared between figures.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/subdivision.h"

#include <vector>

namespace openhost {

/// What a refinement is made of.
struct RefinedCage {
    std::shared_ptr<const geometry::Topology> topology;
    geometry::BoundaryRule rule = geometry::BoundaryRule::EdgeOnly;
    std::vector<geometry::Crease> creases;

    bool operator==(const RefinedCage& other) const
    {
        return topology == other.topology && rule == other.rule && creases == other.creases;
    }
};

/// The refinement of a cage to at least the given level; one that is in use anywhere, or was in the work that
/// is being done, is handed out again.
/// @throws geometry::TopologyError  see geometry::Subdivision
std::shared_ptr<const geometry::Subdivision> FindSubdivision(const RefinedCage& cage, int levels);

/// The same for several cages, those that are missing side by side. Null for what cannot be refined.
std::vector<std::shared_ptr<const geometry::Subdivision>>
FindSubdivisions(base::Span<const RefinedCage> cages, int levels);

} // namespace openhost
