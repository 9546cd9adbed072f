// Catmull-Clark refinement and its inverse.
// SPDX-License-Identifier: MIT

#include "geometry/subdivision.h"

#include "geometry/errors.h"
#include "shapes.h"
#include "throws.h"

#include <random>

using namespace geometry;

TEST(Subdivision, makes_a_quad_of_every_corner)
{
    const PolygonMesh mixed = shapes::Labelled(shapes::Mixed());
    const Subdivision subdivision(mixed.topology, 2);
    EXPECT_EQ(subdivision.topology(1)->faceCount(), mixed.topology->cornerCount());
    EXPECT_EQ(subdivision.topology(2)->faceCount(), 4 * mixed.topology->cornerCount());
    for (int level = 1; level <= 2; ++level) {
        const Topology& topology = *subdivision.topology(level);
        Validate(topology);
        for (std::uint32_t f = 0; f < topology.faceCount(); ++f) {
            const std::uint32_t cage = subdivision.cageFace(level, f);
            EXPECT_EQ(topology.faceGroups[f], mixed.topology->faceGroups[cage]);
            EXPECT_EQ(topology.faceSurfaces[f], mixed.topology->faceSurfaces[cage]);
        }
    }
}

TEST(Subdivision, follows_the_rules_on_a_cube)
{
    const PolygonMesh cube = shapes::Cube(2.0f);
    const Subdivision subdivision(cube.topology, 1);
    ASSERT_EQ(subdivision.topology(1)->vertexCount, 26u);
    int corners = 0, edges = 0, faces = 0;
    for (const Vec3f p : subdivision.refine(cube.positions, 0, 1)) {
        // By hand: face points at distance 1; edge points (0, 3/4, 3/4); vertex points (5/9, 5/9, 5/9).
        const float length = Length(p);
        faces += std::abs(length - 1.0f) < 1e-6f;
        edges += std::abs(length - 0.75f * std::sqrt(2.0f)) < 1e-6f;
        corners += std::abs(length - 5.0f / 9.0f * std::sqrt(3.0f)) < 1e-6f;
    }
    EXPECT_EQ(faces, 6);
    EXPECT_EQ(edges, 12);
    EXPECT_EQ(corners, 8);
}

TEST(Subdivision, has_rows_that_sum_to_one_on_any_mesh_and_rule)
{
    const PolygonMesh meshes[] = {shapes::Cube(1), shapes::Mixed(), shapes::OpenCone(9),
                                  shapes::TwoIslands(2, 1, 3), shapes::LooseVertex()};
    for (const BoundaryRule rule : {BoundaryRule::None, BoundaryRule::EdgeOnly, BoundaryRule::EdgeAndCorner})
        for (const PolygonMesh& mesh : meshes) {
            const Subdivision subdivision(mesh.topology, 3, rule);
            for (const float value : subdivision.refine(std::vector<float>(mesh.vertexCount(), 1.0f), 0, 3))
                EXPECT_NEAR(value, 1.0f, 1e-6f);
        }
}

TEST(Subdivision, goes_level_by_level_as_it_goes_at_once)
{
    const PolygonMesh sphere = shapes::Sphere(10, 8, 9);
    const Subdivision subdivision(sphere.topology, 3);
    const std::vector<Vec3f> first = subdivision.refine(sphere.positions, 0, 1);
    EXPECT_EQ(subdivision.refine(first, 1, 3), subdivision.refine(sphere.positions, 0, 3));
    EXPECT_EQ(subdivision.refine(sphere.positions, 0, 0), sphere.positions);
}

TEST(Subdivision, keeps_corners_only_under_the_corner_rule)
{
    const PolygonMesh grid = shapes::Grid(2, 1.0f);
    const auto hasCorner = [&](BoundaryRule rule) {
        const Subdivision subdivision(grid.topology, 1, rule);
        const std::vector<Vec3f> refined = subdivision.refine(grid.positions, 0, 1);
        return std::find(refined.begin(), refined.end(), Vec3f{0, 0, 0}) != refined.end();
    };
    EXPECT_TRUE(hasCorner(BoundaryRule::EdgeAndCorner));
    EXPECT_FALSE(hasCorner(BoundaryRule::EdgeOnly));
}

TEST(FitCage, finds_the_cage_that_a_shape_was_refined_from)
{
    std::mt19937 random(2);
    std::normal_distribution<float> noise(0.0f, 0.3f);
    for (const int level : {1, 2, 3}) {
        const PolygonMesh sphere = shapes::Sphere(10, 10, 12);
        const Subdivision subdivision(sphere.topology, level);
        std::vector<Vec3f> cage = sphere.positions;
        for (Vec3f& p : cage)
            p += Vec3f{noise(random), noise(random), noise(random)};
        const std::vector<Vec3f> found =
            subdivision.fit(subdivision.refine(cage, 0, level), level, sphere.positions);
        for (std::size_t v = 0; v < cage.size(); ++v) // the restraint's share of a change of about 1 cm
            EXPECT_LE(Length(found[v] - cage[v]), 2e-4f);
    }
}

TEST(FitCage, leaves_a_fitting_cage_and_a_loose_vertex_alone)
{
    const PolygonMesh mesh = shapes::LooseVertex();
    const Subdivision subdivision(mesh.topology, 2);
    EXPECT_EQ(subdivision.fit(subdivision.refine(mesh.positions, 0, 2), 2, mesh.positions), mesh.positions);
}

TEST(Subdivision, refuses_what_does_not_fit)
{
    const PolygonMesh cube = shapes::Cube(1);
    const Subdivision subdivision(cube.topology, 1);
    EXPECT_THROW_MSG(subdivision.refine(std::vector<float>(5), 0, 1), TopologyError,
                     "subdivision level 0 has 8 vertices but 5 values are given");
    EXPECT_THROW_MSG(subdivision.fit(std::vector<Vec3f>(5), 1, cube.positions), TopologyError,
                     "subdivision level 1 has 26 vertices but 5 values are given");
    EXPECT_THROW_MSG(Subdivision(cube.topology, 14), TopologyError,
                     "subdivision level 14 of 6 faces is too large");
    EXPECT_THROW_MSG(Subdivision(shapes::FromFaces({{0, 0, 0}}, {}).topology, 1), TopologyError,
                     "a mesh without faces cannot be subdivided");
    auto broken = std::make_shared<Topology>(*cube.topology);
    broken->cornerVertices[3] = 99;
    EXPECT_THROW_MSG(Subdivision(broken, 1), TopologyError, "face 0 names vertex 99 but only 8 are defined");
}
