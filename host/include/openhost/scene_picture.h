// What of the scene a picture shows.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture.h"

#include <vector>

class DzNode;
class DzScene;

namespace openhost {

/// Meshes and whose they are, in the same order.
struct ScenePicture {
    std::vector<geometry::PictureItem> items;
    std::vector<DzNode*> nodes;
};

/// The deformed meshes of all visible nodes, in world space. They belong to the scene and change with it.
ScenePicture VisibleItems(const DzScene& scene);

} // namespace openhost
