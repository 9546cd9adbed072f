// A camera of the scene as the picture's geometry sees it.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture_camera.h"

class DzCamera;

namespace openhost {

/// @param aspect  width of the picture through its height, above 0
geometry::PictureCamera OpticsOf(const DzCamera& camera, float aspect);

} // namespace openhost
