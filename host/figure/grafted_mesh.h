// A figure's mesh grown together with those that are grafted onto it.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/grafting.h"
#include "geometry/subdivision.h"

namespace openhost {

/// Made anew when one of the base meshes is another one; the positions whenever they are asked for.
struct GraftedMesh {
    std::vector<std::uint64_t> serials; ///< of the base meshes
    geometry::GraftedTopology joined;
    std::vector<geometry::Crease> creases; ///< of all of them, by vertices of the joined mesh
    std::shared_ptr<const geometry::Subdivision> subdivision;
    geometry::PolygonMesh mesh;
};

} // namespace openhost
