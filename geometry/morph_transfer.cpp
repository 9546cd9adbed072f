// Morph transfer: matches where they can be trusted, a smooth extension elsewhere.
// SPDX-License-Identifier: MIT

#include "geometry/morph_transfer.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "embree_device.h"
#include "for_each_index.h"
#include "geometry/errors.h"
#include "geometry/skinning.h"
#include "surface_extension.h"
#include "surface_match.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_invoke.h>

#include <algorithm>
#include <array>
#include <optional>

namespace geometry {

namespace {

void CheckMesh(const PolygonMeshView& mesh, const char* which)
{
    if (mesh.faceCount() == 0)
        throw TopologyError("{} mesh has no faces", which);
    if (mesh.vertexCount() != mesh.topology->vertexCount)
        throw TopologyError("{} mesh has {} but its faces are for {}", which,
                            base::Counted(mesh.vertexCount(), "position", "positions"),
                            base::CountedVertices(mesh.topology->vertexCount));
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v)
        if (!IsFinite(mesh.positions[v]))
            throw TopologyError("{} mesh: position of vertex {} is not finite", which, v);
    CheckReach(mesh.positions);
}

/// The source vertices that a target vertex takes its value from.
struct Stencil {
    std::uint32_t vertices[3] = {0, 0, 0};
    float weights[3] = {0, 0, 0};

    bool isUsed() const { return weights[0] != 0.0f || weights[1] != 0.0f || weights[2] != 0.0f; }
};

/// What the joints of a stencil's three vertices have there.
class JointsMet {
public:
    void take(const SkinWeights& rows, const Stencil& stencil)
    {
        _joints.clear();
        for (std::size_t k = 0; k < 3; ++k)
            for (std::uint32_t i = rows.offsets[stencil.vertices[k]];
                 i < rows.offsets[stencil.vertices[k] + 1]; ++i)
                valuesOf(rows.joints[i])[k] = rows.weights[i];
    }

    template <class Visit>
    void forEach(const Visit& visit) const
    {
        for (const auto& [joint, values] : _joints)
            visit(joint, values);
    }

private:
    using Values = std::array<float, 3>;

    Values& valuesOf(std::uint32_t joint)
    {
        for (auto& [known, values] : _joints)
            if (known == joint)
                return values;
        return _joints.emplace_back(joint, Values{}).second;
    }

    std::vector<std::pair<std::uint32_t, Values>> _joints;
};

/// The parts, one after the other.
JointWeights Joined(base::Span<const std::vector<JointWeights>> parts, std::size_t joint)
{
    std::size_t count = 0;
    for (const std::vector<JointWeights>& part : parts)
        count += part[joint].vertices.size();
    JointWeights joined;
    joined.vertices.reserve(count);
    joined.weights.reserve(count);
    for (const std::vector<JointWeights>& part : parts) {
        const JointWeights& list = part[joint];
        joined.vertices.insert(joined.vertices.end(), list.vertices.begin(), list.vertices.end());
        joined.weights.insert(joined.weights.end(), list.weights.begin(), list.weights.end());
    }
    return joined;
}

/// Puts the values of the vertices that nothing is known of among the others.
void Continue(JointWeights& list, const SurfaceExtension& extension)
{
    std::vector<float> ring;
    for (const std::uint32_t v : extension.ring()) {
        const auto at = std::lower_bound(list.vertices.begin(), list.vertices.end(), v);
        ring.push_back(at != list.vertices.end() && *at == v
                           ? list.weights[static_cast<std::size_t>(at - list.vertices.begin())]
                           : 0.0f);
    }
    const std::vector<float> found = extension.continued(ring);
    if (std::all_of(found.begin(), found.end(), [](float value) { return value == 0.0f; }))
        return;
    JointWeights merged;
    std::size_t known = 0;
    const auto takeKnownBefore = [&](std::uint32_t v) {
        for (; known < list.vertices.size() && list.vertices[known] < v; ++known) {
            merged.vertices.push_back(list.vertices[known]);
            merged.weights.push_back(list.weights[known]);
        }
    };
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (found[i] == 0.0f)
            continue;
        takeKnownBefore(extension.unknown()[i]);
        merged.vertices.push_back(extension.unknown()[i]);
        merged.weights.push_back(found[i]);
    }
    takeKnownBefore(UINT32_MAX);
    list = std::move(merged);
}

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

    /// Relative to the first corner, so that a uniform shift arrives to the last digit.
    template <class T>
    static T blend(const Stencil& stencil, const T& a, const T& b, const T& c)
    {
        return a + (b - a) * stencil.weights[1] + (c - a) * stencil.weights[2];
    }

    template <class T>
    std::vector<T> interpolate(base::Span<const T> values) const
    {
        if (values.size() != sourceVertexCount)
            throw TopologyError("source mesh has {} but {} given", base::CountedVertices(sourceVertexCount),
                                base::Counted(values.size(), "value is", "values are"));
        std::vector<T> result(stencils.size());
        ForEachIndex(result.size(), 8192, [&](std::size_t v) {
            const Stencil& s = stencils[v];
            result[v] = blend(s, values[s.vertices[0]], values[s.vertices[1]], values[s.vertices[2]]);
        });
        return result;
    }

    /// Of the vertices that have a stencil, in pieces that follow one another.
    std::vector<std::vector<JointWeights>> interpolate(const SkinWeights& rows, std::size_t joints) const
    {
        constexpr std::size_t pieceSize = 16384;
        std::vector<std::vector<JointWeights>> pieces((stencils.size() + pieceSize - 1) / pieceSize,
                                                      std::vector<JointWeights>(joints));
        ForEachIndex(pieces.size(), 1, [&](std::size_t p) {
            JointsMet met;
            for (std::size_t v = p * pieceSize; v < std::min(stencils.size(), (p + 1) * pieceSize); ++v) {
                if (!stencils[v].isUsed())
                    continue;
                met.take(rows, stencils[v]);
                met.forEach([&](std::uint32_t joint, const std::array<float, 3>& values) {
                    const float value = blend(stencils[v], values[0], values[1], values[2]);
                    if (value == 0.0f)
                        return;
                    pieces[p][joint].vertices.push_back(static_cast<std::uint32_t>(v));
                    pieces[p][joint].weights.push_back(value);
                });
            }
        });
        return pieces;
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

std::vector<JointWeights> SurfaceMap::transfer(base::Span<const JointWeights> perJoint) const
{
    const std::vector<std::vector<JointWeights>> pieces =
        _impl->interpolate(WeightsByVertex(_impl->sourceVertexCount, perJoint), perJoint.size());
    std::vector<JointWeights> result(perJoint.size());
    ForEachIndex(result.size(), 1, [&](std::size_t joint) {
        result[joint] = Joined(pieces, joint);
        if (_impl->extension)
            Continue(result[joint], *_impl->extension);
    });
    return result;
}

SurfaceMap MatchSurfaces(const PolygonMeshView& sourceNeutral, const PolygonMeshView& targetNeutral,
                         const MatchOptions& options)
{
    CheckMesh(sourceNeutral, "source");
    CheckMesh(targetNeutral, "target");
    // Each has parts that keep one thread only.
    std::optional<MatchSource> source;
    std::optional<MatchTarget> target;
    tbb::parallel_invoke([&] { source.emplace(sourceNeutral); }, [&] { target.emplace(targetNeutral); });
    auto impl = std::make_unique<SurfaceMap::Impl>();
    std::vector<SurfacePoint> matches = MatchVertices(*source, *target, options, impl->statistics);

    impl->sourceVertexCount = sourceNeutral.vertexCount();
    impl->takeFaces(source->tree, matches);
    MatchLonePieces(source->tree, *target, matches);
    std::vector<bool> isKnown(matches.size());
    for (std::size_t v = 0; v < matches.size(); ++v)
        isKnown[v] = matches[v].isValid();
    if (std::find(isKnown.begin(), isKnown.end(), true) == isKnown.end())
        throw TopologyError("source mesh has no face with an area");
    impl->takeMatches(source->tree, matches);
    std::vector<SurfacePoint>().swap(matches);
    if (impl->statistics.filled > 0)
        impl->extension = std::make_unique<SurfaceExtension>(target->neighbours, isKnown);
    return SurfaceMap(std::move(impl));
}

std::vector<std::uint32_t> TransferLabels(const SurfaceMap& map, const Topology& target,
                                          base::Span<const std::uint32_t> sourceLabels)
{
    if (target.vertexCount != map.targetVertexCount())
        throw TopologyError("the map is for {} but the mesh has {}",
                            base::CountedVertices(map.targetVertexCount()), target.vertexCount);
    for (const std::uint32_t face : map.sourceFaces())
        if (face != UINT32_MAX && face >= sourceLabels.size())
            throw TopologyError("source face {} has no label; only {} given", face,
                                base::Counted(sourceLabels.size(), "is", "are"));
    constexpr std::uint32_t none = UINT32_MAX;
    std::vector<std::uint32_t> labels(target.faceCount(), none);
    ForEachIndex(labels.size(), 4096, [&](std::size_t f) {
        std::ptrdiff_t bestCount = 0;
        const auto labelAt = [&](std::uint32_t vertex) {
            const std::uint32_t face = map.sourceFaces()[vertex];
            return face == UINT32_MAX ? none : sourceLabels[face];
        };
        const base::Span<const std::uint32_t> corners = target.face(f);
        for (const std::uint32_t vertex : corners) {
            const std::uint32_t vote = labelAt(vertex);
            const std::ptrdiff_t count = std::count_if(
                corners.begin(), corners.end(), [&](std::uint32_t other) { return labelAt(other) == vote; });
            if (vote != none && count > bestCount) {
                bestCount = count;
                labels[f] = vote;
            }
        }
    });
    // A face without any match belongs with the faces around it, which mostly stand beside it in the list
    // too.
    std::uint32_t previous = 0;
    for (std::uint32_t& label : labels)
        label = previous = label == none ? previous : label;
    return labels;
}

} // namespace geometry
