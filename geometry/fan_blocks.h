// Triangles' corners as closest points and rays want them: side by side, without a look at any index.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <Eigen/Core>

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
    using Lanes = Eigen::Array4f;

    FanBlocks(base::Span<const Vec3f> positions, const Triangles& triangles);

    std::uint32_t triangleCount() const { return _triangleCount; }
    std::uint32_t blockCount() const { return static_cast<std::uint32_t>(_blocks.size()); }
    bool isEmpty() const { return _isEmpty; } ///< no triangle has an area

    /// @param half  0 or 1: of a cell's two triangles; the second need not be there
    std::uint32_t triangle(std::uint32_t cell, std::uint32_t half) const
    {
        return (_firstOfCell.empty() ? 2 * cell : _firstOfCell[cell]) + half;
    }
    std::uint32_t blockOf(std::uint32_t triangle) const { return cellOf(triangle) / blockSize; }

    std::array<Vec3f, 3> corners(std::uint32_t cell, std::uint32_t half) const
    {
        return {corner(cell, 0), corner(cell, 1 + half), corner(cell, 2 + half)};
    }
    std::array<Vec3f, 3> cornersOf(std::uint32_t triangle) const
    {
        const std::uint32_t cell = cellOf(triangle);
        return corners(cell, triangle - this->triangle(cell, 0));
    }

    /// Around the block's triangles; empty where none has an area.
    Box3f box(std::uint32_t block) const;

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
        const auto lane = static_cast<Eigen::Index>(cell % blockSize);
        return {axes[0][lane], axes[1][lane], axes[2][lane]};
    }

    std::uint32_t cellOf(std::uint32_t triangle) const;
    void findCells(base::Span<const Vec3f> positions, const Triangles& triangles);

    std::vector<Block> _blocks;
    std::uint32_t _triangleCount;
    std::vector<std::uint32_t> _firstOfCell; ///< triangles; empty where every cell has two
    bool _isEmpty = true;
};

inline FanBlocks::Lanes FanBlocks::leastSquares(std::uint32_t block, std::uint32_t half, Vec3f at) const
{
    const std::array<Lanes, 3>&a = _blocks[block][0], &b = _blocks[block][1 + half],
                            &c = _blocks[block][2 + half];
    const Lanes way[3] = {at.x - a[0], at.y - a[1], at.z - a[2]};
    const Lanes ab[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const Lanes ac[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    const auto dot = [](const Lanes(&u)[3], const Lanes(&v)[3]) -> Lanes {
        return u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
    };
    const Lanes ss = dot(ab, ab), st = dot(ab, ac), tt = dot(ac, ac), d = dot(ab, way), e = dot(ac, way),
                zero = dot(way, way);
    const auto along = [](const Lanes& length, const Lanes& reach) -> Lanes {
        const Lanes u = (reach / length).max(0.0f).min(1.0f);
        return u * (u * length - 2.0f * reach);
    };
    const Lanes edges = (zero + along(ss, d))
                            .min(zero + along(tt, e))
                            .min(zero + ss - 2.0f * d + along(ss + tt - 2.0f * st, ss + e - d - st));
    const Lanes area = ss * tt - st * st, s = (tt * d - st * e) / area, t = (ss * e - st * d) / area;
    const Lanes inside = s * (s * ss + 2.0f * t * st - 2.0f * d) + t * (t * tt - 2.0f * e) + zero;
    const auto isInside = s >= 0.0f && t >= 0.0f && s + t <= 1.0f;
    // Where the corners are nearly in line, s and t are hardly known.
    constexpr float thin = 1e-3f, rounding = 1e-5f;
    const Lanes nearest = isInside.select(inside, edges) - rounding * (zero + ss + tt);
    return (area <= thin * ss * tt).select(0.0f, nearest);
}

} // namespace geometry
