// Quick pictures for a viewport: one sample a pixel, without shadows.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture_stage.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace geometry {

enum class PreviewShading {
    Smooth, ///< over interpolated normals
    Flat,   ///< one shade a face
    None    ///< one colour: hides what lies behind
};

enum class PreviewLight {
    ThreePoint, ///< a key, a fill and a rim light that go with the camera
    Plain ///< one lamp at the eye and much of all around, so that colours which mean something stay legible
};

struct PreviewOptions {
    PreviewShading shading = PreviewShading::Smooth;
    PreviewLight light = PreviewLight::ThreePoint;
    bool drawEdges = false;        ///< of polygons, where they can be seen
    float edgeOpacity = 0.45f;     ///< over shaded faces; 0 to 1
    int width = 640, height = 480; ///< pixels, 1 to 16384
    std::array<std::uint8_t, 3> background{58, 60, 64}, edges{20, 22, 24};
    std::array<std::uint8_t, 3> unshaded{58, 60, 64}; ///< of faces without shading
    /// Where nothing is drawn, for what is laid beneath; the background where unset.
    std::optional<std::uint32_t> emptyPixel;
};

struct PreviewPicture {
    int width = 0, height = 0;
    std::vector<std::uint32_t> pixels; ///< 0xffRRGGBB, top row first
};

/// Draws what the stage holds.
/// @throws base::Error  a size out of range
PreviewPicture DrawPreview(const PictureStage& stage, const PictureCamera& camera,
                           const PreviewOptions& options);

/// Draws the edges of all polygons, seen or hidden, one pixel wide. Of the options it takes sizes and
/// colours.
/// @throws base::Error  a size out of range
PreviewPicture DrawWires(base::Span<const PictureItem> items, const PictureCamera& camera,
                         const PreviewOptions& options);

} // namespace geometry
