// Shaded pictures of meshes, traced with Embree; no display needed.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture_camera.h"
#include "geometry/polygon_mesh.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace geometry {

class PictureStage;

enum class View { Front, Side, Back, ThreeQuarter, Face };

/// "front", "side", "back", "three-quarter", "face"; nothing for any other text.
std::optional<View> ParseView(std::string_view text);

struct Picture {
    int width = 0, height = 0;
    std::vector<std::uint8_t> rgb; ///< three bytes a pixel, top row first
    bool isEmpty = false;          ///< no face is seen in it, only background
};

/// One mesh to draw; its owners must outlive the drawing.
struct PictureItem {
    PolygonMeshView mesh;
    std::array<float, 3> color{0.80f, 0.66f, 0.58f};     ///< linear RGB, 0..1
    std::vector<std::array<float, 3>> surfaceColors;     ///< likewise; one per surface of the topology, or
                                                         ///< none for the color
    base::Span<const std::array<float, 3>> vertexColors; ///< instead of either; one per vertex, or none
};

enum class Lighting {
    Studio, ///< a key, a fill and a rim light with soft shadows, ambient occlusion
    Quick,  ///< the same lights without shadows, some four times as fast
    Plain   ///< one lamp at the eye and much of all around, so that colours which mean something stay legible
};

struct PictureOptions {
    View view = View::Front;
    int width = 900, height = 1200; ///< pixels, 1 to 16384
    int samplesPerAxis = 2;         ///< antialiasing: this many squared a pixel; 1 to 16
    Lighting lighting = Lighting::Studio;
    std::optional<Box3f> frame;          ///< cm; what to fit into the picture, else as by picture_box.h
    std::optional<PictureCamera> camera; ///< instead of view and frame
};

/// @throws base::Error  a side (pixels) is not within 1 to 16384
void CheckPictureSize(int width, int height);

/// Shades with smooth normals on a plain background. An empty mesh gives the background alone.
/// @throws base::Error  a size or the number of samples is out of range, or an item has colours for another
///                      number of vertices or surfaces
Picture Render(base::Span<const PictureItem> items, const PictureOptions& options = {});
/// The same of what has been made ready, for several pictures of the same items.
Picture RenderStage(const PictureStage& stage, const PictureOptions& options = {});

/// Side by side, the tallest deciding the height; black below the others.
Picture Join(base::Span<const Picture> pictures);

/// The bytes of a PNG file.
/// @throws base::Error  the picture is empty or cannot be encoded
std::vector<std::uint8_t> EncodePng(const Picture& picture);
/// The same of several, side by side.
std::vector<std::vector<std::uint8_t>> EncodePngs(base::Span<const Picture> pictures);

/// Writes PNG beside the target and renames it into place.
/// @throws base::IoError  the file cannot be written
void WritePng(const std::filesystem::path& file, const Picture& picture);
/// The same of bytes from EncodePng().
void WritePng(const std::filesystem::path& file, base::Span<const std::uint8_t> bytes);

} // namespace geometry
