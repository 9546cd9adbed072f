// What of the scene a picture shows.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture.h"

#include <array>
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

/// What surfaces are drawn in, linear RGB, one each: eyes, teeth, lashes, brows and nails by their usual
/// names, all others like skin. Materials are not evaluated. Empty where all are alike.
std::vector<std::array<float, 3>> SurfaceColors(const geometry::Topology& topology);

/// The deformed meshes of all visible nodes, in world space. They belong to the scene and change with it.
ScenePicture VisibleItems(const DzScene& scene);

/// The same of a figure, first and even when it is hidden, and of all visible ones that follow it or one of
/// its followers.
ScenePicture FigureItems(DzSkeleton& figure);

} // namespace openhost
