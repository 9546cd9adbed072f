// Pictures as files of the kind that their names ask for.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture.h"

#include <filesystem>

namespace openhost {

/// .png for PNG, .jpg or .jpeg for JPEG, in upper or lower case.
/// @throws base::FormatError  the name is not one of a picture
void CheckPictureName(const std::filesystem::path& file);

/// Writes beside the target and renames into place.
/// @throws base::FormatError  as above
/// @throws base::IoError      the picture cannot be encoded, or the file not be written
void WritePicture(const std::filesystem::path& file, const geometry::Picture& picture);

} // namespace openhost
