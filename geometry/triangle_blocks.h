// Triangles' corners as closest points and rays want them: four side by side, without a look at any index.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <Eigen/Core>

#include <array>
#include <vector>

namespace geometry {

/// Copies of the corners of all triangles of a mesh. Triangles without an area, which have no barycentric
/// frame, have corners that are no numbers: whatever is compared with them is false.
class TriangleBlocks {
public:
    static constexpr std::uint32_t blockSize = 4;

    TriangleBlocks(base::Span<const Vec3f> positions, const Triangles& triangles);

    std::uint32_t count() const { return _count; }
    bool isEmpty() const { return _isEmpty; } ///< no triangle has an area

    Vec3f corner(std::uint32_t triangle, int k) const
    {
        const Block& block = _blocks[triangle / blockSize];
        const auto lane = static_cast<Eigen::Index>(triangle % blockSize);
        const auto& values = block[static_cast<std::size_t>(k)];
        return {values[0][lane], values[1][lane], values[2][lane]};
    }

    /// Grows by the triangle, if it has an area.
    void include(std::uint32_t triangle, Box3f& box) const
    {
        for (int k = 0; k < 3; ++k)
            if (const Vec3f at = corner(triangle, k); at.x == at.x)
                box.include(at);
    }

    /// Squares of the distances from a point to four triangles, each at most the true one: less by what may
    /// have been lost in rounding. Of no meaning where a triangle has no area.
    ///
    /// The squared distance to a + s (b - a) + t (c - a) is quadratic in s and t. Its minimum counts where it
    /// lies within the triangle, and the least of the three edges' elsewhere (Eberly, "Distance between point
    /// and triangle in 3D", 1999).
    Eigen::Array4f leastSquares(std::size_t block, Vec3f at) const;

private:
    using Block = std::array<std::array<Eigen::Array4f, 3>, 3>; ///< by corner and axis

    std::vector<Block> _blocks;
    std::uint32_t _count;
    bool _isEmpty = true;
};

inline Eigen::Array4f TriangleBlocks::leastSquares(std::size_t block, Vec3f at) const
{
    using Lanes = Eigen::Array4f;
    const auto& [a, b, c] = _blocks[block];
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
    return (area > thin * ss * tt).select(nearest, 0.0f);
}

} // namespace geometry
