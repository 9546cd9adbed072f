// What of the scene a picture shows.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture.h"

#include <vector>

class DzNode;
class DzScene;
class DzSkeleton;

namespace openhost {

/// Meshes and whose they are, in the same order.
struct ScenePicture {
    std::vector<geometry::PictureItem> items;
    std::vector<DzNode*> nodes;
};

/// The deformed meshes of all visible nodes, in world space. They belong to the scene and change with it.
ScenePicture VisibleItems(const DzScene& scene);

/// The same of a figure, first and even when it is hidden, and of all visible ones that follow it or one of
/// its followers.
ScenePicture FigureItems(DzSkeleton& figure);

} // namespace openhost
