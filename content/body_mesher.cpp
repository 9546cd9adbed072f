// All-quad meshes of the canonical body.
// SPDX-License-Identifier: MIT

#include "body_mesher.h"

#include "body_grid.h"
#include "body_landmarks.h"
#include "body_loops.h"
#include "body_relax.h"
#include "body_solid.h"

namespace content {

namespace {

constexpr std::uint32_t none = UINT32_MAX;

/// One vertex in each cell that the surface passes: the mean of where it cuts the cell's edges.
struct CellVertices {
    std::vector<std::uint32_t> ofCell; ///< indexed like the cell's lowest corner; none without a vertex
    std::vector<Vec3f> positions;
};

bool PlaceVertex(const SampledBody& body, int x, int y, int z, Vec3f& position)
{
    static const int edges[12][2] = {{0, 1}, {2, 3}, {4, 5}, {6, 7}, {0, 2}, {1, 3},
                                     {4, 6}, {5, 7}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
    std::size_t corners[8];
    for (int i = 0; i < 8; ++i)
        corners[i] = body.index(x + (i & 1), y + (i >> 1 & 1), z + (i >> 2));
    Vec3f sum;
    int count = 0;
    for (const auto& edge : edges) {
        const float a = body.values[corners[edge[0]]], b = body.values[corners[edge[1]]];
        if ((a < 0.0f) == (b < 0.0f))
            continue;
        sum += Mix(body.places[corners[edge[0]]], body.places[corners[edge[1]]], a / (a - b));
        ++count;
    }
    if (count == 0)
        return false;
    position = sum * (1.0f / static_cast<float>(count));
    return true;
}

CellVertices PlaceVertices(const SampledBody& body)
{
    CellVertices cells;
    cells.ofCell.assign(body.values.size(), none);
    Vec3f position;
    for (int z = 0; z + 1 < body.size[2]; ++z)
        for (int y = 0; y + 1 < body.size[1]; ++y)
            for (int x = 0; x + 1 < body.size[0]; ++x)
                if (PlaceVertex(body, x, y, z, position)) {
                    cells.ofCell[body.index(x, y, z)] = static_cast<std::uint32_t>(cells.positions.size());
                    cells.positions.push_back(position);
                }
    return cells;
}

/// One quad across each grid edge that changes sign, counter-clockwise seen from outside.
void AddQuads(const SampledBody& body, const CellVertices& cells, geometry::Topology& topology)
{
    const std::ptrdiff_t steps[3] = {1, body.size[0],
                                     static_cast<std::ptrdiff_t>(body.size[0]) * body.size[1]};
    for (int z = 1; z + 1 < body.size[2]; ++z)
        for (int y = 1; y + 1 < body.size[1]; ++y)
            for (int x = 1; x + 1 < body.size[0]; ++x) {
                const std::size_t corner = body.index(x, y, z);
                for (int axis = 0; axis < 3; ++axis) {
                    const bool inside = body.values[corner] < 0.0f;
                    if (inside == (body.values[corner + steps[axis]] < 0.0f))
                        continue;
                    const std::ptrdiff_t u = steps[(axis + 1) % 3], v = steps[(axis + 2) % 3];
                    std::uint32_t quad[4] = {cells.ofCell[corner - u - v], cells.ofCell[corner - v],
                                             cells.ofCell[corner], cells.ofCell[corner - u]};
                    if (!inside)
                        std::swap(quad[1], quad[3]);
                    topology.addFace({quad, 4});
                }
            }
}

/// The mirror image of each vertex of a symmetric grid.
std::vector<std::uint32_t> FindTwins(const SampledBody& body, const CellVertices& cells)
{
    std::vector<std::uint32_t> twin(cells.positions.size(), none);
    for (int z = 0; z + 1 < body.size[2]; ++z)
        for (int y = 0; y + 1 < body.size[1]; ++y)
            for (int x = 0; x + 1 < body.size[0]; ++x) {
                const std::uint32_t here = cells.ofCell[body.index(x, y, z)];
                if (here != none)
                    twin[here] = cells.ofCell[body.index(body.size[0] - 2 - x, y, z)];
            }
    return twin;
}

/// Rounding differs between the sides and relaxing in creases lets it grow: the right side takes the left
/// one's places.
void MirrorLeftToRight(Solid solid, const std::vector<std::uint32_t>& twin, std::vector<Vec3f>& positions)
{
    for (std::uint32_t v = 0; v < twin.size(); ++v) {
        if (twin[v] == none)
            continue;
        if (twin[v] == v) {
            positions[v] = Project(solid, {0.0f, positions[v].y, positions[v].z});
            positions[v].x = 0.0f;
        } else if (positions[v].x < positions[twin[v]].x) {
            positions[v] = Mirrored(positions[twin[v]]);
        }
    }
}

} // namespace

geometry::PolygonMesh MeshBody(const MeshRecipe& recipe)
{
    const SampledBody body = SampleBody(recipe);
    CellVertices cells = PlaceVertices(body);
    MirroredMesh closed;
    closed.topology.vertexCount = static_cast<std::uint32_t>(cells.positions.size());
    AddQuads(body, cells, closed.topology);
    geometry::Validate(closed.topology);
    if (recipe.offset.x == 0.0f && recipe.turnDegrees == 0.0f)
        closed.twin = FindTwins(body, cells);
    closed.positions =
        RelaxOn(ClosedBodyDistance, closed.topology, std::move(cells.positions), recipe.relaxRounds);
    MirrorLeftToRight(ClosedBodyDistance, closed.twin, closed.positions);
    MirroredMesh open = WithLoops(closed);
    MirrorLeftToRight(BodyDistance, open.twin, open.positions);
    geometry::PolygonMesh mesh;
    mesh.topology = std::make_shared<geometry::Topology>(std::move(open.topology));
    mesh.positions = std::move(open.positions);
    return mesh;
}

MeshRecipe OldGenerationRecipe()
{
    MeshRecipe recipe;
    recipe.step = 1.93f;
    recipe.levels = {
        {{{0.0f, 159.5f, 0.0f}, 2.1f, 13.0f, 20.0f, {0.0f, 14.0f, 0.0f}, false},
         {landmarks::HandPoint(9.5f, 0.5f, 0.0f), 3.2f, 10.2f, 24.0f, {21.0f, -18.0f, 0.0f}, true},
         {{11.2f, 2.0f, 6.0f}, 2.1f, 11.5f, 16.0f, {12.0f, -13.0f, 5.0f}, true}},
        {{{0.0f, 156.2f, 8.0f}, 1.7f, 7.0f, 12.0f, {0.0f, 0.0f, 7.0f}, false},
         {{7.4f, 157.6f, -1.9f}, 1.6f, 3.4f, 8.0f, {6.0f, 0.0f, 0.0f}, true}},
        {{{0.0f, 155.0f, 9.6f}, 1.6f, 2.2f, 8.0f, {0.0f, 0.0f, 3.0f}, false}}};
    recipe.relaxRounds = 12;
    return recipe;
}

MeshRecipe NewGenerationRecipe()
{
    MeshRecipe recipe;
    recipe.step = 1.45f;
    recipe.offset = {0.37f, 0.23f, 0.41f};
    recipe.turnDegrees = 14.0f;
    recipe.levels = {
        {{{0.0f, 159.5f, 0.0f}, 2.2f, 13.0f, 22.0f, {0.0f, 15.0f, 0.0f}, false},
         {landmarks::HandPoint(9.5f, 0.5f, 0.0f), 2.95f, 10.2f, 24.0f, {21.0f, -18.0f, 0.0f}, true},
         {{11.2f, 2.0f, 6.0f}, 1.75f, 11.0f, 15.0f, {10.0f, -11.0f, 4.0f}, true}},
        {{{0.0f, 156.2f, 8.0f}, 1.65f, 7.0f, 12.0f, {0.0f, 0.0f, 7.0f}, false},
         {{7.4f, 157.6f, -1.9f}, 1.6f, 3.4f, 8.0f, {6.0f, 0.0f, 0.0f}, true}},
        {{{0.0f, 155.0f, 9.6f}, 1.4f, 2.2f, 8.0f, {0.0f, 0.0f, 3.0f}, false}}};
    recipe.relaxRounds = 12;
    return recipe;
}

} // namespace content
