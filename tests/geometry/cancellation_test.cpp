// Long work on meshes ends when it is told to.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "geometry/morph_transfer.h"
#include "geometry/normals.h"
#include "geometry/obj.h"
#include "geometry/picture.h"
#include "geometry/shape_projection.h"
#include "geometry/smoothing.h"
#include "geometry/subdivision.h"
#include "geometry/surface_distance.h"
#include "tests/base/counted_asks.h"
#include "tests/base/scratch_folder.h"
#include "tests/geometry/shapes.h"

#include <functional>

#include <gtest/gtest.h>
#include <tbb/global_control.h>

namespace {

using geometry::PolygonMesh;

const PolygonMesh& Mesh()
{
    static const PolygonMesh mesh = shapes::Grid(150, 100.0f);
    return mesh;
}

void Draw()
{
    static const PolygonMesh cube = shapes::Cube(10.0f); // made ready in no time, so that the rows count
    geometry::PictureItem item;
    item.mesh = cube.view();
    geometry::PictureOptions options;
    options.width = 4;
    options.height = 256;
    geometry::Render({&item, 1}, options);
}

const std::string& ObjText()
{
    static const std::string text = [] {
        geometry::ObjPart part;
        part.mesh = Mesh().view();
        std::string one = geometry::FormatObj({&part, 1}), all;
        for (int i = 0; i < 4; ++i)
            all += one;
        return all;
    }();
    return text;
}

geometry::SmoothingOptions Rounds()
{
    geometry::SmoothingOptions options;
    options.iterations = 20;
    return options;
}

struct LongWork {
    const char* name;
    std::function<void()> run;
    int leastAsks; ///< of the loop itself, which a single ask before it would not reach
};

void PrintTo(const LongWork& work, std::ostream* out)
{
    *out << work.name;
}

class CancelledWork : public ::testing::TestWithParam<LongWork> {};

TEST_P(CancelledWork, asks_all_along_and_ends_at_once)
{
    const LongWork& work = GetParam();
    // Each thread may ask once more, which on a machine of a hundred processors would be all of the work.
    const tbb::global_control fewThreads(tbb::global_control::max_allowed_parallelism, 4);
    work.run(); // what is made once is not to count
    int all = 0;
    {
        const CountedAsks asks;
        work.run();
        all = asks.count();
    }
    EXPECT_GE(all, work.leastAsks);
    const CountedAsks asks(all / 2);
    EXPECT_THROW(work.run(), base::Cancelled);
    // Of each thread that was about to ask one more, and those of a ray tracer that is being made ready.
    EXPECT_LT(asks.count(), all / 2 + all / 4 + 8);
}

const LongWork works[] = {
    {"drawing", Draw, 256},
    {"subdividing", [] { geometry::Subdivision(Mesh().topology, 2); }, 120},
    {"refining",
     [] {
         static const geometry::Subdivision subdivision(Mesh().topology, 2);
         subdivision.refine(base::Span<const geometry::Vec3f>(Mesh().positions), 0, 2);
     },
     20},
    {"matching", [] { geometry::MatchSurfaces(Mesh().view(), Mesh().view()); }, 100},
    {"projecting", [] { geometry::ShapeProjection(Mesh().view(), Mesh().view()); }, 20000},
    {"smoothing", [] { geometry::Smoother(Mesh().topology).smooth(Mesh().positions, Rounds()); }, 20},
    {"measuring", [] { geometry::SurfaceDistances(Mesh().positions, Mesh().view()); }, 15},
    {"reading", [] { geometry::ParseObj(ObjText(), {}, "mesh"); }, 4},
};

INSTANTIATE_TEST_SUITE_P(OnMeshes, CancelledWork, ::testing::ValuesIn(works),
                         [](const auto& work) { return std::string(work.param.name); });

TEST(CancelledObjFile, is_not_written)
{
    const ScratchFolder folder;
    folder.write("mesh.obj", "old");
    const auto write = [&folder] {
        geometry::ObjPart part;
        part.mesh = Mesh().view();
        geometry::WriteObj(folder.path() / "mesh.obj", {&part, 1});
    };
    int all = 0;
    {
        const CountedAsks asks;
        geometry::ObjPart part;
        part.mesh = Mesh().view();
        geometry::WriteObj(folder.path() / "other.obj", {&part, 1});
        std::filesystem::remove(folder.path() / "other.obj");
        all = asks.count();
    }
    EXPECT_GT(all, 3);
    for (const int at : {1, all}) {
        const CountedAsks asks(at);
        EXPECT_THROW(write(), base::Cancelled);
        EXPECT_EQ(folder.contents(), (std::map<std::string, std::string>{{"mesh.obj", "old"}}));
    }
}

} // namespace
