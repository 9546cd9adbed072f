// Drawing lines of one pixel's width.
// SPDX-License-Identifier: MIT

#include "wires.h"

#include "base/cancellation.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

/// Some rows of a picture, which get their parts of all lines.
class WireBand {
public:
    WireBand(int width, int first, int last, std::uint32_t color, std::uint32_t* pixels)
        : _width(width), _first(first), _last(last), _color(color), _pixels(pixels)
    {
    }

    void drawFaces(const Projection& projection, std::size_t mesh) const
    {
        const PolygonMeshView& view = projection.meshes()[mesh].mesh;
        const RasterCorner* const corners = projection.corners(mesh).data();
        for (std::size_t f = 0; f < view.faceCount(); ++f) {
            if (f % 4096 == 0)
                base::ThrowIfCancelled();
            const base::Span<const std::uint32_t> face = view.face(f);
            std::uint32_t last = face[face.size() - 1];
            for (const std::uint32_t vertex : face) {
                const RasterCorner &a = corners[last], &b = corners[vertex];
                if (std::isnan(a.x + b.x))
                    drawClipped(projection.clipped(view.positions[last], view.positions[vertex]));
                else
                    draw(a, b);
                last = vertex;
            }
        }
    }

private:
    void drawClipped(const std::vector<RasterCorner>& ends) const
    {
        if (!ends.empty())
            draw(ends[0], ends[1]);
    }

    /// From both sides of an edge the same: every face draws its own.
    void draw(const RasterCorner& a, const RasterCorner& b) const
    {
        if (std::max(a.y, b.y) < static_cast<float>(_first) - 0.5f ||
            std::min(a.y, b.y) >= static_cast<float>(_last) - 0.5f)
            return;
        if (std::abs(a.x - b.x) >= std::abs(a.y - b.y))
            a.x < b.x ? drawFlat(a, b) : drawFlat(b, a);
        else
            a.y < b.y ? drawSteep(a, b) : drawSteep(b, a);
    }

    /// One pixel in each column; a is to the left of b.
    void drawFlat(const RasterCorner& a, const RasterCorner& b) const
    {
        const float slope = b.x > a.x ? (b.y - a.y) / (b.x - a.x) : 0.0f;
        const int last = std::min(pixelOf(b.x), _width - 1);
        for (int x = std::max(pixelOf(a.x), 0); x <= last; ++x)
            set(x, pixelOf(a.y + slope * (std::clamp(static_cast<float>(x), a.x, b.x) - a.x)));
    }

    /// One pixel in each row; a is above b.
    void drawSteep(const RasterCorner& a, const RasterCorner& b) const
    {
        const float slope = (b.x - a.x) / (b.y - a.y);
        const int last = std::min(pixelOf(b.y), _last - 1);
        for (int y = std::max(pixelOf(a.y), _first); y <= last; ++y)
            set(pixelOf(a.x + slope * (std::clamp(static_cast<float>(y), a.y, b.y) - a.y)), y);
    }

    static int pixelOf(float place) { return static_cast<int>(std::floor(place + 0.5f)); }

    void set(int x, int y) const
    {
        if (x >= 0 && x < _width && y >= _first && y < _last)
            _pixels[static_cast<std::ptrdiff_t>(y) * _width + x] = _color;
    }

    int _width, _first, _last; ///< the last row is outside
    std::uint32_t _color;
    std::uint32_t* _pixels;
};

} // namespace

void DrawEdges(const Projection& projection, std::uint32_t color, base::Span<std::uint32_t> pixels)
{
    constexpr int rowsOfBand = 128; // not fewer, since every band looks at all edges
    const SampleGrid grid = projection.grid();
    tbb::parallel_for(0, (grid.height + rowsOfBand - 1) / rowsOfBand, [&](int i) {
        const int first = i * rowsOfBand;
        const WireBand band(grid.width, first, std::min(first + rowsOfBand, grid.height), color,
                            pixels.data());
        for (std::size_t mesh = 0; mesh < projection.meshes().size(); ++mesh)
            band.drawFaces(projection, mesh);
    });
}

} // namespace geometry
