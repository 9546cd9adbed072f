// Drawing lines of one pixel's width.
// SPDX-License-Identifier: MIT

#include "wires.h"

#include "base/cancellation.h"

#include <tbb/blocked_range.h>
#include <tbb/enumerable_thread_specific.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

/// A bit for each sample of a picture.
class WireMask {
public:
    explicit WireMask(SampleGrid grid)
        : _width(grid.width), _height(grid.height),
          _wordsOfRow((static_cast<std::size_t>(grid.width) + 63) / 64),
          _words(_wordsOfRow * static_cast<std::size_t>(grid.height))
    {
    }

    void drawFaces(const Projection& projection, std::size_t mesh, std::size_t first, std::size_t last)
    {
        const PolygonMeshView& view = projection.meshes()[mesh].mesh;
        const RasterCorner* const corners = projection.corners(mesh).data();
        for (std::size_t f = first; f < last; ++f) {
            const base::Span<const std::uint32_t> face = view.face(f);
            std::uint32_t previous = face[face.size() - 1];
            for (const std::uint32_t vertex : face) {
                const RasterCorner &a = corners[previous], &b = corners[vertex];
                if (std::isnan(a.x + b.x))
                    drawClipped(projection.clipped(view.positions[previous], view.positions[vertex]));
                else
                    draw(a, b);
                previous = vertex;
            }
        }
    }

    void color(int row, std::uint32_t color, std::uint32_t* pixels) const
    {
        const std::uint64_t* const words = _words.data() + _wordsOfRow * static_cast<std::size_t>(row);
        for (std::size_t word = 0; word < _wordsOfRow; ++word)
            for (std::uint64_t left = words[word], bit = 0; left != 0; left >>= 1, ++bit)
                if (left & 1)
                    pixels[64 * word + bit] = color;
    }

private:
    void drawClipped(const std::vector<RasterCorner>& ends)
    {
        if (!ends.empty())
            draw(ends[0], ends[1]);
    }

    /// From both sides of an edge the same: every face draws its own.
    void draw(const RasterCorner& a, const RasterCorner& b)
    {
        if (std::abs(a.x - b.x) >= std::abs(a.y - b.y))
            a.x < b.x ? drawFlat(a, b) : drawFlat(b, a);
        else
            a.y < b.y ? drawSteep(a, b) : drawSteep(b, a);
    }

    /// One pixel in each column; a is to the left of b.
    void drawFlat(const RasterCorner& a, const RasterCorner& b)
    {
        const int first = std::max(pixelOf(a.x), 0), last = std::min(pixelOf(b.x), _width - 1);
        const int row = pixelOf(a.y);
        if (row == pixelOf(b.y)) { // as most short ones are
            for (int x = first; x <= last; ++x)
                set(x, row);
            return;
        }
        const float slope = (b.y - a.y) / (b.x - a.x);
        for (int x = first; x <= last; ++x)
            set(x, pixelOf(a.y + slope * (std::clamp(static_cast<float>(x), a.x, b.x) - a.x)));
    }

    /// One pixel in each row; a is above b.
    void drawSteep(const RasterCorner& a, const RasterCorner& b)
    {
        const int first = std::max(pixelOf(a.y), 0), last = std::min(pixelOf(b.y), _height - 1);
        const int column = pixelOf(a.x);
        if (column == pixelOf(b.x)) {
            for (int y = first; y <= last; ++y)
                set(column, y);
            return;
        }
        const float slope = (b.x - a.x) / (b.y - a.y);
        for (int y = first; y <= last; ++y)
            set(pixelOf(a.x + slope * (std::clamp(static_cast<float>(y), a.y, b.y) - a.y)), y);
    }

    static int pixelOf(float place) { return FloorOf(place + 0.5f); }

    void set(int x, int y)
    {
        if (x >= 0 && x < _width && y >= 0 && y < _height)
            _words[_wordsOfRow * static_cast<std::size_t>(y) + static_cast<std::size_t>(x) / 64] |=
                std::uint64_t{1} << (x % 64);
    }

    int _width, _height;
    std::size_t _wordsOfRow;
    std::vector<std::uint64_t> _words; ///< row by row
};

} // namespace

void DrawEdges(const Projection& projection, std::uint32_t color, base::Span<std::uint32_t> pixels)
{
    // Each thread has a mask of its own, and looks at its part of the edges once.
    const SampleGrid grid = projection.grid();
    tbb::enumerable_thread_specific<WireMask> masks([&] { return WireMask(grid); });
    for (std::size_t mesh = 0; mesh < projection.meshes().size(); ++mesh)
        tbb::parallel_for(
            tbb::blocked_range<std::size_t>(0, projection.meshes()[mesh].mesh.faceCount(), 4096),
            [&](const auto& range) {
                base::ThrowIfCancelled();
                masks.local().drawFaces(projection, mesh, range.begin(), range.end());
            });
    tbb::parallel_for(0, grid.height, [&](int row) {
        for (const WireMask& mask : masks)
            mask.color(row, color, pixels.data() + static_cast<std::ptrdiff_t>(row) * grid.width);
    });
}

} // namespace geometry
