// Where joints go: a robust local fit of move, turn and growth around each.
// SPDX-License-Identifier: MIT

#include "geometry/rig_fit.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "geometry/errors.h"
#include "geometry/normals.h"
#include "geometry/surface_distance.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <Eigen/Dense>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace geometry {

namespace {

using Eigen::Matrix3d;
using Eigen::Vector3d;
using Parameters = Eigen::Matrix<double, 7, 1>; ///< move, turn, growth
using Jacobian = Eigen::Matrix<double, 3, 7>;
using NormalMatrix = Eigen::Matrix<double, 7, 7>;

constexpr double scaleOfCauchy = 2.5;  ///< in weighted medians of what does not fit
constexpr double largestShare = 0.1;   ///< of all flesh that one vertex may have
constexpr int roundsOfSharing = 8;     ///< as what one vertex may have shrinks with what it had
constexpr double smallestScale = 1e-4; ///< cm
constexpr double damping = 1e-3;       ///< of turn and growth, where the surface does not tell

/// A third of its faces' areas, cm^2, as triangles around their first corners.
std::vector<double> VertexAreas(const PolygonMeshView& mesh)
{
    std::vector<double> areas(mesh.vertexCount());
    const Triangles triangles = Triangulate(*mesh.topology);
    for (std::size_t t = 0; t < triangles.count(); ++t) {
        const std::uint32_t* const v = &triangles.corners[3 * t];
        const Vec3f a = mesh.positions[v[0]];
        const double area = Length(Cross(mesh.positions[v[1]] - a, mesh.positions[v[2]] - a)) / 6.0;
        for (int corner = 0; corner < 3; ++corner)
            areas[v[corner]] += area;
    }
    return areas;
}

/// The lowest ten bits with two zeros after each.
std::uint32_t Spread(std::uint32_t bits)
{
    bits = (bits | bits << 16) & 0x030000ffu;
    bits = (bits | bits << 8) & 0x0300f00fu;
    bits = (bits | bits << 4) & 0x030c30c3u;
    return (bits | bits << 2) & 0x09249249u;
}

/// Vertices along a curve that fills space: what is near along it is near.
std::vector<std::uint32_t> AlongCurve(base::Span<const Vec3f> positions)
{
    const Box3f box = BoundingBox(positions);
    const Vec3f size = box.size();
    const float scale = 1023.0f / std::max({size.x, size.y, size.z, 1e-6f});
    std::vector<std::uint32_t> codes, order(positions.size());
    codes.reserve(positions.size());
    for (const Vec3f p : positions) {
        const Vec3f cell = (p - box.min) * scale;
        codes.push_back(Spread(static_cast<std::uint32_t>(cell.x)) |
                        Spread(static_cast<std::uint32_t>(cell.y)) << 1 |
                        Spread(static_cast<std::uint32_t>(cell.z)) << 2);
    }
    std::iota(order.begin(), order.end(), 0u);
    std::sort(order.begin(), order.end(), [&codes](std::uint32_t a, std::uint32_t b) {
        return codes[a] != codes[b] ? codes[a] < codes[b] : a < b;
    });
    return order;
}

/// What all points look at.
struct Surroundings {
    const PolygonMeshView& mesh;
    const SkinWeights& weights;
    base::Span<const Vec3f> whole;
    RigFitOptions options;
    std::vector<double> areas;
    std::vector<Vec3f> normals;
    std::vector<std::uint32_t> order; ///< along a curve, only those with an area
};

/// A vertex as a point sees it.
struct Sample {
    std::uint32_t vertex;
    double weight; ///< of its flesh
    double fits;   ///< 0..1
    /// The normal, as long as what goes across the surface is not to count: 1 for bone, 0 for flesh.
    Vector3d across;
    Jacobian along; ///< of the displacement by the parameters, as far as it counts

    Vector3d counted(Vec3f displacement) const
    {
        const Vector3d d = ToEigen(displacement);
        return d - across * across.dot(d);
    }
};

double OwnFlesh(const SkinWeights& weights, std::uint32_t vertex, const std::vector<std::uint32_t>& joints)
{
    double sum = 0.0;
    for (std::uint32_t i = weights.offsets[vertex]; i < weights.offsets[vertex + 1]; ++i)
        if (std::find(joints.begin(), joints.end(), weights.joints[i]) != joints.end())
            sum += weights.weights[i];
    return sum;
}

/// By the order of the curve: area, less with the cube of the distance.
std::vector<double> FleshWeights(const Surroundings& all, const RigPoint& point, double depth)
{
    std::vector<double> flesh;
    flesh.reserve(all.order.size());
    const double nearness = all.options.nearness + depth;
    const double foreign = all.weights.joints.empty() ? 1.0 : all.options.foreignFlesh;
    for (const std::uint32_t vertex : all.order) {
        const double own = foreign < 1.0 ? OwnFlesh(all.weights, vertex, point.joints) : 1.0;
        const double distance = Length(all.mesh.positions[vertex] - point.position) + nearness;
        flesh.push_back(all.areas[vertex] * (foreign + (1.0 - foreign) * own) /
                        (distance * distance * distance));
    }
    // A vertex that a joint happens to lie on would be all that fits.
    for (int round = 0; round < roundsOfSharing; ++round) {
        const double most = std::accumulate(flesh.begin(), flesh.end(), 0.0) * largestShare;
        for (double& one : flesh)
            one = std::min(one, most);
    }
    return flesh;
}

/// As many vertices as wanted, each standing for the same amount of flesh along the curve; one that has more
/// is taken as often as it stands for that.
std::vector<Sample> TakeSamples(const Surroundings& all, const std::vector<double>& flesh)
{
    std::vector<Sample> samples;
    const double total = std::accumulate(flesh.begin(), flesh.end(), 0.0);
    const double step = total / static_cast<double>(all.options.samples);
    const bool takesAll = flesh.size() <= all.options.samples;
    double passed = 0.0, next = step / 2.0;
    for (std::size_t i = 0; i < flesh.size(); ++i) {
        passed += flesh[i];
        double weight = takesAll ? flesh[i] : 0.0;
        for (; !takesAll && next <= passed; next += step)
            weight += step;
        if (weight > 0.0)
            samples.push_back({all.order[i], weight / total, 1.0, Vector3d::Zero(), Jacobian::Zero()});
    }
    return samples;
}

void SetUp(const Surroundings& all, const RigPoint& point, double depth, std::vector<Sample>& samples)
{
    // A point on the surface is flesh and goes with it; one below is bone.
    const double bone = depth > 0.0 ? std::sqrt(depth / (depth + all.options.nearness)) : 0.0;
    const Vector3d center = ToEigen(point.position);
    double spread = 0.0;
    for (const Sample& sample : samples)
        spread += sample.weight * (ToEigen(all.mesh.positions[sample.vertex]) - center).squaredNorm();
    // In parts of the spread, so that damping means the same at a finger and at the hip.
    const double unit = spread > 0.0 ? 1.0 / std::sqrt(spread) : 1.0;
    for (Sample& sample : samples) {
        const Vector3d q = (ToEigen(all.mesh.positions[sample.vertex]) - center) * unit;
        sample.across = bone * ToEigen(all.normals[sample.vertex]);
        Jacobian full;
        full << Matrix3d::Identity(), Vector3d(0, -q.z(), q.y()), Vector3d(q.z(), 0, -q.x()),
            Vector3d(-q.y(), q.x(), 0), q;
        sample.along = full - sample.across * (sample.across.transpose() * full);
    }
}

Parameters RightSide(const std::vector<Sample>& samples, base::Span<const Vec3f> displacements)
{
    Parameters sum = Parameters::Zero();
    for (const Sample& sample : samples)
        sum.noalias() += (sample.weight * sample.fits) * sample.along.transpose() *
                         sample.counted(displacements[sample.vertex]);
    return sum;
}

NormalMatrix NormalEquations(const std::vector<Sample>& samples)
{
    NormalMatrix sum = NormalMatrix::Zero();
    for (const Sample& sample : samples)
        sum.noalias() += (sample.weight * sample.fits) * sample.along.transpose() * sample.along;
    for (int i = 3; i < 7; ++i)
        sum(i, i) += damping;
    for (int i = 0; i < 3; ++i)
        sum(i, i) += 1e-9; // a flat sheet says nothing across itself
    return sum;
}

/// Weighted: half of the flesh lies below.
double Median(std::vector<std::pair<double, double>>& valuesAndWeights)
{
    double total = 0.0, passed = 0.0;
    for (const auto& entry : valuesAndWeights)
        total += entry.second;
    std::sort(valuesAndWeights.begin(), valuesAndWeights.end());
    for (const auto& entry : valuesAndWeights) {
        passed += entry.second;
        if (passed >= total / 2.0)
            return entry.first;
    }
    return 0.0;
}

double LargestDisplacement(const Surroundings& all, const std::vector<Sample>& samples)
{
    float largest = 0.0f;
    for (const Sample& sample : samples)
        largest = std::max(largest, Length(all.whole[sample.vertex]));
    return largest;
}

/// Of an estimated shift, by what it leaves unexplained. A joint also never goes further than all the flesh
/// around it, whatever a fit with little to go by says.
double Shortening(double shift, double unexplained, double largest)
{
    if (shift == 0.0)
        return 1.0;
    const double signal = shift * shift, noise = unexplained * unexplained;
    return std::min(signal / (signal + noise), largest / shift);
}

struct Fit {
    NormalMatrix inverse; ///< of the normal equations
    double shorten = 1.0;
};

Fit FitSamples(const Surroundings& all, std::vector<Sample>& samples)
{
    Fit fit;
    Parameters found = Parameters::Zero();
    double median = 0.0;
    std::vector<std::pair<double, double>> misfits(samples.size());
    std::vector<double> lengths(samples.size());
    for (int round = 0; round < all.options.rounds; ++round) {
        if (round > 0) {
            const double scale = std::max(smallestScale, scaleOfCauchy * median);
            for (std::size_t i = 0; i < samples.size(); ++i)
                samples[i].fits = 1.0 / (1.0 + lengths[i] * lengths[i] / (scale * scale));
        }
        fit.inverse = NormalEquations(samples).inverse();
        found = fit.inverse * RightSide(samples, all.whole);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            lengths[i] = (samples[i].counted(all.whole[samples[i].vertex]) - samples[i].along * found).norm();
            misfits[i] = {lengths[i], samples[i].weight};
        }
        median = Median(misfits);
    }
    fit.shorten = Shortening(found.head<3>().norm(), median, LargestDisplacement(all, samples));
    return fit;
}

/// @return one shift per part
std::vector<Vec3f> ShiftsOf(const Surroundings& all, const RigPoint& point, double depth,
                            base::Span<const std::vector<Vec3f>> parts)
{
    std::vector<Sample> samples = TakeSamples(all, FleshWeights(all, point, depth));
    SetUp(all, point, depth, samples);
    const Fit fit = FitSamples(all, samples);
    std::vector<Vec3f> shifts;
    for (const std::vector<Vec3f>& part : parts) {
        const Vector3d shift = fit.shorten * (fit.inverse.topRows<3>() * RightSide(samples, part));
        shifts.push_back(FromEigen(shift));
    }
    return shifts;
}

void CheckFinite(base::Span<const Vec3f> values, const char* what)
{
    for (std::size_t v = 0; v < values.size(); ++v)
        if (!IsFinite(values[v]))
            throw TopologyError("{} of vertex {} is not finite", what, v);
}

void CheckDisplacements(std::size_t vertexCount, base::Span<const Vec3f> displacements)
{
    if (displacements.size() != vertexCount)
        throw TopologyError("the mesh has {} but {} given", base::CountedVertices(vertexCount),
                            base::Counted(displacements.size(), "displacement is", "displacements are"));
    CheckFinite(displacements, "displacement");
}

} // namespace

std::vector<std::vector<Vec3f>> FitRig(const PolygonMeshView& neutral, const SkinWeights& weights,
                                       base::Span<const RigPoint> points, base::Span<const Vec3f> whole,
                                       base::Span<const std::vector<Vec3f>> parts,
                                       const RigFitOptions& options)
{
    CheckFinite(neutral.positions, "position");
    CheckDisplacements(neutral.vertexCount(), whole);
    for (const std::vector<Vec3f>& part : parts)
        CheckDisplacements(neutral.vertexCount(), part);
    if (!weights.joints.empty() && weights.vertexCount() != neutral.vertexCount())
        throw TopologyError("the mesh has {} but the weights are for {}",
                            base::CountedVertices(neutral.vertexCount()), weights.vertexCount());

    Surroundings all{neutral, weights, whole, options, VertexAreas(neutral), VertexNormals(neutral), {}};
    for (const std::uint32_t vertex : AlongCurve(neutral.positions))
        if (all.areas[vertex] > 0.0)
            all.order.push_back(vertex);
    if (all.order.empty())
        throw TopologyError("the mesh has no face with an area");

    std::vector<Vec3f> places;
    for (const RigPoint& point : points)
        places.push_back(point.position);
    const std::vector<float> depths = SurfaceDistances(places, neutral);
    std::vector<std::vector<Vec3f>> shifts(parts.size(), std::vector<Vec3f>(points.size()));
    tbb::parallel_for(std::size_t{0}, points.size(), [&](std::size_t p) {
        base::ThrowIfCancelled();
        const std::vector<Vec3f> ofParts = ShiftsOf(all, points[p], depths[p], parts);
        for (std::size_t part = 0; part < parts.size(); ++part)
            shifts[part][p] = ofParts[part];
    });
    return shifts;
}

} // namespace geometry
