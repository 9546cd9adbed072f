// Smoothing and pushing surfaces against what can be worked out by hand.
// SPDX-License-Identifier: MIT

#include "geometry/push.h"
#include "geometry/smoothing.h"
#include "geometry/transform.h"
#include "tests/geometry/shapes.h"

#include <gtest/gtest.h>

using geometry::PolygonMesh;
using geometry::Smoother;
using geometry::Vec3f;

namespace {

/// A flat grid of 2 x 2 quads of 1 cm; its middle, vertex 4, is 1 cm above it.
PolygonMesh Tent()
{
    PolygonMesh mesh = shapes::Grid(2, 2.0f);
    mesh.positions[4].z = 1.0f;
    return mesh;
}

std::vector<Vec3f> Turned(const std::vector<Vec3f>& positions)
{
    const Eigen::Quaterniond turn =
        geometry::EulerRotation({20.0, -50.0, 75.0}, geometry::RotationOrder::XYZ);
    std::vector<Vec3f> turned;
    for (const Vec3f p : positions)
        turned.push_back(geometry::FromEigen(turn * geometry::ToEigen(p) + Eigen::Vector3d(3, -2, 7)));
    return turned;
}

float LargestDistance(const std::vector<Vec3f>& a, const std::vector<Vec3f>& b)
{
    EXPECT_EQ(a.size(), b.size());
    float largest = 0.0f;
    for (std::size_t v = 0; v < a.size(); ++v)
        largest = std::max(largest, geometry::Length(a[v] - b[v]));
    return largest;
}

} // namespace

TEST(Smoothing, goes_the_weighted_part_of_the_way_to_the_neighbours_in_each_round)
{
    const PolygonMesh tent = Tent();
    ASSERT_EQ(tent.positions[4], (Vec3f{1, 1, 1}));
    const Smoother smoother(tent.topology);
    EXPECT_EQ(smoother.smooth(tent.positions, {0.25f, 1})[4], (Vec3f{1, 1, 0.75f}));
    EXPECT_EQ(smoother.smooth(tent.positions, {0.25f, 3})[4], (Vec3f{1, 1, 0.421875f}));
    EXPECT_EQ(smoother.smooth(tent.positions, {1.0f, 1})[4], (Vec3f{1, 1, 0}));
}

TEST(Smoothing, moves_nothing_without_weight_or_rounds)
{
    const PolygonMesh sphere = shapes::Sphere(3.0f, 5, 7);
    const Smoother smoother(sphere.topology);
    EXPECT_EQ(smoother.smooth(sphere.positions, {0.0f, 4}), sphere.positions);
    EXPECT_EQ(smoother.smooth(sphere.positions, {0.5f, 0}), sphere.positions);
}

TEST(Smoothing, keeps_a_border_on_its_own_line)
{
    const PolygonMesh tent = Tent();
    const std::vector<Vec3f> smooth = Smoother(tent.topology).smooth(tent.positions, {0.5f, 1});
    // The middle of each side lies between two corners; towards the raised middle it would rise.
    for (const std::size_t side : {1u, 3u, 5u, 7u})
        EXPECT_EQ(smooth[side], tent.positions[side]);
}

TEST(Smoothing, leaves_a_vertex_without_faces_where_it_is)
{
    const PolygonMesh mesh = shapes::LooseVertex();
    EXPECT_EQ(Smoother(mesh.topology).smooth(mesh.positions, {0.5f, 2}).back(), mesh.positions.back());
    EXPECT_EQ(Smoother(mesh.topology).smoothTowards(mesh.positions, mesh.positions, {0.5f, 2}).back(),
              mesh.positions.back());
}

TEST(Smoothing, shrinks_a_ball_but_not_towards_the_shape_of_a_ball)
{
    const PolygonMesh ball = shapes::Sphere(10.0f, 8, 12);
    const Smoother smoother(ball.topology);
    for (const Vec3f p : smoother.smooth(ball.positions, {0.5f, 5}))
        EXPECT_LT(geometry::Length(p), 9.5f);
    // Single precision at 10 cm, over ten rounds.
    EXPECT_LT(
        LargestDistance(smoother.smoothTowards(ball.positions, ball.positions, {0.5f, 10}), ball.positions),
        2e-5f);
}

TEST(Smoothing, towards_a_shape_leaves_the_shape_as_it_is_wherever_it_is_turned)
{
    for (const PolygonMesh& mesh : {Tent(), shapes::Sphere(10.0f, 8, 12), shapes::OpenCone(9)}) {
        const std::vector<Vec3f> turned = Turned(mesh.positions);
        const Smoother smoother(mesh.topology);
        EXPECT_LT(LargestDistance(smoother.smoothTowards(turned, mesh.positions, {0.5f, 4}), turned), 4e-5f);
        EXPECT_GT(LargestDistance(smoother.smooth(turned, {0.5f, 4}), turned), 0.1f);
    }
}

TEST(Smoothing, towards_a_shape_takes_out_what_the_shape_does_not_have)
{
    const PolygonMesh flat = shapes::Grid(2, 2.0f), tent = Tent();
    const std::vector<Vec3f> smooth =
        Smoother(tent.topology).smoothTowards(tent.positions, flat.positions, {0.5f, 2});
    EXPECT_NEAR(smooth[4].z, 0.25f, 1e-6f);
}

TEST(Push, moves_along_the_normals)
{
    const PolygonMesh cube = shapes::Cube(2.0f);
    const std::vector<Vec3f> pushed = geometry::PushAlongNormals(cube.view(), std::sqrt(3.0f));
    for (std::size_t v = 0; v < pushed.size(); ++v)
        EXPECT_LT(geometry::Length(pushed[v] - cube.positions[v] * 2.0f), 1e-6f);
    for (const Vec3f p : geometry::PushAlongNormals(shapes::Sphere(3.0f, 9, 12).view(), -1.0f))
        EXPECT_NEAR(geometry::Length(p), 2.0f, 2e-2f) << "the normals are those of the facets";
}

TEST(Push, goes_as_far_as_the_weight_says)
{
    const PolygonMesh grid = shapes::Grid(1, 1.0f);
    const std::vector<float> weights{0.0f, 0.25f, 1.0f, 0.5f};
    const std::vector<Vec3f> pushed = geometry::PushAlongNormals(grid.view(), 2.0f, weights);
    for (std::size_t v = 0; v < weights.size(); ++v)
        EXPECT_EQ(pushed[v], grid.positions[v] + (Vec3f{0, 0, 2.0f * weights[v]}));
}

TEST(Push, leaves_a_vertex_without_faces_where_it_is)
{
    const PolygonMesh mesh = shapes::LooseVertex();
    EXPECT_EQ(geometry::PushAlongNormals(mesh.view(), 5.0f).back(), mesh.positions.back());
}
