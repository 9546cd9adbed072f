// Rendering and PNG files.
// SPDX-License-Identifier: MIT

#include "geometry/picture.h"

#include "geometry/errors.h"
#include "shapes.h"
#include "throws.h"

#include <fstream>
#include <random>

using namespace geometry;

namespace {

PictureOptions Small(View view = View::Front)
{
    PictureOptions options;
    options.view = view;
    options.width = 60;
    options.height = 80;
    return options;
}

std::size_t Differences(const Picture& a, const Picture& b)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < a.rgb.size(); ++i)
        count += a.rgb[i] != b.rgb[i];
    return count;
}

/// A square that faces the viewer, one cm wide.
PolygonMesh Square()
{
    return shapes::FromFaces({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {{0, 1, 2, 3}});
}

} // namespace

TEST(Render, shows_the_mesh_in_the_middle_and_the_backdrop_at_the_corners)
{
    const PolygonMesh sphere = shapes::Sphere(10.0f, 20, 20);
    const PictureItem item{sphere.view()};
    const Picture empty = Render({}, Small()), picture = Render({&item, 1}, Small());
    ASSERT_EQ(picture.rgb.size(), 3u * 60 * 80);
    EXPECT_TRUE(std::equal(picture.rgb.begin(), picture.rgb.begin() + 9, empty.rgb.begin()));
    const std::size_t middle = 3 * (40 * 60 + 30);
    EXPECT_NE(picture.rgb[middle], empty.rgb[middle]);
    EXPECT_GT(picture.rgb[middle], picture.rgb[middle + 2]); // a warm colour
}

TEST(Render, gives_the_same_picture_every_time_and_another_from_each_view)
{
    const PolygonMesh cone = shapes::Moved(shapes::OpenCone(5), {0.3f, 0, 0});
    const PictureItem item{cone.view()};
    EXPECT_EQ(Differences(Render({&item, 1}, Small()), Render({&item, 1}, Small())), 0u);
    for (const View view : {View::Side, View::Back, View::ThreeQuarter, View::Face})
        EXPECT_GT(Differences(Render({&item, 1}, Small()), Render({&item, 1}, Small(view))), 0u);
}

TEST(Render, refuses_sizes_out_of_range)
{
    PictureOptions options;
    options.width = 0;
    EXPECT_THROW_MSG(Render({}, options), base::Error, "picture size 0x1200 is not within 1 to 16384");
    options.width = 16385;
    EXPECT_THROW_MSG(Render({}, options), base::Error, "picture size 16385x1200 is not within 1 to 16384");
}

TEST(Render, refuses_positions_that_the_ray_tracer_cannot_take)
{
    PolygonMesh cube = shapes::Cube(1.0f);
    cube.positions[0].x = 1e18f;
    PictureItem item;
    item.mesh = cube.view();
    EXPECT_THROW_MSG(Render({&item, 1}), TopologyError,
                     "vertex 0 lies farther than 1e+09 cm from the origin");
}

TEST(Render, runs_the_colours_of_vertices_into_each_other)
{
    const PolygonMesh square = Square();
    const std::array<float, 3> red{0.8f, 0, 0}, blue{0, 0, 0.8f};
    const std::array<float, 3> colors[] = {red, blue, blue, red};
    PictureItem item{square.view()};
    item.vertexColors = {colors, 4};
    PictureOptions options = Small();
    options.lighting = Lighting::Plain;
    const Picture picture = Render({&item, 1}, options);
    const auto pixel = [&](int column) { return picture.rgb.data() + 3 * (40 * 60 + column); };
    EXPECT_GT(pixel(10)[0], pixel(10)[2] + 100);
    EXPECT_GT(pixel(50)[2], pixel(50)[0] + 100);
    EXPECT_NEAR(pixel(30)[0], pixel(30)[2], 12) << "halfway";
    EXPECT_EQ(pixel(10)[1], 0);
}

TEST(Render, refuses_colours_for_another_number_of_vertices)
{
    const PolygonMesh square = Square();
    const std::array<float, 3> colors[3] = {};
    PictureItem item{square.view()};
    item.vertexColors = {colors, 3};
    EXPECT_THROW_MSG(Render({&item, 1}, Small()), base::Error, "3 colours are given for 4 vertices");
}

TEST(Render, gives_each_surface_its_colour)
{
    PolygonMesh grid = shapes::Grid(2, 2.0f); // four quads
    Topology topology = *grid.topology;
    topology.surfaceNames = {"red", "blue"};
    topology.faceSurfaces = {0, 1, 0, 1};
    grid.topology = std::make_shared<Topology>(std::move(topology));
    PictureItem item{grid.view()};
    item.surfaceColors = {{0.8f, 0, 0}, {0, 0, 0.8f}};
    PictureOptions options = Small();
    options.lighting = Lighting::Plain;
    const Picture picture = Render({&item, 1}, options);
    const auto pixel = [&](int column, int row) { return picture.rgb.data() + 3 * (row * 60 + column); };
    for (const int row : {35, 45}) {
        EXPECT_GT(pixel(20, row)[0], pixel(20, row)[2] + 100);
        EXPECT_GT(pixel(40, row)[2], pixel(40, row)[0] + 100);
    }
    item.surfaceColors.pop_back();
    EXPECT_THROW_MSG(Render({&item, 1}, options), base::Error, "1 colour is given for 2 surfaces");
}

TEST(Render, leaves_out_shadows_when_it_is_to_be_quick)
{
    // A large sphere between the lamp and a small one, beyond the picture's edge.
    const PolygonMesh small = shapes::Sphere(4.0f, 12, 12),
                      large = shapes::Moved(shapes::Sphere(10.0f, 12, 12), {-16, 18, 18});
    const PictureItem alone{small.view()}, both[] = {alone, PictureItem{large.view()}};
    const auto differences = [&](Lighting lighting) {
        PictureOptions options = Small();
        options.lighting = lighting;
        options.frame = geometry::BoundingBox(small.positions);
        return Differences(Render({&alone, 1}, options), Render({both, 2}, options));
    };
    EXPECT_GT(differences(Lighting::Studio), 1000u);
    EXPECT_EQ(differences(Lighting::Quick), 0u);
}

TEST(ParseView, knows_the_five_views)
{
    EXPECT_EQ(ParseView("three-quarter"), View::ThreeQuarter);
    EXPECT_EQ(ParseView("face"), View::Face);
    EXPECT_EQ(ParseView("top"), std::nullopt);
}

TEST(Join, stands_pictures_side_by_side)
{
    const Picture pictures[] = {{1, 2, {1, 2, 3, 4, 5, 6}}, {1, 1, {7, 8, 9}}};
    const Picture joined = Join({pictures, 2});
    EXPECT_EQ(joined.width, 2);
    EXPECT_EQ(joined.height, 2);
    EXPECT_EQ(joined.rgb, (std::vector<std::uint8_t>{1, 2, 3, 7, 8, 9, 4, 5, 6, 0, 0, 0}));
}

TEST(WritePng, writes_a_png_file_and_names_the_one_it_cannot)
{
    const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                       ("geometry-" + std::to_string(std::random_device()()) + ".png");
    WritePng(file, {1, 1, {10, 20, 30}});
    std::ifstream stream(file, std::ios::binary);
    char magic[8] = {};
    stream.read(magic, 8);
    EXPECT_EQ(std::string(magic, 8), "\x89PNG\r\n\x1a\n");
    std::filesystem::remove(file);
    const std::string missing = (file / "no" / "a.png").string();
    EXPECT_THROW_MSG(WritePng(missing, {1, 1, {0, 0, 0}}), base::IoError,
                     "cannot write " + missing + ": No such file or directory");
}
