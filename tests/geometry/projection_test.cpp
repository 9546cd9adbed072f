// Taking shapes along, against what can be worked out by hand.
// SPDX-License-Identifier: MIT

#include "geometry/errors.h"
#include "geometry/shape_projection.h"
#include "tests/geometry/shapes.h"
#include "tests/geometry/throws.h"

#include <gtest/gtest.h>

#include <cmath>

using geometry::PolygonMesh;
using geometry::ShapeProjection;
using geometry::Vec3f;

namespace {

template <class Field>
std::vector<Vec3f> Displacements(const PolygonMesh& mesh, Field field)
{
    std::vector<Vec3f> displacements;
    for (const Vec3f p : mesh.positions)
        displacements.push_back(field(p));
    return displacements;
}

template <class Field>
float LargestError(const PolygonMesh& mesh, const std::vector<Vec3f>& displacements, Field field)
{
    EXPECT_EQ(displacements.size(), mesh.vertexCount());
    float largest = 0.0f;
    for (std::size_t v = 0; v < displacements.size(); ++v)
        largest = std::max(largest, geometry::Length(displacements[v] - field(mesh.positions[v])));
    return largest;
}

Vec3f Growth(Vec3f p)
{
    return p * 0.1f;
}

Vec3f Bumps(Vec3f p)
{
    return p * (0.02f * std::sin(2.0f * p.x) * std::cos(1.5f * p.y));
}

/// 20 m of figure, so that a ball of 1 cm is small beside it; its surface around the ball is the sphere.
PolygonMesh SocketInLargeFigure(const PolygonMesh& socket)
{
    return shapes::Joined(socket, shapes::Moved(shapes::Cube(1.0f), {2000, 0, 0}));
}

} // namespace

TEST(ShapeProjection, moves_everything_by_the_shift_of_the_whole_surface)
{
    const PolygonMesh body = shapes::Sphere(10.0f, 12, 16);
    const PolygonMesh parts = shapes::Joined(shapes::Sphere(2.0f, 6, 8), shapes::Sphere(30.0f, 6, 8));
    const std::vector<Vec3f> shift(body.vertexCount(), Vec3f{1.25f, -3.0f, 0.5f});
    for (const Vec3f moved : ShapeProjection(body.view(), parts.view()).project(shift))
        EXPECT_EQ(moved, (Vec3f{1.25f, -3.0f, 0.5f}));
}

TEST(ShapeProjection, gives_a_vertex_on_one_of_the_surface_its_displacement)
{
    const PolygonMesh body = shapes::Sphere(10.0f, 12, 16);
    const std::vector<Vec3f> bumps = Displacements(body, Bumps);
    EXPECT_LT(LargestError(body, ShapeProjection(body.view(), body.view()).project(bumps), Bumps), 1e-6f);
}

TEST(ShapeProjection, lets_what_is_near_a_growing_surface_keep_its_distance)
{
    const PolygonMesh body = shapes::Sphere(10.0f, 24, 32);
    const std::vector<Vec3f> growth = Displacements(body, Growth);
    for (const float radius : {9.5f, 10.2f, 11.0f}) {
        const PolygonMesh part = shapes::Sphere(radius, 20, 20);
        // It grows as the surface under it does, which is a tenth of the distance off, and of the 0.05 cm by
        // which the faces cut the sphere short.
        const float bound = 0.1f * (std::abs(radius - 10.0f) + 0.05f);
        EXPECT_LT(LargestError(part, ShapeProjection(body.view(), part.view()).project(growth), Growth),
                  bound);
    }
}

TEST(ShapeProjection, scales_an_eyeball_about_the_origin_to_first_order)
{
    const Vec3f center{3.0f, 160.0f, 8.0f};
    const PolygonMesh body = SocketInLargeFigure(shapes::Moved(shapes::Sphere(1.6f, 16, 16), center));
    const PolygonMesh eye = shapes::Moved(shapes::Sphere(1.2f, 12, 12), center);
    const ShapeProjection projection(body.view(), eye.view());
    ASSERT_EQ(projection.wholePieceCount(), 1u);
    // The shift of the center is 16 cm; the growth of the ball itself is 0.12 cm and right within a tenth.
    EXPECT_LT(LargestError(eye, projection.project(Displacements(body, Growth)), Growth), 0.012f);
}

TEST(ShapeProjection, keeps_an_eyeball_smooth_in_a_socket_that_gets_rough)
{
    const PolygonMesh body = SocketInLargeFigure(shapes::Sphere(1.3f, 16, 16));
    const PolygonMesh eye = shapes::Sphere(1.2f, 12, 12);
    std::vector<Vec3f> rough(body.vertexCount());
    for (std::size_t v = 0; v < rough.size(); v += 2)
        rough[v] = body.positions[v] * 0.5f;
    const std::vector<Vec3f> moved = ShapeProjection(body.view(), eye.view()).project(rough);
    // What is linear in the place has opposite values about its mean at opposite places.
    const Vec3f middle = (moved.front() + moved.back()) * 0.5f;
    for (std::size_t ring = 0; ring < 11; ++ring)
        for (std::size_t s = 0; s < 12; ++s) {
            const Vec3f a = moved[1 + ring * 12 + s], b = moved[1 + (10 - ring) * 12 + (s + 6) % 12];
            EXPECT_LT(geometry::Length((a + b) * 0.5f - middle), 1e-5f);
        }
}

TEST(ShapeProjection, takes_what_lies_on_an_eyeball_along_with_it)
{
    const PolygonMesh body = SocketInLargeFigure(shapes::Sphere(1.6f, 16, 16));
    const PolygonMesh ball = shapes::Sphere(1.2f, 12, 12);
    const PolygonMesh cornea = shapes::Moved(shapes::Sphere(0.6f, 8, 8), {0, 0, 0.8f});
    EXPECT_EQ(ShapeProjection(body.view(), shapes::Joined(ball, cornea).view()).wholePieceCount(), 1u);
    EXPECT_EQ(ShapeProjection(body.view(), shapes::Moved(cornea, {0, 0, 2}).view()).wholePieceCount(), 1u);
    const PolygonMesh apart = shapes::Joined(ball, shapes::Moved(cornea, {0, 0, 2}));
    EXPECT_EQ(ShapeProjection(body.view(), apart.view()).wholePieceCount(), 2u);
}

TEST(ShapeProjection, lets_thin_pieces_follow_point_by_point)
{
    const PolygonMesh body = SocketInLargeFigure(shapes::Sphere(1.6f, 16, 16));
    const PolygonMesh lashes = shapes::Moved(shapes::Grid(4, 0.8f), {-0.4f, -0.4f, 1.6f});
    EXPECT_EQ(ShapeProjection(body.view(), lashes.view()).wholePieceCount(), 0u);
}

TEST(ShapeProjection, changes_little_from_one_place_to_the_next)
{
    const PolygonMesh body = shapes::Sphere(10.0f, 24, 32);
    PolygonMesh line = shapes::Grid(1, 1.0f);
    auto topology = std::make_shared<geometry::Topology>(*line.topology);
    line.positions.clear();
    // Through the middle of the ball, where the nearest part of the surface changes at once.
    for (int i = 0; i <= 2000; ++i)
        line.positions.push_back({0.01f * float(i) - 10.0f, 0.3f, 0.2f});
    topology->vertexCount = 2001;
    line.topology = topology;
    const std::vector<Vec3f> moved =
        ShapeProjection(body.view(), line.view()).project(Displacements(body, Growth));
    for (std::size_t i = 1; i < moved.size(); ++i)
        EXPECT_LT(geometry::Length(moved[i] - moved[i - 1]), 0.05f) << i;
}

TEST(ShapeProjection, needs_no_more_than_a_triangle_and_passes_over_what_no_face_uses)
{
    const PolygonMesh body = shapes::LooseVertex();
    std::vector<Vec3f> displacements(body.vertexCount(), Vec3f{0, 0, 2});
    const std::vector<bool> isUsed = [&] {
        std::vector<bool> used(body.vertexCount());
        for (const std::uint32_t v : body.topology->cornerVertices)
            used[v] = true;
        return used;
    }();
    for (std::size_t v = 0; v < isUsed.size(); ++v)
        if (!isUsed[v])
            displacements[v] = {100, 100, 100};
    for (const Vec3f moved : ShapeProjection(body.view(), body.view()).project(displacements))
        EXPECT_LT(geometry::Length(moved - Vec3f{0, 0, 2}), 1e-5f);
}

TEST(ShapeProjection, refuses_what_it_cannot_match)
{
    const PolygonMesh body = shapes::Grid(2, 1.0f);
    PolygonMesh faceless = body;
    auto topology = std::make_shared<geometry::Topology>();
    topology->vertexCount = body.topology->vertexCount;
    faceless.topology = topology;
    EXPECT_THROW(ShapeProjection(faceless.view(), body.view()), geometry::TopologyError);
    PolygonMesh endless = body;
    endless.positions[3].y = INFINITY;
    EXPECT_THROW(ShapeProjection(endless.view(), body.view()), geometry::TopologyError);
    EXPECT_THROW(ShapeProjection(body.view(), endless.view()), geometry::TopologyError);
    EXPECT_THROW(ShapeProjection(body.view(), body.view()).project(std::vector<Vec3f>(8)),
                 geometry::TopologyError);
}
