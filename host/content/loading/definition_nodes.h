// Nodes and objects of the host from the definitions of a file.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"

#include <memory>
#include <string>

class DzFacetMesh;
class DzNode;
class DzObject;
class DzPresentation;

namespace openhost {

/// Without geometry, parent and children. An unknown rotation order counts as XYZ.
std::unique_ptr<DzNode> MakeNode(const dson::Node& definition);
/// The mesh and its present subdivision level, in one shape.
std::unique_ptr<DzObject> MakeObject(const dson::Geometry& geometry);
/// What becomes of the mesh's border when it is subdivided, by the name that files have for it; soft for
/// any that is not known.
void SetEdgeInterpolation(DzFacetMesh& mesh, const std::string& name);
/// Null for an empty type.
std::unique_ptr<DzPresentation> MakePresentation(const std::string& type);
/// What translation, rotation and scale are now is what the definition says.
void SetTransformsAsDefined(const DzNode& node);

} // namespace openhost
