// What draws pictures of files for the desktop application.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/content_pictures.h"

namespace desktop {

/// The command line's program, which comes with this one, and a folder of the user's cache. Without that
/// program nothing is drawn.
openhost::PictureDrawing DrawingOfPictures();

} // namespace desktop
