// Triangles' corners as closest points and rays want them: side by side, without a look at any index.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"
#include "lanes.h"

#include <array>
#include <vector>

namespace geometry {

/// Copies of the corners of all triangles of a mesh. Two triangles that follow one another in a fan, such as
/// the halves of a quad, share one cell of four corners; four cells lie side by side in a block. Where a
/// triangle is missing in a cell, or has no area and so no barycentric frame, corners are no numbers:
/// whatever is compared with them is false.
class FanBlocks {
public:
    static constexpr std::uint32_t blockSize = 4; ///< cells

    FanBlocks(base::Span<const Vec3f> positions, const Triangles& triangles);

    std::uint32_t triangleCount() const { return _triangleCount; }
    std::uint32_t blockCount() const { return static_cast<std::uint32_t>(_blocks.size()); }
    std::uint32_t cellCount() const { return blockCount() * blockSize; } ///< with those that hold nothing
    bool isEmpty() const { return _isEmpty; }                            ///< no triangle has an area

    /// @param half  0 or 1: of a cell's two triangles; the second need not be there
    std::uint32_t triangle(std::uint32_t cell, std::uint32_t half) const
    {
        return (_firstOfCell.empty() ? 2 * cell : _firstOfCell[cell]) + half;
    }
    std::uint32_t cellOf(std::uint32_t triangle) const;

    std::array<Vec3f, 3> corners(std::uint32_t cell, std::uint32_t half) const
    {
        return {corner(cell, 0), corner(cell, 1 + half), corner(cell, 2 + half)};
    }
    std::array<Vec3f, 3> cornersOf(std::uint32_t triangle) const
    {
        const std::uint32_t cell = cellOf(triangle);
        return corners(cell, triangle - this->triangle(cell, 0));
    }

    /// Around the triangles of some cells; empty where none has an area.
    Box3f box(std::uint32_t firstCell, std::uint32_t count) const;

    /// Squares of the distances from a point to the boxes around the block's cells. No number where there is
    /// no triangle; nothing to rely on in the last digits.
    Lanes boxSquares(std::uint32_t block, Vec3f at) const;

    /// Squares of the distances from a point to one triangle of each of the block's cells, each at most the
    /// true one: less by what may have been lost in rounding. No number where there is no triangle.
    ///
    /// The squared distance to a + s (b - a) + t (c - a) is quadratic in s and t. Its minimum counts where it
    /// lies within the triangle, and the least of the three edges' elsewhere (Eberly, "Distance between point
    /// and triangle in 3D", 1999).
    Lanes leastSquares(std::uint32_t block, std::uint32_t half, Vec3f at) const;

private:
    using Block = std::array<std::array<Lanes, 3>, 4>; ///< by corner and axis

    Vec3f corner(std::uint32_t cell, std::uint32_t k) const
    {
        const std::array<Lanes, 3>& axes = _blocks[cell / blockSize][k];
        const std::uint32_t lane = cell % blockSize;
        return {axes[0][lane], axes[1][lane], axes[2][lane]};
    }

    void findCells(base::Span<const Vec3f> positions, const Triangles& triangles);

    std::vector<Block> _blocks;
    std::uint32_t _triangleCount;
    std::vector<std::uint32_t> _firstOfCell; ///< triangles; empty where every cell has two
    bool _isEmpty = true;
};

/// The least of u (u length - 2 reach) for u between 0 and 1.
GEOMETRY_INLINED Lanes LeastAlong(Lanes length, Lanes reach)
{
    const Lanes u = Min(Max(reach / length, AllLanes(0.0f)), AllLanes(1.0f));
    return u * (u * length - 2.0f * reach);
}

GEOMETRY_INLINED Lanes FanBlocks::boxSquares(std::uint32_t block, Vec3f at) const
{
    const Block& corners = _blocks[block];
    Lanes sum{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const Lanes last = corners[3][axis] == corners[3][axis] ? corners[3][axis] : corners[2][axis];
        const Lanes low = Min(Min(corners[0][axis], corners[1][axis]), Min(corners[2][axis], last));
        const Lanes high = Max(Max(corners[0][axis], corners[1][axis]), Max(corners[2][axis], last));
        const float here = at[static_cast<int>(axis)];
        // In this order of the two no number stays one.
        const Lanes gap = Max(AllLanes(0.0f), Max(low - here, here - high));
        sum += gap * gap;
    }
    return sum;
}

GEOMETRY_INLINED Lanes FanBlocks::leastSquares(std::uint32_t block, std::uint32_t half, Vec3f at) const
{
    const auto corners = [&](std::uint32_t k) -> LaneVectors {
        const std::array<Lanes, 3>& axes = _blocks[block][k];
        return {axes[0], axes[1], axes[2]};
    };
    const LaneVectors a = corners(0), way{at.x - a.x, at.y - a.y, at.z - a.z};
    const LaneVectors ab = corners(1 + half) - a, ac = corners(2 + half) - a;
    const Lanes ss = Dot(ab, ab), st = Dot(ab, ac), tt = Dot(ac, ac), d = Dot(ab, way), e = Dot(ac, way),
                zero = Dot(way, way);
    const Lanes onEnds = Min(LeastAlong(ss, d), LeastAlong(tt, e));
    const Lanes across = ss - 2.0f * d + LeastAlong(ss + tt - 2.0f * st, ss + e - d - st);
    const Lanes edges = zero + Min(onEnds, across);
    const Lanes area = ss * tt - st * st, s = (tt * d - st * e) / area, t = (ss * e - st * d) / area;
    const Lanes inside = s * (s * ss + 2.0f * t * st - 2.0f * d) + t * (t * tt - 2.0f * e) + zero;
    const LaneMask isInside = (s >= 0.0f) & (t >= 0.0f) & (s + t <= 1.0f);
    // Where the corners are nearly in line, s and t are hardly known.
    constexpr float thin = 1e-3f, rounding = 1e-5f;
    const Lanes nearest = (isInside ? inside : edges) - rounding * (zero + ss + tt);
    return area <= thin * ss * tt ? AllLanes(0.0f) : nearest;
}

} // namespace geometry
