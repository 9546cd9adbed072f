// Matching: closest points with compatible normals, improved by a smooth offset field, doubtful ones dropped.
// SPDX-License-Identifier: MIT

#include "surface_match.h"

#include "base/cancellation.h"
#include "for_each_index.h"
#include "geometry/normals.h"
#include "geometry/quad_split.h"
#include "offset_field.h"
#include "slide_field.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_invoke.h>

#include <algorithm>
#include <optional>

namespace geometry {

namespace {

/// From this many vertices on the fields, which reach over some edges, are found on a coarser level of the
/// mesh: on the mesh itself they would hardly reach further than the vertex, and features are a hundred edges
/// wide. One round of smoothing has to do where there is no such level.
constexpr std::size_t denseVertexCount = 150000;
/// Below this many vertices a coarser level is not looked for, since features would be lost with it.
constexpr std::size_t fewVertexCount = 50000;
/// Rounds of a registration that was asked for: features that are far off come near by and by.
constexpr int registrationRounds = 6;
/// A registration has features that are off by more than vertices, and nothing to hold them back.
constexpr SlideRestraint registration{0.003f, 1e-6f, 4.0f, 1.0f, 4};
/// Closer than this share of the whole mesh's size is never far, however fine the mesh.
constexpr float nearShareOfSize = 0.005f;
/// A corner with less weight is not what the point lies on, but rounding of a point on the other corners.
constexpr float leastWeight = 1e-6f;
/// In mean edge lengths: closer to the rim than half a face, the next vertex inward would match as well.
constexpr float farthestBeyondRim = 0.5f;
/// In mean edge lengths: neighbours are one apart, and a steep but whole surface may take them half an edge
/// further.
constexpr float farthestFromNeighbours = 1.5f;
/// Cosine of 75 degrees: beyond, a face is taken to lie on its back beside its vertex's other ones.
constexpr float foldedCosine = 0.2588f;
/// What a folded vertex's own match counts beside others, so that pieces of nothing else still have a field.
constexpr float foldedWeight = 0.01f;
/// In mean edge lengths: a folded vertex's normal may not lead it further from where its neighbours went.
constexpr float farthestByFoldedNormal = 0.3f;

std::vector<float> MeanEdgeLengths(base::Span<const Vec3f> positions, const IndexLists& neighbours)
{
    std::vector<float> own(positions.size()), smoothed(positions.size());
    ForEachIndex(own.size(), 4096, [&](std::size_t v) {
        for (const std::uint32_t w : neighbours[v])
            own[v] += Length(positions[w] - positions[v]);
        own[v] /= static_cast<float>(std::max<std::size_t>(neighbours[v].size(), 1));
    });
    ForEachIndex(own.size(), 4096, [&](std::size_t v) {
        smoothed[v] = own[v];
        for (const std::uint32_t w : neighbours[v])
            smoothed[v] += own[w];
        smoothed[v] /= static_cast<float>(neighbours[v].size() + 1);
    });
    return smoothed;
}

class Matcher {
public:
    Matcher(const MatchSource& source, const MatchTarget& target, const MatchOptions& options,
            MatchStatistics& statistics)
        : _tree(source.tree), _source(source), _target(target), _registers(options.registersFeatures),
          _minCosine(std::cos(options.maxAngleDegrees * 3.14159265f / 180.0f)), _reach(target.edgeLengths),
          _statistics(statistics)
    {
        const float nearby = nearShareOfSize * Length(BoundingBox(target.mesh.positions).size());
        for (float& reach : _reach)
            reach = std::max(options.maxDistanceInEdges * reach, nearby);
    }

    /// The field that carries the target's vertices to their places.
    std::vector<Vec3f> findOffsets()
    {
        const std::size_t count = _target.mesh.vertexCount();
        std::optional<SlideField> field;
        std::vector<Vec3f> offsets;
        // Placing the control points keeps one thread only.
        tbb::parallel_invoke(
            [&] {
                if (count < denseVertexCount || _registers)
                    field.emplace(_target.neighbours, _target.edgeLengths);
            },
            [&] {
                findAll(std::vector<Vec3f>(count));
                offsets = SmoothOffsets(_target.neighbours, goals());
            });
        if (field)
            offsets = followSlide(*field, std::move(offsets));
        carryFolded(offsets);
        return offsets;
    }

    std::vector<SurfacePoint> matchAt(const std::vector<Vec3f>& offsets)
    {
        findAll(offsets);
        dropDoubtful();
        return std::move(_matches);
    }

private:
    std::vector<Vec3f> followSlide(SlideField& field, std::vector<Vec3f> offsets)
    {
        const SlideRestraint restraint = _registers ? registration : SlideRestraint{};
        for (int round = 0; round < (_registers ? registrationRounds : 1); ++round) {
            findAll(offsets);
            field.improve(goals(), restraint, offsets);
        }
        double sum = 0.0;
        for (const Vec3f slide : field.slides(restraint)) {
            sum += Length(slide);
            _statistics.longestSlide = std::max(_statistics.longestSlide, Length(slide));
        }
        _statistics.meanSlide = static_cast<float>(sum / static_cast<double>(offsets.size()));
        return offsets;
    }

    Vec3f sourceNormal(const SurfacePoint& point) const
    {
        const std::uint32_t* corner = _tree.triangles().corners.data() + 3 * std::size_t{point.triangle};
        return Normalized(_source.normals[corner[0]] * point.weights[0] +
                          _source.normals[corner[1]] * point.weights[1] +
                          _source.normals[corner[2]] * point.weights[2]);
    }

    float agreement(std::size_t v, const SurfacePoint& point) const
    {
        return Dot(sourceNormal(point), _target.normals[v]);
    }

    /// The offset carries the vertex to where it seems to belong; the match is the surface's nearest point
    /// there.
    void findAll(const std::vector<Vec3f>& offsets)
    {
        _matches.resize(offsets.size());
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, offsets.size(), 256), [&](const auto& range) {
            base::ThrowIfCancelled();
            std::uint32_t nearby = UINT32_MAX; // of the vertex before: as a rule not far
            for (std::size_t v = range.begin(); v != range.end(); ++v) {
                SurfacePoint& match = _matches[v];
                match = find(v, _target.mesh.positions[v] + offsets[v],
                             match.isValid() ? match.triangle : nearby);
                nearby = match.triangle;
            }
        });
    }

    /// @param nearby  a triangle from which the search is a short one
    SurfacePoint find(std::size_t v, Vec3f at, std::uint32_t nearby) const
    {
        const SurfacePoint nearest = _tree.closestPoint(at, _reach[v], nearby);
        if (!nearest.isValid() || agreement(v, nearest) >= _minCosine)
            return nearest;
        // Between lips or fingers the wrong side is the nearer one.
        const SurfacePoint agreeing =
            _tree.closestPoint(at, _reach[v], [&](std::uint32_t, const SurfacePoint& candidate) {
                return agreement(v, candidate) >= _minCosine;
            });
        const float farthest = nearest.distance + farthestByFoldedNormal * _target.edgeLengths[v];
        return _target.isFolded[v] && agreeing.distance > farthest ? nearest : agreeing;
    }

    /// Folded vertices go where those around them do.
    void carryFolded(std::vector<Vec3f>& offsets) const
    {
        for (std::size_t v = 0; v < offsets.size(); ++v) {
            if (!_target.isFolded[v])
                continue;
            Vec3f sum;
            int count = 0;
            for (const std::uint32_t w : _target.neighbours[v])
                if (!_target.isFolded[w]) {
                    sum += offsets[w];
                    ++count;
                }
            if (count > 0)
                offsets[v] = sum * (1.0f / static_cast<float>(count));
        }
    }

    std::vector<OffsetGoal> goals() const
    {
        std::vector<OffsetGoal> result(_matches.size());
        ForEachIndex(result.size(), 2048, [&](std::size_t v) {
            if (_matches[v].isValid()) {
                const float cosine = std::max(agreement(v, _matches[v]), 0.0f);
                result[v] = {_matches[v].position - _target.mesh.positions[v], sourceNormal(_matches[v]),
                             cosine * cosine * (_target.isFolded[v] ? foldedWeight : 1.0f)};
            }
        });
        return result;
    }

    void dropDoubtful()
    {
        std::vector<char> doubtful(_matches.size());
        ForEachIndex(doubtful.size(), 2048, [&](std::size_t v) {
            doubtful[v] = _matches[v].isValid() && (isFar(v) || isOffTheEdge(v) || isAlone(v));
        });
        for (std::size_t v = 0; v < _matches.size(); ++v)
            if (doubtful[v])
                _matches[v] = {};
    }

    Vec3f offset(std::size_t v) const { return _matches[v].position - _target.mesh.positions[v]; }

    bool isFar(std::size_t v) const { return Length(offset(v)) > _reach[v]; }

    /// The nearest point is on the source's rim and the vertex lies beyond the rim rather than above it.
    bool isOffTheEdge(std::size_t v) const
    {
        const SurfacePoint& match = _matches[v];
        const std::uint32_t* corner = _tree.triangles().corners.data() + 3 * std::size_t{match.triangle};
        for (int k = 0; k < 3; ++k)
            if (match.weights[k] > leastWeight && !_source.isBoundary[corner[k]])
                return false;
        const Vec3f way = offset(v), normal = _tree.triangleNormal(match.triangle);
        const Vec3f along = way - normal * Dot(way, normal);
        return Length(along) > farthestBeyondRim * _target.edgeLengths[v];
    }

    /// The neighbours went elsewhere: their offsets differ from this one by more than their spacing explains.
    bool isAlone(std::size_t v) const
    {
        Vec3f sum;
        int count = 0;
        for (const std::uint32_t w : _target.neighbours[v])
            if (_matches[w].isValid()) {
                sum += offset(w);
                ++count;
            }
        if (count == 0)
            return false;
        return Length(offset(v) - sum * (1.0f / static_cast<float>(count))) >
               farthestFromNeighbours * _target.edgeLengths[v];
    }

    const SurfaceTree& _tree;
    const MatchSource& _source;
    const MatchTarget& _target;
    bool _registers;
    float _minCosine;
    std::vector<float> _reach; ///< cm, how far a match may be, by target vertex
    std::vector<SurfacePoint> _matches;
    MatchStatistics& _statistics;
};

/// Each value and the mean of its neighbours' in equal parts, which takes the folds out of what was spread.
std::vector<Vec3f> Averaged(const IndexLists& neighbours, const std::vector<Vec3f>& values)
{
    std::vector<Vec3f> result(values.size());
    ForEachIndex(values.size(), 4096, [&](std::size_t v) {
        Vec3f sum;
        for (const std::uint32_t w : neighbours[v])
            sum += values[w];
        const auto count = static_cast<float>(neighbours[v].size());
        result[v] = count > 0.0f ? (values[v] + sum * (1.0f / count)) * 0.5f : values[v];
    });
    return result;
}

/// The offsets of a mesh through those of the coarsest of its levels that has enough vertices; nothing where
/// there is none, or that one is dense.
std::vector<Vec3f> OffsetsFromCoarse(const MatchSource& source, const PolygonMeshView& target,
                                     const IndexLists& neighbours, const MatchOptions& options,
                                     MatchStatistics& statistics)
{
    const std::optional<QuadSplit> split = QuadSplit::Find(*target.topology);
    if (!split)
        return {};
    const std::vector<Vec3f> positions = split->sample(target.positions);
    const PolygonMeshView coarse{&split->coarse(), positions};
    std::vector<Vec3f> offsets;
    if (positions.size() >= fewVertexCount)
        offsets = OffsetsFromCoarse(source, coarse, VertexNeighbours(split->coarse()), options, statistics);
    if (offsets.empty() && positions.size() < denseVertexCount) {
        const MatchTarget matched(coarse);
        offsets = Matcher(source, matched, options, statistics).findOffsets();
    }
    return offsets.empty() ? offsets : Averaged(neighbours, split->spread(offsets));
}

} // namespace

MatchSource::MatchSource(const PolygonMeshView& source) : tree(source)
{
    tbb::parallel_invoke([&] { normals = VertexNormals(source); },
                         [&] { isBoundary = BoundaryVertices(*source.topology); });
}

MatchTarget::MatchTarget(const PolygonMeshView& target) : mesh(target), isFolded(target.vertexCount())
{
    tbb::parallel_invoke(
        [&] {
            neighbours = VertexNeighbours(*target.topology);
            edgeLengths = MeanEdgeLengths(target.positions, neighbours);
        },
        [&] { normals = VertexNormals(target); });
    findFolds();
}

void MatchTarget::findFolds()
{
    const std::vector<Vec3f> faceNormals = FaceNormals(mesh);
    const auto liesOnItsBack = [&](std::size_t f, std::uint32_t v) {
        return Dot(faceNormals[f], normals[v]) < foldedCosine && faceNormals[f] != Vec3f{};
    };
    std::vector<char> hasFolded(faceNormals.size());
    ForEachIndex(hasFolded.size(), 4096, [&](std::size_t f) {
        const base::Span<const std::uint32_t> face = mesh.face(f);
        hasFolded[f] =
            std::any_of(face.begin(), face.end(), [&](std::uint32_t v) { return liesOnItsBack(f, v); });
    });
    std::vector<std::uint32_t> folded;
    for (std::size_t f = 0; f < hasFolded.size(); ++f) {
        if (!hasFolded[f])
            continue;
        for (const std::uint32_t v : mesh.face(f))
            if (!isFolded[v] && liesOnItsBack(f, v)) {
                isFolded[v] = true;
                folded.push_back(v);
            }
    }
    for (const std::uint32_t v : folded) {
        Vec3f sum;
        for (const std::uint32_t w : neighbours[v])
            if (!isFolded[w])
                sum += normals[w];
        if (Length(sum) > 0.0f)
            normals[v] = Normalized(sum);
    }
}

std::vector<SurfacePoint> MatchVertices(const MatchSource& source, const MatchTarget& target,
                                        const MatchOptions& options, MatchStatistics& statistics)
{
    std::vector<Vec3f> offsets;
    if (target.mesh.vertexCount() >= fewVertexCount)
        offsets = OffsetsFromCoarse(source, target.mesh, target.neighbours, options, statistics);
    Matcher matcher(source, target, options, statistics);
    if (offsets.empty())
        offsets = matcher.findOffsets();
    return matcher.matchAt(offsets);
}

} // namespace geometry
