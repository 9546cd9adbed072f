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
    addBalls(recipe.coarse, {}, _coarse);
    addBalls(recipe.fine, _coarse, _fine);
}

void SamplingSpace::addBalls(const std::vector<Enlargement>& enlargements, const std::vector<Ball>& enclosing,
                             std::vector<Ball>& balls)
{
    for (const Enlargement& enlargement : enlargements) {
        for (int side = 0; side < (enlargement.mirrored ? 2 : 1); ++side) {
            Ball ball;
            ball.center = side ? Mirrored(enlargement.center) : enlargement.center;
            float scale = 1.0f;
            // A ball within an enlarged one is placed where that one puts it.
            for (const Ball& outer : enclosing) {
                const Vec3f offset = (ball.center - outer.center) * (1.0f / outer.inverseFactor);
                if (Length(offset) > outer.innerRadius)
                    continue;
                ball.center = outer.sampleCenter + offset;
                scale = 1.0f / outer.inverseFactor;
                break;
            }
            ball.sampleCenter = ball.center + (side ? Mirrored(enlargement.shift) : enlargement.shift);
            ball.inverseFactor = 1.0f / enlargement.factor;
            ball.innerRadius = enlargement.radius * scale * enlargement.factor;
            ball.outerRadius = ball.innerRadius + enlargement.fade;
            balls.push_back(ball);
        }
    }
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
    const Vec3f turned{_cosine * q.x + _sine * q.z, q.y, _cosine * q.z - _sine * q.x};
    return shrink(_coarse, shrink(_fine, turned));
}

namespace {

constexpr float smallestValue = 1e-4f;

bool IsInside(const SampledBody& body, std::size_t corner)
{
    return body.values[corner] < 0.0f;
}

SampledBody Sample(const MeshRecipe& recipe)
{
    const SamplingSpace space(recipe);
    constexpr Vec3f low{-112.0f, -26.0f, -62.0f}, high{112.0f, 214.0f, 62.0f};
    SampledBody body;
    std::array<int, 3> half;
    for (int axis = 0; axis < 3; ++axis) {
        half[axis] = static_cast<int>(std::ceil((high[axis] - low[axis]) * 0.5f / recipe.step)) + 1;
        body.size[axis] = 2 * half[axis];
    }
    const Vec3f middle = (low + high) * 0.5f;
    const std::size_t count = static_cast<std::size_t>(body.size[0]) * body.size[1] * body.size[2];
    body.places.resize(count);
    body.values.resize(count);
    tbb::parallel_for(0, body.size[2], [&](int z) {
        for (int y = 0; y < body.size[1]; ++y) {
            base::ThrowIfCancelled();
            for (int x = 0; x < body.size[0]; ++x) {
                // Corners at half steps: without offset the middle plane runs through cells' middles.
                const Vec3f cell{x - half[0] + 0.5f + recipe.offset.x, y - half[1] + 0.5f + recipe.offset.y,
                                 z - half[2] + 0.5f + recipe.offset.z};
                const std::size_t corner = body.index(x, y, z);
                body.places[corner] = space.toBody(middle + cell * recipe.step);
                const float value = BodyDistance(body.places[corner]);
                body.values[corner] = std::abs(value) < smallestValue ? smallestValue : value;
            }
        }
    });
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
