// The nearest of many points.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/vec3.h"

#include <cstdint>
#include <vector>

namespace geometry {

/// A balanced k-d tree over points. Queries are const and may be made from several threads at once.
class PointTree {
public:
    struct Found {
        std::uint32_t index = 0; ///< into the points
        float distance = 0.0f;   ///< cm
    };

    /// @param points  must outlive the tree
    explicit PointTree(base::Span<const Vec3f> points);

    /// The nearest ones, nearest first; fewer where there are no more. Of equally far ones those with the
    /// lower index.
    std::vector<Found> nearest(Vec3f query, std::size_t count) const;
    /// Those within the radius (cm), by index.
    std::vector<Found> within(Vec3f query, float radius) const;

private:
    template <class Visitor>
    void visit(Vec3f query, std::size_t first, std::size_t last, int axis, Visitor& visitor) const;

    base::Span<const Vec3f> _points;
    std::vector<std::uint32_t> _order; ///< the middle of each range parts it along x, y and z in turn
};

} // namespace geometry
