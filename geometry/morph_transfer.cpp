// Morph transfer: matches where they can be trusted, a smooth extension elsewhere.
// SPDX-License-Identifier: MIT

#include "geometry/morph_transfer.h"

#include "base/cancellation.h"
#include "embree_device.h"
#include "for_each_index.h"
#include "geometry/errors.h"
#include "geometry/transform.h"
#include "surface_extension.h"
#include "surface_match.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace geometry {

namespace {

void CheckMesh(const PolygonMeshView& mesh, const char* which)
{
    if (mesh.faceCount() == 0)
        throw TopologyError("{} mesh has no faces", which);
    if (mesh.vertexCount() != mesh.topology->vertexCount)
        throw TopologyError("{} mesh has {} positions but its faces are for {} vertices", which,
                            mesh.vertexCount(), mesh.topology->vertexCount);
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v)
        if (!IsFinite(mesh.positions[v]))
            throw TopologyError("{} mesh: position of vertex {} is not finite", which, v);
    CheckReach(mesh.positions);
}

/// The source vertices that a target vertex takes its value from.
struct Stencil {
    std::uint32_t vertices[3] = {0, 0, 0};
    float weights[3] = {0, 0, 0};
};

/// Pieces of the target without a single match: each of their vertices takes the source's nearest place,
/// whatever its normal, for want of anything better.
void MatchLonePieces(const SurfaceTree& tree, const MatchTarget& target, std::vector<SurfacePoint>& matches)
{
    // From the matched vertices on, along those that are not: most are matched, and nothing is to be done for
    // them.
    std::vector<std::uint32_t> unmatched, queue;
    std::vector<char> isReached(matches.size());
    for (std::size_t v = 0; v < matches.size(); ++v) {
        isReached[v] = matches[v].isValid();
        if (!isReached[v])
            unmatched.push_back(static_cast<std::uint32_t>(v));
    }
    for (const std::uint32_t v : unmatched) {
        const auto around = target.neighbours[v];
        if (std::any_of(around.begin(), around.end(),
                        [&](std::uint32_t w) { return matches[w].isValid(); })) {
            isReached[v] = true;
            queue.push_back(v);
        }
    }
    while (!queue.empty()) {
        const std::uint32_t v = queue.back();
        queue.pop_back();
        for (const std::uint32_t w : target.neighbours[v])
            if (!isReached[w]) {
                isReached[w] = true;
                queue.push_back(w);
            }
    }
    tbb::parallel_for(std::size_t{0}, unmatched.size(), [&](std::size_t i) {
        base::ThrowIfCancelled();
        const std::uint32_t v = unmatched[i];
        if (!isReached[v])
            matches[v] = tree.closestPoint(target.mesh.positions[v]);
    });
}

} // namespace

struct SurfaceMap::Impl {
    std::size_t sourceVertexCount = 0;
    std::vector<Stencil> stencils;          ///< one per target vertex; unused where filled in
    std::vector<std::uint32_t> sourceFaces; ///< UINT32_MAX where filled in
    MatchStatistics statistics;
    std::unique_ptr<SurfaceExtension> extension;

    void takeMatches(const SurfaceTree& tree, const std::vector<SurfacePoint>& matches)
    {
        stencils.resize(matches.size());
        ForEachIndex(matches.size(), 8192, [&](std::size_t v) {
            for (std::size_t k = 0; k < 3 && matches[v].isValid(); ++k) {
                stencils[v].vertices[k] = tree.triangles().corners[3 * std::size_t{matches[v].triangle} + k];
                stencils[v].weights[k] = matches[v].weights[k];
            }
        });
    }

    void takeFaces(const SurfaceTree& tree, const std::vector<SurfacePoint>& matches)
    {
        sourceFaces.resize(matches.size());
        ForEachIndex(matches.size(), 8192, [&](std::size_t v) {
            sourceFaces[v] = matches[v].isValid() ? tree.triangles().faces[matches[v].triangle] : UINT32_MAX;
        });
        const auto filled = std::count(sourceFaces.begin(), sourceFaces.end(), UINT32_MAX);
        statistics.filled = static_cast<std::size_t>(filled);
        statistics.matched = matches.size() - statistics.filled;
    }

    template <class T>
    std::vector<T> interpolate(base::Span<const T> values) const
    {
        if (values.size() != sourceVertexCount)
            throw TopologyError("source mesh has {} vertices but {} values are given", sourceVertexCount,
                                values.size());
        std::vector<T> result(stencils.size());
        ForEachIndex(result.size(), 8192, [&](std::size_t v) {
            const Stencil& s = stencils[v];
            // Relative to the first corner, so that a uniform shift arrives to the last digit.
            const T base = values[s.vertices[0]];
            result[v] = base + (values[s.vertices[1]] - base) * s.weights[1] +
                        (values[s.vertices[2]] - base) * s.weights[2];
        });
        return result;
    }
};

SurfaceMap::SurfaceMap(std::unique_ptr<Impl> impl) : _impl(std::move(impl)) {}
SurfaceMap::~SurfaceMap() = default;
SurfaceMap::SurfaceMap(SurfaceMap&&) noexcept = default;
SurfaceMap& SurfaceMap::operator=(SurfaceMap&&) noexcept = default;

std::size_t SurfaceMap::sourceVertexCount() const
{
    return _impl->sourceVertexCount;
}
std::size_t SurfaceMap::targetVertexCount() const
{
    return _impl->stencils.size();
}
const MatchStatistics& SurfaceMap::statistics() const
{
    return _impl->statistics;
}
base::Span<const std::uint32_t> SurfaceMap::sourceFaces() const
{
    return _impl->sourceFaces;
}

std::vector<Vec3f> SurfaceMap::transfer(base::Span<const Vec3f> values) const
{
    std::vector<Vec3f> result = _impl->interpolate(values);
    if (_impl->extension)
        _impl->extension->extend(result);
    return result;
}

std::vector<float> SurfaceMap::transfer(base::Span<const float> values) const
{
    std::vector<float> result = _impl->interpolate(values);
    if (_impl->extension)
        _impl->extension->extend(result);
    return result;
}

SurfaceMap MatchSurfaces(const PolygonMeshView& sourceNeutral, const PolygonMeshView& targetNeutral,
                         const MatchOptions& options)
{
    CheckMesh(sourceNeutral, "source");
    CheckMesh(targetNeutral, "target");
    const SurfaceTree tree(sourceNeutral);
    const MatchTarget target(targetNeutral);
    auto impl = std::make_unique<SurfaceMap::Impl>();
    std::vector<SurfacePoint> matches =
        MatchVertices(MatchSource(tree, sourceNeutral), target, options, impl->statistics);

    impl->sourceVertexCount = sourceNeutral.vertexCount();
    impl->takeFaces(tree, matches);
    MatchLonePieces(tree, target, matches);
    std::vector<bool> isKnown(matches.size());
    for (std::size_t v = 0; v < matches.size(); ++v)
        isKnown[v] = matches[v].isValid();
    if (std::find(isKnown.begin(), isKnown.end(), true) == isKnown.end())
        throw TopologyError("source mesh has no face with an area");
    impl->takeMatches(tree, matches);
    if (impl->statistics.filled > 0)
        impl->extension = std::make_unique<SurfaceExtension>(target.neighbours, isKnown);
    return SurfaceMap(std::move(impl));
}

std::vector<std::uint32_t> TransferLabels(const SurfaceMap& map, const Topology& target,
                                          base::Span<const std::uint32_t> sourceLabels)
{
    if (target.vertexCount != map.targetVertexCount())
        throw TopologyError("the map is for {} vertices but the mesh has {}", map.targetVertexCount(),
                            target.vertexCount);
    for (const std::uint32_t face : map.sourceFaces())
        if (face != UINT32_MAX && face >= sourceLabels.size())
            throw TopologyError("source face {} has no label; only {} are given", face, sourceLabels.size());
    std::vector<std::uint32_t> labels(target.faceCount());
    std::uint32_t previous = 0;
    std::vector<std::uint32_t> votes;
    for (std::size_t f = 0; f < target.faceCount(); ++f) {
        votes.clear();
        for (const std::uint32_t vertex : target.face(f))
            if (const std::uint32_t face = map.sourceFaces()[vertex]; face != UINT32_MAX)
                votes.push_back(sourceLabels[face]);
        // A face without any match belongs with the faces around it, which mostly stand beside it in the list
        // too.
        std::uint32_t best = previous;
        std::ptrdiff_t bestCount = 0;
        for (const std::uint32_t vote : votes) {
            const std::ptrdiff_t count = std::count(votes.begin(), votes.end(), vote);
            if (count > bestCount) {
                bestCount = count;
                best = vote;
            }
        }
        labels[f] = previous = best;
    }
    return labels;
}

} // namespace geometry
