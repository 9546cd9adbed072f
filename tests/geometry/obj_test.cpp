// Reading and writing OBJ text.
// SPDX-License-Identifier: MIT

#include "geometry/obj.h"

#include "base/errors.h"
#include "shapes.h"
#include "throws.h"

#include <fstream>
#include <memory>
#include <random>

using namespace geometry;

namespace {

ObjContent Parse(const std::string& text, const ObjReadOptions& options = {})
{
    return ParseObj(text, options, "body.obj");
}

std::string Format(const PolygonMesh& mesh, const ObjWriteOptions& options = {})
{
    const ObjPart part{mesh.view()};
    return FormatObj({&part, 1}, options);
}

std::vector<std::uint32_t> Corners(const ObjContent& content)
{
    return content.mesh.topology->cornerVertices;
}

std::vector<std::string> Told(const ObjContent& content)
{
    std::vector<std::string> lines;
    for (const base::Diagnostic& diagnostic : content.diagnostics)
        lines.push_back(base::ToLine(diagnostic));
    return lines;
}

class TemporaryFolder {
public:
    TemporaryFolder()
    {
        path = std::filesystem::temp_directory_path() /
               ("geometry-obj-" + std::to_string(std::random_device()()) +
                std::to_string(std::random_device()()));
        std::filesystem::create_directories(path);
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }
    std::filesystem::path path;
};

} // namespace

TEST(ParseObj, reads_positions_and_faces)
{
    const ObjContent content = Parse("# a triangle\nv 1 2 3\nv -4.5 5e1 .25\nv 0 0 0\nf 1 2 3\n");
    ASSERT_EQ(content.mesh.vertexCount(), 3u);
    EXPECT_EQ(content.mesh.positions[1], (Vec3f{-4.5f, 50.0f, 0.25f}));
    EXPECT_EQ(Corners(content), (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_TRUE(content.mesh.topology->faceGroups.empty());
}

TEST(ParseObj, reads_every_kind_of_number)
{
    const ObjContent content = Parse("v +1 -0 1E-3\nv 123456789012345678901234567890 1e-400 00012.50\n");
    EXPECT_EQ(content.mesh.positions[0], (Vec3f{1, 0, 0.001f}));
    EXPECT_EQ(content.mesh.positions[1], (Vec3f{123456789012345678901234567890.0f, 0, 12.5f}));
}

TEST(ParseObj, takes_windows_line_ends_tabs_and_trailing_blanks)
{
    const ObjContent content = Parse("v\t1 2  3 \t\r\nv 0 0 0\r\nv 1 0 0\r\n  f 1 2 3 \r\n");
    EXPECT_EQ(content.mesh.positions[0], (Vec3f{1, 2, 3}));
    EXPECT_EQ(content.mesh.faceCount(), 1u);
}

TEST(ParseObj, ignores_a_fourth_coordinate_and_colours)
{
    const ObjContent content = Parse("v 1 2 3 1.0\nv 4 5 6 0.1 0.2 0.3\n");
    EXPECT_EQ(content.mesh.positions[1], (Vec3f{4, 5, 6}));
}

TEST(ParseObj, resolves_relative_indices_against_what_stands_before)
{
    const ObjContent content = Parse("v 0 0 0\nv 1 0 0\nv 2 0 0\nf -3 -2 -1\nv 3 0 0\nf -1 1 2\n");
    EXPECT_EQ(Corners(content), (std::vector<std::uint32_t>{0, 1, 2, 3, 0, 1}));
}

TEST(ParseObj, joins_continued_lines)
{
    const ObjContent content = Parse("v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 \\\n 2 \\\r\n 3\n");
    EXPECT_EQ(Corners(content), (std::vector<std::uint32_t>{0, 1, 2}));
}

TEST(ParseObj, needs_no_final_line_end)
{
    EXPECT_EQ(Parse("v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3").mesh.faceCount(), 1u);
}

TEST(ParseObj, takes_a_file_of_vertices_only_and_an_empty_one)
{
    EXPECT_EQ(Parse("v 1 2 3\nv 4 5 6\n").mesh.vertexCount(), 2u);
    EXPECT_EQ(Parse("").mesh.vertexCount(), 0u);
    EXPECT_EQ(Parse("").mesh.faceCount(), 0u);
}

TEST(ParseObj, keeps_texture_coordinates_by_corner)
{
    const ObjContent content = Parse("v 0 0 0\nv 1 0 0\nv 2 0 0\nvt 0 0\nvt 1 0.5\nf 1/2/9 2/1 3/-1\n");
    EXPECT_EQ(content.texCoords.cornerIndices, (std::vector<std::uint32_t>{1, 0, 1}));
    EXPECT_EQ(content.texCoords.coordinates[1].v, 0.5f);
}

TEST(ParseObj, drops_corner_texture_coordinates_when_one_corner_has_none)
{
    const ObjContent content = Parse("v 0 0 0\nv 1 0 0\nv 2 0 0\nvt 0 0\nf 1/1 2//4 3/1\n");
    EXPECT_TRUE(content.texCoords.cornerIndices.empty());
    EXPECT_EQ(content.texCoords.coordinates.size(), 1u);
}

TEST(ParseObj, leaves_out_faces_and_lines_that_are_none_and_says_so)
{
    const ObjContent content = Parse("v 0 0 0\nv 1 0 0\nv 2 0 0\nvt 0 0\nvt 0 1\ng a\nf\nf 1/2 -3/-2\n"
                                     "f 3/2 -2/1 1/-1\ng b\nl 1\nf 1 2\nl 1 2\n");
    EXPECT_EQ(Corners(content), (std::vector<std::uint32_t>{2, 1, 0}));
    EXPECT_EQ(content.texCoords.cornerIndices, (std::vector<std::uint32_t>{1, 0, 1}));
    EXPECT_EQ(content.mesh.topology->groupNames, (std::vector<std::string>{"a"}));
    EXPECT_EQ(content.lines, (std::vector<std::vector<std::uint32_t>>{{0, 1}}));
    EXPECT_EQ(Told(content),
              (std::vector<std::string>{
                  "body.obj: 3 faces have fewer than three corners and are left out, the first in line 7",
                  "body.obj: 1 line has fewer than two vertices and is left out, in line 11"}));
    EXPECT_TRUE(Parse("v 0 0 0\nf 1 1 1\n").diagnostics.empty());
}

TEST(ParseObj, reads_corners_with_slashes_and_nothing_behind)
{
    const ObjContent content =
        Parse("v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1// 2// 3//\nf 1/ 2/ 3/#end\nf 1//1 2//2 3//\n");
    EXPECT_EQ(Corners(content), (std::vector<std::uint32_t>{0, 1, 2, 0, 1, 2, 0, 1, 2}));
    EXPECT_TRUE(content.diagnostics.empty());
    EXPECT_EQ(Parse("v 0 0 0\nvt 0 1\nf 1/1/ 1/1/ 1/1/\n").texCoords.cornerIndices.size(), 3u);
}

TEST(ParseObj, takes_a_comment_right_behind_a_number_and_its_sign_in_names)
{
    const ObjContent content =
        Parse("v 0 0 0#first\nv 1e0 0 +1#\nv 2 0 0 # third\nvt 0.5#u\ng left#arm\nf 1 2 3#all\n");
    EXPECT_EQ(content.mesh.positions[1], (Vec3f{1, 0, 1}));
    EXPECT_EQ(Corners(content), (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_EQ(content.mesh.topology->groupNames, (std::vector<std::string>{"left#arm"}));
    EXPECT_THROW_MSG(Parse("v 0 #0 0\n"), base::FormatError,
                     "body.obj:1: vertex has fewer than three coordinates");
}

TEST(ParseObj, tells_of_texture_coordinates_that_it_leaves_out)
{
    const std::string vertices = "v 0 0 0\nv 1 0 0\nv 2 0 0\n";
    const ObjContent none = Parse(vertices + "f 1/1 2/-1 3/7\n");
    EXPECT_EQ(none.mesh.faceCount(), 1u);
    EXPECT_TRUE(none.texCoords.cornerIndices.empty());
    EXPECT_EQ(Told(none),
              (std::vector<std::string>{"body.obj: faces name texture coordinates, but none are defined"}));
    EXPECT_EQ(Told(Parse(vertices + "vt 0 0\nf 1/1 2 3/1\n")),
              (std::vector<std::string>{
                  "body.obj: some corners have no texture coordinates, so those of all are left out"}));
    ObjReadOptions options;
    options.readTexCoords = false;
    EXPECT_TRUE(Parse(vertices + "f 1/1 2/1 3/7\n", options).diagnostics.empty());
}

TEST(ParseObj, takes_lines_that_end_in_several_ways)
{
    const ObjContent content = Parse("v 0 0 0\rv 1 0 0\r\nv 2 0 0\nv 3 0 0\rf 1 2 3\r\nf 2 3 4\r");
    EXPECT_EQ(content.mesh.vertexCount(), 4u);
    EXPECT_EQ(content.mesh.faceCount(), 2u);
    EXPECT_TRUE(content.diagnostics.empty());
    EXPECT_THROW_MSG(Parse("v 0 0 0\rv 1 0 0\r\nv 2 0\n"), base::FormatError,
                     "body.obj:3: vertex has fewer than three coordinates");
}

TEST(ParseObj, tells_records_that_the_format_has_not)
{
    using namespace std::string_literals;
    const ObjContent content =
        Parse("vn 0 0 1\np 1\ncstype bezier\nv 0 0 0\n\xC2\xA0v 1 0 0\nv 1 0 0\nv 2 0 0\n"
              "f 1 2 3\n\0f 1 2 3\n"s);
    EXPECT_EQ(content.mesh.vertexCount(), 3u);
    EXPECT_EQ(content.mesh.faceCount(), 1u);
    ASSERT_EQ(content.diagnostics.size(), 1u);
    EXPECT_EQ(content.diagnostics[0].what,
              "2 records are of no kind that the format has and are left out, the first in line 5");
}

TEST(ParseObj, takes_lines_that_end_with_a_carriage_return_alone)
{
    const ObjContent content = Parse("# old\rv 0 0 0\rv 1 0 0\rv 2 0 0\rg a b\rf 1 2 \\\r3\r");
    EXPECT_EQ(Corners(content), (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_EQ(content.mesh.topology->groupNames, (std::vector<std::string>{"a b"}));
    EXPECT_THROW_MSG(Parse("v 0 0 0\rv 1 2\r"), base::FormatError,
                     "body.obj:2: vertex has fewer than three coordinates");
}

TEST(ParseObj, says_what_a_file_is_that_is_no_text_of_bytes)
{
    using namespace std::string_literals;
    const char* const wide = "body.obj: is text in UTF-16, and an OBJ file is read in ASCII or UTF-8 only";
    EXPECT_THROW_MSG(Parse("\xFF\xFEv\0 \0"
                           "1\0"s),
                     base::FormatError, wide);
    EXPECT_THROW_MSG(Parse("\xFE\xFF\0v\0 "s), base::FormatError, wide);
    EXPECT_THROW_MSG(Parse("\x1F\x8B\x08\0"s), base::FormatError,
                     "body.obj: is compressed with gzip; unpack it first");
    EXPECT_EQ(Parse("\xEF\xBB\xBFv 1 2 3\n").mesh.vertexCount(), 1u);
}

TEST(ParseObj, keeps_groups_surfaces_lines_and_libraries)
{
    const ObjContent content =
        Parse("mtllib a b.mtl\nv 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\ng left arm\nusemtl Skin\n"
              "f 1 2 3\nl 1 2 -1\n");
    const Topology& topology = *content.mesh.topology;
    EXPECT_EQ(topology.groupNames, (std::vector<std::string>{"default", "left arm"}));
    EXPECT_EQ(topology.faceGroups, (std::vector<std::uint32_t>{0, 1}));
    EXPECT_EQ(topology.surfaceNames, (std::vector<std::string>{"default", "Skin"}));
    EXPECT_EQ(content.lines, (std::vector<std::vector<std::uint32_t>>{{0, 1, 2}}));
    EXPECT_EQ(content.materialLibraries, (std::vector<std::string>{"a b.mtl"}));
}

TEST(ParseObj, leaves_out_what_the_options_leave_out)
{
    ObjReadOptions options;
    options.readFaces = options.readLines = options.readTexCoords = false;
    const ObjContent content = Parse("v 0 0 0\nvt nonsense\nf 7 8\nl 9\n", options);
    EXPECT_EQ(content.mesh.vertexCount(), 1u);
    EXPECT_EQ(content.mesh.faceCount(), 0u);
}

TEST(ParseObj, places_axes_and_scale)
{
    ObjReadOptions options;
    options.space = {{0, false}, {2, true}, {1, false}, 100.0};
    EXPECT_EQ(Parse("v 1 2 3\n", options).mesh.positions[0], (Vec3f{100, 300, -200}));
}

TEST(ParseObj, names_file_line_and_fault)
{
    EXPECT_THROW_MSG(Parse("v 1 2 3\nv 1 two 3\n"), base::FormatError, "body.obj:2: bad number \"two\"");
    EXPECT_THROW_MSG(Parse("v 1 2 nan\n"), base::FormatError, "body.obj:1: bad number \"nan\"");
    EXPECT_THROW_MSG(Parse("v 1 2 -inf\n"), base::FormatError, "body.obj:1: bad number \"-inf\"");
    EXPECT_THROW_MSG(Parse("v 1 2 1e999\n"), base::FormatError, "body.obj:1: bad number \"1e999\"");
    EXPECT_THROW_MSG(Parse("v 1 2 1e39\n"), base::FormatError, "body.obj:1: bad number \"1e39\"");
    EXPECT_THROW_MSG(Parse("vt 0 1e39\n"), base::FormatError, "body.obj:1: bad number \"1e39\"");
    EXPECT_THROW_MSG(Parse("v 1 2\n"), base::FormatError,
                     "body.obj:1: vertex has fewer than three coordinates");
    EXPECT_THROW_MSG(Parse("v 0 0 0\nf 1 0 1\n"), base::FormatError,
                     "body.obj:2: index 0 where indices start at 1");
    EXPECT_THROW_MSG(Parse("v 0 0 0\nf 1 1/x 1\n"), base::FormatError, "body.obj:2: bad index \"x\"");
    EXPECT_THROW_MSG(Parse("v 0 0 0\nf 1 1.5 1\n"), base::FormatError, "body.obj:2: bad index \"1.5\"");
    EXPECT_THROW_MSG(Parse("v 0 0 0\nf 1 1 99999999999\n"), base::FormatError,
                     "body.obj:2: index \"99999999999\" is too large");
    EXPECT_THROW_MSG(Parse("v 0 0 0\nf 1 1 1\nf 1 2 1\n"), base::FormatError,
                     "body.obj:3: face names vertex 2 but only 1 is defined");
    EXPECT_THROW_MSG(Parse("v 0 0 0\nf 1 -2 1\n"), base::FormatError,
                     "body.obj:2: face names a vertex before the first");
    EXPECT_THROW_MSG(Parse("v 0 0 0\nvt 0 0\nf 1/1 1/2 1/1\n"), base::FormatError,
                     "body.obj:3: face names texture coordinate 2 but only 1 is defined");
    EXPECT_THROW_MSG(Parse("v 0 0 0\nl 1 5\n"), base::FormatError,
                     "body.obj:2: line names vertex 5 but only 1 is defined");
    EXPECT_THROW_MSG(Parse("v 0 0 0\nf 1 1\nf 1 1 1\nl 1\nf 1 2\nf 1 1 3\n"), base::FormatError,
                     "body.obj:6: face names vertex 3 but only 1 is defined");
    EXPECT_THROW_MSG(Parse("v 0 0 0\nl 1\nl 1 1\nl 1 2\n"), base::FormatError,
                     "body.obj:4: line names vertex 2 but only 1 is defined");
}

TEST(ParseObj, gives_the_same_mesh_however_many_chunks_the_text_has)
{
    const PolygonMesh sphere = shapes::Labelled(shapes::Sphere(80.0f, 200, 200));
    const std::string text = Format(sphere, {}); // about 3 MB, several chunks
    ASSERT_GT(text.size(), std::size_t{2} << 20);
    const ObjContent content = Parse(text);
    EXPECT_EQ(content.mesh.topology->cornerVertices, sphere.topology->cornerVertices);
    EXPECT_EQ(content.mesh.topology->faceOffsets, sphere.topology->faceOffsets);
    EXPECT_EQ(content.mesh.topology->faceGroups, sphere.topology->faceGroups);
    EXPECT_EQ(content.mesh.topology->faceSurfaces, sphere.topology->faceSurfaces);
    // Behind the first chunk, so the line is counted across chunks.
    const auto lines = std::count(text.begin(), text.end(), '\n');
    EXPECT_THROW_MSG(Parse(text + "f 1 x 2\n"), base::FormatError,
                     "body.obj:" + std::to_string(lines + 1) + ": bad index \"x\"");
    const std::vector<std::uint32_t> corners = Corners(Parse(text + "f 1 -1\nf 3 2 1\n"));
    EXPECT_EQ(std::vector<std::uint32_t>(corners.end() - 3, corners.end()),
              (std::vector<std::uint32_t>{2, 1, 0}))
        << "what came relative in a face that is left out";
    EXPECT_EQ(Told(Parse("f 1 2\n" + text + "f 1 2\n")),
              (std::vector<std::string>{
                  "body.obj: 2 faces have fewer than three corners and are left out, the first in line 1"}));
    EXPECT_EQ(
        Told(Parse(text + "f 1 2\n")),
        (std::vector<std::string>{"body.obj: 1 face has fewer than three corners and is left out, in line " +
                                  std::to_string(lines + 1)}));
}

TEST(ParseObj, answers_every_cut_of_a_good_text_with_a_mesh_or_a_format_error)
{
    const std::string text =
        "mtllib m\nv 1.5 -2e1 3\nv 0 0 0\nv 1 0 0\nvt 0 1\n# remark \\\ng a b\nusemtl s\n"
        "f 1/1/1 2/1/1 \\\n 3/-1/1\nl 1 2\n";
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const std::unique_ptr<char[]> exact(new char[size]); // one byte too far is seen by the sanitizer
        std::copy_n(text.begin(), size, exact.get());
        try {
            EXPECT_LE(ParseObj({exact.get(), size}, {}, "cut").mesh.faceCount(), 1u);
        } catch (const base::FormatError&) {
        }
    }
}

TEST(ParseObj, answers_random_damage_with_a_mesh_or_a_format_error)
{
    const std::string good = Format(shapes::Labelled(shapes::Mixed()));
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::string text = good;
        for (int hit = 0; hit < 3; ++hit)
            text[random() % text.size()] = "\\\n\r -/.#019evfgl\0\xff"[random() % 18];
        const std::unique_ptr<char[]> exact(new char[text.size()]);
        std::copy(text.begin(), text.end(), exact.get());
        try {
            Validate(*ParseObj({exact.get(), text.size()}, {}, "damaged").mesh.topology);
        } catch (const base::FormatError&) {
        }
    }
}

TEST(FormatObj, writes_the_decimals_asked_for)
{
    const PolygonMesh mesh = shapes::FromFaces({{1.5f, -0.25f, -1e-9f}}, {});
    ObjWriteOptions options;
    options.decimals = 3;
    EXPECT_EQ(Format(mesh, options), "v 1.500 -0.250 0.000\n");
    options.decimals = 0;
    EXPECT_EQ(Format(shapes::FromFaces({{2.0f, -7.0f, 123456.0f}}, {}), options), "v 2 -7 123456\n");
    options.decimals = 12;
    EXPECT_EQ(Format(shapes::FromFaces({{0.1f, 0, 1e9f}}, {}), options),
              "v 0.100000001490 0.000000000000 1000000000.000000000000\n");
}

TEST(FormatObj, rounds_as_printf_does)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> coordinate(-300.0f, 300.0f);
    ObjWriteOptions options;
    for (int i = 0; i < 2000; ++i) {
        const float x = coordinate(random);
        options.decimals = i % 10;
        char expected[128];
        std::snprintf(expected, sizeof expected, "v %.*f %.*f %.*f\n", options.decimals, double(x),
                      options.decimals, double(x), options.decimals, double(x));
        std::string text = expected;
        if (std::strtod(expected + 2, nullptr) == 0.0) // no minus before zero
            text.erase(std::remove(text.begin(), text.end(), '-'), text.end());
        EXPECT_EQ(Format(shapes::FromFaces({{x, x, x}}, {}), options), text);
    }
}

TEST(FormatObj, numbers_on_over_several_parts)
{
    const PolygonMesh triangle = shapes::Triangle();
    const ObjPart parts[] = {{triangle.view(), nullptr, "a"}, {triangle.view(), nullptr, "b"}};
    ObjWriteOptions options;
    options.writeObjects = true;
    options.decimals = 0;
    options.grouping = ObjGrouping::Single;
    EXPECT_EQ(FormatObj({parts, 2}, options), "o a\nv 0 0 0\nv 1 0 0\nv 0 1 0\ng a\nf 1 2 3\n"
                                              "o b\nv 0 0 0\nv 1 0 0\nv 0 1 0\ng b\nf 4 5 6\n");
}

TEST(FormatObj, splits_only_faces_of_more_than_four_corners_when_asked_to)
{
    ObjWriteOptions options;
    options.triangulate = true;
    const ObjContent content = Parse(Format(shapes::Mixed(), options));
    EXPECT_EQ(Corners(content), (std::vector<std::uint32_t>{0, 1, 2, 3, 1, 4, 2, 3, 2, 7, 3, 7, 6, 3, 6, 5}));
}

TEST(FormatObj, writes_texture_coordinates_and_normals)
{
    const PolygonMesh triangle = shapes::Triangle();
    const TexCoords uvs{{{0, 0}, {1, 0}}, {0, 1, 1}};
    const std::vector<Vec3f> normals(3, Vec3f{0, 0, 1});
    const ObjPart part{triangle.view(), &uvs, "", normals};
    ObjWriteOptions options;
    options.decimals = 0;
    options.writeNormals = true;
    EXPECT_EQ(FormatObj({&part, 1}, options),
              "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvn 0 0 1\nvn 0 0 1\n"
              "vn 0 0 1\nf 1/1/1 2/2/2 3/2/3\n");
}

TEST(FormatObj, ends_the_line_of_a_name_that_ends_with_a_backslash)
{
    const PolygonMesh mesh = shapes::Triangle();
    ObjPart part;
    part.mesh = mesh.view();
    part.name = "left\\";
    ObjWriteOptions options;
    options.grouping = ObjGrouping::Single;
    const ObjContent again = ParseObj(FormatObj({&part, 1}, options), {}, "text");
    EXPECT_EQ(again.mesh.faceCount(), 1u);
    EXPECT_EQ(again.mesh.topology->groupNames, std::vector<std::string>{"left\\"});
}

TEST(FormatObj, keeps_a_name_with_a_line_break_on_one_line)
{
    const PolygonMesh mesh = shapes::Cube(2.0f);
    ObjPart part;
    part.mesh = mesh.view();
    part.name = "two\nv 1 2 3";
    ObjWriteOptions options;
    options.writeObjects = true;
    const std::string text = FormatObj({&part, 1}, options);
    EXPECT_NE(text.find("o two v 1 2 3\n"), std::string::npos);
    EXPECT_EQ(ParseObj(text, {}, "text").mesh.vertexCount(), mesh.vertexCount());
}

TEST(ObjRoundTrip, keeps_every_vertex_face_group_and_surface)
{
    for (unsigned seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::uniform_real_distribution<float> coordinate(-200.0f, 200.0f);
        PolygonMesh mesh = shapes::Labelled(shapes::Mixed());
        for (Vec3f& p : mesh.positions)
            p = {coordinate(random), coordinate(random), coordinate(random)};
        ObjWriteOptions write;
        ObjReadOptions read;
        write.decimals = 8;
        write.space = read.space = {{2, true}, {0, false}, {1, true}, seed % 2 ? 1.0 : 100.0};
        const ObjContent content = Parse(Format(mesh, write), read);
        EXPECT_EQ(Corners(content), mesh.topology->cornerVertices);
        EXPECT_EQ(content.mesh.topology->faceGroups, mesh.topology->faceGroups);
        EXPECT_EQ(content.mesh.topology->groupNames, mesh.topology->groupNames);
        EXPECT_EQ(content.mesh.topology->surfaceNames, mesh.topology->surfaceNames);
        // Half of the eighth decimal of the file's unit, and one float step at 2 m.
        for (std::size_t v = 0; v < mesh.vertexCount(); ++v)
            EXPECT_LE(Length(content.mesh.positions[v] - mesh.positions[v]), 5e-9f * 100.0f * 2.0f + 1.6e-5f);
    }
}

TEST(WriteObj, appears_whole_and_leaves_nothing_else)
{
    const TemporaryFolder folder;
    const PolygonMesh cube = shapes::Cube(2.0f);
    const ObjPart part{cube.view()};
    WriteObj(folder.path / "cube.obj", {&part, 1});
    EXPECT_EQ(ReadObj(folder.path / "cube.obj").mesh.positions, cube.positions);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
}

TEST(WriteObj, leaves_nothing_when_the_target_cannot_be_replaced)
{
    const TemporaryFolder folder;
    const std::filesystem::path target = folder.path / "taken";
    std::filesystem::create_directories(target / "inside");
    const PolygonMesh cube = shapes::Cube(2.0f);
    const ObjPart part{cube.view()};
    EXPECT_THROW_MSG(WriteObj(target, {&part, 1}), base::IoError,
                     "cannot write " + target.string() + ": Is a directory");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
}

TEST(WriteObj, names_the_file_when_its_folder_is_missing)
{
    const TemporaryFolder folder;
    const std::filesystem::path target = folder.path / "no" / "cube.obj";
    EXPECT_THROW_MSG(WriteObj(target, {}), base::IoError,
                     "cannot write " + target.string() + ": No such file or directory");
}

TEST(ReadObj, names_the_file_that_cannot_be_opened)
{
    const TemporaryFolder folder;
    const std::string missing = (folder.path / "missing.obj").string();
    EXPECT_THROW_MSG(ReadObj(missing), base::IoError,
                     "cannot open " + missing + ": No such file or directory");
    EXPECT_THROW_MSG(ReadObj(folder.path), base::IoError,
                     "cannot read " + folder.path.string() + ": Is a directory");
}
