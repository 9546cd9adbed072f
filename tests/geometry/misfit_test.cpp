// Meshes that do not lie close to each other, and why.
// SPDX-License-Identifier: MIT

#include "geometry/misfit.h"

#include "shapes.h"

using namespace geometry;

namespace {

/// As a body stands: 60 cm wide, 180 high, 30 deep, soles at the origin.
const Box3f body{{-30, 0, -15}, {30, 180, 15}};

Box3f Scaled(double by)
{
    const auto factor = static_cast<float>(by);
    return {body.min * factor, body.max * factor};
}

std::string Misfit(const PolygonMesh& source, const PolygonMesh& target)
{
    const SurfaceMap map = MatchSurfaces(source.view(), target.view());
    return IsMisfit(map.statistics())
               ? DescribeMisfit(map.statistics(), source.positions, target.positions, "the sphere")
               : std::string();
}

} // namespace

TEST(LikelyMisfit, names_the_units_that_the_sizes_speak_of)
{
    const struct {
        double scale;
        const char* text;
    } rows[] = {
        {100, "is 100 times larger than the source, as if it were in centimetres and the source in metres"},
        {0.01, "is 100 times smaller than the source, as if it were in metres and the source in centimetres"},
        {0.95 / 100,
         "is 105 times smaller than the source, as if it were in metres and the source in centimetres"},
        {10,
         "is 10 times larger than the source, as if it were in millimetres and the source in centimetres"},
        {1000,
         "is 1e+03 times larger than the source, as if it were in millimetres and the source in metres"},
        {1 / 2.54,
         "is 2.54 times smaller than the source, as if it were in inches and the source in centimetres"},
        {30.48, "is 30.5 times larger than the source, as if it were in centimetres and the source in feet"},
        {39.37, "is 39.4 times larger than the source, as if it were in inches and the source in metres"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(LikelyMisfit(body, Scaled(row.scale)), row.text);
    EXPECT_EQ(LikelyMisfit(body, Scaled(5)), "does not lie close to the source's surface");
}

TEST(LikelyMisfit, tells_lying_bodies_from_standing_ones)
{
    // In a file with Z up the soles are at z = 0, and the front looks along -Y.
    const Box3f lying{{-30, -15, 0}, {30, 15, 180}};
    EXPECT_EQ(LikelyMisfit(body, lying), "stands as if it had Z up and the source Y up");
    EXPECT_EQ(LikelyMisfit(lying, body), "stands as if it had Y up and the source Z up");
}

TEST(LikelyMisfit, tells_how_far_apart_the_two_are)
{
    EXPECT_EQ(LikelyMisfit(body, {{170, 0, -15}, {230, 180, 15}}),
              "lies 200 cm away from the source, from middle to middle");
}

TEST(Misfit, is_what_touches_nowhere_or_at_a_few_vertices_only)
{
    const PolygonMesh sphere = shapes::Sphere(90.0f, 40, 40);
    EXPECT_EQ(Misfit(sphere, shapes::Moved(shapes::Sphere(90.0f, 20, 30), {0, 0.5f, 0})), "");
    EXPECT_EQ(
        Misfit(sphere, shapes::Sphere(0.9f, 20, 20)),
        "only 0 of its 382 vertices have a place on the sphere; it is 100 times smaller than the source, "
        "as if it were in metres and the source in centimetres");
    EXPECT_EQ(
        Misfit(sphere, shapes::Moved(sphere, {500, 0, 0})),
        "only 0 of its 1562 vertices have a place on the sphere; it lies 500 cm away from the source, from "
        "middle to middle");
}

TEST(Misfit, is_none_for_a_part_that_lies_close_on_a_larger_thing)
{
    // A head's vertices all lie on the whole body, however many of the body's they leave alone.
    const PolygonMesh half = shapes::Grid(10, 20.0f), whole = shapes::Grid(40, 80.0f);
    EXPECT_EQ(Misfit(whole, half), "");
    EXPECT_EQ(Misfit(half, whole), "") << "a sixteenth of the vertices";
}
