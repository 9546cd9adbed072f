// Which face is seen at each sample of a picture.
// SPDX-License-Identifier: MIT

#pragma once

#include "projection.h"

#include <cstdint>
#include <vector>

namespace geometry {

/// Draws faces, from both sides, into a buffer of depths. They are sorted into
/// square tiles first, which are drawn side by side (Molnar, Cox, Ellsworth and Fuchs, "A sorting
/// classification of parallel rendering", 1994). The result is the same on every run and for any number of
/// threads.
class Rasterizer {
public:
    /// Triangles with a corner that is no number are not drawn.
    /// @param meshes  must outlive it
    Rasterizer(base::Span<const NumberedMesh> meshes, const PictureCamera& camera, SampleGrid grid);

    /// The number of the face at each sample from row `first` to before row `last`, row by row, or noFace.
    void draw(int first, int last, base::Span<std::uint32_t> faces) const;

private:
    struct Triangle {
        RasterCorner corners[3];
        std::uint32_t face;
    };
    struct Chunk;
    struct Band;

    std::vector<Chunk> chunksOf() const;
    void sort(Chunk& chunk, const Band& band) const;
    void addClipped(Chunk& chunk, std::uint32_t face, std::vector<std::uint64_t>& placed,
                    const Band& band) const;
    void drawTile(const std::vector<Chunk>& chunks, const Band& band, int tile,
                  base::Span<std::uint32_t> faces) const;

    Projection _projection;
};

} // namespace geometry
