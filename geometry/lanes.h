// Four floats that are worked on at once.
// SPDX-License-Identifier: MIT

#pragma once

#include <cmath>

namespace geometry {

/// The compilers' own vectors: they turn comparisons and choices into single instructions, where those of a
/// library of arrays choose number by number.
using Lanes = float __attribute__((vector_size(16)));
using LaneMask = int __attribute__((vector_size(16))); ///< of each lane all bits or none

/// As calls, what works on lanes would go through memory.
#define GEOMETRY_INLINED [[gnu::always_inline]] inline

GEOMETRY_INLINED Lanes AllLanes(float value)
{
    return Lanes{value, value, value, value};
}

/// The first where it is the smaller, the second where one of them is no number.
GEOMETRY_INLINED Lanes Min(Lanes a, Lanes b)
{
    return a < b ? a : b;
}

/// The first where it is the larger, the second where one of them is no number.
GEOMETRY_INLINED Lanes Max(Lanes a, Lanes b)
{
    return a > b ? a : b;
}

GEOMETRY_INLINED Lanes Abs(Lanes a)
{
    return Max(a, -a);
}

GEOMETRY_INLINED Lanes SquareRoot(Lanes a)
{
    return Lanes{std::sqrt(a[0]), std::sqrt(a[1]), std::sqrt(a[2]), std::sqrt(a[3])};
}

GEOMETRY_INLINED bool IsAny(LaneMask mask)
{
    return (mask[0] | mask[1] | mask[2] | mask[3]) != 0;
}

struct LaneVectors {
    Lanes x, y, z;
};

GEOMETRY_INLINED LaneVectors operator-(const LaneVectors& a, const LaneVectors& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

GEOMETRY_INLINED Lanes Dot(const LaneVectors& a, const LaneVectors& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

GEOMETRY_INLINED LaneVectors Cross(const LaneVectors& a, const LaneVectors& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

} // namespace geometry
