// Mirroring morph deltas across a plane through the origin.
// SPDX-License-Identifier: MIT

#include "geometry/mirroring.h"

#include "base/counted.h"
#include "geometry/errors.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

namespace geometry {

namespace {

constexpr float tolerance = 0.01f; ///< cm

/// Vertices by the cell of a grid that they stand in.
class VertexGrid {
public:
    explicit VertexGrid(base::Span<const Vec3f> positions) : _positions(positions)
    {
        for (std::uint32_t v = 0; v < positions.size(); ++v)
            _cells.emplace(key(cell(positions[v].x), cell(positions[v].y), cell(positions[v].z)), v);
    }

    /// The vertex nearest to a place, or the fallback when none is within the tolerance.
    std::uint32_t nearest(Vec3f place, std::uint32_t fallback) const
    {
        std::uint32_t best = fallback;
        float bestDistance = tolerance;
        const std::int64_t x = cell(place.x), y = cell(place.y), z = cell(place.z);
        for (int n = 0; n < 27; ++n) {
            const auto range = _cells.equal_range(key(x + n % 3 - 1, y + n / 3 % 3 - 1, z + n / 9 - 1));
            for (auto entry = range.first; entry != range.second; ++entry) {
                const float distance = Length(_positions[entry->second] - place);
                if (distance <= bestDistance) {
                    bestDistance = distance;
                    best = entry->second;
                }
            }
        }
        return best;
    }

private:
    static std::int64_t cell(float coordinate)
    {
        // Beyond any scene, but within the integers.
        constexpr float farthest = 1e15f;
        return static_cast<std::int64_t>(std::clamp(std::floor(coordinate / tolerance), -farthest, farthest));
    }
    static std::uint64_t key(std::int64_t x, std::int64_t y, std::int64_t z)
    {
        constexpr std::uint64_t mask = (std::uint64_t{1} << 21) - 1;
        return (static_cast<std::uint64_t>(x) & mask) << 42 | (static_cast<std::uint64_t>(y) & mask) << 21 |
               (static_cast<std::uint64_t>(z) & mask);
    }

    base::Span<const Vec3f> _positions;
    std::unordered_multimap<std::uint64_t, std::uint32_t> _cells;
};

} // namespace

void MirrorDeltas(base::Span<Vec3f> deltas, base::Span<const Vec3f> neutral, const Mirroring& how)
{
    if (deltas.size() != neutral.size())
        throw TopologyError("neutral shape has {} but {} given", base::CountedVertices(neutral.size()),
                            base::Counted(deltas.size(), "delta is", "deltas are"));
    const auto [axis, side] = how;
    const VertexGrid grid(neutral);
    const std::vector<Vec3f> original(deltas.begin(), deltas.end());
    for (std::uint32_t v = 0; v < deltas.size(); ++v) {
        const float coordinate = neutral[v][axis];
        const bool isSource = (side == MirrorSide::PositiveToNegative && coordinate > tolerance) ||
                              (side == MirrorSide::NegativeToPositive && coordinate < -tolerance);
        if (isSource)
            continue;
        if (side != MirrorSide::Swap && std::abs(coordinate) <= tolerance) {
            deltas[v][axis] = 0.0f;
            continue;
        }
        Vec3f place = neutral[v];
        place[axis] = -place[axis];
        const std::uint32_t counterpart = grid.nearest(place, UINT32_MAX);
        if (counterpart == UINT32_MAX)
            continue;
        deltas[v] = original[counterpart];
        deltas[v][axis] = -deltas[v][axis];
    }
}

} // namespace geometry
