// Sparse morph deltas: making, adding, attenuating.
// SPDX-License-Identifier: MIT

#include "geometry/deltas.h"

#include "base/counted.h"
#include "geometry/errors.h"

namespace geometry {

namespace {

template <class DeltaOf>
SparseDeltas Collect(std::size_t count, float tolerance, const DeltaOf& deltaOf)
{
    SparseDeltas result;
    const float squared = tolerance * tolerance;
    const auto isMoved = [&](std::size_t v) { return !(LengthSquared(deltaOf(v)) <= squared); };
    // Counted first: lists that grow take up to twice the room.
    std::size_t moved = 0;
    for (std::size_t v = 0; v < count; ++v)
        moved += isMoved(v);
    result.vertices.reserve(moved);
    result.deltas.reserve(moved);
    for (std::size_t v = 0; v < count; ++v) {
        if (!isMoved(v))
            continue;
        result.vertices.push_back(static_cast<std::uint32_t>(v));
        result.deltas.push_back(deltaOf(v));
    }
    return result;
}

template <class Condition>
void KeepIf(SparseDeltas& deltas, const Condition& isKept)
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < deltas.size(); ++i) {
        if (!isKept(deltas.deltas[i]))
            continue;
        deltas.vertices[kept] = deltas.vertices[i];
        deltas.deltas[kept++] = deltas.deltas[i];
    }
    deltas.vertices.resize(kept);
    deltas.deltas.resize(kept);
}

} // namespace

SparseDeltas MakeDeltas(base::Span<const Vec3f> neutral, base::Span<const Vec3f> morphed, float tolerance)
{
    if (neutral.size() != morphed.size())
        throw TopologyError("neutral shape has {} but morphed shape has {}",
                            base::CountedVertices(neutral.size()), morphed.size());
    return Collect(neutral.size(), tolerance, [&](std::size_t v) { return morphed[v] - neutral[v]; });
}

SparseDeltas MakeDeltas(base::Span<const Vec3f> perVertex, float tolerance)
{
    return Collect(perVertex.size(), tolerance, [&](std::size_t v) { return perVertex[v]; });
}

std::vector<Vec3f> ToDense(const SparseDeltas& deltas, std::size_t vertexCount)
{
    std::vector<Vec3f> result(vertexCount);
    AddDeltas(result, deltas, 1.0f);
    return result;
}

void AddDeltas(base::Span<Vec3f> positions, const SparseDeltas& deltas, float value)
{
    // Checked before the first change, so that a bad morph leaves the shape alone.
    for (const std::uint32_t vertex : deltas.vertices)
        if (vertex >= positions.size())
            throw TopologyError("delta names vertex {} but only {} defined", vertex,
                                base::Counted(positions.size(), "is", "are"));
    for (std::size_t i = 0; i < deltas.size(); ++i)
        positions[deltas.vertices[i]] += deltas.deltas[i] * value;
}

// Strength 0 and 1 must be exact, and strength -1 the exact rest of strength 1.
Vec3f Attenuated(Vec3f delta, float weight, float strength)
{
    const Vec3f weighted = delta * weight;
    const Vec3f rest = delta - weighted;
    if (strength >= 0.0f)
        return strength == 1.0f ? weighted : delta - rest * strength;
    return strength == -1.0f ? rest : delta + weighted * strength;
}

void Attenuate(SparseDeltas& deltas, base::Span<const float> weights, float strength)
{
    for (std::size_t i = 0; i < deltas.size(); ++i) {
        const std::uint32_t vertex = deltas.vertices[i];
        const float weight = vertex < weights.size() ? weights[vertex] : 0.0f;
        deltas.deltas[i] = Attenuated(deltas.deltas[i], weight, strength);
    }
    KeepIf(deltas, [](Vec3f delta) { return delta != Vec3f{}; });
}

SparseDeltas WithPreserved(const SparseDeltas& old, const SparseDeltas& fresh)
{
    SparseDeltas merged;
    std::size_t o = 0, n = 0;
    while (o < old.size() || n < fresh.size()) {
        const bool takeNew = n < fresh.size() && (o == old.size() || fresh.vertices[n] <= old.vertices[o]);
        if (takeNew && o < old.size() && fresh.vertices[n] == old.vertices[o])
            ++o;
        const SparseDeltas& from = takeNew ? fresh : old;
        const std::size_t i = takeNew ? n++ : o++;
        merged.vertices.push_back(from.vertices[i]);
        merged.deltas.push_back(from.deltas[i]);
    }
    return merged;
}

void DropShort(SparseDeltas& deltas, float tolerance)
{
    const float squared = tolerance * tolerance;
    KeepIf(deltas, [squared](Vec3f delta) { return !(LengthSquared(delta) < squared); });
}

float LargestLength(const SparseDeltas& deltas)
{
    float largest = 0.0f;
    for (const Vec3f delta : deltas.deltas)
        largest = std::max(largest, LengthSquared(delta));
    return std::sqrt(largest);
}

} // namespace geometry
