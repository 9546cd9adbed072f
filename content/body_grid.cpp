// The sampled body: a grid of signs over an enlarged space.
// SPDX-License-Identifier: MIT

#include "body_grid.h"

#include "base/cancellation.h"
#include "body_solid.h"

#include <tbb/parallel_for.h>

namespace content {

SamplingSpace::SamplingSpace(const MeshRecipe& recipe)
    : _cosine(std::cos(recipe.turnDegrees * 0.017453293f)), _sine(std::sin(recipe.turnDegrees * 0.017453293f))
{
    for (const std::vector<Enlargement>& level : recipe.levels)
        addLevel(level);
}

/// A ball within enlarged ones is placed, and grows, as they have it.
void SamplingSpace::place(Ball& ball) const
{
    for (const std::vector<Ball>& level : _levels)
        for (const Ball& outer : level) {
            const Vec3f offset = (ball.center - outer.center) * (1.0f / outer.inverseFactor);
            if (Length(offset) > outer.innerRadius)
                continue;
            ball.center = outer.sampleCenter + offset;
            ball.innerRadius /= outer.inverseFactor;
            break;
        }
}

void SamplingSpace::addLevel(const std::vector<Enlargement>& enlargements)
{
    std::vector<Ball> balls;
    for (const Enlargement& enlargement : enlargements)
        for (int side = 0; side < (enlargement.mirrored ? 2 : 1); ++side) {
            Ball ball;
            ball.center = side ? Mirrored(enlargement.center) : enlargement.center;
            ball.inverseFactor = 1.0f / enlargement.factor;
            ball.innerRadius = enlargement.radius;
            place(ball);
            ball.innerRadius *= enlargement.factor;
            ball.sampleCenter = ball.center + (side ? Mirrored(enlargement.shift) : enlargement.shift);
            ball.outerRadius = ball.innerRadius + enlargement.fade;
            balls.push_back(ball);
        }
    _levels.push_back(std::move(balls));
}

Vec3f SamplingSpace::shrink(const std::vector<Ball>& balls, Vec3f q)
{
    Vec3f moved = q;
    for (const Ball& ball : balls) {
        const Vec3f offset = q - ball.sampleCenter;
        const float strength = SmoothStep(ball.outerRadius, ball.innerRadius, Length(offset));
        if (strength > 0.0f)
            moved += (ball.center + offset * ball.inverseFactor - q) * strength;
    }
    return moved;
}

Vec3f SamplingSpace::toBody(Vec3f q) const
{
    Vec3f p{_cosine * q.x + _sine * q.z, q.y, _cosine * q.z - _sine * q.x};
    for (auto level = _levels.rbegin(); level != _levels.rend(); ++level)
        p = shrink(*level, p);
    return p;
}

namespace {

constexpr float smallestValue = 1e-4f;

bool IsInside(const SampledBody& body, std::size_t corner)
{
    return body.values[corner] < 0.0f;
}

/// Fills a body's grid block by block: where a block's middle lies far from the surface, its corners need not
/// be measured.
class Sampler {
public:
    Sampler(const MeshRecipe& recipe, SampledBody& body, std::array<int, 3> half, Vec3f middle)
        : _space(recipe), _recipe(recipe), _body(body), _half(half), _middle(middle)
    {
    }

    void sampleSlab(int slab)
    {
        for (int y = 0; y < _body.size[1]; y += block)
            for (int x = 0; x < _body.size[0]; x += block) {
                base::ThrowIfCancelled();
                sampleBlock({x, y, slab * block});
            }
    }

    static constexpr int block = 6; ///< corners along an edge

private:
    Vec3f place(float x, float y, float z) const
    {
        // Corners at half steps: without offset the middle plane runs through cells' middles.
        const Vec3f cell{x - static_cast<float>(_half[0]) + 0.5f + _recipe.offset.x,
                         y - static_cast<float>(_half[1]) + 0.5f + _recipe.offset.y,
                         z - static_cast<float>(_half[2]) + 0.5f + _recipe.offset.z};
        return _space.toBody(_middle + cell * _recipe.step);
    }

    /// Twice what the corners lie off the middle, since neither space nor distance is even.
    float reach(std::array<int, 3> low, Vec3f center) const
    {
        float farthest = 0.0f;
        for (int i = 0; i < 8; ++i) {
            const Vec3f corner = place(static_cast<float>(low[0] + (i & 1) * (block - 1)),
                                       static_cast<float>(low[1] + (i >> 1 & 1) * (block - 1)),
                                       static_cast<float>(low[2] + (i >> 2) * (block - 1)));
            farthest = std::max(farthest, Length(corner - center));
        }
        return 2.0f * farthest;
    }

    void sampleBlock(std::array<int, 3> low)
    {
        constexpr float half = 0.5f * (block - 1);
        const Vec3f center = place(static_cast<float>(low[0]) + half, static_cast<float>(low[1]) + half,
                                   static_cast<float>(low[2]) + half);
        const float middle = ClosedBodyDistance(center);
        const bool isFar = std::abs(middle) > reach(low, center);
        for (int z = low[2]; z < std::min(low[2] + block, _body.size[2]); ++z)
            for (int y = low[1]; y < std::min(low[1] + block, _body.size[1]); ++y)
                for (int x = low[0]; x < std::min(low[0] + block, _body.size[0]); ++x)
                    if (isFar)
                        _body.values[_body.index(x, y, z)] = middle;
                    else
                        measure(x, y, z);
    }

    void measure(int x, int y, int z)
    {
        const std::size_t corner = _body.index(x, y, z);
        _body.places[corner] = place(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
        const float value = ClosedBodyDistance(_body.places[corner]);
        _body.values[corner] = std::abs(value) < smallestValue ? smallestValue : value;
    }

    SamplingSpace _space;
    const MeshRecipe& _recipe;
    SampledBody& _body;
    std::array<int, 3> _half;
    Vec3f _middle;
};

SampledBody Sample(const MeshRecipe& recipe)
{
    constexpr Vec3f low{-112.0f, -26.0f, -62.0f}, high{112.0f, 214.0f, 62.0f};
    SampledBody body;
    std::array<int, 3> half;
    for (int axis = 0; axis < 3; ++axis) {
        half[axis] = static_cast<int>(std::ceil((high[axis] - low[axis]) * 0.5f / recipe.step)) + 1;
        body.size[axis] = 2 * half[axis];
    }
    const std::size_t count = static_cast<std::size_t>(body.size[0]) * body.size[1] * body.size[2];
    body.places.resize(count);
    body.values.resize(count);
    Sampler sampler(recipe, body, half, (low + high) * 0.5f);
    tbb::parallel_for(0, (body.size[2] + Sampler::block - 1) / Sampler::block,
                      [&](int slab) { sampler.sampleSlab(slab); });
    return body;
}

/// The steps in index to the six neighbours.
std::array<std::ptrdiff_t, 6> NeighbourSteps(const SampledBody& body)
{
    const std::ptrdiff_t row = body.size[0], slice = row * body.size[1];
    return {1, -1, row, -row, slice, -slice};
}

bool IsOnRim(const SampledBody& body, std::size_t corner)
{
    const int x = static_cast<int>(corner % body.size[0]);
    const int y = static_cast<int>(corner / body.size[0] % body.size[1]);
    const int z = static_cast<int>(corner / body.size[0] / body.size[1]);
    return x == 0 || y == 0 || z == 0 || x == body.size[0] - 1 || y == body.size[1] - 1 ||
           z == body.size[2] - 1;
}

/// Turns all corners of one sign that are not joined to the start into the other sign.
void KeepOnePiece(SampledBody& body, std::size_t start)
{
    const bool inside = IsInside(body, start);
    std::vector<char> reached(body.values.size(), 0);
    std::vector<std::size_t> stack{start};
    reached[start] = 1;
    const auto steps = NeighbourSteps(body);
    while (!stack.empty()) {
        const std::size_t corner = stack.back();
        stack.pop_back();
        for (const std::ptrdiff_t step : steps) {
            const std::ptrdiff_t next = static_cast<std::ptrdiff_t>(corner) + step;
            if (next < 0 || next >= static_cast<std::ptrdiff_t>(reached.size()) || reached[next] ||
                IsInside(body, next) != inside || (inside && IsOnRim(body, next)))
                continue;
            reached[next] = 1;
            stack.push_back(next);
        }
    }
    for (std::size_t corner = 0; corner < reached.size(); ++corner)
        if (IsInside(body, corner) == inside && !reached[corner])
            body.values[corner] = inside ? smallestValue : -smallestValue;
}

std::size_t DeepestCorner(const SampledBody& body)
{
    return std::min_element(body.values.begin(), body.values.end()) - body.values.begin();
}

/// The corners of a cell's faces and the pairs of opposite ends that make it ambiguous, as a mask; 0 for a
/// plain cell. A face whose corners alternate in sign has two readings, and so has a cell in which one sign
/// stands only at two opposite ends.
int AmbiguousCorners(int insideMask)
{
    static const int faces[6][4] = {{0, 1, 3, 2}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                    {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 3, 7, 5}};
    int corners = 0;
    for (const auto& face : faces) {
        const bool a = insideMask >> face[0] & 1, b = insideMask >> face[1] & 1;
        if (a != b && a == bool(insideMask >> face[2] & 1) && b == bool(insideMask >> face[3] & 1))
            for (const int corner : face)
                corners |= 1 << corner;
    }
    for (int i = 0; i < 4; ++i) {
        const int pair = 1 << i | 1 << (7 - i);
        if (insideMask == pair || insideMask == (255 ^ pair))
            corners |= 255;
    }
    return corners & insideMask;
}

/// Lists the inside corners to take out of a cell: the one nearest to the surface, and its mirror image where
/// both are in the cell.
void ListCornersToTakeOut(const SampledBody& body, int x, int y, int z, std::vector<std::size_t>& list)
{
    std::size_t corners[8];
    int insideMask = 0;
    for (int i = 0; i < 8; ++i) {
        corners[i] = body.index(x + (i & 1), y + (i >> 1 & 1), z + (i >> 2));
        insideMask |= IsInside(body, corners[i]) ? 1 << i : 0;
    }
    if (insideMask == 0 || insideMask == 255)
        return;
    const int ambiguous = AmbiguousCorners(insideMask);
    float shallowest = -1e9f;
    for (int i = 0; i < 8; ++i)
        if (ambiguous >> i & 1)
            shallowest = std::max(shallowest, body.values[corners[i]]);
    for (int i = 0; i < 8; ++i)
        if ((ambiguous >> i & 1) && body.values[corners[i]] == shallowest)
            list.push_back(corners[i]);
}

/// Rounds that only take out come to an end; looking at all cells before changing any keeps a symmetric grid
/// so.
void MakePlain(SampledBody& body)
{
    for (std::vector<std::size_t> list{0}; !list.empty();) {
        list.clear();
        for (int z = 0; z + 1 < body.size[2]; ++z)
            for (int y = 0; y + 1 < body.size[1]; ++y)
                for (int x = 0; x + 1 < body.size[0]; ++x)
                    ListCornersToTakeOut(body, x, y, z, list);
        for (const std::size_t corner : list)
            body.values[corner] = smallestValue;
    }
}

} // namespace

SampledBody SampleBody(const MeshRecipe& recipe)
{
    SampledBody body = Sample(recipe);
    MakePlain(body);
    KeepOnePiece(body, DeepestCorner(body));
    KeepOnePiece(body, 0);
    MakePlain(body);
    return body;
}

} // namespace content
