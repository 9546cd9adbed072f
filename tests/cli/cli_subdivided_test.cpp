// Conversions at subdivided resolution.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include "geometry/obj.h"
#include "tests/base/limited_memory.h"

#include <sstream>

#include <sys/resource.h>

namespace {

using nlohmann::json;

using SubdividedConversion = ConversionTest;

/// Loads the target with the saved morph at a level and prints the box of what it looks like.
const char* const show =
    "var m = App.getContentMgr();\n"
    "m.openFile(m.getAbsolutePath('People/Genesis 9/Genesis 9.duf', true), true);\n"
    "var figure = Scene.getPrimarySelection(), shape = figure.getObject().getCurrentShape();\n"
    "shape.findProperty('lodlevel').setValue(1);\n"
    "shape.findProperty('SubDIALevel').setValue(2);\n"
    "figure.getObject().findModifier('Vera').getValueControl().setValue(1);\n"
    "var box = figure.getWSBoundingBox();\n"
    "print(box.min.x, box.min.y, box.min.z, box.max.x, box.max.y, box.max.z);\n";

} // namespace

TEST_F(SubdividedConversion, tells_the_level_and_is_dialed_again_in_another_run)
{
    const json told = report(saving(library(), {"--resolution", "subd", "--subd", "2", "--jobs", "full",
                                                "--export-obj", workspace.path("worn.obj")}));
    EXPECT_EQ(told.at("resolution"), "subd");
    EXPECT_EQ(told.at("subd_level"), 2);
    EXPECT_GT(told.at("created_morphs")[0].at("detail_vertices_moved").get<int>(), 0);
    const geometry::ObjContent worn = geometry::ReadObj(workspace.path("worn.obj"));
    EXPECT_GT(worn.mesh.positions.size(),
              10 * told.at("figures").at("target").at("vertices").get<std::size_t>());

    const ProgramResult seen =
        RunProgram({"script", workspace.write("show.js", show), "--content", library()});
    ExpectSuccess(seen);
    const geometry::Box3f box = geometry::BoundingBox(worn.mesh.positions);
    std::istringstream numbers(seen.out);
    for (const float expected : {box.min.x, box.min.y, box.min.z, box.max.x, box.max.y, box.max.z}) {
        float number = 0.0f;
        numbers >> number;
        EXPECT_NEAR(number, expected, 1e-4f) << seen.out;
    }
}

TEST_F(SubdividedConversion, without_a_level_takes_the_one_of_the_source_s_file)
{
    const json told = report({"--resolution", "subd", "--jobs", "full"});
    EXPECT_EQ(told.at("resolution"), "subd");
    EXPECT_EQ(told.at("subd_level"), 1);
    const json ofBase = report({"--jobs", "full"});
    EXPECT_EQ(ofBase.at("resolution"), "base");
    EXPECT_EQ(ofBase.at("subd_level"), nullptr);
}

TEST_F(SubdividedConversion, is_measured_on_the_subdivided_surfaces)
{
    // Source and target are blobs of coarse quads about one shape; subdivided, both lie nearer to it.
    const double subdivided = report({"--resolution", "subd", "--subd", "2", "--jobs", "full"})
                                  .at("surface_distance_mm")
                                  .at("mean");
    const double ofBase = report({"--jobs", "full"}).at("surface_distance_mm").at("mean");
    EXPECT_LT(subdivided, ofBase);
}

TEST_F(SubdividedConversion, names_levels_and_resolutions_that_do_not_fit)
{
    ExpectError(RunProgram(arguments({"--subd", "2"})), 2, "--subd needs --resolution subd.");
    for (const char* const level : {"0", "6", "-1", "two"})
        ExpectWrongUse(RunProgram(arguments({"--resolution", "subd", "--subd", level})), "--subd");
    ExpectWrongUse(RunProgram(arguments({"--resolution", "high"})), "high");
}

TEST_F(SubdividedConversion, is_refused_before_it_begins_where_memory_does_not_do)
{
    SKIP_WITHOUT_MEMORY_LIMITS();
    rlimit former{};
    ASSERT_EQ(getrlimit(RLIMIT_AS, &former), 0);
    rlimit limit = former;
    limit.rlim_cur = rlim_t{600} << 20; // which loading both figures does with
    ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
    const ProgramResult refused = convert({"--resolution", "subd", "--subd", "5", "--jobs", "full"});
    const ProgramResult smaller = convert({"--resolution", "subd", "--subd", "1", "--jobs", "full"});
    ASSERT_EQ(setrlimit(RLIMIT_AS, &former), 0);
    expectFailureWith(refused, 1, "A conversion at subdivision level 5 needs about 529 MiB of memory, and ");
    ExpectSuccess(smaller);
}
