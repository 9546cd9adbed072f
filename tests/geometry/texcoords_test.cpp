// Texture coordinates of subdivided meshes.
// SPDX-License-Identifier: MIT

#include "geometry/errors.h"
#include "geometry/texcoords.h"
#include "shapes.h"
#include "throws.h"

using namespace geometry;

namespace {

/// One coordinate a vertex: its place in the grid's plane.
TexCoords WithoutSeams(const PolygonMesh& grid)
{
    TexCoords texCoords;
    for (const Vec3f p : grid.positions)
        texCoords.coordinates.push_back({p.x, p.y});
    texCoords.cornerIndices = grid.topology->cornerVertices;
    return texCoords;
}

/// Every face is an island: coordinates of its own for each corner.
TexCoords AllSeams(const PolygonMesh& grid)
{
    TexCoords texCoords;
    for (const std::uint32_t vertex : grid.topology->cornerVertices) {
        texCoords.cornerIndices.push_back(static_cast<std::uint32_t>(texCoords.coordinates.size()));
        texCoords.coordinates.push_back({grid.positions[vertex].x, grid.positions[vertex].y});
    }
    return texCoords;
}

/// How far apart the coordinate of any corner and its place in the plane are.
float Largest(const TexCoords& texCoords, const std::vector<Vec3f>& positions, const Topology& topology)
{
    float largest = 0.0f;
    for (std::size_t c = 0; c < topology.cornerCount(); ++c) {
        const TexCoords::Uv uv = texCoords.coordinates[texCoords.cornerIndices[c]];
        const Vec3f at = positions[topology.cornerVertices[c]];
        largest = std::max({largest, std::abs(uv.u - at.x), std::abs(uv.v - at.y)});
    }
    return largest;
}

} // namespace

TEST(RefineTexCoords, moves_them_with_the_surface)
{
    PolygonMesh grid = shapes::Grid(3, 1.0f);
    grid.positions[5] = grid.positions[5] + Vec3f{0.3f, -0.2f, 0.0f}; // an inner vertex
    for (const int level : {1, 3}) {
        const Subdivision subdivision(grid.topology, level, BoundaryRule::EdgeAndCorner);
        const TexCoords refined =
            RefineTexCoords(WithoutSeams(grid), *grid.topology, level, BoundaryRule::EdgeAndCorner, {});
        ASSERT_EQ(refined.cornerIndices.size(), subdivision.topology(level)->cornerCount());
        EXPECT_LE(
            Largest(refined, subdivision.refine(grid.positions, 0, level), *subdivision.topology(level)),
            1e-6f);
    }
}

TEST(RefineTexCoords, follows_the_creases_of_the_surface)
{
    PolygonMesh grid = shapes::Grid(3, 1.0f);
    grid.positions[5] = grid.positions[5] + Vec3f{0.3f, -0.2f, 0.0f};
    const std::vector<Crease> creases{{4, 5, 10.0f}, {5, 6, 10.0f}};
    const Subdivision sharp(grid.topology, 2, BoundaryRule::EdgeAndCorner, creases);
    const auto apart = [&](base::Span<const Crease> of) {
        return Largest(
            RefineTexCoords(WithoutSeams(grid), *grid.topology, 2, BoundaryRule::EdgeAndCorner, of),
            sharp.refine(grid.positions, 0, 2), *sharp.topology(2));
    };
    EXPECT_LE(apart(creases), 1e-6f);
    EXPECT_GE(apart({}), 1e-2f);
}

TEST(RefineTexCoords, keeps_islands_of_one_face_straight)
{
    const PolygonMesh grid = shapes::Grid(2, 1.0f);
    const TexCoords refined = RefineTexCoords(AllSeams(grid), *grid.topology, 1, BoundaryRule::EdgeOnly, {});
    EXPECT_EQ(refined.coordinates.size(), 4u * 9u);
    // On a flat grid that is the place in it, without the surface's rounding of its border.
    const Subdivision subdivision(grid.topology, 1, BoundaryRule::EdgeAndCorner);
    EXPECT_LE(Largest(refined, subdivision.refine(grid.positions, 0, 1), *subdivision.topology(1)), 1e-6f);
}

TEST(RefineTexCoords, refuses_indices_that_do_not_fit)
{
    const PolygonMesh grid = shapes::Grid(2, 1.0f);
    TexCoords texCoords = WithoutSeams(grid);
    texCoords.cornerIndices[3] = 9;
    EXPECT_THROW_MSG(RefineTexCoords(texCoords, *grid.topology, 1, BoundaryRule::EdgeOnly, {}), TopologyError,
                     "a corner names texture coordinate 9 but only 9 are defined");
    texCoords.cornerIndices.pop_back();
    EXPECT_THROW_MSG(RefineTexCoords(texCoords, *grid.topology, 1, BoundaryRule::EdgeOnly, {}), TopologyError,
                     "15 texture coordinates are given for 16 corners");
}
