// Cameras of pictures, and quick pictures.
// SPDX-License-Identifier: MIT

#include "geometry/preview.h"

#include "base/errors.h"
#include "shapes.h"
#include "throws.h"

#include <set>

using namespace geometry;

namespace {

PreviewOptions Small()
{
    PreviewOptions options;
    options.width = 60;
    options.height = 40;
    return options;
}

using Rgb = std::array<std::uint8_t, 3>;

Rgb PixelOf(const PreviewPicture& picture, int column, int row)
{
    const std::uint32_t pixel =
        picture.pixels[std::size_t(row) * std::size_t(picture.width) + std::size_t(column)];
    return {std::uint8_t(pixel >> 16), std::uint8_t(pixel >> 8), std::uint8_t(pixel)};
}

std::size_t CountOf(const PreviewPicture& picture, const std::array<std::uint8_t, 3>& color)
{
    std::size_t count = 0;
    for (int row = 0; row < picture.height; ++row)
        for (int column = 0; column < picture.width; ++column)
            count += PixelOf(picture, column, row) == color;
    return count;
}

/// A unit sphere, seen from +z at a distance where it fills two thirds of the height.
struct BallFixture {
    PolygonMesh ball = shapes::Sphere(1.0f, 24, 24);
    PictureItem item{ball.view()};
    PictureStage stage{{&item, 1}};
    PictureCamera camera;
    BallFixture()
    {
        camera.eye = {0, 0, 10};
        camera.halfHeight = 0.15f;
    }
};

} // namespace

TEST(PictureCamera, sends_the_middle_ray_forward_and_the_edge_rays_to_the_edges)
{
    PictureCamera camera;
    camera.eye = {1, 2, 3};
    camera.halfHeight = 0.5f;
    EXPECT_EQ(camera.ray(0, 0, 2.0f).direction, (Vec3f{0, 0, -1}));
    const Ray corner = camera.ray(1, 1, 2.0f);
    EXPECT_NEAR(corner.direction.x / -corner.direction.z, 1.0f, 1e-6f);
    EXPECT_NEAR(corner.direction.y / -corner.direction.z, 0.5f, 1e-6f);
    EXPECT_EQ(corner.origin, camera.eye);
}

TEST(PictureCamera, sends_parallel_rays_without_perspective)
{
    PictureCamera camera;
    camera.isPerspective = false;
    camera.halfHeight = 5.0f;
    const Ray corner = camera.ray(-1, 1, 2.0f);
    EXPECT_EQ(corner.direction, camera.forward);
    EXPECT_EQ(corner.origin, (Vec3f{-10, 5, 0}));
}

TEST(PictureCamera, projects_a_point_to_where_its_ray_starts)
{
    for (const bool isPerspective : {true, false}) {
        PictureCamera camera = CameraAround({{-1, -2, -3}, {4, 5, 6}}, 0.7f, 1.5f);
        camera.isPerspective = isPerspective;
        const Ray ray = camera.ray(0.3f, -0.6f, 1.5f);
        const Vec3f seen = camera.project(ray.origin + ray.direction * 12.0f, 1.5f);
        EXPECT_NEAR(seen.x, 0.3f, 1e-4f);
        EXPECT_NEAR(seen.y, -0.6f, 1e-4f);
    }
}

TEST(PictureCamera, keeps_every_corner_of_a_frame_inside_the_picture)
{
    const Box3f frame{{-50, 0, -20}, {70, 180, 30}};
    for (const float turn : {0.0f, 0.6f, 1.6f, 3.1f})
        for (const float aspect : {0.5f, 1.0f, 2.0f}) {
            const PictureCamera camera = CameraAround(frame, turn, aspect);
            for (int corner = 0; corner < 8; ++corner) {
                const Vec3f seen = camera.project({corner & 1 ? frame.max.x : frame.min.x,
                                                   corner & 2 ? frame.max.y : frame.min.y,
                                                   corner & 4 ? frame.max.z : frame.min.z},
                                                  aspect);
                EXPECT_LT(std::abs(seen.x), 1.0f);
                EXPECT_LT(std::abs(seen.y), 1.0f);
                EXPECT_GT(seen.z, 0.0f);
            }
        }
}

TEST(DrawPreview, shades_what_faces_the_eye_brightest)
{
    const BallFixture fixture;
    const PreviewPicture picture = DrawPreview(fixture.stage, fixture.camera, Small());
    const PreviewOptions options = Small();
    EXPECT_EQ(PixelOf(picture, 0, 0), options.background);
    const auto middle = PixelOf(picture, 30, 20), side = PixelOf(picture, 30 + 12, 20);
    EXPECT_NE(side, options.background);
    EXPECT_GT(middle[0], side[0]);
}

TEST(DrawPreview, gives_a_flat_face_one_shade)
{
    const BallFixture fixture;
    PreviewOptions options = Small();
    std::set<std::array<std::uint8_t, 3>> smooth, flat;
    const PreviewPicture smoothPicture = DrawPreview(fixture.stage, fixture.camera, options);
    options.shading = PreviewShading::Flat;
    const PreviewPicture flatPicture = DrawPreview(fixture.stage, fixture.camera, options);
    for (int row = 0; row < options.height; ++row)
        for (int column = 0; column < options.width; ++column) {
            smooth.insert(PixelOf(smoothPicture, column, row));
            flat.insert(PixelOf(flatPicture, column, row));
        }
    EXPECT_LT(flat.size(), smooth.size());
}

TEST(DrawPreview, hides_lines_behind_a_surface_that_it_does_not_shade)
{
    const BallFixture fixture;
    PreviewOptions options = Small();
    options.shading = PreviewShading::None;
    const std::size_t pixels = std::size_t(options.width) * std::size_t(options.height);
    EXPECT_EQ(CountOf(DrawPreview(fixture.stage, fixture.camera, options), options.background), pixels);
    options.drawEdges = true;
    const PreviewPicture lines = DrawPreview(fixture.stage, fixture.camera, options);
    EXPECT_GT(CountOf(lines, options.edges), 50u);
    EXPECT_EQ(CountOf(lines, options.edges) + CountOf(lines, options.background), pixels);
}

TEST(DrawPreview, leaves_out_what_is_empty_and_nothing_else)
{
    const BallFixture fixture;
    PreviewOptions options = Small();
    options.drawEdges = true;
    const PreviewPicture whole = DrawPreview(fixture.stage, fixture.camera, options);
    options.emptyPixel = 0;
    const PreviewPicture cut = DrawPreview(fixture.stage, fixture.camera, options);
    std::size_t empty = 0;
    for (std::size_t i = 0; i < whole.pixels.size(); ++i) {
        empty += cut.pixels[i] == 0;
        if (cut.pixels[i] != 0) {
            EXPECT_EQ(cut.pixels[i], whole.pixels[i]) << i;
        }
    }
    EXPECT_EQ(empty, CountOf(whole, options.background));
}

TEST(DrawPreview, shows_an_empty_stage_as_background)
{
    const PictureStage stage({});
    const PreviewOptions options = Small();
    EXPECT_EQ(CountOf(DrawPreview(stage, PictureCamera(), options), options.background),
              std::size_t(options.width) * std::size_t(options.height));
}

TEST(DrawPreview, refuses_sizes_out_of_range)
{
    PreviewOptions options;
    options.height = 0;
    EXPECT_THROW_MSG(DrawPreview(PictureStage({}), PictureCamera(), options), base::Error,
                     "picture size 640x0 is not within 1 to 16384");
}

TEST(Render, takes_a_camera_instead_of_a_view)
{
    const BallFixture fixture;
    PictureOptions options;
    options.width = 60;
    options.height = 60;
    options.camera = fixture.camera;
    const Picture empty = Render({}, options), seen = Render({&fixture.item, 1}, options);
    EXPECT_NE(seen.rgb, empty.rgb);
    options.camera->forward = {0, 0, 1};
    options.camera->right = {-1, 0, 0};
    EXPECT_EQ(Render({&fixture.item, 1}, options).rgb, Render({}, options).rgb) << "it looks away";
}

TEST(DrawPreview, lets_shading_shine_through_its_edges)
{
    const BallFixture fixture;
    PreviewOptions options = Small();
    options.drawEdges = true;
    options.edgeOpacity = 0.0f;
    PreviewOptions plain = Small();
    EXPECT_EQ(DrawPreview(fixture.stage, fixture.camera, options).pixels,
              DrawPreview(fixture.stage, fixture.camera, plain).pixels);
    options.edgeOpacity = 1.0f;
    EXPECT_GT(CountOf(DrawPreview(fixture.stage, fixture.camera, options), options.edges), 50u);
}

TEST(DrawWires, draws_the_edges_of_a_face_from_corner_to_corner)
{
    const PolygonMesh square =
        shapes::FromFaces({{-3, -2, 0}, {3, -2, 0}, {3, 2, 0}, {-3, 2, 0}}, {{0, 1, 2, 3}});
    const PictureItem item{square.view()};
    PictureCamera camera;
    camera.eye = {0, 0, 10};
    camera.isPerspective = false;
    camera.halfHeight = 4.0f; // five pixels a cm
    const PreviewOptions options = Small();
    const PreviewPicture picture = DrawWires({&item, 1}, camera, options);
    EXPECT_EQ(PixelOf(picture, 15, 30), options.edges);
    EXPECT_EQ(PixelOf(picture, 30, 30), options.edges) << "the bottom";
    EXPECT_EQ(PixelOf(picture, 15, 20), options.edges) << "the left side";
    EXPECT_EQ(PixelOf(picture, 30, 20), options.background) << "a face is not filled";
    EXPECT_EQ(PixelOf(picture, 5, 5), options.background);
    const std::size_t around = 2 * (6 * 5 + 4 * 5);
    EXPECT_NEAR(double(CountOf(picture, options.edges)), double(around), 4.0);
}

TEST(DrawWires, shows_edges_behind_others)
{
    const PolygonMesh cube = shapes::Cube(4.0f);
    const PictureItem item{cube.view()};
    const PictureStage stage({&item, 1});
    const PictureCamera camera = CameraAround(BoundingBox(cube.positions), 0.5f, 1.5f);
    PreviewOptions options = Small();
    options.shading = PreviewShading::None;
    options.drawEdges = true;
    EXPECT_GT(CountOf(DrawWires({&item, 1}, camera, options), options.edges),
              CountOf(DrawPreview(stage, camera, options), options.edges));
}

TEST(DrawWires, cuts_edges_at_the_eye_and_at_the_rim)
{
    // A ladder that begins behind the eye and ends far off to all sides.
    PolygonMesh ladder =
        shapes::FromFaces({{-1, -1, 50}, {1, -1, 50}, {1, -1, -500}, {-1, -1, -500}, {2e6f, 3e6f, -100}},
                          {{0, 1, 2, 3}, {2, 3, 4}});
    const PictureItem item{ladder.view()};
    PictureCamera camera;
    const PreviewOptions options = Small();
    const PreviewPicture picture = DrawWires({&item, 1}, camera, options);
    EXPECT_GT(CountOf(picture, options.edges), 40u);
    ladder.positions[0].x = NAN;
    const std::size_t without = CountOf(DrawWires({&item, 1}, camera, options), options.edges);
    EXPECT_GT(without, 10u) << "the others are drawn";
    EXPECT_LT(without, CountOf(picture, options.edges));
}

TEST(DrawWires, draws_parts_of_a_pixel_as_one)
{
    const PolygonMesh speck = shapes::Moved(shapes::Cube(1e-3f), {0.01f, 0.01f, 0});
    const PictureItem item{speck.view()};
    PictureCamera camera;
    camera.eye = {0, 0, 10};
    EXPECT_EQ(CountOf(DrawWires({&item, 1}, camera, Small()), Small().edges), 1u);
}
