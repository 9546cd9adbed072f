// A k-d tree kept as an order of the points.
// SPDX-License-Identifier: MIT

#include "point_tree.h"

#include <algorithm>
#include <numeric>

namespace geometry {

namespace {

bool IsNearer(const PointTree::Found& a, const PointTree::Found& b)
{
    return a.distance != b.distance ? a.distance < b.distance : a.index < b.index;
}

/// A heap with the farthest of those kept on top.
struct NearestVisitor {
    std::size_t count;
    std::vector<PointTree::Found> found;

    float reach() const { return found.size() < count ? INFINITY : found.front().distance; }
    void offer(PointTree::Found candidate)
    {
        if (found.size() == count) {
            if (!IsNearer(candidate, found.front()))
                return;
            std::pop_heap(found.begin(), found.end(), IsNearer);
            found.pop_back();
        }
        found.push_back(candidate);
        std::push_heap(found.begin(), found.end(), IsNearer);
    }
};

struct WithinVisitor {
    float radius;
    std::vector<PointTree::Found> found;

    float reach() const { return radius; }
    void offer(PointTree::Found candidate)
    {
        if (candidate.distance <= radius)
            found.push_back(candidate);
    }
};

void Part(std::vector<std::uint32_t>& order, base::Span<const Vec3f> points, std::size_t first,
          std::size_t last, int axis)
{
    if (last - first < 2)
        return;
    const std::size_t middle = first + (last - first) / 2;
    const auto begin = order.begin();
    std::nth_element(begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(middle),
                     begin + static_cast<std::ptrdiff_t>(last), [&](std::uint32_t a, std::uint32_t b) {
                         return points[a][axis] != points[b][axis] ? points[a][axis] < points[b][axis]
                                                                   : a < b;
                     });
    Part(order, points, first, middle, (axis + 1) % 3);
    Part(order, points, middle + 1, last, (axis + 1) % 3);
}

} // namespace

PointTree::PointTree(base::Span<const Vec3f> points) : _points(points), _order(points.size())
{
    std::iota(_order.begin(), _order.end(), 0u);
    Part(_order, _points, 0, _order.size(), 0);
}

template <class Visitor>
void PointTree::visit(Vec3f query, std::size_t first, std::size_t last, int axis, Visitor& visitor) const
{
    if (first == last)
        return;
    const std::size_t middle = first + (last - first) / 2;
    const std::uint32_t index = _order[middle];
    const float side = query[axis] - _points[index][axis];
    const int next = (axis + 1) % 3;
    const bool isBelow = side < 0.0f;
    visit(query, isBelow ? first : middle + 1, isBelow ? middle : last, next, visitor);
    visitor.offer({index, Length(_points[index] - query)});
    if (std::abs(side) <= visitor.reach())
        visit(query, isBelow ? middle + 1 : first, isBelow ? last : middle, next, visitor);
}

std::vector<PointTree::Found> PointTree::nearest(Vec3f query, std::size_t count) const
{
    if (count == 0)
        return {};
    NearestVisitor visitor{count, {}};
    visit(query, 0, _order.size(), 0, visitor);
    std::sort(visitor.found.begin(), visitor.found.end(), IsNearer);
    return std::move(visitor.found);
}

std::vector<PointTree::Found> PointTree::within(Vec3f query, float radius) const
{
    WithinVisitor visitor{radius, {}};
    visit(query, 0, _order.size(), 0, visitor);
    std::sort(visitor.found.begin(), visitor.found.end(),
              [](const Found& a, const Found& b) { return a.index < b.index; });
    return std::move(visitor.found);
}

} // namespace geometry
