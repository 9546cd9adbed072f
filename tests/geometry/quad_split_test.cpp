// Coarser levels of meshes that were subdivided.
// SPDX-License-Identifier: MIT

#include "geometry/quad_split.h"

#include "geometry/subdivision.h"
#include "shapes.h"

using namespace geometry;

namespace {

/// The same surface, its faces in another order.
Topology WithTwoFacesExchanged(Topology topology)
{
    for (std::size_t c = 0; c < 4; ++c)
        std::swap(topology.cornerVertices[c], topology.cornerVertices[topology.cornerCount() - 4 + c]);
    return topology;
}

} // namespace

TEST(QuadSplit, finds_the_level_before)
{
    for (const PolygonMesh& cage : {shapes::Cube(2.0f), shapes::Grid(3, 1.0f), shapes::Mixed()}) {
        const Subdivision subdivision(cage.topology, 3);
        for (int level = 2; level <= 3; ++level) {
            const std::optional<QuadSplit> split = QuadSplit::Find(*subdivision.topology(level));
            ASSERT_TRUE(split);
            // The same faces; the vertices of the level before come first and in order.
            EXPECT_EQ(split->coarse().vertexCount, subdivision.topology(level - 1)->vertexCount);
            EXPECT_EQ(split->coarse().cornerVertices, subdivision.topology(level - 1)->cornerVertices);
            EXPECT_EQ(split->coarse().faceOffsets, subdivision.topology(level - 1)->faceOffsets);
        }
    }
}

TEST(QuadSplit, finds_nothing_in_a_mesh_that_was_not_split)
{
    EXPECT_FALSE(QuadSplit::Find(*shapes::Cube(2.0f).topology));
    EXPECT_FALSE(QuadSplit::Find(*shapes::Grid(4, 1.0f).topology));
    EXPECT_FALSE(QuadSplit::Find(*shapes::Mixed().topology));
    EXPECT_FALSE(QuadSplit::Find(*shapes::LooseVertex().topology));
    EXPECT_FALSE(QuadSplit::Find(Topology()));
    EXPECT_FALSE(QuadSplit::Find(*Subdivision(shapes::Mixed().topology, 1).topology(1)));
    EXPECT_FALSE(
        QuadSplit::Find(WithTwoFacesExchanged(*Subdivision(shapes::Cube(2.0f).topology, 2).topology(2))));
}

TEST(QuadSplit, finds_nothing_where_the_four_quads_do_not_share_their_middles)
{
    const Topology split = *Subdivision(shapes::Grid(2, 1.0f).topology, 1).topology(1);
    ASSERT_TRUE(QuadSplit::Find(split));
    for (std::size_t corner = 0; corner < split.cornerCount(); ++corner) {
        const bool isCoarseCorner = corner % 16 % 5 == 0; // quad i of a group has it in its corner i
        if (isCoarseCorner)
            continue;
        Topology torn = split;
        torn.cornerVertices[corner] = torn.vertexCount++;
        EXPECT_FALSE(QuadSplit::Find(torn)) << corner;
    }
}

TEST(QuadSplit, spreads_linear_values_as_they_are_on_a_flat_mesh)
{
    PolygonMesh grid = shapes::Grid(5, 10.0f);
    const Subdivision subdivision(grid.topology, 1, BoundaryRule::EdgeAndCorner);
    const QuadSplit split = *QuadSplit::Find(*subdivision.topology(1));
    const std::vector<Vec3f> fine = split.spread(split.sample(subdivision.refine(grid.positions, 0, 1)));
    // Middles of edges and faces of the coarse grid.
    const std::vector<Vec3f> coarse = split.sample(fine);
    for (std::size_t f = 0; f < split.coarse().faceCount(); ++f) {
        const auto face = split.coarse().face(f);
        const auto quad = subdivision.topology(1)->face(4 * f);
        EXPECT_LE(Length(fine[quad[0]] - coarse[face[0]]), 0.0f);
        EXPECT_LE(Length(fine[quad[1]] - (coarse[face[0]] + coarse[face[1]]) * 0.5f), 1e-6f);
        EXPECT_LE(Length(fine[quad[2]] - (coarse[face[0]] + coarse[face[2]]) * 0.5f), 2e-6f);
        EXPECT_LE(Length(fine[quad[3]] - (coarse[face[0]] + coarse[face[3]]) * 0.5f), 1e-6f);
    }
}

TEST(QuadSplit, leaves_vertices_out_that_no_face_uses)
{
    Topology loose = *Subdivision(shapes::Cube(2.0f).topology, 1).topology(1);
    ++loose.vertexCount;
    const std::optional<QuadSplit> split = QuadSplit::Find(loose);
    ASSERT_TRUE(split);
    EXPECT_EQ(split->coarse().vertexCount, 8u);
    EXPECT_EQ(split->spread(std::vector<Vec3f>(8, Vec3f{1, 2, 3})).back(), Vec3f{});
}
