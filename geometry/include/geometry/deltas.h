// Sparse morph deltas and what is done with them.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/vec3.h"

#include <cstdint>
#include <vector>

namespace geometry {

/// A morph's displacements: vertices ascending, each named once.
struct SparseDeltas {
    std::vector<std::uint32_t> vertices;
    std::vector<Vec3f> deltas; ///< cm, morphed minus neutral at dial 1

    std::size_t size() const { return vertices.size(); }
    bool empty() const { return vertices.empty(); }
};

/// morphed - neutral where longer than the tolerance (cm).
/// @throws TopologyError  the two differ in length
SparseDeltas MakeDeltas(base::Span<const Vec3f> neutral, base::Span<const Vec3f> morphed, float tolerance);
/// From one delta per vertex (cm), those longer than the tolerance.
SparseDeltas MakeDeltas(base::Span<const Vec3f> perVertex, float tolerance);
/// One delta per vertex, zero where there is none.
/// @throws TopologyError  a vertex index is out of range
std::vector<Vec3f> ToDense(const SparseDeltas& deltas, std::size_t vertexCount);

/// positions += deltas * value, the dial.
/// @throws TopologyError  a vertex index is out of range; the positions are as they were
void AddDeltas(base::Span<Vec3f> positions, const SparseDeltas& deltas, float value);

/// A delta times a factor, for a weight of 0 to 1 and a strength of -1 to 1. Strength 1: weight; 0: one; -1:
/// one minus weight, computed as delta - delta * weight so that the parts of strength 1 and -1 add up to the
/// whole; linear in between.
Vec3f Attenuated(Vec3f delta, float weight, float strength);

/// Does that to each delta with its vertex's weight; those of which nothing remains are dropped.
/// @param weights  0..1, one per vertex; a vertex beyond the map counts as 0
void Attenuate(SparseDeltas& deltas, base::Span<const float> weights, float strength);

/// The fresh deltas, and the old ones of vertices that the fresh ones do not name.
SparseDeltas WithPreserved(const SparseDeltas& old, const SparseDeltas& fresh);

/// Drops the deltas shorter than the tolerance (cm).
void DropShort(SparseDeltas& deltas, float tolerance);

float LargestLength(const SparseDeltas& deltas); ///< cm; 0 when empty

} // namespace geometry
