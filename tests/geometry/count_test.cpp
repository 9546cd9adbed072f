// Messages in which something is there once.
// SPDX-License-Identifier: MIT

#include "geometry/deltas.h"
#include "geometry/errors.h"
#include "geometry/grafting.h"
#include "geometry/mirroring.h"
#include "geometry/misfit.h"
#include "geometry/morph_transfer.h"
#include "geometry/polygon_mesh.h"
#include "geometry/rig_fit.h"
#include "geometry/skinning.h"
#include "geometry/subdivision.h"
#include "geometry/texcoords.h"
#include "tests/geometry/shapes.h"
#include "tests/geometry/throws.h"

#include <gtest/gtest.h>

namespace {

using geometry::SkinWeights;
using geometry::Topology;
using geometry::TopologyError;
using geometry::Vec3f;

const std::vector<Vec3f> one(1), two(2);

SkinWeights WeightsOf(std::size_t vertices)
{
    return geometry::MakeSkinWeights(vertices, std::vector<geometry::JointWeights>{{}});
}

Topology TriangleWith(void (*change)(Topology&))
{
    Topology topology = *shapes::Triangle().topology;
    change(topology);
    return topology;
}

} // namespace

TEST(OneOfSomething, is_told_as_one_of_a_mesh)
{
    const auto check = [](void (*change)(Topology&), const char* text) {
        EXPECT_THROW_MSG(geometry::Validate(TriangleWith(change)), TopologyError, text);
    };
    check([](Topology& t) { t.vertexCount = 1; }, "face 0 names vertex 1 but only 1 is defined");
    check(
        [](Topology& t) {
            t.faceGroups = {3};
            t.groupNames = {"All"};
        },
        "face 0 names group 3 but only 1 is defined");
    check(
        [](Topology& t) {
            t.faceGroups = {0, 0};
            t.groupNames = {"All"};
        },
        "mesh has 1 face but 2 group entries");
    check(
        [](Topology& t) {
            t.addFace(std::vector<std::uint32_t>{0, 1, 2});
            t.faceSurfaces = {0};
            t.surfaceNames = {"All"};
        },
        "mesh has 2 faces but 1 surface entry");
}

TEST(OneOfSomething, is_told_as_one_of_shapes)
{
    EXPECT_THROW_MSG(geometry::MakeDeltas(one, two, 0.0f), TopologyError,
                     "neutral shape has 1 vertex but morphed shape has 2");
    std::vector<Vec3f> moved(1);
    EXPECT_THROW_MSG(geometry::AddDeltas(moved, {{1}, {{1, 1, 1}}}, 1.0f), TopologyError,
                     "delta names vertex 1 but only 1 is defined");
    EXPECT_THROW_MSG(geometry::MirrorDeltas(moved, two, {}), TopologyError,
                     "neutral shape has 2 vertices but 1 delta is given");
    std::vector<Vec3f> mirrored(2);
    EXPECT_THROW_MSG(geometry::MirrorDeltas(mirrored, one, {}), TopologyError,
                     "neutral shape has 1 vertex but 2 deltas are given");
    EXPECT_EQ(geometry::DescribeMisfit({0, 1, 0.0f, 0.0f}, one, one, "Doll").substr(0, 42),
              "only 0 of its 1 vertex has a place on Doll");
}

TEST(OneOfSomething, is_told_as_one_of_weights)
{
    const std::vector<geometry::JointPose> poses(1);
    EXPECT_THROW_MSG(geometry::Skin(one, WeightsOf(2), poses, geometry::SkinMode::Linear), TopologyError,
                     "shape has 1 vertex but the weights are for 2");
    EXPECT_THROW_MSG(geometry::MakeSkinWeights(1, std::vector<geometry::JointWeights>{{{0}, {}}}),
                     TopologyError, "joint 0 has 1 vertex but 0 weights");
    EXPECT_THROW_MSG(geometry::MakeSkinWeights(1, std::vector<geometry::JointWeights>{{{}, {1.0f}}}),
                     TopologyError, "joint 0 has 0 vertices but 1 weight");
    EXPECT_THROW_MSG(geometry::MakeSkinWeights(1, std::vector<geometry::JointWeights>{{{1}, {1.0f}}}),
                     TopologyError, "joint 0 weighs vertex 1 but only 1 is defined");
    const geometry::PolygonMesh triangle = shapes::Triangle();
    EXPECT_THROW_MSG(geometry::FitRig(triangle.view(), {}, {}, one, {}), TopologyError,
                     "the mesh has 3 vertices but 1 displacement is given");
}

TEST(OneOfSomething, is_told_as_one_of_levels_and_maps)
{
    const geometry::PolygonMesh triangle = shapes::Triangle();
    const geometry::Subdivision subdivision(triangle.topology, 1);
    EXPECT_THROW_MSG(subdivision.refine(std::vector<float>(1), 0, 1), TopologyError,
                     "subdivision level 0 has 3 vertices but 1 value is given");
    EXPECT_THROW_MSG(geometry::Subdivision(triangle.topology, 16), TopologyError,
                     "subdivision level 16 of 1 face is too large");
    const geometry::SurfaceMap map = geometry::MatchSurfaces(triangle.view(), triangle.view());
    EXPECT_THROW_MSG(map.transfer(std::vector<float>(1)), TopologyError,
                     "source mesh has 3 vertices but 1 value is given");
    geometry::TexCoords texCoords{{{0, 0}}, {0}};
    const auto refine = [&] {
        geometry::RefineTexCoords(texCoords, *triangle.topology, 1, geometry::BoundaryRule::EdgeOnly, {});
    };
    EXPECT_THROW_MSG(refine(), TopologyError, "1 texture coordinate is given for 3 corners");
    texCoords.cornerIndices = {0, 0, 1};
    EXPECT_THROW_MSG(refine(), TopologyError, "a corner names texture coordinate 1 but only 1 is defined");
}

TEST(OneOfSomething, is_told_as_one_of_a_graft)
{
    const geometry::PolygonMesh triangle = shapes::Triangle(), grid = shapes::Grid(2, 2.0f);
    const auto check = [&](const geometry::Graft& graft, const char* text) {
        EXPECT_THROW_MSG(geometry::CheckGraft(graft, *triangle.topology, *grid.topology), TopologyError,
                         text);
    };
    check({1, 0, {{0, 0}}, {}}, "the graft is for 1 vertex but the mesh has 9");
    check({0, 1, {{0, 0}}, {}}, "the graft is for 1 face but the mesh has 4");
    geometry::GraftLosses losses;
    EXPECT_THROW_MSG(
        geometry::UsableGraft({0, 0, {{99, 99}}, {}}, *triangle.topology, *grid.topology, {}, losses),
        TopologyError, "the graft has 1 pair of vertices, none of which can be joined");
}
