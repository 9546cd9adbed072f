// What of the scene a picture shows.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture.h"

#include <vector>

class DzScene;

namespace cli {

/// The deformed meshes of all visible nodes, in world space. They belong to the scene and change with it.
std::vector<geometry::PictureItem> VisibleItems(const DzScene& scene);

} // namespace cli
