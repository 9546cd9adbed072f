// Solving for smooth offsets with conjugate gradients, matrix-free.
// SPDX-License-Identifier: MIT

#include "offset_field.h"

#include "for_each_index.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_reduce.h>

namespace geometry {

namespace {

/// Weight of bending beside that of the goals. With differences counted in edges, 16 smooths over about two
/// edges (its fourth root): enough to override single mistakes, not enough to lose the shape of a finger.
constexpr float stiffness = 16.0f;
/// A goal's pull along the surface beside its pull across. The true place may have slid along the surface;
/// the neighbourhood's shape then says more than the closest point does.
constexpr float slideWeight = 0.5f;
constexpr int maxSteps = 40;
constexpr double tolerance = 0.1; ///< of the residual; the next matches move by more than what is left

/// Partial sums over fixed pieces are added in order, so that the result is the same on every run.
double DotProduct(const std::vector<Vec3f>& a, const std::vector<Vec3f>& b)
{
    return tbb::parallel_deterministic_reduce(
        tbb::blocked_range<std::size_t>(0, a.size(), 4096), 0.0,
        [&](const auto& range, double sum) {
            for (std::size_t v = range.begin(); v != range.end(); ++v)
                sum += Dot(a[v], b[v]);
            return sum;
        },
        std::plus<>());
}

class OffsetSystem {
public:
    OffsetSystem(const IndexLists& neighbours, base::Span<const OffsetGoal> goals)
        : _neighbours(neighbours), _goals(goals), _bends(goals.size()), _inverseDegrees(goals.size())
    {
        ForEachIndex(goals.size(), 4096, [&](std::size_t v) {
            _inverseDegrees[v] =
                neighbours[v].empty() ? 0.0f : 1.0f / static_cast<float>(neighbours[v].size());
        });
    }

    /// goals' part plus stiffness times (Laplacian transposed times Laplacian)
    void apply(const std::vector<Vec3f>& x, std::vector<Vec3f>& result)
    {
        ForEachIndex(x.size(), 2048, [&](std::size_t v) {
            Vec3f sum;
            for (const std::uint32_t w : _neighbours[v])
                sum += x[w];
            _bends[v] = _neighbours[v].empty() ? Vec3f{} : x[v] - sum * _inverseDegrees[v];
        });
        ForEachIndex(x.size(), 2048, [&](std::size_t v) {
            Vec3f bend = _bends[v];
            for (const std::uint32_t w : _neighbours[v])
                bend -= _bends[w] * _inverseDegrees[w];
            result[v] = bend * stiffness + pull(v, x[v]);
        });
    }

    Vec3f pull(std::size_t v, Vec3f x) const
    {
        const OffsetGoal& goal = _goals[v];
        return (goal.normal * Dot(goal.normal, x) + x * slideWeight) * goal.weight;
    }

    Vec3f pullOfGoal(std::size_t v) const { return pull(v, _goals[v].offset); }

    /// The inverse of the vertex's own 3x3 block: a multiple of the identity plus one outer product.
    Vec3f precondition(std::size_t v, Vec3f r) const
    {
        const OffsetGoal& goal = _goals[v];
        const float across = goal.weight;
        const float even = across * slideWeight + stiffness * (1.0f + _inverseDegrees[v]);
        return (r - goal.normal * (Dot(goal.normal, r) * across / (even + across))) * (1.0f / even);
    }

private:
    const IndexLists& _neighbours;
    base::Span<const OffsetGoal> _goals;
    std::vector<Vec3f> _bends;
    std::vector<float> _inverseDegrees;
};

} // namespace

std::vector<Vec3f> SmoothOffsets(const IndexLists& neighbours, base::Span<const OffsetGoal> goals)
{
    const std::size_t count = goals.size();
    OffsetSystem system(neighbours, goals);
    std::vector<Vec3f> x(count), residual(count), scaled(count), direction(count), image(count);
    ForEachIndex(count, 2048, [&](std::size_t v) {
        residual[v] = system.pullOfGoal(v);
        direction[v] = scaled[v] = system.precondition(v, residual[v]);
    });
    double error = DotProduct(residual, scaled);
    const double enough = error * tolerance * tolerance;
    for (int step = 0; step < maxSteps && error > enough; ++step) {
        system.apply(direction, image);
        const float length = static_cast<float>(error / DotProduct(direction, image));
        ForEachIndex(count, 2048, [&](std::size_t v) {
            x[v] += direction[v] * length;
            residual[v] -= image[v] * length;
            scaled[v] = system.precondition(v, residual[v]);
        });
        const double next = DotProduct(residual, scaled);
        const float turn = static_cast<float>(next / error);
        ForEachIndex(count, 2048, [&](std::size_t v) { direction[v] = scaled[v] + direction[v] * turn; });
        error = next;
    }
    return x;
}

} // namespace geometry
