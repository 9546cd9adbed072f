// Blends about a linear trend: one a vertex, or one for a whole piece.
// SPDX-License-Identifier: MIT

#include "geometry/shape_projection.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "geometry/errors.h"
#include "geometry/incidence.h"
#include "geometry/transform.h"
#include "point_tree.h"
#include "whole_pieces.h"

#include <tbb/parallel_for.h>

#include <numeric>

namespace geometry {

namespace {

/// How many vertices a blend takes in: about two rings around a vertex, so that it is smooth.
constexpr std::size_t blended = 24;
/// Keeps the farthest of the blended ones a little above nothing, for the case that all are equally far.
constexpr float reachBeyondFarthest = 1.05f;
/// A whole piece looks at least at so many.
constexpr std::size_t leastAroundPiece = 64;
/// In sizes of the piece: what is nearer to its surface counts as touching it.
constexpr float touching = 0.25f;
/// How firmly a trend is held back where the places hardly differ, as they do across a nearly flat patch; a
/// share of their mean spread.
constexpr double trendDamping = 0.05;

/// What one source vertex adds to the value and the trend at the origin of the places.
using Shares = std::array<float, 4>;

/// Weighted least squares of a linear function, its slope damped.
/// @param places   relative to where the value is wanted
/// @param weights  none negative, one above 0
std::vector<Shares> LinearFit(const std::vector<Eigen::Vector3d>& places, const std::vector<double>& weights)
{
    const double total = std::accumulate(weights.begin(), weights.end(), 0.0);
    Eigen::Vector3d mean = Eigen::Vector3d::Zero();
    for (std::size_t i = 0; i < places.size(); ++i)
        mean += places[i] * (weights[i] / total);
    Eigen::Matrix3d spread = Eigen::Matrix3d::Zero();
    for (std::size_t i = 0; i < places.size(); ++i)
        spread += (places[i] - mean) * (places[i] - mean).transpose() * (weights[i] / total);
    const double damping = trendDamping * spread.trace() / 3.0;
    Eigen::Matrix3d inverse = Eigen::Matrix3d::Zero();
    if (damping > 0.0)
        inverse = (spread + damping * Eigen::Matrix3d::Identity()).inverse();
    std::vector<Shares> shares;
    shares.reserve(places.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
        const Eigen::Vector3d slope = inverse * (places[i] - mean) * (weights[i] / total);
        const double value = weights[i] / total - slope.dot(mean);
        shares.push_back({static_cast<float>(value), static_cast<float>(slope.x()),
                          static_cast<float>(slope.y()), static_cast<float>(slope.z())});
    }
    return shares;
}

/// A third of the area of the triangles around each vertex.
std::vector<float> VertexAreas(const PolygonMeshView& mesh)
{
    std::vector<float> areas(mesh.vertexCount());
    for (std::size_t f = 0; f < mesh.faceCount(); ++f) {
        const base::Span<const std::uint32_t> face = mesh.face(f);
        for (std::size_t c = 2; c < face.size(); ++c) {
            const Vec3f origin = mesh.positions[face[0]];
            const float area =
                Length(Cross(mesh.positions[face[c - 1]] - origin, mesh.positions[face[c]] - origin)) / 6.0f;
            for (const std::uint32_t vertex : {face[0], face[c - 1], face[c]})
                areas[vertex] += area;
        }
    }
    return areas;
}

void CheckFinite(const PolygonMeshView& mesh, const char* which)
{
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v)
        if (!IsFinite(mesh.positions[v]))
            throw TopologyError("{} mesh: position of vertex {} is not finite", which, v);
}

/// The source's vertices that faces use.
struct Samples {
    std::vector<std::uint32_t> vertices;
    std::vector<Vec3f> positions;
    std::vector<float> areas;

    explicit Samples(const PolygonMeshView& source)
    {
        std::vector<bool> isUsed(source.vertexCount());
        for (const std::uint32_t vertex : source.topology->cornerVertices)
            isUsed[vertex] = true;
        const std::vector<float> all = VertexAreas(source);
        for (std::size_t v = 0; v < isUsed.size(); ++v)
            if (isUsed[v]) {
                vertices.push_back(static_cast<std::uint32_t>(v));
                positions.push_back(source.positions[v]);
                areas.push_back(all[v]);
            }
        if (vertices.empty())
            throw TopologyError("source mesh has no faces");
    }
};

struct Row {
    std::vector<std::uint32_t> sources;
    std::vector<float> weights;
};

/// Weights that are without bounds where the vertices meet and fade out towards the farthest of those
/// blended: the blend changes smoothly from place to place.
Row BlendRow(const Samples& samples, const PointTree& tree, Vec3f place)
{
    const std::vector<PointTree::Found> found = tree.nearest(place, blended);
    const float reach = found.back().distance * reachBeyondFarthest;
    if (found.front().distance <= reach * 1e-5f)
        return {{samples.vertices[found.front().index]}, {1.0f}};
    std::vector<Eigen::Vector3d> places;
    std::vector<double> weights;
    for (const PointTree::Found& one : found) {
        places.push_back(ToEigen(samples.positions[one.index] - place) / double{reach});
        const double fading = (double{reach} - one.distance) / (double{reach} * one.distance);
        weights.push_back(fading * fading);
    }
    Row row;
    const std::vector<Shares> shares = LinearFit(places, weights);
    for (std::size_t i = 0; i < found.size(); ++i) {
        row.sources.push_back(samples.vertices[found[i].index]);
        row.weights.push_back(shares[i][0]);
    }
    return row;
}

} // namespace

class ShapeProjectionBuilder {
public:
    ShapeProjectionBuilder(const PolygonMeshView& source, const PolygonMeshView& target)
        : _samples(source), _tree(_samples.positions), _target(target),
          _sourceSize(Length(BoundingBox(_samples.positions).size()))
    {
    }

    void build(ShapeProjection& projection) const
    {
        std::vector<bool> isInPiece(_target.vertexCount());
        for (const WholePiece& piece : FindWholePieces(_target, _sourceSize)) {
            base::ThrowIfCancelled();
            projection._pieces.push_back(fit(piece));
            for (const std::uint32_t vertex : piece.vertices)
                isInPiece[vertex] = true;
        }
        std::vector<Row> rows(_target.vertexCount());
        tbb::parallel_for(std::size_t{0}, rows.size(), [&](std::size_t v) {
            base::ThrowIfCancelled();
            if (!isInPiece[v])
                rows[v] = BlendRow(_samples, _tree, _target.positions[v]);
        });
        for (const Row& row : rows) {
            projection._rowSources.insert(projection._rowSources.end(), row.sources.begin(),
                                          row.sources.end());
            projection._rowWeights.insert(projection._rowWeights.end(), row.weights.begin(),
                                          row.weights.end());
            projection._rowOffsets.push_back(static_cast<std::uint32_t>(projection._rowSources.size()));
        }
    }

private:
    /// What is nearest to the piece's surface says most about where it goes, whatever its density.
    ShapeProjection::Piece fit(const WholePiece& whole) const
    {
        std::vector<PointTree::Found> around = _tree.nearest(whole.center, leastAroundPiece);
        const float reach = std::max(2.0f * whole.radius + around.front().distance,
                                     around.back().distance * reachBeyondFarthest);
        around = _tree.within(whole.center, reach);
        std::vector<Vec3f> own;
        for (const std::uint32_t vertex : whole.vertices)
            own.push_back(_target.positions[vertex]);
        const PointTree ownTree(own);
        std::vector<Eigen::Vector3d> places;
        std::vector<double> weights;
        ShapeProjection::Piece piece;
        for (const PointTree::Found& one : around) {
            const Vec3f place = _samples.positions[one.index];
            const double gap = ownTree.nearest(place, 1).front().distance;
            const double near = gap * gap + double{touching * whole.radius} * (touching * whole.radius);
            const double fading = 1.0 - double{one.distance} * one.distance / (double{reach} * reach);
            // A share of area even for a vertex whose faces have none, so that not all can be without.
            const double area = double{_samples.areas[one.index]} + 1e-9 * reach * reach;
            piece.sources.push_back(_samples.vertices[one.index]);
            places.push_back(ToEigen(place - whole.center) / double{reach});
            weights.push_back(area * fading * fading / (near * near));
        }
        piece.weights = LinearFit(places, weights);
        piece.vertices = whole.vertices;
        for (const Vec3f place : own)
            piece.places.push_back((place - whole.center) * (1.0f / reach));
        return piece;
    }

    Samples _samples;
    PointTree _tree;
    PolygonMeshView _target;
    float _sourceSize;
};

ShapeProjection::ShapeProjection(const PolygonMeshView& source, const PolygonMeshView& target)
    : _sourceVertexCount(source.vertexCount())
{
    CheckFinite(source, "source");
    CheckFinite(target, "target");
    ShapeProjectionBuilder(source, target).build(*this);
}

// Relative to one of the displacements, so that a shift of all arrives to the last digit.
void ShapeProjection::projectPiece(const Piece& piece, base::Span<const Vec3f> displacements,
                                   std::vector<Vec3f>& result) const
{
    const Vec3f base = displacements[piece.sources.front()];
    std::array<Vec3f, 4> sums{};
    for (std::size_t i = 0; i < piece.sources.size(); ++i)
        for (std::size_t k = 0; k < 4; ++k)
            sums[k] += (displacements[piece.sources[i]] - base) * piece.weights[i][k];
    for (std::size_t i = 0; i < piece.vertices.size(); ++i) {
        const Vec3f place = piece.places[i];
        result[piece.vertices[i]] =
            base + (sums[0] + sums[1] * place.x + sums[2] * place.y + sums[3] * place.z);
    }
}

std::vector<Vec3f> ShapeProjection::project(base::Span<const Vec3f> displacements) const
{
    if (displacements.size() != _sourceVertexCount)
        throw TopologyError("source mesh has {} but {} given", base::CountedVertices(_sourceVertexCount),
                            base::Counted(displacements.size(), "displacement is", "displacements are"));
    std::vector<Vec3f> result(targetVertexCount());
    tbb::parallel_for(std::size_t{0}, result.size(), [&](std::size_t v) {
        base::ThrowIfCancelled();
        const std::size_t first = _rowOffsets[v], last = _rowOffsets[v + 1];
        if (first == last)
            return;
        const Vec3f base = displacements[_rowSources[first]];
        Vec3f sum;
        for (std::size_t i = first; i < last; ++i)
            sum += (displacements[_rowSources[i]] - base) * _rowWeights[i];
        result[v] = base + sum;
    });
    for (const Piece& piece : _pieces)
        projectPiece(piece, displacements, result);
    return result;
}

} // namespace geometry
