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

std::array<std::uint8_t, 3> PixelOf(const Picture& picture, int column, int row)
{
    const std::size_t i = 3 * (std::size_t(row) * std::size_t(picture.width) + std::size_t(column));
    return {picture.rgb[i], picture.rgb[i + 1], picture.rgb[i + 2]};
}

std::size_t CountOf(const Picture& picture, const std::array<std::uint8_t, 3>& color)
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

TEST(PictureStage, sees_the_same_by_many_rays_as_by_each)
{
    const BallFixture scene;
    std::vector<Ray> rays;
    for (const float y : {-0.61f, -0.2f, 0.03f, 0.4f})
        for (int i = 0; i < 57; ++i) // not a whole number of bundles
            rays.push_back(scene.camera.ray(-1.0f + 2.0f * static_cast<float>(i) / 57.0f, y, 1.5f));
    std::vector<PictureStage::Hit> hits(rays.size());
    scene.stage.trace(rays, hits.data());
    int valid = 0;
    for (std::size_t i = 0; i < rays.size(); ++i) {
        const PictureStage::Hit one = scene.stage.trace(rays[i]);
        ASSERT_EQ(hits[i].isValid, one.isValid) << i;
        EXPECT_EQ(hits[i].face, one.face) << i;
        EXPECT_LT(Length(hits[i].position - one.position), 1e-4f) << i;
        EXPECT_LT(Length(hits[i].normal - one.normal), 1e-4f) << i;
        valid += one.isValid;
    }
    EXPECT_GT(valid, 60);
    EXPECT_LT(valid, 200) << "some pass by";
    scene.stage.trace({}, nullptr);
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
    const Picture picture = DrawPreview(fixture.stage, fixture.camera, Small());
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
    const Picture smoothPicture = DrawPreview(fixture.stage, fixture.camera, options);
    options.shading = PreviewShading::Flat;
    const Picture flatPicture = DrawPreview(fixture.stage, fixture.camera, options);
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
    const Picture lines = DrawPreview(fixture.stage, fixture.camera, options);
    EXPECT_GT(CountOf(lines, options.edges), 50u);
    EXPECT_EQ(CountOf(lines, options.edges) + CountOf(lines, options.background), pixels);
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
    EXPECT_NE(PixelOf(seen, 30, 30), PixelOf(empty, 30, 30));
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
    EXPECT_EQ(DrawPreview(fixture.stage, fixture.camera, options).rgb,
              DrawPreview(fixture.stage, fixture.camera, plain).rgb);
    options.edgeOpacity = 1.0f;
    EXPECT_GT(CountOf(DrawPreview(fixture.stage, fixture.camera, options), options.edges), 50u);
}
