// Catmull-Clark refinement and its inverse.
// SPDX-License-Identifier: MIT

#include "geometry/subdivision.h"

#include "catmark_refiner.h"
#include "geometry/errors.h"
#include "shapes.h"
#include "throws.h"

#include <cmath>
#include <random>

#include <opensubdiv/far/primvarRefiner.h>

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

TEST(Subdivision, keeps_the_vertices_of_the_cage_first_at_every_level)
{
    const PolygonMesh mesh = shapes::Mixed();
    const Subdivision subdivision(mesh.topology, 2);
    for (std::uint32_t v = 0; v < mesh.topology->vertexCount; ++v) {
        std::vector<float> values(mesh.topology->vertexCount, 0.0f);
        values[v] = 1.0f;
        for (int level = 1; level <= 2; ++level) {
            const std::vector<float> refined = subdivision.refine(values, 0, level);
            EXPECT_EQ(std::max_element(refined.begin(), refined.end()) - refined.begin(), v);
        }
    }
}

namespace {

std::vector<Crease> AllEdges(const Topology& topology, float sharpness)
{
    std::vector<Crease> creases;
    for (std::size_t f = 0; f < topology.faceCount(); ++f) {
        const auto face = topology.face(f);
        for (std::size_t c = 0; c < face.size(); ++c)
            creases.push_back({face[c], face[(c + 1) % face.size()], sharpness});
    }
    return creases;
}

/// Of a cube two wide about the origin whose edges are all creased: how far its corner at (1, 1, 1) comes at
/// a level.
float CornerAt(int level, float sharpness)
{
    const PolygonMesh cube = shapes::Cube(2.0f);
    const std::vector<Crease> creases = AllEdges(*cube.topology, sharpness);
    const Subdivision subdivision(cube.topology, level, BoundaryRule::EdgeOnly, creases);
    float farthest = 0.0f;
    for (const Vec3f p : subdivision.refine(cube.positions, 0, level))
        farthest = std::max(farthest, std::min({p.x, p.y, p.z}));
    return farthest;
}

} // namespace

TEST(Subdivision, keeps_a_cube_whose_edges_are_sharp)
{
    const PolygonMesh cube = shapes::Cube(2.0f);
    const Subdivision subdivision(cube.topology, 3, BoundaryRule::EdgeOnly, AllEdges(*cube.topology, 10.0f));
    for (const Vec3f p : subdivision.refine(cube.positions, 0, 3))
        EXPECT_NEAR(std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)}), 1.0f, 1e-6f);
    EXPECT_FLOAT_EQ(CornerAt(3, 10.0f), 1.0f);
}

TEST(Subdivision, lets_creases_soften_after_as_many_levels_as_they_are_sharp)
{
    EXPECT_FLOAT_EQ(CornerAt(1, 0.0f), 5.0f / 9.0f); // as without
    EXPECT_FLOAT_EQ(CornerAt(1, 1.0f), 1.0f);
    EXPECT_FLOAT_EQ(CornerAt(2, 2.0f), 1.0f);
    EXPECT_LT(CornerAt(2, 1.0f), 0.9f);
}

TEST(Subdivision, passes_over_creases_that_are_no_edges_and_refuses_those_without_vertices)
{
    const PolygonMesh cube = shapes::Cube(2.0f);
    const auto across = cube.topology->face(0);
    const std::vector<Crease> diagonal{{across[0], across[2], 10.0f}}, missing{{0, 8, 1.0f}};
    const Subdivision with(cube.topology, 2, BoundaryRule::EdgeOnly, diagonal), without(cube.topology, 2);
    EXPECT_EQ(with.refine(cube.positions, 0, 2), without.refine(cube.positions, 0, 2));
    EXPECT_THROW(Subdivision(cube.topology, 1, BoundaryRule::EdgeOnly, missing), TopologyError);
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

/// As OpenSubdiv refines values itself.
std::vector<float> RefinedByOpenSubdiv(const Topology& cage, int level, BoundaryRule rule,
                                       base::Span<const Crease> creases, std::vector<float> values)
{
    struct Value {
        float value;
        void Clear() { value = 0.0f; }
        void AddWithWeight(const Value& other, float weight) { value += other.value * weight; }
    };
    const auto refiner = MakeCatmarkRefiner(cage, level, rule, creases);
    const OpenSubdiv::Far::PrimvarRefiner interpolation(*refiner);
    for (int l = 1; l <= level; ++l) {
        std::vector<Value> from(values.size()),
            to(static_cast<std::size_t>(refiner->GetLevel(l).GetNumVertices()));
        for (std::size_t v = 0; v < values.size(); ++v)
            from[v].value = values[v];
        interpolation.Interpolate(l, from, to);
        values.resize(to.size());
        for (std::size_t v = 0; v < to.size(); ++v)
            values[v] = to[v].value;
    }
    return values;
}

TEST(Subdivision, gives_what_opensubdiv_gives_along_any_crease_and_rim)
{
    PolygonMesh threeWays = shapes::FromFaces(
        {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {-1, 0, 1}, {-1, 1, 1}, {-1, 0, -1}, {-1, 1, -1}},
        {{0, 2, 3, 1}, {0, 1, 5, 4}, {1, 0, 6, 7}});
    const PolygonMesh meshes[] = {shapes::Cube(1),
                                  shapes::Mixed(),
                                  shapes::OpenCone(40),
                                  shapes::Sphere(1, 7, 9),
                                  shapes::TwoIslands(3, 1, 3),
                                  threeWays};
    for (const PolygonMesh& mesh : meshes) {
        std::vector<float> values;
        for (std::size_t v = 0; v < mesh.vertexCount(); ++v)
            values.push_back(std::sin(3.0f * static_cast<float>(v)));
        for (const float sharpness : {0.0f, 0.4f, 1.0f, 2.7f, 10.0f}) {
            std::vector<Crease> creases = AllEdges(*mesh.topology, sharpness);
            creases.resize(creases.size() / 2);
            for (const BoundaryRule rule :
                 {BoundaryRule::None, BoundaryRule::EdgeOnly, BoundaryRule::EdgeAndCorner}) {
                const Subdivision subdivision(mesh.topology, 3, rule, creases);
                const std::vector<float> found = subdivision.refine(values, 0, 3),
                                         expected =
                                             RefinedByOpenSubdiv(*mesh.topology, 3, rule, creases, values);
                ASSERT_EQ(found.size(), expected.size());
                for (std::size_t v = 0; v < found.size(); ++v)
                    EXPECT_NEAR(found[v], expected[v], 1e-6f) << "vertex " << v << ", crease " << sharpness;
            }
        }
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

TEST(FitCage, gives_for_a_shape_what_another_subdivision_gives_for_it)
{
    // The second time from memory; a shape or a start that differs in one number is another question.
    const PolygonMesh mesh = shapes::Sphere(10.0f, 9, 12);
    const Subdivision subdivision(mesh.topology, 2);
    std::vector<Vec3f> fine = subdivision.refine(mesh.positions, 0, 2), start = mesh.positions;
    fine[100].x += 0.5f;
    const auto alone = [&] { return Subdivision(mesh.topology, 2).fit(fine, 2, start); };
    const std::vector<Vec3f> first = subdivision.fit(fine, 2, start);
    EXPECT_EQ(first, alone());
    EXPECT_EQ(subdivision.fit(fine, 2, start), first);
    fine[200].y -= 0.25f;
    const std::vector<Vec3f> second = subdivision.fit(fine, 2, start);
    EXPECT_NE(second, first);
    EXPECT_EQ(second, alone());
    start[7].z += 1.0f;
    EXPECT_EQ(subdivision.fit(fine, 2, start), alone());
    subdivision.forgetFits();
    EXPECT_EQ(subdivision.fit(fine, 2, start), alone());
    EXPECT_EQ(subdivision.fit(fine, 2, start, 0, 1e-2),
              Subdivision(mesh.topology, 2).fit(fine, 2, start, 0, 1e-2));
}

TEST(FitCage, leaves_a_misfit_that_no_change_of_the_cage_makes_smaller)
{
    const PolygonMesh mesh = shapes::Joined(shapes::Sphere(10.0f, 9, 12), shapes::Mixed());
    const Subdivision subdivision(mesh.topology, 3);
    std::vector<Vec3f> fine = subdivision.refine(mesh.positions, 0, 3);
    for (Vec3f& p : fine)
        p += {0.3f * std::sin(9 * p.y), 0.2f * std::cos(7 * p.z), 0.1f * std::sin(8 * p.x)};
    for (const int coarse : {0, 1, 2}) {
        const std::vector<Vec3f> start = subdivision.refine(mesh.positions, 0, coarse);
        const std::vector<Vec3f> found = subdivision.fit(fine, 3, start, coarse);
        const auto misfit = [&](const std::vector<Vec3f>& shape) {
            std::vector<Vec3f> refined = subdivision.refine(shape, coarse, 3);
            for (std::size_t v = 0; v < refined.size(); ++v)
                refined[v] -= fine[v];
            return refined;
        };
        // The derivative along a few waves, of about one hundred thousandth of what it is at the start.
        const std::vector<Vec3f> left = misfit(found), before = misfit(start);
        for (int wave = 1; wave <= 5; ++wave) {
            std::vector<Vec3f> change(start.size());
            for (std::size_t v = 0; v < change.size(); ++v)
                change[v].x = std::sin(float(wave) * start[v].y);
            const std::vector<Vec3f> refined = subdivision.refine(change, coarse, 3);
            double slope = 0.0, slopeBefore = 0.0;
            for (std::size_t v = 0; v < refined.size(); ++v) {
                slope += double(Dot(refined[v], left[v]));
                slopeBefore += double(Length(refined[v])) * double(Length(before[v]));
            }
            EXPECT_LE(std::abs(slope), 1e-4 * slopeBefore) << coarse << ' ' << wave;
        }
    }
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
