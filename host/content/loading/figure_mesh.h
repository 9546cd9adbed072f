// A figure's mesh and the skin that binds it to the bones.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"
#include "figure_file.h"
#include "figure_nodes.h"
#include "geometry/polygon_mesh.h"

#include <memory>
#include <optional>
#include <string>

class DzNode;

namespace openhost {

class FigureMesh {
public:
    /// Gives the root of the nodes its geometry and skin, if the file has them.
    /// @param wanted  id of the geometry, empty for none; if not given, the one that the skin names, else the
    ///                first
    FigureMesh(const FigureFile& file, const FigureNodes& nodes, const std::optional<std::string>& wanted);

    const std::string& geometryId() const { return _geometryId; } ///< empty without a mesh
    /// Null without a mesh.
    std::shared_ptr<const geometry::Topology> topology() const;
    int vertexCount() const;
    /// False for a morph of a mesh of another size.
    bool fits(const dson::MorphData& morph) const;

private:
    DzNode& _root;
    std::string _geometryId;
};

} // namespace openhost
