// Multi-resolution morphs: fine displacements over a subdivided cage, in frames that move with it.
// SPDX-License-Identifier: MIT

#include "geometry/multires_detail.h"

#include "base/counted.h"
#include "for_each_index.h"
#include "geometry/deltas.h"
#include "geometry/errors.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace geometry {

namespace {

constexpr std::uint32_t none = UINT32_MAX;

void AddDetail(std::vector<Vec3f>& positions, const DetailLevel& detail, int level, float value,
               const Topology& topology, base::Span<const CornerFrame> frames)
{
    if (!detail.empty() && detail.corners.back() >= topology.cornerCount())
        throw TopologyError("detail of level {} names corner {} of a mesh with {}", level,
                            detail.corners.back(), topology.cornerCount());
    for (std::size_t i = 0; i < detail.size(); ++i) {
        const std::uint32_t corner = detail.corners[i];
        positions[topology.cornerVertices[corner]] +=
            frames[corner >> 2 * level].toWorld(detail.offsets[i]) * value;
    }
}

/// The detail of all morphs on one level.
void AddDetails(std::vector<Vec3f>& positions, base::Span<const ActiveDetail> details, int level,
                const Topology& topology, base::Span<const CornerFrame> frames)
{
    for (const ActiveDetail& active : details)
        if (level <= active.finestLevel && level <= static_cast<int>(active.detail->levels.size()))
            AddDetail(positions, active.detail->levels[static_cast<std::size_t>(level) - 1], level,
                      active.value, topology, frames);
}

/// For each vertex of a level the first of its corners with a usable frame; `none` without one.
std::vector<std::uint32_t> NamingCorners(const Topology& topology, int level,
                                         base::Span<const CornerFrame> frames)
{
    std::vector<std::uint32_t> corners(topology.vertexCount, none);
    for (std::size_t corner = topology.cornerCount(); corner-- > 0;)
        if (frames[corner >> 2 * level].isUsable())
            corners[topology.cornerVertices[corner]] = static_cast<std::uint32_t>(corner);
    return corners;
}

/// What each level should look like: the fine shape at the finest, below it the nearest that the level above
/// can be made from. One step at a time, which costs little beside fitting each to the finest.
std::vector<std::vector<Vec3f>> LevelGoals(const Subdivision& subdivision, base::Span<const Vec3f> fine,
                                           int level, base::Span<const Vec3f> cage)
{
    constexpr double accuracy = 1e-2; // finer levels make up for the rest
    std::vector<std::vector<Vec3f>> goals(static_cast<std::size_t>(level) + 1);
    goals.back().assign(fine.begin(), fine.end());
    for (int l = level - 1; l >= 1; --l) {
        const std::size_t i = static_cast<std::size_t>(l);
        goals[i] = subdivision.fit(goals[i + 1], l + 1, subdivision.refine(cage, 0, l), l, accuracy);
    }
    return goals;
}

} // namespace

bool MultiresDetail::empty() const
{
    return std::all_of(levels.begin(), levels.end(), [](const DetailLevel& level) { return level.empty(); });
}

bool CornerFrame::isUsable() const
{
    constexpr float limit = 0.95f;
    return std::abs(cosine) < limit;
}

Vec3f CornerFrame::toLocal(Vec3f displacement) const
{
    const float alongX = Dot(displacement, x), alongN = Dot(displacement, n);
    const float scale = 1.0f / (1.0f - cosine * cosine);
    return {(alongX - cosine * alongN) * scale, (alongN - cosine * alongX) * scale, Dot(displacement, z)};
}

std::vector<CornerFrame> CornerFrames(const Topology& cage, base::Span<const Vec3f> positions)
{
    std::vector<CornerFrame> frames(cage.cornerCount());
    ForEachIndex(cage.faceCount(), 2048, [&](std::size_t f) {
        const base::Span<const std::uint32_t> face = cage.face(f);
        const std::size_t last = face.size() - 1;
        const Vec3f origin = positions[face[0]];
        const Vec3f normal = Normalized(Cross(positions[face[1]] - origin, positions[face[last]] - origin));
        for (std::size_t i = 0; i <= last; ++i) {
            CornerFrame& frame = frames[cage.faceOffsets[f] + i];
            frame.x = Normalized(positions[face[i == 0 ? last : i - 1]] - positions[face[i]]);
            frame.n = normal;
            frame.z = Normalized(Cross(frame.x, normal));
            // An edge or a face without extent has no direction.
            if (Length(frame.x) > 0.5f && Length(frame.n) > 0.5f)
                frame.cosine = Dot(frame.x, frame.n);
        }
    });
    return frames;
}

std::vector<Vec3f> RefineWithDetail(const Subdivision& subdivision, base::Span<const Vec3f> cage, int level,
                                    base::Span<const ActiveDetail> details)
{
    const std::vector<CornerFrame> frames = CornerFrames(*subdivision.topology(0), cage);
    std::vector<Vec3f> positions(cage.begin(), cage.end());
    for (int l = 1; l <= level; ++l) {
        positions = subdivision.refine(positions, l - 1, l);
        AddDetails(positions, details, l, *subdivision.topology(l), frames);
    }
    return positions;
}

MultiresDetail SplitDetail(const Subdivision& subdivision, base::Span<const Vec3f> fine, int level,
                           base::Span<const Vec3f> cage, base::Span<const ActiveDetail> others,
                           float tolerance)
{
    const std::vector<CornerFrame> frames = CornerFrames(*subdivision.topology(0), cage);
    std::vector<std::vector<Vec3f>> goals = LevelGoals(subdivision, fine, level, cage);
    MultiresDetail result;
    std::vector<Vec3f> positions(cage.begin(), cage.end());
    for (int l = 1; l <= level; ++l) {
        const Topology& topology = *subdivision.topology(l);
        positions = subdivision.refine(positions, l - 1, l);
        AddDetails(positions, others, l, topology, frames);
        std::vector<Vec3f>& goal = goals[static_cast<std::size_t>(l)];
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, goal.size(), 8192), [&](const auto& range) {
            for (std::size_t v = range.begin(); v != range.end(); ++v)
                goal[v] -= positions[v];
        });
        result.levels.push_back(ToDetail(goal, l, subdivision, frames, tolerance));
        std::vector<Vec3f>().swap(goal);
        AddDetail(positions, result.levels.back(), l, 1.0f, topology, frames);
    }
    return result;
}

std::vector<Vec3f> SampleCage(const Subdivision& subdivision, base::Span<const Vec3f> fine, int level,
                              base::Span<const Vec3f> cage)
{
    std::vector<Vec3f> sampled(cage.begin(), cage.end());
    const Topology& coarse = *subdivision.topology(0);
    const Topology& finest = *subdivision.topology(level);
    // The first child of a face's corner keeps that corner, at every level; of quads in the corner's own
    // place, of all other faces in the first.
    for (std::size_t f = 0; f < coarse.faceCount(); ++f) {
        const std::size_t size = coarse.face(f).size();
        for (std::size_t i = 0; i < size; ++i) {
            const std::size_t slot = size == 4 ? i : 0;
            std::size_t child = coarse.faceOffsets[f] + i;
            for (int l = 2; l <= level; ++l)
                child = 4 * child + slot;
            if (level > 0)
                sampled[coarse.face(f)[i]] = fine[finest.face(child)[slot]];
            else
                sampled[coarse.face(f)[i]] = fine[coarse.face(f)[i]];
        }
    }
    return sampled;
}

void Attenuate(MultiresDetail& detail, const Subdivision& subdivision, base::Span<const float> weights,
               float strength)
{
    std::vector<float> refined(weights.begin(), weights.end());
    for (std::size_t i = 0; i < detail.levels.size(); ++i) {
        const int level = static_cast<int>(i) + 1;
        refined = subdivision.refine(refined, level - 1, level);
        DetailLevel& current = detail.levels[i];
        const std::vector<std::uint32_t>& vertices = subdivision.topology(level)->cornerVertices;
        std::size_t kept = 0;
        for (std::size_t e = 0; e < current.size(); ++e) {
            const Vec3f offset =
                Attenuated(current.offsets[e], refined[vertices[current.corners[e]]], strength);
            if (offset == Vec3f{})
                continue;
            current.corners[kept] = current.corners[e];
            current.offsets[kept++] = offset;
        }
        current.corners.resize(kept);
        current.offsets.resize(kept);
    }
}

std::vector<Vec3f> ToDisplacements(const DetailLevel& detail, int level, const Subdivision& subdivision,
                                   base::Span<const CornerFrame> frames)
{
    const Topology& topology = *subdivision.topology(level);
    std::vector<Vec3f> displacements(topology.vertexCount);
    AddDetail(displacements, detail, level, 1.0f, topology, frames);
    return displacements;
}

DetailLevel ToDetail(base::Span<const Vec3f> displacements, int level, const Subdivision& subdivision,
                     base::Span<const CornerFrame> frames, float tolerance)
{
    const Topology& topology = *subdivision.topology(level);
    if (displacements.size() != topology.vertexCount)
        throw TopologyError("subdivision level {} has {} but {} given", level,
                            base::CountedVertices(topology.vertexCount),
                            base::Counted(displacements.size(), "value is", "values are"));
    const std::vector<std::uint32_t> naming = NamingCorners(topology, level, frames);
    DetailLevel detail;
    for (std::size_t corner = 0; corner < topology.cornerCount(); ++corner) {
        const std::uint32_t vertex = topology.cornerVertices[corner];
        if (naming[vertex] != corner || !(Length(displacements[vertex]) > tolerance))
            continue;
        detail.corners.push_back(static_cast<std::uint32_t>(corner));
        detail.offsets.push_back(frames[corner >> 2 * level].toLocal(displacements[vertex]));
    }
    return detail;
}

DetailLevel WithPreserved(const DetailLevel& old, const DetailLevel& fresh, const Topology& level)
{
    std::vector<bool> isMoved(level.vertexCount);
    for (const std::uint32_t corner : fresh.corners)
        isMoved[level.cornerVertices.at(corner)] = true;
    DetailLevel merged;
    std::size_t n = 0;
    const auto takeFreshBefore = [&](std::uint32_t corner) {
        for (; n < fresh.size() && fresh.corners[n] < corner; ++n) {
            merged.corners.push_back(fresh.corners[n]);
            merged.offsets.push_back(fresh.offsets[n]);
        }
    };
    for (std::size_t o = 0; o < old.size(); ++o) {
        takeFreshBefore(old.corners[o]);
        if (isMoved[level.cornerVertices.at(old.corners[o])])
            continue;
        merged.corners.push_back(old.corners[o]);
        merged.offsets.push_back(old.offsets[o]);
    }
    takeFreshBefore(none);
    return merged;
}

} // namespace geometry
