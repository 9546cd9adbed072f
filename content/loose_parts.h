// What lies loose in the canonical body's openings and on its lids: eyeballs, teeth and lashes.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_field.h"
#include "geometry/polygon_mesh.h"

namespace content {

/// How finely the parts are meshed.
struct LooseDetail {
    int aroundEye = 20;  ///< quads around a ball, even
    int acrossTooth = 4; ///< quads along the row, for each tooth
    int aroundTooth = 8; ///< quads around the row, even
    int alongLash = 3;   ///< quads
    int aroundLash = 4;  ///< quads, even
};

/// Both balls, each with a dished iris and a pupil that is a hole; rows of teeth; lashes with their roots in
/// the lids. Closed, quads only; balls outside the sockets' walls nowhere. Surfaces "Sclera", "Irises",
/// "Pupils", "Teeth" and "Eyelashes".
geometry::PolygonMesh MakeLooseParts(const LooseDetail& detail);

/// One mesh of both; the body's faces first. Surfaces and groups are those of `loose`, none for the body: its
/// faces have the first surface, which is called "Skin".
geometry::PolygonMesh Together(const geometry::PolygonMesh& body, const geometry::PolygonMesh& loose);

} // namespace content
