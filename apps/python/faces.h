// The faces of a mesh, as Python has them.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <memory>

namespace python {

/// Never changes, so that many meshes can share one.
struct Faces {
    std::shared_ptr<const geometry::Topology> topology;
};

} // namespace python
