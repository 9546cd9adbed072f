// Pictures in pages.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture.h"
#include "report.h"

#include <string>
#include <vector>

namespace cli {

/// As the address of an image, which holds the PNG itself.
std::string DataUri(const geometry::Picture& picture);

/// Frames in which several pictures show things alike.
struct PictureFrames {
    geometry::Box3f whole, head; ///< cm
    std::size_t farOff = 0;      ///< vertices that lie outside of both; see geometry::BoxToShow()
};
/// @param figures  the items of each; the head is looked for on the first
PictureFrames FramesOf(const std::vector<std::vector<geometry::PictureItem>>& figures);

/// One thing from all sides.
struct PictureRow {
    std::string title, alt;
    std::vector<geometry::PictureItem> items;
    geometry::Lighting lighting = geometry::Lighting::Quick;
};
constexpr int pagePictureWidth = 300, pagePictureHeight = 400;

/// As "conversion.js" has them: front, three-quarter, side, back and face.
Json DrawRows(const std::vector<PictureRow>& rows, const PictureFrames& frames);

} // namespace cli
