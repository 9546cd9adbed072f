// How crumpled a carried shape is.
// SPDX-License-Identifier: MIT

#include "geometry/crumple.h"

#include "geometry/errors.h"
#include "shapes.h"
#include "throws.h"

#include <cmath>

using namespace geometry;

namespace {

/// Every second column of a sheet lifted by so much.
PolygonMesh Pleated(int cells, float size, float lift)
{
    PolygonMesh sheet = shapes::Grid(cells, size);
    const float cell = size / static_cast<float>(cells);
    for (Vec3f& p : sheet.positions)
        if (static_cast<int>(p.x / cell + 0.5f) % 2 == 1)
            p.z += lift;
    return sheet;
}

} // namespace

TEST(Crumple, is_nothing_on_what_lies_as_the_source_does)
{
    const PolygonMesh source = shapes::Sphere(10.0f, 40, 40);
    const SurfaceMap map = MatchSurfaces(source.view(), source.view());
    EXPECT_LT(MeasureCrumple(map, source.view(), source.view()).meanDegrees, 1.0);
    EXPECT_EQ(MeasureCrumple(map, source.view(), source.view()).steepShare, 0.0);
}

TEST(Crumple, is_the_angle_of_the_pleats)
{
    const PolygonMesh source = shapes::Grid(20, 20.0f), flat = shapes::Grid(10, 20.0f);
    const SurfaceMap map = MatchSurfaces(source.view(), flat.view());
    // Cells of 2 cm, one edge 2 cm above the other: 45 degrees everywhere.
    const PolygonMesh pleated = Pleated(10, 20.0f, 2.0f);
    const Crumple crumple = MeasureCrumple(map, source.view(), pleated.view());
    EXPECT_NEAR(crumple.meanDegrees, 45.0, 1e-3);
    EXPECT_NEAR(crumple.p95Degrees, 45.0, 1e-3);
    EXPECT_NEAR(crumple.steepShare, 1.0, 1e-6);
}

TEST(Crumple, counts_by_area)
{
    const PolygonMesh source = shapes::Grid(20, 20.0f), flat = shapes::Grid(10, 20.0f);
    const SurfaceMap map = MatchSurfaces(source.view(), flat.view());
    PolygonMesh folded = flat;
    for (Vec3f& p : folded.positions)
        if (p.x < 1.0f) // one column of ten, turned up by 60 degrees: its area doubles
            p.z = 2.0f * std::tan(60.0f * 3.14159265f / 180.0f);
    const Crumple crumple = MeasureCrumple(map, source.view(), folded.view());
    EXPECT_NEAR(crumple.steepShare, 2.0 / 11.0, 1e-4);
    EXPECT_NEAR(crumple.meanDegrees, 60.0 * 2.0 / 11.0, 1e-2);
}

TEST(Crumple, refuses_meshes_of_others)
{
    const PolygonMesh source = shapes::Grid(4, 4.0f), other = shapes::Grid(5, 4.0f);
    const SurfaceMap map = MatchSurfaces(source.view(), source.view());
    EXPECT_THROW_MSG(MeasureCrumple(map, source.view(), other.view()), TopologyError,
                     "the map is for 25 vertices but the mesh has 36");
    EXPECT_THROW_MSG(MeasureCrumple(map, other.view(), source.view()), TopologyError,
                     "source mesh has 25 vertices but 36 values are given");
}

TEST(Crumple, knows_nothing_of_meshes_without_area)
{
    const PolygonMesh source = shapes::Grid(4, 4.0f);
    const SurfaceMap map = MatchSurfaces(source.view(), source.view());
    PolygonMesh point = source;
    for (Vec3f& p : point.positions)
        p = {};
    EXPECT_EQ(MeasureCrumple(map, source.view(), point.view()).meanDegrees, 0.0);
}
