// Triangles' corners, four side by side.
// SPDX-License-Identifier: MIT

#include "triangle_blocks.h"

#include "base/cancellation.h"
#include "geometry/transform.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <atomic>
#include <cmath>
#include <limits>

namespace geometry {

namespace {

bool HasArea(const Vec3f (&corners)[3])
{
    const Eigen::Vector3d a = ToEigen(corners[0]), b = ToEigen(corners[1]), c = ToEigen(corners[2]);
    const double longest = std::max({(b - a).squaredNorm(), (c - b).squaredNorm(), (a - c).squaredNorm()});
    const double area = (b - a).cross(c - a).norm();
    return std::isfinite(area) && area > 1e-9 * longest; // false for a point as well
}

} // namespace

TriangleBlocks::TriangleBlocks(base::Span<const Vec3f> positions, const Triangles& triangles)
    : _blocks((triangles.count() + blockSize - 1) / blockSize),
      _count(static_cast<std::uint32_t>(triangles.count()))
{
    constexpr float nothing = std::numeric_limits<float>::quiet_NaN();
    std::atomic<bool> isEmpty = true;
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, _blocks.size(), 2048), [&](const auto& range) {
        base::ThrowIfCancelled();
        bool found = false;
        for (std::size_t t = range.begin() * blockSize; t < range.end() * blockSize; ++t) {
            Vec3f corners[3];
            for (std::size_t k = 0; k < 3 && t < _count; ++k)
                corners[k] = positions[triangles.corners[3 * t + k]];
            const bool hasArea = t < _count && HasArea(corners);
            found |= hasArea;
            for (std::size_t k = 0; k < 3; ++k)
                for (std::size_t axis = 0; axis < 3; ++axis)
                    _blocks[t / blockSize][k][axis][static_cast<Eigen::Index>(t % blockSize)] =
                        hasArea ? corners[k][static_cast<int>(axis)] : nothing;
        }
        if (found)
            isEmpty = false;
    });
    _isEmpty = isEmpty;
}

} // namespace geometry
