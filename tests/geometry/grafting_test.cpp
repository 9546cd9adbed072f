// Joining meshes along the vertices that a graft shares with what it is grafted onto.
// SPDX-License-Identifier: MIT

#include "geometry/errors.h"
#include "geometry/grafting.h"
#include "tests/geometry/shapes.h"
#include "tests/geometry/throws.h"

#include <gtest/gtest.h>

using geometry::CheckGraft;
using geometry::Graft;
using geometry::GraftedTopology;
using geometry::PolygonMesh;

namespace {

/// A grid of 2 x 2 quads; a patch of the same kind takes the place of its last one.
struct Patched {
    PolygonMesh grid = shapes::Labelled(shapes::Grid(2, 2.0f));
    PolygonMesh patch = shapes::Labelled(shapes::Grid(2, 1.0f));
    Graft graft{9, 4, {{0, 4}, {2, 5}, {6, 7}, {8, 8}}, {3}};

    GraftedTopology joined() const
    {
        return geometry::JoinGrafts({{grid.topology}, {patch.topology, &graft, 0}});
    }
};

std::vector<std::uint32_t> Face(const geometry::Topology& topology, std::size_t face)
{
    return {topology.face(face).begin(), topology.face(face).end()};
}

} // namespace

TEST(Grafting, joins_the_pairs_and_drops_the_hidden_faces)
{
    const Patched test;
    const GraftedTopology joined = test.joined();
    ASSERT_EQ(joined.topology->vertexCount, 9u + 5u);
    ASSERT_EQ(joined.topology->faceCount(), 3u + 4u);
    EXPECT_NO_THROW(geometry::Validate(*joined.topology));
    EXPECT_EQ(joined.facesOfFirst, (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_EQ(Face(*joined.topology, 1), Face(*test.grid.topology, 1));
    EXPECT_EQ(joined.vertices[1], (std::vector<std::uint32_t>{4, 9, 5, 10, 11, 12, 7, 13, 8}));
    EXPECT_EQ(joined.origins[4], (std::array<std::uint32_t, 2>{0, 4}));
    EXPECT_EQ(joined.origins[11], (std::array<std::uint32_t, 2>{1, 4}));
    EXPECT_EQ(joined.topology->groupNames, test.grid.topology->groupNames);
    EXPECT_EQ(joined.topology->faceGroups[1], 1u);
    EXPECT_EQ(joined.topology->faceGroups[3 + 1], 1u) << "the patch's second face";
}

TEST(Grafting, joins_a_graft_onto_a_graft)
{
    const Patched test;
    const PolygonMesh button = shapes::Grid(1, 0.5f);
    const Graft onPatch{9, 4, {{0, 0}, {1, 1}, {2, 3}, {3, 4}}, {0}};
    const GraftedTopology joined = geometry::JoinGrafts(
        {{test.grid.topology}, {test.patch.topology, &test.graft, 0}, {button.topology, &onPatch, 1}});
    EXPECT_EQ(joined.topology->vertexCount, 14u);
    EXPECT_EQ(joined.topology->faceCount(), 3u + 3u + 1u);
    EXPECT_EQ(joined.vertices[2], (std::vector<std::uint32_t>{4, 9, 10, 11}));
}

TEST(Grafting, tells_what_does_not_fit)
{
    const auto fails = [](auto change, const char* text) {
        Patched test;
        change(test.graft);
        EXPECT_THROW_MSG(CheckGraft(test.graft, *test.patch.topology, *test.grid.topology),
                         geometry::TopologyError, text);
    };
    const Patched good;
    EXPECT_NO_THROW(CheckGraft(good.graft, *good.patch.topology, *good.grid.topology));
    fails([](Graft& g) { g.vertexCount = 8; }, "the graft is for 8 vertices but the mesh has 9");
    fails([](Graft& g) { g.faceCount = 5; }, "the graft is for 5 faces but the mesh has 4");
    fails([](Graft& g) { g.vertexPairs[1][0] = 9; }, "the graft joins vertex 9 of its own but there are 9");
    fails([](Graft& g) { g.vertexPairs[1][1] = 9; },
          "the graft joins vertex 9 of the other mesh but there are 9");
    fails([](Graft& g) { g.vertexPairs[1][0] = 0; }, "the graft joins vertex 0 of its own twice");
    fails([](Graft& g) { g.vertexPairs[1][1] = 4; }, "the graft joins vertex 4 of the other mesh twice");
    fails([](Graft& g) { g.hiddenFaces[0] = 4; }, "the graft hides face 4 but there are 4");
}

TEST(Grafting, leaves_out_what_cannot_be_joined_or_hidden)
{
    Patched test;
    std::vector<std::array<std::uint32_t, 2>>& pairs = test.graft.vertexPairs;
    const auto good = pairs;
    pairs.insert(pairs.begin() + 1, {{9, 0}, {1, 9}, {0, 0}, {1, 4}});
    test.graft.hiddenFaces = {4, 3, 4000000000u};
    geometry::GraftLosses losses;
    const Graft usable =
        geometry::UsableGraft(test.graft, *test.patch.topology, *test.grid.topology, {}, losses);
    EXPECT_EQ(usable.vertexPairs, good);
    EXPECT_EQ(usable.hiddenFaces, (std::vector<std::uint32_t>{3}));
    EXPECT_EQ(losses.pairs, 4u);
    EXPECT_EQ(losses.hiddenFaces, 2u);
    EXPECT_NO_THROW(CheckGraft(usable, *test.patch.topology, *test.grid.topology));
}

TEST(Grafting, of_which_nothing_fits_or_for_another_mesh_cannot_be_used)
{
    const auto fails = [](auto change, const char* text) {
        Patched test;
        change(test.graft);
        geometry::GraftLosses losses;
        EXPECT_THROW_MSG(
            geometry::UsableGraft(test.graft, *test.patch.topology, *test.grid.topology, {}, losses),
            geometry::TopologyError, text);
    };
    fails([](Graft& g) { g.vertexCount = 8; }, "the graft is for 8 vertices but the mesh has 9");
    fails([](Graft& g) { g.faceCount = 5; }, "the graft is for 5 faces but the mesh has 4");
    fails(
        [](Graft& g) {
            g.vertexPairs = {{9, 0}, {0, 9}};
        },
        "the graft has 2 pairs of vertices, none of which can be joined");
}

TEST(Grafting, counts_the_faces_that_the_other_mesh_lacks)
{
    Patched test;
    test.graft.faceCount = 7; // as in the file, of which faces 0, 4 and 5 are not in the mesh
    test.graft.hiddenFaces = {0, 1, 4, 6, 7};
    geometry::GraftLosses losses;
    const Graft usable =
        geometry::UsableGraft(test.graft, *test.patch.topology, *test.grid.topology, {{0, 4, 5}}, losses);
    EXPECT_EQ(usable.hiddenFaces, (std::vector<std::uint32_t>{0, 3}));
    EXPECT_EQ(losses.hiddenFaces, 1u);
}

TEST(Grafting, takes_a_graft_that_does_not_say_what_it_is_for)
{
    Patched test;
    test.graft.vertexCount = test.graft.faceCount = 0;
    EXPECT_EQ(test.joined().topology->faceCount(), 7u);
}
