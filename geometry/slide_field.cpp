// Control points over a surface, and conjugate gradients for their slides.
// SPDX-License-Identifier: MIT

#include "slide_field.h"

#include "base/cancellation.h"
#include "for_each_index.h"
#include "geometry/transform.h"

#include <Eigen/LU>

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

/// Edges from a control point within which no other one is placed. It reaches twice as far.
constexpr int spacing = 6;
/// No control point reaches across a vertex with more neighbours, such as the pole of a sphere: all of its
/// spokes would be near to each other.
constexpr std::size_t mostSpokes = 32;
/// Pieces with fewer control points stay: an eye, a tooth or a lash has too few features to tell where it
/// belongs beside its like, and nothing around it that would hold it.
constexpr std::size_t leastControls = 16;
/// How often the high pass is applied; more than once, so that slow changes of the distance count for
/// nothing.
constexpr int highPasses = 3;
constexpr int maxSteps = 40;
constexpr double tolerance = 3e-3; ///< of the squared residual; the next matches move by more

template <class Body>
void ForVertices(std::size_t count, const Body& body)
{
    ForEachIndex(count, 1024, body);
}

/// Of which each has hundreds of vertices.
template <class Body>
void ForControls(std::size_t count, const Body& body)
{
    ForEachIndex(count, 16, body);
}

/// Three coordinates and a 0, which are worked on at once.
using Wide = Eigen::Vector4f;

Wide ToWide(Vec3f a)
{
    return {a.x, a.y, a.z, 0.0f};
}

Vec3f FromWide(const Wide& a)
{
    return {a[0], a[1], a[2]};
}

/// In order, so that the result is the same on every run; control points are few.
double DotProduct(const std::vector<Vec3f>& a, const std::vector<Vec3f>& b)
{
    double sum = 0.0;
    for (std::size_t k = 0; k < a.size(); ++k)
        sum += Dot(a[k], b[k]);
    return sum;
}

/// Averages over edges between vertices whose goals are known. Symmetric, with eigenvalues from -1 to 1, so
/// that what an even number of steps takes away is never negative. A vertex has no part in its own average:
/// on a surface half as many steps reach as far as they would with one.
class HighPass {
public:
    HighPass(const IndexLists& neighbours, base::Span<const OffsetGoal> goals, int smoothing)
        : _smoothing(smoothing), _offsets(goals.size() + 1), _ownWeights(goals.size()), _low(goals.size()),
          _next(goals.size())
    {
        for (std::size_t v = 0; v < goals.size(); ++v)
            _offsets[v + 1] = _offsets[v] + static_cast<std::uint32_t>(neighbours[v].size());
        _weights.resize(_offsets.back());
        ForVertices(goals.size(), [&](std::size_t v) {
            std::uint32_t entry = _offsets[v];
            _ownWeights[v] = 1.0f;
            for (const std::uint32_t w : neighbours[v]) {
                const float weight = std::sqrt(goals[v].weight * goals[w].weight) /
                                     static_cast<float>(std::max(neighbours[v].size(), neighbours[w].size()));
                _weights[entry++] = {w, weight};
                _ownWeights[v] -= weight;
            }
        });
    }

    void apply(std::vector<float>& values)
    {
        for (int pass = 0; pass < highPasses; ++pass) {
            ForVertices(values.size(), [&](std::size_t v) { _low[v] = averaged(values, v); });
            for (int step = 2; step < _smoothing; ++step) {
                ForVertices(_low.size(), [&](std::size_t v) { _next[v] = averaged(_low, v); });
                _low.swap(_next);
            }
            ForVertices(values.size(), [&](std::size_t v) { values[v] -= averaged(_low, v); });
        }
    }

private:
    float averaged(const std::vector<float>& values, std::size_t v) const
    {
        float sum = values[v] * _ownWeights[v];
        for (std::uint32_t entry = _offsets[v]; entry < _offsets[v + 1]; ++entry)
            sum += values[_weights[entry].vertex] * _weights[entry].weight;
        return sum;
    }

    struct Weight {
        std::uint32_t vertex;
        float weight;
    };
    int _smoothing;
    std::vector<std::uint32_t> _offsets;
    std::vector<Weight> _weights; ///< of the neighbours of each vertex
    std::vector<float> _ownWeights, _low, _next;
};

/// Distances along the goals' normals that are left after the slides; 0 where no goal is known.
template <class SlideAt>
std::vector<float> Remaining(base::Span<const OffsetGoal> goals, const SlideAt& slideAt)
{
    std::vector<float> distances(goals.size());
    ForVertices(goals.size(), [&](std::size_t v) {
        if (goals[v].weight > 0.0f)
            distances[v] = Dot(goals[v].normal, goals[v].offset - slideAt(v));
    });
    return distances;
}

/// Single mistakes of the matching stand out as distances that nothing around them has; they count less (the
/// weights of Cauchy's distribution). So does what is farther off than a slide can be, such as a limb in
/// another pose: it is known at the wrong places, and featureless parts beside it would slide with it.
std::vector<OffsetGoal> Reweighted(const IndexLists& neighbours, base::Span<const OffsetGoal> goals,
                                   base::Span<const float> edgeLengths, const SlideRestraint& restraint)
{
    std::vector<float> distances = Remaining(goals, [](std::size_t) { return Vec3f{}; });
    HighPass(neighbours, goals, restraint.smoothing).apply(distances);
    std::vector<OffsetGoal> result(goals.begin(), goals.end());
    ForVertices(result.size(), [&](std::size_t v) {
        const float share = distances[v] / std::max(restraint.outlier * edgeLengths[v], 1e-12f);
        const float reach = Length(goals[v].offset) / std::max(restraint.longest * edgeLengths[v], 1e-12f);
        result[v].weight /= (1.0f + share * share) * (1.0f + reach * reach);
    });
    return result;
}

} // namespace

/// The normal equations of the control points' slides.
class SlideField::System {
public:
    System(const SlideField& field, base::Span<const OffsetGoal> goals, const SlideRestraint& restraint)
        : _field(field), _goals(goals), _restraint(restraint),
          _highPass(field._neighbours, goals, restraint.smoothing), _inverses(field._slides.size()),
          _wideSlides(field._slides.size()), _pulls(goals.size())
    {
        ForControls(_inverses.size(), [&](std::size_t k) { _inverses[k] = ownBlock(k).inverse(); });
    }

    /// What the slides leave of the distances pulls at each control point.
    std::vector<Vec3f> pulls()
    {
        std::vector<float> distances = Remaining(_goals, [this](std::size_t v) { return _field.slideAt(v); });
        std::vector<Vec3f> result = gathered(distances), held(result.size());
        hold(_field._slides, held);
        for (std::size_t k = 0; k < result.size(); ++k)
            result[k] -= held[k];
        return result;
    }

    std::vector<Vec3f> apply(const std::vector<Vec3f>& slides)
    {
        std::transform(slides.begin(), slides.end(), _wideSlides.begin(), ToWide);
        std::vector<float> along(_goals.size());
        ForVertices(along.size(), [&](std::size_t v) {
            if (_goals[v].weight > 0.0f)
                along[v] = Dot(_goals[v].normal, BlendWide(_field._controls[v], _wideSlides));
        });
        std::vector<Vec3f> result = gathered(along);
        hold(slides, result);
        return result;
    }

    Vec3f precondition(std::size_t k, Vec3f residual) const
    {
        if (_field._isHeld[k])
            return {};
        return FromEigen(Eigen::Vector3d(_inverses[k] * ToEigen(residual)));
    }

    /// The slow part of the distances that the slides leave.
    std::vector<float> slowDistances()
    {
        std::vector<float> slow = Remaining(_goals, [this](std::size_t v) { return _field.slideAt(v); });
        std::vector<float> quick = slow;
        _highPass.apply(quick);
        ForVertices(slow.size(), [&](std::size_t v) { slow[v] -= quick[v]; });
        return slow;
    }

    /// Adds to the sum what the shares take of the values.
    template <class Value>
    static Value Blend(base::Span<const Share> shares, const std::vector<Value>& values, Value sum)
    {
        for (const Share& share : shares)
            sum += values[share.index] * share.weight;
        return sum;
    }

private:
    /// The high pass takes about half of a vertex's own distance.
    static constexpr double ownShare = 0.5;

    Eigen::Matrix3d ownBlock(std::size_t k) const
    {
        Eigen::Matrix3d block =
            Eigen::Matrix3d::Identity() * (double{_restraint.tension} * double(_field._adjacent[k].size()) +
                                           double{_restraint.rest} * double(_field._vertices[k].size()));
        for (const Share& share : _field._vertices[k]) {
            const OffsetGoal& goal = _goals[share.index];
            const Eigen::Vector3d normal = ToEigen(goal.normal);
            block += normal * normal.transpose() * (ownShare * goal.weight * share.weight * share.weight);
        }
        return block;
    }

    static Vec3f BlendWide(base::Span<const Share> shares, const std::vector<Wide>& values)
    {
        return FromWide(Blend<Wide>(shares, values, Wide::Zero()));
    }

    std::vector<Vec3f> gathered(std::vector<float>& distances)
    {
        _highPass.apply(distances);
        ForVertices(distances.size(),
                    [&](std::size_t v) { _pulls[v] = ToWide(_goals[v].normal * distances[v]); });
        std::vector<Vec3f> result(_inverses.size());
        ForControls(result.size(),
                    [&](std::size_t k) { result[k] = BlendWide(_field._vertices[k], _pulls); });
        return result;
    }

    void hold(const std::vector<Vec3f>& slides, std::vector<Vec3f>& result) const
    {
        ForControls(slides.size(), [&](std::size_t k) {
            Vec3f apart;
            for (const std::uint32_t other : _field._adjacent[k])
                apart += slides[k] - slides[other];
            result[k] += apart * _restraint.tension +
                         slides[k] * (_restraint.rest * static_cast<float>(_field._vertices[k].size()));
        });
    }

    const SlideField& _field;
    base::Span<const OffsetGoal> _goals;
    const SlideRestraint& _restraint;
    HighPass _highPass;
    std::vector<Eigen::Matrix3d> _inverses;
    std::vector<Wide> _wideSlides; ///< by control point
    std::vector<Wide> _pulls;      ///< by vertex; packed, since each is looked at for many control points
};

SlideField::SlideField(const IndexLists& neighbours, base::Span<const float> edgeLengths)
    : _neighbours(neighbours), _edgeLengths(edgeLengths)
{
    placeControls();
}

/// Control points in the order of the vertices, each where no other one is near; their influence fades out
/// over edges.
void SlideField::placeControls()
{
    constexpr int reach = 2 * spacing;
    constexpr std::uint32_t none = UINT32_MAX;
    const std::size_t count = _edgeLengths.size();
    std::vector<int> nearest(count, reach + 1), distance(count);
    std::vector<std::uint32_t> visitor(count, none), queue, places;
    std::vector<float> sums(count);
    for (std::uint32_t start = 0; start < count; ++start) {
        if (nearest[start] <= spacing)
            continue;
        base::ThrowIfCancelled();
        const auto control = static_cast<std::uint32_t>(places.size());
        places.push_back(start);
        queue.assign(1, start);
        visitor[start] = control;
        distance[start] = 0;
        for (std::size_t i = 0; i < queue.size(); ++i) {
            const std::uint32_t v = queue[i];
            nearest[v] = std::min(nearest[v], distance[v]);
            const float nearness = 1.0f - static_cast<float>(distance[v]) / (reach + 1);
            const float weight = nearness * nearness * nearness;
            sums[v] += weight;
            _vertices.shares.push_back({v, weight});
            if (distance[v] == reach || _neighbours[v].size() > mostSpokes)
                continue;
            for (const std::uint32_t w : _neighbours[v])
                if (visitor[w] != control) {
                    visitor[w] = control;
                    distance[w] = distance[v] + 1;
                    queue.push_back(w);
                }
        }
        _vertices.offsets.push_back(static_cast<std::uint32_t>(_vertices.shares.size()));
    }
    for (Share& share : _vertices.shares)
        share.weight /= sums[share.index];
    _controls = Transposed(_vertices, count);
    findAdjacent(places);
    holdSmallPieces();
    _slides.resize(places.size());
}

/// The same shares by what they name; ascending.
SlideField::ShareLists SlideField::Transposed(const ShareLists& lists, std::size_t count)
{
    ShareLists result;
    result.offsets.assign(count + 1, 0);
    for (const Share& share : lists.shares)
        ++result.offsets[share.index + 1];
    for (std::size_t i = 0; i < count; ++i)
        result.offsets[i + 1] += result.offsets[i];
    result.shares.resize(lists.shares.size());
    std::vector<std::uint32_t> next(result.offsets.begin(), result.offsets.end() - 1);
    for (std::uint32_t list = 0; list + 1 < lists.offsets.size(); ++list)
        for (const Share& share : lists[list])
            result.shares[next[share.index]++] = {list, share.weight};
    return result;
}

void SlideField::findAdjacent(const std::vector<std::uint32_t>& places)
{
    _adjacent.resize(places.size());
    for (std::uint32_t k = 0; k < places.size(); ++k)
        for (const Share& share : _controls[places[k]])
            if (share.index != k) {
                _adjacent[k].push_back(share.index);
                _adjacent[share.index].push_back(k);
            }
    for (std::vector<std::uint32_t>& others : _adjacent) {
        std::sort(others.begin(), others.end());
        others.erase(std::unique(others.begin(), others.end()), others.end());
    }
}

void SlideField::holdSmallPieces()
{
    _isHeld.assign(_adjacent.size(), false);
    std::vector<bool> isReached(_adjacent.size());
    std::vector<std::uint32_t> piece;
    for (std::uint32_t start = 0; start < _adjacent.size(); ++start) {
        if (isReached[start])
            continue;
        isReached[start] = true;
        piece.assign(1, start);
        for (std::size_t i = 0; i < piece.size(); ++i)
            for (const std::uint32_t other : _adjacent[piece[i]])
                if (!isReached[other]) {
                    isReached[other] = true;
                    piece.push_back(other);
                }
        if (piece.size() < leastControls)
            for (const std::uint32_t control : piece)
                _isHeld[control] = true;
    }
}

bool SlideField::isHeld(std::size_t vertex) const
{
    return _isHeld[_controls[vertex][0].index];
}

Vec3f SlideField::slideAt(std::size_t vertex) const
{
    return System::Blend(_controls[vertex], _slides, Vec3f{});
}

void SlideField::improve(base::Span<const OffsetGoal> goals, const SlideRestraint& restraint,
                         std::vector<Vec3f>& offsets)
{
    const std::vector<OffsetGoal> trusted = Reweighted(_neighbours, goals, _edgeLengths, restraint);
    System system(*this, trusted, restraint);
    const std::size_t count = _slides.size();
    std::vector<Vec3f> residual = system.pulls(), scaled(count);
    for (std::size_t k = 0; k < count; ++k)
        scaled[k] = system.precondition(k, residual[k]);
    std::vector<Vec3f> direction = scaled;
    double error = DotProduct(residual, scaled);
    const double enough = error * tolerance;
    for (int step = 0; step < maxSteps && error > enough; ++step) {
        const std::vector<Vec3f> image = system.apply(direction);
        const auto length = static_cast<float>(error / DotProduct(direction, image));
        for (std::size_t k = 0; k < count; ++k) {
            _slides[k] += direction[k] * length;
            residual[k] -= image[k] * length;
            scaled[k] = system.precondition(k, residual[k]);
        }
        const double next = DotProduct(residual, scaled);
        const auto turn = static_cast<float>(next / error);
        for (std::size_t k = 0; k < count; ++k)
            direction[k] = scaled[k] + direction[k] * turn;
        error = next;
    }

    const std::vector<float> slow = system.slowDistances();
    const std::vector<Vec3f> slides = this->slides(restraint);
    ForVertices(offsets.size(), [&](std::size_t v) {
        if (!isHeld(v))
            offsets[v] = slides[v] + goals[v].normal * slow[v];
    });
}

std::vector<Vec3f> SlideField::slides(const SlideRestraint& restraint) const
{
    std::vector<Vec3f> result(_edgeLengths.size());
    ForVertices(result.size(), [&](std::size_t v) {
        const Vec3f slide = slideAt(v);
        const float length = Length(slide), longest = restraint.longest * _edgeLengths[v];
        result[v] = slide * (length > longest ? longest / length : 1.0f);
    });
    return result;
}

} // namespace geometry
