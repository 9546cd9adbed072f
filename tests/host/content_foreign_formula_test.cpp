// Formulas of others, and files that are broken.
// SPDX-License-Identifier: MIT

#include "dson/gzip.h"
#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "library/content_paths.h"
#include "tests/host/foreign_scene.h"

#include <chrono>

namespace {

namespace fs = std::filesystem;
using namespace doll;

} // namespace

TEST_F(ForeignScene, formulas_add_multiply_nest_and_bend)
{
    const auto output = [](const char* name, const std::string& operations, const char* stage = "sum") {
        return Control(name, std::string(R"(, "formulas": [{"output": "Doll:#)") + name +
                                 R"(?value", "stage": ")" + stage + R"(", "operations": [)" + operations +
                                 "]}]");
    };
    const std::string in = R"({"op": "push", "url": "Doll:#In?value"}, )";
    writeShape("In", Control("In"));
    writeShape("Constant", output("Constant", R"({"op": "push", "val": 0.25})"));
    writeShape(
        "Offset",
        output("Offset",
               in + R"({"op": "push", "val": 2}, {"op": "mult"}, {"op": "push", "val": 1}, {"op": "add"})"));
    writeShape("Inverse", output("Inverse", in + R"({"op": "inv"}, {"op": "neg"})"));
    writeShape("Quotient", output("Quotient", in + R"({"op": "push", "val": 4}, {"op": "div"})"));
    const std::string knots =
        R"({"op": "push", "val": [2, 0, 0, 0, 0]}, {"op": "push", "val": [0, 0, 0, 0, 0]},
        {"op": "push", "val": [1, 1, 0, 0, 0]}, {"op": "push", "val": 3}, )";
    writeShape("Bent", output("Bent", in + knots + R"({"op": "spline_tcb"})"));
    writeShape("Stepped", output("Stepped", in + knots + R"({"op": "spline_constant"})"));
    writeShape("Scaled", output("Scaled", in + knots + R"({"op": "spline_linear"})", "mult"));
    writeShape(
        "Nested",
        output("Nested",
               R"({"op": "push", "url": "Doll:#Offset?value"}, {"op": "push", "val": 10}, {"op": "mult"})"));
    writeShape(
        "Lost",
        output("Lost",
               R"({"op": "push", "url": "Doll:#Gone?value"}, {"op": "push", "val": 10}, {"op": "mult"})"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DialIn(*figure, "Scaled")->setDoubleRawValue(8.0);
    DialIn(*figure, "In")->setDoubleValue(0.5);
    EXPECT_EQ(ValueIn(*figure, "Constant"), 0.25);
    EXPECT_EQ(ValueIn(*figure, "Offset"), 2.0);
    EXPECT_EQ(ValueIn(*figure, "Nested"), 20.0);
    EXPECT_EQ(ValueIn(*figure, "Inverse"), -2.0);
    EXPECT_EQ(ValueIn(*figure, "Quotient"), 0.125);
    // Tangents 1 at the first knot and 0 at the second: half way, 1/2 + 1/8.
    EXPECT_NEAR(ValueIn(*figure, "Bent"), 0.625, 1e-6);
    EXPECT_EQ(ValueIn(*figure, "Stepped"), 0.0);
    EXPECT_EQ(ValueIn(*figure, "Scaled"), 4.0);
    DialIn(*figure, "In")->setDoubleValue(9.0);
    EXPECT_EQ(ValueIn(*figure, "Bent"), 0.0);
    EXPECT_TRUE(logged("1 formula names what is not installed and is left out, such as Doll:#Gone?value"));
}

TEST_F(ForeignScene, formulas_that_give_nothing_are_told_apart_from_those_that_name_nothing)
{
    writeShape("Circle", Control("Circle", Driven("Doll:#Circle?value", "Doll:#Circle?value", "1")));
    ASSERT_NE(openDoll(), nullptr);
    EXPECT_TRUE(
        logged("1 formula has no result or drives itself and is left out, such as Doll:#Circle?value"))
        << log().toStdString();
    EXPECT_FALSE(logged("what is not installed")) << log().toStdString();
}

TEST_F(ForeignScene, shapes_move_joints_and_joints_drive_shapes)
{
    std::string figure = Figure();
    figure.replace(figure.find(R"("label": "Hand",)"), 16,
                   R"("label": "Hand", "formulas": [{"output": "Doll:#Corrective?value",
        "operations": [{"op": "push", "url": "hand:#hand?rotation/z"}, {"op": "push", "val": 0.01}, {"op": "mult"}]}],)");
    write("data/Nord/Doll/Doll.dsf", File(figure));
    writeShape("Corrective", Morph("Corrective", 1, 2.0));
    std::string formulas;
    const char* const outputs[] = {"hand:/data/Nord/Doll/Doll.dsf#hand?center_point/y",
                                   "hand:#hand?end_point/y", "hand:?orientation/x", "hip:#hip?scale/x",
                                   "Doll:#Doll?scale/general"};
    for (const char* const output : outputs)
        formulas +=
            (formulas.empty() ? "" : ", ") + (R"({"output": ")" + std::string(output) + R"(", "operations":
            [{"op": "push", "url": "Doll:#Tall?value"}, {"op": "push", "val": 4}, {"op": "mult"}]})");
    writeShape("Tall", Morph("Tall", 6, 4.0, ", \"formulas\": [" + formulas + "]"));
    DzFigure* const loaded = openDoll();
    ASSERT_NE(loaded, nullptr);
    DzNode* const hand = BoneOf(*loaded, "hand");
    hand->getZRotControl()->setValue(50.0f);
    EXPECT_NEAR(ValueIn(*loaded, "Corrective"), 0.5, 1e-6);
    DialIn(*loaded, "Tall")->setDoubleValue(0.5);
    ExpectAt(hand->getOrigin(), 0, 22, 0);
    ExpectAt(hand->getEndPoint(), 0, 2, 0);
    EXPECT_EQ(hand->getOrientXControl()->getValue(), 2.0f);
    EXPECT_EQ(BoneOf(*loaded, "hip")->getXScaleControl()->getValue(), 3.0f);
    EXPECT_EQ(loaded->getScaleControl()->getValue(), 3.0f);
}

TEST_F(ForeignScene, a_file_that_cannot_be_read_is_one_sentence_and_the_scene_stays)
{
    ASSERT_NE(openDoll(), nullptr);
    const std::string packed = dson::Compress(Scene(Instance()));
    struct Case {
        std::string bytes;
        const char* message;
    };
    const Case cases[] = {
        {"", "Bad.duf: is empty"},
        {"ply\nformat ascii", "Bad.duf: line 1, column 1 is not valid JSON"},
        {"{\"file_version\": \"0.6.0.0\",\n\"scene\": {\"nodes\": [}}",
         "Bad.duf: line 2, column 21 is not valid JSON"},
        {"[1, 2]", "Bad.duf: is not a DSON file"},
        {"{\"name\": \"package\"}", "Bad.duf: is not a DSON file: it has no file_version"},
        {packed.substr(0, packed.size() / 2), "Bad.duf: the compressed data is cut off"},
        {packed.substr(0, 5), "Bad.duf: the compressed data is cut off"},
        {Scene(R"({"id": "x", "url": "/People/Bad.duf#x"})"), "Bad.duf: has no node x"},
        {Scene(R"({"id": "x", "url": "#x"})"), "Bad.duf: has no node x"},
        {Scene(R"({"id": "x", "url": "/data/Nord#x"})"), "Bad.duf: /data/Nord is in no content library"},
        {File(R"("scene": [])"), "Bad.duf: holds nothing to load into a scene"},
    };
    for (const Case& one : cases) {
        EXPECT_FALSE(load("People/Bad.duf", one.bytes)) << one.message;
        EXPECT_TRUE(logged(one.message)) << one.message << "\n" << log().toStdString();
        EXPECT_EQ(dzScene->getNumNodes(), 3) << one.message;
        EXPECT_NE(labelled("Doll"), nullptr);
    }
}

TEST_F(ForeignScene, a_broken_morph_file_costs_that_morph_alone)
{
    writeShape("Good", Morph("Good", 1, 1.0));
    write(std::string(shapes) + "Empty.dsf", "");
    write(std::string(shapes) + "Cut.dsf", dson::Compress(ModifierFile(Morph("Cut", 1, 1.0))).substr(0, 40));
    fs::create_directories(_library / shapes / "Folder.dsf");
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_NE(DialIn(*figure, "Good"), nullptr);
    EXPECT_EQ(timesLogged("Empty.dsf: is empty"), 1);
    EXPECT_EQ(timesLogged("Cut.dsf: the compressed data is cut off"), 1);
    EXPECT_EQ(timesLogged("Folder.dsf"), 0);
}

TEST_F(ForeignScene, files_that_name_each_other_are_read_once_each)
{
    write("data/Nord/Ring/A.dsf",
          File(R"("node_library": [{"id": "A", "type": "node", "parent": "/data/Nord/Ring/B.dsf#B"}],
        "scene": {"nodes": [{"id": "B-1", "url": "/data/Nord/Ring/B.dsf#B"}]})"));
    write("data/Nord/Ring/B.dsf",
          File(R"("node_library": [{"id": "B", "type": "node", "parent": "/data/Nord/Ring/A.dsf#A"}],
        "scene": {"nodes": [{"id": "A-1", "url": "/data/Nord/Ring/A.dsf#A"}]})"));
    ASSERT_TRUE(open(_library / "data/Nord/Ring/A.dsf"));
    EXPECT_EQ(dzScene->getNumNodes(), 1);
}

TEST_F(ForeignScene, a_file_that_appears_later_is_found_whatever_its_case)
{
    openhost::ContentPaths paths;
    paths.add(_library);
    const fs::path shapesFolder = write(std::string(shapes) + "First.dsf", "").parent_path();
    const std::string wanted = "/DATA/nord/doll/morphs/nord/shapes/SECOND.dsf";
    // Long unchanged, so that what was read of the folder may be kept.
    fs::last_write_time(shapesFolder, fs::file_time_type::clock::now() - std::chrono::hours(1));
    EXPECT_TRUE(paths.resolve(wanted).empty());
    EXPECT_TRUE(paths.resolve(wanted).empty());
    const fs::path second = write(std::string(shapes) + "Second.dsf", "");
    EXPECT_EQ(paths.resolve(wanted), second);
    fs::remove(second);
    EXPECT_TRUE(paths.resolve(wanted).empty());
    const fs::path other = write(std::string(shapes) + "seconD.dsf", "");
    EXPECT_EQ(paths.resolve(wanted), other);
}
