// Matches of meshes that are asked for again and again.
// SPDX-License-Identifier: MIT

#include "geometry/kept_matches.h"

#include "shapes.h"

using namespace geometry;

TEST(KeptMatches, are_those_of_a_new_match)
{
    const PolygonMesh source = shapes::Sphere(10.0f, 12, 16), target = shapes::Sphere(10.2f, 9, 11);
    std::vector<Vec3f> values(source.vertexCount());
    for (std::size_t v = 0; v < values.size(); ++v)
        values[v] = {source.positions[v].y, 0.5f, source.positions[v].x};
    const auto kept = MatchOnce(source.view(), target.view());
    EXPECT_EQ(kept->transfer(values), MatchSurfaces(source.view(), target.view()).transfer(values));
}

TEST(KeptMatches, are_used_again_for_meshes_that_are_the_same)
{
    const PolygonMesh source = shapes::Sphere(10.0f, 12, 16), target = shapes::Sphere(10.3f, 9, 11);
    const auto first = MatchOnce(source.view(), target.view());
    PolygonMesh copy = source;
    copy.topology = std::make_shared<Topology>(*source.topology);
    EXPECT_EQ(MatchOnce(copy.view(), target.view()), first);
}

TEST(KeptMatches, are_not_used_for_meshes_that_differ_in_anything)
{
    const PolygonMesh source = shapes::Sphere(10.0f, 12, 16), target = shapes::Sphere(10.4f, 9, 11);
    const auto first = MatchOnce(source.view(), target.view());
    PolygonMesh moved = source;
    moved.positions.back().z = std::nextafter(moved.positions.back().z, 100.0f);
    EXPECT_NE(MatchOnce(moved.view(), target.view()), first);
    EXPECT_NE(MatchOnce(source.view(), moved.view()), first);
    PolygonMesh turned = target;
    auto topology = std::make_shared<Topology>(*target.topology);
    std::rotate(topology->cornerVertices.begin(), topology->cornerVertices.begin() + 1,
                topology->cornerVertices.begin() + static_cast<std::ptrdiff_t>(topology->faceOffsets[1]));
    turned.topology = topology;
    EXPECT_NE(MatchOnce(source.view(), turned.view()), first);
    EXPECT_EQ(MatchOnce(source.view(), target.view()), first);
}

TEST(KeptMatches, make_place_for_new_ones)
{
    const PolygonMesh target = shapes::Sphere(10.5f, 9, 11);
    std::vector<std::weak_ptr<const SurfaceMap>> maps;
    for (int i = 0; i < 10; ++i)
        maps.push_back(MatchOnce(shapes::Sphere(10.0f, 12, 16 + i).view(), target.view()));
    EXPECT_TRUE(maps.front().expired());
    EXPECT_FALSE(maps.back().expired());
}
