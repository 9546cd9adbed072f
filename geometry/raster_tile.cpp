// Drawing triangles into one tile of a picture, by the signs of their edges' functions.
// SPDX-License-Identifier: MIT

#include "raster_tile.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace geometry {

namespace {

/// Pineda, "A parallel algorithm for polygon rasterization", 1988. It is computed from the same end, to the
/// bit, for both triangles that share the edge.
class EdgeFunction {
public:
    EdgeFunction() = default;
    /// @param isClockwise  how the triangle that has a, b and a third corner goes around
    EdgeFunction(const RasterCorner& a, const RasterCorner& b, bool isClockwise)
    {
        const bool isTurned = b.x < a.x || (b.x == a.x && b.y < a.y);
        const RasterCorner& from = isTurned ? b : a;
        const RasterCorner& to = isTurned ? a : b;
        _x = from.x, _y = from.y;
        _alongX = to.x - from.x, _alongY = to.y - from.y;
        _takesPositive = isTurned == isClockwise;
    }
    float atRow(float y) const { return _alongX * (y - _y); }
    /// Whether the triangle's side of the edge has the sample.
    bool has(float row, float x) const { return (row - _alongY * (x - _x) >= 0.0f) == _takesPositive; }

private:
    float _x = 0.0f, _y = 0.0f, _alongX = 0.0f, _alongY = 0.0f;
    bool _takesPositive = false;
};

/// The nearness over a triangle.
class NearnessPlane {
public:
    NearnessPlane(const RasterCorner& a, const RasterCorner& b, const RasterCorner& c, float area)
        : _x(a.x), _y(a.y), _at(a.nearness), _least(std::min({a.nearness, b.nearness, c.nearness})),
          _most(std::max({a.nearness, b.nearness, c.nearness}))
    {
        const float toB = b.nearness - a.nearness, toC = c.nearness - a.nearness;
        _perX = (toB * (c.y - a.y) - toC * (b.y - a.y)) / area;
        _perY = (toC * (b.x - a.x) - toB * (c.x - a.x)) / area;
    }
    float atRow(float y) const { return _at + _perY * (y - _y); }
    /// Within what the corners have, also for slivers, whose slope means nothing.
    float at(float row, float x) const { return std::clamp(row + _perX * (x - _x), _least, _most); }

private:
    float _x, _y, _at, _perX, _perY, _least, _most;
};

/// Those of the whole numbers between two limits, the last outside, that lie between the least and the most.
struct Range {
    Range(float least, float most, int first, int last)
        : begin(std::max(first, CeilOf(least))), end(std::min(last, FloorOf(most) + 1))
    {
    }
    int begin, end;
};

} // namespace

RasterTile::RasterTile(int left, int top, int right, int bottom, std::uint32_t* faces, int stride)
    : _left(left), _top(top), _right(right), _bottom(bottom), _faces(faces), _stride(stride)
{
    std::fill(std::begin(_nearness), std::end(_nearness), -INFINITY);
}

void RasterTile::draw(const RasterCorner& a, const RasterCorner& b, const RasterCorner& c, std::uint32_t face)
{
    const Range rows(std::min({a.y, b.y, c.y}), std::max({a.y, b.y, c.y}), _top, _bottom);
    const Range columns(std::min({a.x, b.x, c.x}), std::max({a.x, b.x, c.x}), _left, _right);
    if (rows.begin >= rows.end || columns.begin >= columns.end)
        return;
    const float area = (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
    if (area == 0.0f)
        return;
    const bool isClockwise = area < 0.0f;
    const EdgeFunction edges[] = {{a, b, isClockwise}, {b, c, isClockwise}, {c, a, isClockwise}};
    const NearnessPlane plane(a, b, c, area);
    for (int y = rows.begin; y < rows.end; ++y) {
        const float fy = static_cast<float>(y);
        const float row0 = edges[0].atRow(fy), row1 = edges[1].atRow(fy), row2 = edges[2].atRow(fy);
        const float nearnessRow = plane.atRow(fy);
        float* const nearness = _nearness + (y - _top) * size;
        std::uint32_t* const faces = _faces + static_cast<std::ptrdiff_t>(y - _top) * _stride;
        for (int x = columns.begin; x < columns.end; ++x) {
            const float fx = static_cast<float>(x);
            if (!(edges[0].has(row0, fx) && edges[1].has(row1, fx) && edges[2].has(row2, fx)))
                continue;
            const float here = plane.at(nearnessRow, fx);
            if (here > nearness[x - _left]) {
                nearness[x - _left] = here;
                faces[x - _left] = face;
            }
        }
    }
}

} // namespace geometry
