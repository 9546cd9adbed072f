// What samples of pictures show: drawn faces against traced rays.
// SPDX-License-Identifier: MIT

#include "geometry/picture_stage.h"

#include "geometry/rasterizer.h"
#include "shapes.h"
#include "throws.h"

#include <tbb/global_control.h>

#include <random>

using namespace geometry;

namespace {

/// Triangles of all sizes and directions in a box of 20 cm around the origin, through each other.
PolygonMesh Confetti(std::uint32_t seed, int count)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> place(-10.0f, 10.0f), reach(-4.0f, 4.0f);
    PolygonMesh mesh;
    Topology topology;
    for (int i = 0; i < count; ++i) {
        const Vec3f middle{place(random), place(random), place(random)};
        for (int corner = 0; corner < 3; ++corner)
            mesh.positions.push_back(middle + Vec3f{reach(random), reach(random), reach(random)});
        const std::uint32_t first = topology.vertexCount;
        const std::uint32_t corners[] = {first, first + 1, first + 2};
        topology.addFace({corners, 3});
        topology.vertexCount += 3;
    }
    mesh.topology = std::make_shared<Topology>(std::move(topology));
    return mesh;
}

PictureCamera CameraAt(Vec3f eye, bool isPerspective)
{
    PictureCamera camera;
    camera.eye = eye;
    camera.isPerspective = isPerspective;
    camera.halfHeight = isPerspective ? 0.5f : 9.0f;
    return camera;
}

std::vector<std::uint32_t> Drawn(const PictureStage& stage, const PictureCamera& camera, SampleGrid grid)
{
    std::vector<std::uint32_t> faces(static_cast<std::size_t>(grid.width * grid.height));
    Rasterizer(stage.meshes(), camera, grid).draw(0, grid.height, faces);
    return faces;
}

using Outline = std::vector<std::array<float, 2>>;

bool IsInside(const Outline& outline, float x, float y)
{
    bool isInside = false;
    for (std::size_t i = 0, before = outline.size() - 1; i < outline.size(); before = i++) {
        const auto [ax, ay] = outline[before];
        const auto [bx, by] = outline[i];
        if ((ay > y) != (by > y) && x < ax + (bx - ax) * (y - ay) / (by - ay))
            isInside = !isInside;
    }
    return isInside;
}

/// One face, whose corners begin with one of the outline's and run either way; leaning, so that no axis is
/// its normal.
PolygonMesh FaceOf(const Outline& outline, std::size_t first, bool isBackwards)
{
    PolygonMesh mesh;
    Topology topology;
    std::vector<std::uint32_t> corners;
    for (std::uint32_t i = 0; i < outline.size(); ++i) {
        const auto [x, y] = outline[(first + (isBackwards ? outline.size() - i : i)) % outline.size()];
        mesh.positions.push_back({x, y, 0.4f * x - 0.3f * y});
        corners.push_back(i);
    }
    topology.vertexCount = static_cast<std::uint32_t>(outline.size());
    topology.addFace(corners);
    mesh.topology = std::make_shared<Topology>(std::move(topology));
    return mesh;
}

const Outline arrow{{-7, -6}, {0, -1}, {7, -6}, {0, 7}};
const Outline letter{{-6, -7}, {6, -7}, {6, -3}, {-2, -3}, {-2, 7}, {-6, 7}};
const Outline comb{{-8, -6}, {8, -6}, {8, 6},   {5, 6},   {5, -4}, {2, -4},
                   {2, 6},   {-2, 6}, {-2, -4}, {-5, -4}, {-5, 6}, {-8, 6}};

std::uint32_t Traced(const PictureStage& stage, const Ray& ray)
{
    const PictureStage::Hit hit = stage.trace(ray);
    return hit.isValid ? stage.meshes()[hit.item].firstFace + hit.face : noFace;
}

} // namespace

TEST(Rasterizer, sees_what_rays_hit)
{
    const SampleGrid grid{150, 130}; // no whole number of tiles
    for (const bool isPerspective : {true, false})
        // From outside, and from the middle of it all, where faces reach behind the eye.
        for (const Vec3f eye : {Vec3f{1, 2, 30}, Vec3f{0, 0, 0.5f}}) {
            const PolygonMesh first = Confetti(1, 60), second = Confetti(2, 60);
            const PictureItem items[] = {PictureItem{first.view()}, PictureItem{second.view()}};
            const PictureStage stage({items, 2});
            const PictureCamera camera = CameraAt(eye, isPerspective);
            const std::vector<std::uint32_t> drawn = Drawn(stage, camera, grid);
            int differences = 0, seen = 0;
            for (int row = 0; row < grid.height; ++row)
                for (int column = 0; column < grid.width; ++column) {
                    const std::uint32_t face = drawn[static_cast<std::size_t>(row * grid.width + column)];
                    const Ray ray = camera.ray(grid.x(column), grid.y(row), grid.aspect());
                    differences += face != Traced(stage, ray);
                    seen += face != noFace;
                }
            EXPECT_GT(seen, 5000);
            EXPECT_LE(differences, 8) << "of 19500, where a sample lies on an edge or where faces cross";
        }
}

TEST(Rasterizer, leaves_no_holes_between_faces_and_draws_none_of_them_twice)
{
    // Vertices lie on samples, and edges go through many of them.
    const PolygonMesh grid = shapes::Grid(16, 16.0f);
    PictureItem item{grid.view()};
    const PictureStage stage({&item, 1});
    PictureCamera camera = CameraAt({8, 8, 10}, false);
    camera.halfHeight = 8.0f;
    const std::vector<std::uint32_t> drawn = Drawn(stage, camera, {96, 96});
    std::vector<int> counts(grid.faceCount());
    for (const std::uint32_t face : drawn) {
        ASSERT_NE(face, noFace);
        ++counts[face];
    }
    EXPECT_EQ(counts, std::vector<int>(grid.faceCount(), 36));
}

TEST(Rasterizer, fills_faces_that_are_not_convex_and_nothing_beside_them)
{
    const SampleGrid grid{67, 61};
    PictureCamera camera = CameraAt({0, 0, 40}, false);
    for (const Outline& outline : {arrow, letter, comb})
        for (std::size_t first = 0; first < outline.size(); ++first)
            for (const bool isBackwards : {false, true}) {
                const PolygonMesh mesh = FaceOf(outline, first, isBackwards);
                const PictureItem item{mesh.view()};
                const PictureStage stage({&item, 1});
                const std::vector<std::uint32_t> drawn = Drawn(stage, camera, grid);
                int differences = 0, untraced = 0;
                for (int row = 0; row < grid.height; ++row)
                    for (int column = 0; column < grid.width; ++column) {
                        const Ray ray = camera.ray(grid.x(column), grid.y(row), grid.aspect());
                        const bool isSeen =
                            drawn[static_cast<std::size_t>(row * grid.width + column)] != noFace;
                        differences += isSeen != IsInside(outline, ray.origin.x, ray.origin.y);
                        untraced += isSeen != stage.trace(ray).isValid;
                        if (isSeen) {
                            EXPECT_NEAR(stage.hitOn(0, ray).position.x, ray.origin.x, 1e-3f);
                        }
                    }
                EXPECT_LE(differences, 4) << "where a sample lies on an edge";
                EXPECT_LE(untraced, 4) << "where a sample lies on an edge";
            }
}

TEST(Rasterizer, copes_with_faces_that_cross_themselves)
{
    const Outline bow{{-5, -5}, {5, 5}, {5, -5}, {-5, 5}}, star{{0, 8}, {5, -7}, {-8, 3}, {8, 3}, {-5, -7}};
    for (const Outline& outline : {bow, star}) {
        const PolygonMesh mesh = FaceOf(outline, 0, false);
        const PictureItem item{mesh.view()};
        const PictureStage stage({&item, 1});
        const std::vector<std::uint32_t> drawn = Drawn(stage, CameraAt({0, 0, 40}, false), {40, 40});
        EXPECT_GT(std::count(drawn.begin(), drawn.end(), 0u), 100);
    }
}

TEST(Rasterizer, draws_a_part_of_the_rows_as_it_draws_all)
{
    const PolygonMesh mesh = Confetti(3, 80);
    PictureItem item{mesh.view()};
    const PictureStage stage({&item, 1});
    const PictureCamera camera = CameraAt({0, 0, 30}, true);
    const SampleGrid grid{100, 90};
    const std::vector<std::uint32_t> all = Drawn(stage, camera, grid);
    std::vector<std::uint32_t> part(100 * 30);
    Rasterizer(stage.meshes(), camera, grid).draw(37, 67, part);
    EXPECT_TRUE(std::equal(part.begin(), part.end(), all.begin() + 3700));
}

TEST(Rasterizer, shows_the_first_of_two_faces_in_one_place)
{
    const PolygonMesh mesh = shapes::Grid(1, 10.0f);
    const PictureItem items[] = {PictureItem{mesh.view()}, PictureItem{mesh.view()}};
    const PictureStage stage({items, 2});
    for (const std::uint32_t face : Drawn(stage, CameraAt({5, 5, 20}, false), {40, 40}))
        EXPECT_NE(face, 1u);
}

TEST(Rasterizer, leaves_out_triangles_with_a_corner_that_is_no_number)
{
    PolygonMesh mesh = shapes::Grid(2, 10.0f);
    mesh.positions[0].x = NAN; // the corner of the first face, at the bottom left
    PictureItem item{mesh.view()};
    const PictureStage stage({&item, 1});
    PictureCamera camera = CameraAt({5, 5, 20}, false);
    camera.halfHeight = 5.0f;
    const std::vector<std::uint32_t> drawn = Drawn(stage, camera, {20, 20});
    EXPECT_EQ(drawn.back(), 1u);
    EXPECT_EQ(drawn[19 * 20], noFace);
    EXPECT_EQ(std::count(drawn.begin(), drawn.end(), 0u), 0) << "both triangles of its fan have that corner";
}

TEST(PictureStage, interpolates_normals_and_colours_where_a_ray_meets_a_face)
{
    const PolygonMesh mesh = shapes::Grid(1, 2.0f);
    PictureItem item{mesh.view()};
    const std::array<float, 3> colors[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}};
    item.vertexColors = {colors, 4};
    const PictureStage stage({&item, 1});
    const Vec3f corner = mesh.positions[mesh.view().face(0)[1]];
    const PictureStage::Hit hit = stage.hitOn(0, {corner + Vec3f{0, 0, 5}, {0, 0, -1}});
    ASSERT_TRUE(hit.isValid);
    EXPECT_LT(Length(hit.position - corner), 1e-5f);
    EXPECT_EQ(hit.normal, (Vec3f{0, 0, 1}));
    EXPECT_EQ(hit.color, colors[mesh.view().face(0)[1]]);
    EXPECT_EQ(stage.hitOn(0, {corner - Vec3f{0, 0, 5}, {0, 0, 1}}).normal, (Vec3f{0, 0, -1}))
        << "from behind";
    EXPECT_FALSE(stage.hitOn(noFace, {corner, {0, 0, 1}}).isValid);
}

TEST(PictureStage, knows_the_same_normals_where_it_is_asked_as_everywhere)
{
    // Two items, of which the second one's faces have higher numbers; its pole is a vertex of 40 faces.
    const PolygonMesh meshes[] = {shapes::Cube(2.0f), shapes::Sphere(3.0f, 30, 40)};
    const PictureItem items[] = {{meshes[0].view()}, {meshes[1].view()}};
    const PictureStage everywhere({items, 2}), asked({items, 2}, StageNormals::WhereAsked);
    const std::uint32_t first = everywhere.meshes()[1].firstFace;
    const auto last = static_cast<std::uint32_t>(first + meshes[1].faceCount() - 1);
    const auto normalsOn = [&](const PictureStage& stage, std::uint32_t number) {
        const NumberedMesh& one = stage.meshes()[number < first ? 0 : 1];
        std::vector<Vec3f> normals;
        for (const std::uint32_t vertex : one.mesh.face(number - one.firstFace)) {
            const Vec3f at = one.mesh.positions[vertex];
            const PictureStage::Hit hit = stage.hitOn(number, {at * 2.0f, Normalized(-at)});
            normals.push_back(hit.normal);
            if (&stage == &asked && number == last) {
                EXPECT_EQ(hit.normal, hit.faceNormal) << "nobody has asked";
            }
        }
        return normals;
    };
    normalsOn(asked, last);
    // Some, some of them again with others, and in the end so many that all are found.
    std::vector<std::uint32_t> faces{noFace, 2, first, first + 41};
    for (int round = 0; round < 3; ++round) {
        asked.findNormals(faces);
        for (const std::uint32_t face : faces) {
            if (face != noFace) {
                EXPECT_EQ(normalsOn(asked, face), normalsOn(everywhere, face)) << face;
            }
        }
        for (std::uint32_t i = 0; i < (round == 0 ? 30u : 900u); ++i)
            faces.push_back(first + i);
    }
}

TEST(PictureStage, finds_the_same_rays_free_together_as_one_by_one)
{
    const PolygonMesh mesh = shapes::Sphere(3.0f, 12, 12);
    PictureItem item{mesh.view()};
    const PictureStage stage({&item, 1});
    std::vector<Ray> rays;
    for (int i = 0; i < 53; ++i) // no whole number of packets
        rays.push_back({{-5.0f + 10.0f * static_cast<float>(i) / 53.0f, 0.1f, 10.0f}, {0, 0, -1}});
    std::vector<std::uint8_t> together(rays.size());
    stage.findFree(rays, 0.0f, 20.0f, together.data());
    for (std::size_t i = 0; i < rays.size(); ++i) {
        std::uint8_t alone = 0;
        stage.findFree({&rays[i], 1}, 0.0f, 20.0f, &alone);
        EXPECT_EQ(together[i], alone);
        EXPECT_EQ(together[i], !stage.trace(rays[i]).isValid);
    }
    stage.findFree(rays, 0.0f, 5.0f, together.data());
    EXPECT_EQ(std::count(together.begin(), together.end(), 1), 53) << "the sphere is farther away";
}

TEST(RenderStage, gives_the_same_picture_with_any_number_of_threads)
{
    const PolygonMesh mesh = Confetti(4, 200);
    PictureItem item{mesh.view()};
    PictureOptions options;
    options.width = 90;
    options.height = 120;
    const Picture picture = Render({&item, 1}, options);
    const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
    EXPECT_EQ(Render({&item, 1}, options).rgb, picture.rgb);
}

TEST(RenderStage, draws_what_items_have_been_coloured_meanwhile)
{
    const PolygonMesh mesh = shapes::Sphere(3.0f, 12, 12);
    PictureItem item{mesh.view()};
    const PictureStage stage({&item, 1});
    PictureOptions options;
    options.width = options.height = 40;
    const Picture before = RenderStage(stage, options);
    item.color = {0.1f, 0.2f, 0.9f};
    EXPECT_NE(RenderStage(stage, options).rgb, before.rgb);
    EXPECT_EQ(RenderStage(stage, options).rgb, Render({&item, 1}, options).rgb);
}
