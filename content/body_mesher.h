// All-quad meshes of the canonical body.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_field.h"
#include "geometry/polygon_mesh.h"

#include <vector>

namespace content {

/// A ball of the body that takes up more room while it is sampled, so that its quads come out smaller.
struct Enlargement {
    Vec3f center; ///< on the body, cm
    float factor = 1.0f;
    float radius = 1.0f;   ///< of the ball on the body, cm
    float fade = 1.0f;     ///< width of the shell around the enlarged ball in which the effect ends, cm
    Vec3f shift;           ///< of the enlarged ball, away from what must not be disturbed, cm
    bool mirrored = false; ///< stands on the right side too
};

struct MeshRecipe {
    float step = 1.6f;        ///< cm, grid spacing outside enlargements
    Vec3f offset;             ///< of the grid, in steps
    float turnDegrees = 0.0f; ///< of the grid about the vertical
    /// Each applied within what the ones before it enlarged.
    std::vector<std::vector<Enlargement>> levels;
    int relaxRounds = 20;
};

/// The quads of the body's zero set by surface nets (Gibson, "Constrained elastic surface nets", 1998) on a
/// grid whose signs were made unambiguous first, then relaxed along the surface. Closed, manifold, one piece,
/// every valence at least 3. The same bytes for the same recipe, whatever the number of threads.
geometry::PolygonMesh MeshBody(const MeshRecipe& recipe);

/// Mirror-symmetric, about 18,400 vertices: the older generations' topology.
MeshRecipe OldGenerationRecipe();
/// Without symmetry, about 29,200 vertices: the newest generation's topology.
MeshRecipe NewGenerationRecipe();

} // namespace content
