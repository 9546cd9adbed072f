// Recognising a mesh that was made from a coarser one by splitting each face in four.
// SPDX-License-Identifier: MIT

#include "geometry/quad_split.h"

#include "base/cancellation.h"
#include "for_each_index.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <atomic>
#include <cassert>

namespace geometry {

namespace {

constexpr std::uint32_t none = UINT32_MAX;
constexpr std::size_t cornersPerGroup = 16;

bool IsAllQuads(const Topology& topology)
{
    for (std::size_t f = 0; f <= topology.faceCount(); ++f)
        if (topology.faceOffsets[f] != 4 * f)
            return false;
    return true;
}

/// What a corner of the four quads of one coarse face stands for. Quad i has the coarse face's corner i in
/// its own corner i, and from there the middles of the edge behind it, of the face, and of the edge before
/// it.
enum class Role : std::uint32_t { Corner, EdgeAfter, Center, EdgeBefore };

struct Place {
    std::size_t group;   ///< the coarse face
    std::uint32_t child; ///< of its four quads
    Role role;
};

Place PlaceOf(std::size_t corner)
{
    const auto child = static_cast<std::uint32_t>(corner / 4 % 4),
               slot = static_cast<std::uint32_t>(corner % 4);
    return {corner / cornersPerGroup, child, static_cast<Role>((slot - child) & 3)};
}

/// The fine vertex in a coarse face's own corner.
std::uint32_t FineCorner(const Topology& fine, std::size_t group, std::uint32_t corner)
{
    const std::uint32_t i = corner & 3;
    return fine.cornerVertices[cornersPerGroup * group + 5 * std::size_t{i}];
}

/// The two corners, in either order, between which an edge's middle stands.
std::pair<std::uint32_t, std::uint32_t> EndsOf(const Topology& fine, const Place& place)
{
    const std::uint32_t other = place.role == Role::EdgeAfter ? place.child + 1 : place.child + 3;
    return std::minmax({FineCorner(fine, place.group, place.child), FineCorner(fine, place.group, other)});
}

/// Whether two corners that show one vertex take it for the same thing.
bool AgreeOn(const Topology& fine, const Place& a, const Place& b)
{
    switch (a.role) {
    case Role::Corner:
        return b.role == Role::Corner;
    case Role::Center:
        return b.role == Role::Center && b.group == a.group;
    case Role::EdgeAfter:
    case Role::EdgeBefore:
        break;
    }
    return (b.role == Role::EdgeAfter || b.role == Role::EdgeBefore) && EndsOf(fine, a) == EndsOf(fine, b);
}

/// The four quads share the middles between them.
bool HoldsTogether(const Topology& fine, std::size_t group)
{
    const std::uint32_t* const corners = fine.cornerVertices.data() + cornersPerGroup * group;
    for (std::uint32_t i = 0; i < 4; ++i) {
        const std::uint32_t next = (i + 1) & 3;
        if (corners[4 * i + ((i + 2) & 3)] != corners[2] || corners[4 * i + next] != corners[4 * next + i])
            return false;
    }
    return true;
}

} // namespace

std::optional<QuadSplit> QuadSplit::Find(const Topology& fine)
{
    if (fine.faceCount() == 0 || fine.faceCount() % 4 != 0 || !IsAllQuads(fine))
        return std::nullopt;
    QuadSplit split;
    split._corners.assign(fine.vertexCount, none);
    for (std::size_t corner = fine.cornerCount(); corner-- > 0;)
        split._corners[fine.cornerVertices[corner]] = static_cast<std::uint32_t>(corner);

    std::atomic<bool> agrees = true;
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, fine.faceCount() / 4, 1024), [&](const auto& range) {
        base::ThrowIfCancelled();
        for (std::size_t group = range.begin(); group != range.end() && agrees; ++group) {
            bool fits = HoldsTogether(fine, group);
            for (std::size_t c = cornersPerGroup * group; c < cornersPerGroup * (group + 1); ++c)
                fits = fits && AgreeOn(fine, PlaceOf(split._corners[fine.cornerVertices[c]]), PlaceOf(c));
            if (!fits)
                agrees = false;
        }
    });
    if (!agrees)
        return std::nullopt;

    std::vector<std::uint32_t> coarseOfFine(fine.vertexCount, none);
    for (std::uint32_t v = 0; v < fine.vertexCount; ++v)
        if (split._corners[v] != none && PlaceOf(split._corners[v]).role == Role::Corner) {
            coarseOfFine[v] = static_cast<std::uint32_t>(split._fineOfCoarse.size());
            split._fineOfCoarse.push_back(v);
        }
    Topology& coarse = split._coarse;
    coarse.vertexCount = static_cast<std::uint32_t>(split._fineOfCoarse.size());
    coarse.cornerVertices.resize(fine.faceCount());
    coarse.faceOffsets.resize(fine.faceCount() / 4 + 1);
    for (std::size_t f = 0; f < coarse.faceCount(); ++f) {
        coarse.faceOffsets[f + 1] = static_cast<std::uint32_t>(4 * (f + 1));
        for (std::uint32_t i = 0; i < 4; ++i)
            coarse.cornerVertices[4 * f + i] = coarseOfFine[FineCorner(fine, f, i)];
    }
    return split;
}

std::vector<Vec3f> QuadSplit::sample(base::Span<const Vec3f> fine) const
{
    assert(fine.size() == _corners.size());
    std::vector<Vec3f> values(_fineOfCoarse.size());
    for (std::size_t v = 0; v < values.size(); ++v)
        values[v] = fine[_fineOfCoarse[v]];
    return values;
}

std::vector<Vec3f> QuadSplit::spread(base::Span<const Vec3f> coarse) const
{
    assert(coarse.size() == _fineOfCoarse.size());
    std::vector<Vec3f> values(_corners.size());
    ForEachIndex(values.size(), 4096, [&](std::size_t v) {
        if (_corners[v] == none)
            return;
        const Place place = PlaceOf(_corners[v]);
        const auto at = [&](std::uint32_t corner) {
            return coarse[_coarse.cornerVertices[4 * place.group + (corner & 3)]];
        };
        const std::uint32_t i = place.child;
        if (place.role == Role::Corner)
            values[v] = at(i);
        else if (place.role == Role::Center)
            values[v] = (at(0) + at(1) + at(2) + at(3)) * 0.25f;
        else
            values[v] = (at(i) + at(place.role == Role::EdgeAfter ? i + 1 : i + 3)) * 0.5f;
    });
    return values;
}

} // namespace geometry
