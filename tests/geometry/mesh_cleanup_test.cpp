// Merged and dropped vertices, and what is known of a mesh's edges.
// SPDX-License-Identifier: MIT

#include "geometry/mesh_cleanup.h"

#include "geometry/incidence.h"
#include "shapes.h"

#include <gtest/gtest.h>

#include <map>

using namespace geometry;

namespace {

std::vector<std::uint32_t> Corners(const PolygonMesh& mesh, std::size_t face)
{
    const base::Span<const std::uint32_t> corners = mesh.topology->face(face);
    return {corners.begin(), corners.end()};
}

PolygonMesh Welded(const PolygonMesh& mesh)
{
    return CleanUp(mesh.view(), {true, false});
}

} // namespace

TEST(CleanUp, changes_nothing_that_it_is_not_asked_for)
{
    const PolygonMesh loose = shapes::Joined(shapes::LooseVertex(), shapes::LooseVertex());
    const PolygonMesh same = CleanUp(loose.view(), {});
    EXPECT_EQ(same.positions, loose.positions);
    EXPECT_EQ(same.topology->cornerVertices, loose.topology->cornerVertices);
    EXPECT_EQ(same.topology->vertexCount, loose.vertexCount());
}

TEST(CleanUp, makes_one_of_vertices_at_the_same_place)
{
    const PolygonMesh halves = shapes::FromFaces(
        {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {{0, 1, 2}, {3, 4, 5}});
    const PolygonMesh whole = Welded(halves);
    EXPECT_EQ(whole.positions, (std::vector<Vec3f>{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}));
    EXPECT_EQ(Corners(whole, 0), (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_EQ(Corners(whole, 1), (std::vector<std::uint32_t>{1, 3, 2}));
}

TEST(CleanUp, drops_corners_and_faces_that_fall_together_and_keeps_the_labels_of_the_others)
{
    PolygonMesh mesh =
        shapes::FromFaces({{0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}}, {{0, 1, 4}, {0, 1, 2, 3}});
    auto topology = std::make_shared<Topology>(*mesh.topology);
    topology->groupNames = topology->surfaceNames = {"first", "second"};
    topology->faceGroups = {0, 1};
    topology->faceSurfaces = {1, 0};
    mesh.topology = topology;
    const PolygonMesh welded = Welded(mesh);
    ASSERT_EQ(welded.faceCount(), 1u);
    EXPECT_EQ(Corners(welded, 0), (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_EQ(welded.topology->faceGroups, std::vector<std::uint32_t>{1});
    EXPECT_EQ(welded.topology->faceSurfaces, std::vector<std::uint32_t>{0});
    EXPECT_EQ(welded.topology->groupNames, topology->groupNames);
}

TEST(CleanUp, drops_vertices_that_no_face_uses)
{
    const PolygonMesh loose = shapes::Joined(shapes::LooseVertex(), shapes::Triangle());
    const PolygonMesh clean = CleanUp(loose.view(), {false, true});
    EXPECT_EQ(clean.vertexCount(), loose.vertexCount() - 1);
    EXPECT_EQ(Corners(clean, 1), (std::vector<std::uint32_t>{3, 4, 5}));
}

TEST(BoundaryVertices, stand_on_edges_of_one_face)
{
    for (const PolygonMesh& mesh :
         {shapes::Cube(1), shapes::Grid(4, 1), shapes::OpenCone(7), shapes::Mixed(), shapes::LooseVertex(),
          shapes::TwoIslands(3, 1, 5),
          shapes::FromFaces({{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}, {-1, 0, 0}},
                            {{0, 1, 2}, {0, 1, 3}, {0, 1, 4}})}) {
        std::map<std::pair<std::uint32_t, std::uint32_t>, int> uses;
        for (std::size_t f = 0; f < mesh.faceCount(); ++f) {
            const auto face = mesh.topology->face(f);
            for (std::size_t c = 0; c < face.size(); ++c) {
                const std::uint32_t a = face[c], b = face[(c + 1) % face.size()];
                ++uses[{std::min(a, b), std::max(a, b)}];
            }
        }
        std::vector<bool> expected(mesh.vertexCount());
        for (const auto& [edge, count] : uses)
            if (count == 1)
                expected[edge.first] = expected[edge.second] = true;
        EXPECT_EQ(BoundaryVertices(*mesh.topology), expected);
    }
}

TEST(CountEdges, tells_borders_and_edges_of_too_many_faces)
{
    const auto expect = [](const PolygonMesh& mesh, std::size_t total, std::size_t boundary,
                           std::size_t nonManifold) {
        const EdgeCounts counts = CountEdges(*mesh.topology);
        EXPECT_EQ(counts.total, total);
        EXPECT_EQ(counts.boundary, boundary);
        EXPECT_EQ(counts.nonManifold, nonManifold);
        EXPECT_EQ(counts.isClosed(), total > 0 && boundary + nonManifold == 0);
    };
    expect(shapes::Cube(1), 12, 0, 0);
    expect(shapes::Grid(2, 1), 12, 8, 0);
    // Three pages of a book.
    expect(shapes::FromFaces({{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}, {-1, 0, 0}},
                             {{0, 1, 2}, {0, 1, 3}, {0, 1, 4}}),
           7, 6, 1);
    expect(PolygonMesh(), 0, 0, 0);
}
