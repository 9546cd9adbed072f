// What pictures of figures show.
// SPDX-License-Identifier: MIT

#include "geometry/picture_box.h"

#include "shapes.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

using namespace geometry;

namespace {

std::vector<Vec3f> Figure()
{
    std::vector<Vec3f> positions;
    for (int i = 0; i <= 1000; ++i)
        positions.push_back({static_cast<float>(i % 7) - 3.0f, 0.17f * static_cast<float>(i),
                             0.5f * static_cast<float>(i % 3)});
    return positions;
}

void ExpectFigure(const Box3f& box)
{
    EXPECT_FLOAT_EQ(box.min.x, -3.0f);
    EXPECT_FLOAT_EQ(box.max.x, 3.0f);
    EXPECT_FLOAT_EQ(box.min.y, 0.0f);
    EXPECT_FLOAT_EQ(box.max.y, 170.0f);
    EXPECT_FLOAT_EQ(box.min.z, 0.0f);
    EXPECT_FLOAT_EQ(box.max.z, 1.0f);
}

/// Rings of one height each, joined by quads: a figure of revolution, closed nowhere.
PolygonMesh Turned(const std::vector<std::pair<float, float>>& heightsAndRadii)
{
    constexpr std::uint32_t around = 12;
    PolygonMesh mesh;
    Topology topology;
    for (const auto& [height, radius] : heightsAndRadii)
        for (std::uint32_t i = 0; i < around; ++i)
            mesh.positions.push_back({radius * std::cos(0.5236f * static_cast<float>(i)), height,
                                      radius * std::sin(0.5236f * static_cast<float>(i))});
    for (std::uint32_t ring = 0; ring + 1 < heightsAndRadii.size(); ++ring)
        for (std::uint32_t i = 0; i < around; ++i) {
            const std::uint32_t next = (i + 1) % around, first = ring * around;
            const std::uint32_t quad[] = {first + i, first + next, first + around + next, first + around + i};
            topology.addFace({quad, 4});
        }
    topology.vertexCount = static_cast<std::uint32_t>(mesh.positions.size());
    mesh.topology = std::make_shared<Topology>(std::move(topology));
    return mesh;
}

/// A head of so many cm on a neck of a few.
PolygonMesh Doll(float headHeight)
{
    const float chin = 100.0f - headHeight;
    return Turned({{0.0f, 15.0f},
                   {40.0f, 15.0f},
                   {chin - 6.0f, 18.0f},
                   {chin - 4.0f, 6.0f},
                   {chin - 2.0f, 5.0f},
                   {chin, 6.0f},
                   {chin + 0.5f * headHeight, 9.0f},
                   {100.0f, 2.0f}});
}

} // namespace

TEST(BoxToShow, leaves_vertices_out_that_no_face_has)
{
    PolygonMesh cube = shapes::Cube(2.0f);
    const Box3f box = BoxToShow(cube.view());
    auto topology = std::make_shared<Topology>(*cube.topology);
    ++topology->vertexCount;
    cube.topology = topology;
    cube.positions.push_back({1e6f, 0, 0});
    EXPECT_EQ(BoxToShow(cube.view()).min, box.min);
    EXPECT_EQ(BoxToShow(cube.view()).max, box.max);
}

TEST(HeadToShow, begins_in_the_neck_however_large_the_head_is)
{
    for (const float height : {12.0f, 16.0f, 24.0f, 30.0f}) {
        const float bottom = HeadToShow(Doll(height).view()).min.y;
        EXPECT_LE(bottom, 100.0f - height) << "the chin";
        EXPECT_GE(bottom, 100.0f - height - 4.0f) << "the shoulders";
    }
}

TEST(HeadToShow, is_that_of_the_group_where_there_is_one)
{
    PolygonMesh doll = Doll(20.0f);
    auto topology = std::make_shared<Topology>(*doll.topology);
    topology->groupNames = {"Body", "Head"};
    topology->faceGroups.assign(topology->faceCount(), 0);
    std::fill(topology->faceGroups.end() - 12, topology->faceGroups.end(), 1u);
    doll.topology = topology;
    EXPECT_FLOAT_EQ(HeadToShow(doll.view()).min.y, 90.0f);
    EXPECT_FLOAT_EQ(HeadToShow(doll.view()).max.y, 100.0f);
}

TEST(HeadToShow, is_the_uppermost_seventh_of_what_has_no_neck)
{
    const Box3f head =
        HeadToShow(Turned({{0.0f, 10.0f}, {50.0f, 10.0f}, {90.0f, 10.0f}, {100.0f, 10.0f}}).view());
    EXPECT_FLOAT_EQ(head.min.y, 90.0f);
    EXPECT_FLOAT_EQ(head.max.y, 100.0f);
}

TEST(BoxToShow, is_that_of_all_positions_of_a_sound_figure)
{
    std::size_t farOff = 0;
    ExpectFigure(BoxToShow(Figure(), &farOff));
    EXPECT_EQ(farOff, 0u);
    EXPECT_TRUE(BoxToShow(base::Span<const Vec3f>()).isEmpty());
}

TEST(BoxToShow, leaves_vertices_out_that_lie_far_off_and_counts_them)
{
    std::vector<Vec3f> positions = Figure();
    positions.push_back({1e7f, 3.0f, 0.0f});
    positions.push_back({0.0f, -2000.0f, 0.0f});
    positions.push_back({0.0f, NAN, 0.0f});
    std::size_t farOff = 0;
    ExpectFigure(BoxToShow(positions, &farOff));
    EXPECT_EQ(farOff, 3u);
}

TEST(BoxToShow, has_what_stands_out_a_little)
{
    std::vector<Vec3f> positions = Figure();
    positions.push_back({0.0f, 400.0f, 0.0f}); // a hat
    EXPECT_FLOAT_EQ(BoxToShow(positions).max.y, 400.0f);
}
