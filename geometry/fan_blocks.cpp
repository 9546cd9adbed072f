// Triangles' corners, side by side.
// SPDX-License-Identifier: MIT

#include "fan_blocks.h"

#include "base/cancellation.h"
#include "geometry/transform.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>

namespace geometry {

namespace {

bool HasArea(base::Span<const Vec3f> positions, const Triangles& triangles, std::size_t t)
{
    const std::uint32_t* const corners = triangles.corners.data() + 3 * t;
    // What floats are sure of they find in half the time, and it is nearly all triangles.
    constexpr float surelyWide = 1e-3f, exact = 1e-30f;
    const Vec3f ab = positions[corners[1]] - positions[corners[0]],
                ac = positions[corners[2]] - positions[corners[0]];
    const float extent = Dot(ab, ab) + Dot(ac, ac), wide = surelyWide * extent * extent;
    if (const float square = Dot(Cross(ab, ac), Cross(ab, ac));
        square > wide && wide > exact && std::isfinite(square))
        return true;
    const Eigen::Vector3d a = ToEigen(positions[corners[0]]), b = ToEigen(positions[corners[1]]),
                          c = ToEigen(positions[corners[2]]);
    const double longest = std::max({(b - a).squaredNorm(), (c - b).squaredNorm(), (a - c).squaredNorm()});
    const double area = (b - a).cross(c - a).norm();
    return std::isfinite(area) && area > 1e-9 * longest; // false for a point as well
}

/// Whether a triangle and the next one have a cell in common.
bool IsPair(base::Span<const Vec3f> positions, const Triangles& triangles, std::size_t t)
{
    if (t + 1 >= triangles.count())
        return false;
    const std::uint32_t* const corners = triangles.corners.data() + 3 * t;
    return corners[3] == corners[0] && corners[4] == corners[2] && HasArea(positions, triangles, t) &&
           HasArea(positions, triangles, t + 1);
}

bool AreAllPairs(base::Span<const Vec3f> positions, const Triangles& triangles)
{
    if (triangles.count() % 2 != 0)
        return false;
    std::atomic<bool> all = true;
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, triangles.count() / 2, 4096),
                      [&](const auto& range) {
                          base::ThrowIfCancelled();
                          for (std::size_t pair = range.begin(); pair != range.end() && all; ++pair)
                              if (!IsPair(positions, triangles, 2 * pair))
                                  all = false;
                      });
    return all;
}

} // namespace

FanBlocks::FanBlocks(base::Span<const Vec3f> positions, const Triangles& triangles)
    : _triangleCount(static_cast<std::uint32_t>(triangles.count()))
{
    findCells(positions, triangles);
    const std::size_t cells = _firstOfCell.empty() ? triangles.count() / 2 : _firstOfCell.size();
    _blocks.resize((cells + blockSize - 1) / blockSize);
    constexpr float nothing = std::numeric_limits<float>::quiet_NaN();
    const Vec3f nowhere{nothing, nothing, nothing};
    std::atomic<bool> isEmpty = true;
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, _blocks.size(), 2048), [&](const auto& range) {
        base::ThrowIfCancelled();
        for (std::size_t cell = range.begin() * blockSize; cell < range.end() * blockSize; ++cell) {
            std::array<Vec3f, 4> corners{nowhere, nowhere, nowhere, nowhere};
            if (cell < cells) {
                const std::size_t first = triangle(static_cast<std::uint32_t>(cell), 0),
                                  end = triangle(static_cast<std::uint32_t>(cell), 1) + 1;
                const bool isPair = _firstOfCell.empty() || IsPair(positions, triangles, first);
                for (std::size_t k = 0; k < 3 && (isPair || HasArea(positions, triangles, first)); ++k)
                    corners[k] = positions[triangles.corners[3 * first + k]];
                if (isPair)
                    corners[3] = positions[triangles.corners[3 * end - 1]];
                if (corners[0].x == corners[0].x)
                    isEmpty.store(false, std::memory_order_relaxed);
            }
            for (std::size_t k = 0; k < 4; ++k)
                for (std::size_t axis = 0; axis < 3; ++axis)
                    _blocks[cell / blockSize][k][axis][cell % blockSize] = corners[k][static_cast<int>(axis)];
        }
    });
    _isEmpty = isEmpty;
}

void FanBlocks::findCells(base::Span<const Vec3f> positions, const Triangles& triangles)
{
    if (AreAllPairs(positions, triangles))
        return;
    for (std::size_t t = 0; t < triangles.count(); ++t) {
        _firstOfCell.push_back(static_cast<std::uint32_t>(t));
        t += IsPair(positions, triangles, t);
    }
}

std::uint32_t FanBlocks::cellOf(std::uint32_t triangle) const
{
    if (_firstOfCell.empty())
        return triangle / 2;
    const auto next = std::upper_bound(_firstOfCell.begin(), _firstOfCell.end(), triangle);
    return static_cast<std::uint32_t>(next - _firstOfCell.begin() - 1);
}

Box3f FanBlocks::box(std::uint32_t firstCell, std::uint32_t count) const
{
    Box3f box;
    for (std::uint32_t cell = firstCell; cell < firstCell + count; ++cell)
        for (std::uint32_t k = 0; k < 4; ++k)
            if (const Vec3f at = corner(cell, k); at.x == at.x)
                box.include(at);
    return box;
}

} // namespace geometry
