// Normals, closest points, rays and distances.
// SPDX-License-Identifier: MIT

#include "geometry/surface_tree.h"

#include "geometry/errors.h"
#include "geometry/limits.h"
#include "geometry/normals.h"
#include "geometry/surface_distance.h"
#include "geometry/transform.h"
#include "shapes.h"
#include "throws.h"

#include <random>

using namespace geometry;

namespace {

/// The slow way: densely weighs corners, edges and interior by plane projection with clamping on each edge.
double DistanceToTriangle(const Eigen::Vector3d& p, const Eigen::Vector3d corners[3])
{
    double best = INFINITY;
    for (int k = 0; k < 3; ++k) {
        const Eigen::Vector3d a = corners[k], ab = corners[(k + 1) % 3] - a;
        const double t = std::clamp((p - a).dot(ab) / ab.squaredNorm(), 0.0, 1.0);
        best = std::min(best, (a + t * ab - p).norm());
    }
    const Eigen::Vector3d normal = (corners[1] - corners[0]).cross(corners[2] - corners[0]).normalized();
    const Eigen::Vector3d foot = p - normal * normal.dot(p - corners[0]);
    bool inside = true;
    for (int k = 0; k < 3; ++k)
        inside &= normal.dot((corners[(k + 1) % 3] - corners[k]).cross(foot - corners[k])) >= 0.0;
    return inside ? std::min(best, (foot - p).norm()) : best;
}

double BruteForce(const PolygonMesh& mesh, Vec3f p)
{
    const Triangles triangles = Triangulate(*mesh.topology);
    double best = INFINITY;
    for (std::size_t t = 0; t < triangles.count(); ++t) {
        Eigen::Vector3d corners[3];
        for (std::size_t k = 0; k < 3; ++k)
            corners[k] = ToEigen(mesh.positions[triangles.corners[3 * t + k]]);
        best = std::min(best, DistanceToTriangle(ToEigen(p), corners));
    }
    return best;
}

} // namespace

TEST(VertexNormals, point_outwards_from_a_sphere)
{
    const PolygonMesh sphere = shapes::Sphere(10.0f, 24, 32);
    const std::vector<Vec3f> normals = VertexNormals(sphere.view());
    for (std::size_t v = 0; v < normals.size(); ++v)
        EXPECT_GT(Dot(normals[v], Normalized(sphere.positions[v])), 0.999f);
}

TEST(VertexNormals, do_not_hang_on_how_faces_are_cut_up)
{
    const std::vector<Vec3f> normals = VertexNormals(shapes::Cube(2.0f).view());
    for (const Vec3f normal : normals) // each corner sees three right angles
        EXPECT_NEAR(std::abs(normal.x), 1.0f / std::sqrt(3.0f), 1e-6f);
}

TEST(VertexNormals, weigh_faces_by_their_angles)
{
    // Around a corner with a pentagon's, a quad's and a triangle's angle, from sharp to blunt.
    const PolygonMesh mesh = shapes::FromFaces({{0, 0, 0},
                                                {1, 0, 0},
                                                {0.9f, 0.4f, 0.3f},
                                                {-0.6f, 1.1f, 0.2f},
                                                {-0.9f, 0.1f, -0.5f},
                                                {0.2f, -0.02f, -0.9f},
                                                {0.5f, 1, 0.2f},
                                                {-1, 0.5f, 0.1f}},
                                               {{0, 1, 2}, {0, 2, 6, 3}, {0, 3, 7, 4}, {0, 4, 5}, {0, 5, 1}});
    const std::vector<Vec3f> faces = FaceNormals(mesh.view());
    Eigen::Vector3d expected(0, 0, 0);
    for (std::size_t f = 0; f < mesh.faceCount(); ++f) {
        const auto face = mesh.view().face(f);
        const Eigen::Vector3d a = ToEigen(mesh.positions[face[1]]),
                              b = ToEigen(mesh.positions[face[face.size() - 1]]);
        expected += ToEigen(faces[f]) * std::acos(a.dot(b) / (a.norm() * b.norm()));
    }
    expected.normalize();
    const Vec3f found = VertexNormals(mesh.view())[0];
    EXPECT_NEAR((ToEigen(found) - expected).norm(), 0.0, 1e-6);
}

TEST(VertexNormals, are_zero_for_a_vertex_that_no_face_uses)
{
    EXPECT_EQ(VertexNormals(shapes::LooseVertex().view())[3], Vec3f{});
}

TEST(FaceNormals, are_zero_for_a_face_without_area)
{
    const std::vector<Vec3f> normals = FaceNormals(shapes::Sliver().view());
    EXPECT_EQ(normals[0], (Vec3f{0, 0, 1}));
    EXPECT_EQ(normals[1], Vec3f{});
}

TEST(ClosestPoint, agrees_with_brute_force)
{
    const PolygonMesh meshes[] = {shapes::Cube(2.0f), shapes::Sphere(1.0f, 9, 11), shapes::OpenCone(7),
                                  shapes::Mixed(), shapes::TwoIslands(3, 1.0f, 2.0f)};
    std::mt19937 random(11);
    std::uniform_real_distribution<float> coordinate(-2.0f, 2.0f);
    for (const PolygonMesh& mesh : meshes) {
        const SurfaceTree tree(mesh.view());
        for (int i = 0; i < 500; ++i) {
            const Vec3f p{coordinate(random), coordinate(random), coordinate(random)};
            const SurfacePoint found = tree.closestPoint(p);
            ASSERT_TRUE(found.isValid());
            EXPECT_NEAR(found.distance, BruteForce(mesh, p), 1e-5);
            EXPECT_NEAR(found.weights[0] + found.weights[1] + found.weights[2], 1.0f, 1e-6f);
            EXPECT_NEAR(Length(found.position - p), found.distance, 1e-5f);
        }
    }
}

/// More triangles than are searched one by one: a hilly sheet of quads, a sphere with triangles at its poles,
/// and the sheet with faces that were squeezed to a line, or to a point, among the others.
std::vector<PolygonMesh> FineMeshes()
{
    PolygonMesh hills = shapes::Grid(330, 2.0f);
    for (Vec3f& at : hills.positions)
        at = {at.x - 1.0f, at.y - 1.0f, 0.2f * std::sin(7.0f * at.x) * std::cos(5.0f * at.y)};
    PolygonMesh squeezed = hills;
    for (std::size_t f = 0; f < squeezed.faceCount(); f += 5) {
        const auto face = squeezed.view().face(f);
        squeezed.positions[face[1]] = squeezed.positions[face[0]];
        if (f % 15 == 0)
            squeezed.positions[face[2]] = squeezed.positions[face[3]] = squeezed.positions[face[0]];
    }
    return {hills, shapes::Sphere(1.0f, 330, 330), squeezed};
}

/// Every other face from the first one on, or from the second: half a fine mesh is searched as coarse ones
/// are.
PolygonMesh EveryOtherFace(const PolygonMesh& mesh, std::size_t first)
{
    auto half = std::make_shared<Topology>();
    half->vertexCount = mesh.topology->vertexCount;
    half->faceOffsets.assign(1, 0);
    for (std::size_t f = first; f < mesh.faceCount(); f += 2) {
        for (const std::uint32_t corner : mesh.view().face(f))
            half->cornerVertices.push_back(corner);
        half->faceOffsets.push_back(static_cast<std::uint32_t>(half->cornerVertices.size()));
    }
    return {half, mesh.positions};
}

TEST(ClosestPoint, is_on_a_fine_mesh_the_nearer_one_of_its_halves)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<float> coordinate(-1.2f, 1.2f);
    for (const PolygonMesh& mesh : FineMeshes()) {
        const SurfaceTree tree(mesh.view());
        ASSERT_GT(tree.triangles().count(), 200000u);
        const SurfaceTree halves[] = {SurfaceTree(EveryOtherFace(mesh, 0).view()),
                                      SurfaceTree(EveryOtherFace(mesh, 1).view())};
        for (int i = 0; i < 500; ++i) {
            const Vec3f p{coordinate(random), coordinate(random), coordinate(random)};
            const SurfacePoint found = tree.closestPoint(p);
            ASSERT_TRUE(found.isValid());
            EXPECT_EQ(found.distance,
                      std::min(halves[0].closestPoint(p).distance, halves[1].closestPoint(p).distance));
        }
    }
}

TEST(ClosestPoint, does_not_hang_on_where_the_search_starts)
{
    std::vector<PolygonMesh> meshes = FineMeshes();
    meshes.push_back(shapes::Mixed());
    meshes.push_back(shapes::Sphere(1.0f, 9, 11));
    for (const PolygonMesh& mesh : meshes) {
        const SurfaceTree tree(mesh.view());
        const auto count = static_cast<std::uint32_t>(tree.triangles().count());
        for (std::uint32_t i = 0; i < 40; ++i) {
            const auto step = static_cast<float>(i);
            const Vec3f p{1.3f * std::cos(0.7f * step), 1.3f * std::sin(1.3f * step), 0.3f + 0.01f * step};
            const SurfacePoint found = tree.closestPoint(p);
            for (const std::uint32_t start : {0u, count / 2, count - 1, i % count, count, UINT32_MAX}) {
                const SurfacePoint again = tree.closestPoint(p, INFINITY, start);
                EXPECT_EQ(again.triangle, found.triangle);
                EXPECT_EQ(again.position, found.position);
            }
            const float within = found.distance;
            EXPECT_FALSE(tree.closestPoint(p, within * 0.999f, found.triangle).isValid());
            EXPECT_FALSE(tree.anyPoint(p, within * 0.999f, found.triangle).isValid());
            const SurfacePoint some = tree.anyPoint(p, within * 1.5f + 0.1f, i % count);
            EXPECT_TRUE(some.isValid());
            EXPECT_LE(some.distance, within * 1.5f + 0.1f);
        }
    }
}

TEST(SurfaceTree, finds_what_a_filter_leaves_of_a_dense_mesh_without_a_bound)
{
    const PolygonMesh grid = shapes::Grid(330, 10.0f);
    const SurfaceTree tree(grid.view());
    const std::uint32_t last = static_cast<std::uint32_t>(tree.triangles().count()) - 1;
    const auto accept = [last](std::uint32_t triangle, const SurfacePoint&) { return triangle == last; };
    EXPECT_EQ(tree.closestPoint({5, 5, 5}, INFINITY, accept).triangle, last);
    EXPECT_FALSE(
        tree.closestPoint({5, 5, 5}, INFINITY, [](std::uint32_t, const SurfacePoint&) { return false; })
            .isValid());
}

TEST(FirstHit, is_the_same_through_fine_meshes)
{
    const SurfaceTree fine(FineMeshes()[1].view());
    for (int i = 0; i < 50; ++i) {
        const Vec3f from{3.0f * std::cos(0.4f * i), 3.0f * std::sin(0.4f * i), 0.03f * i};
        const SurfacePoint hit = fine.firstHit(from, Normalized(from * -1.0f));
        ASSERT_TRUE(hit.isValid());
        EXPECT_NEAR(hit.distance, Length(from) - 1.0f, 1e-4f);
        EXPECT_GT(Dot(fine.triangleNormal(hit.triangle), from), 0.0f);
    }
}

TEST(ClosestPoint, gives_whole_weight_to_a_corner_it_stands_on)
{
    const PolygonMesh sphere = shapes::Sphere(90.0f, 20, 20);
    const SurfaceTree tree(sphere.view());
    for (const Vec3f position : sphere.positions) {
        const SurfacePoint found = tree.closestPoint(position);
        EXPECT_EQ(found.distance, 0.0f);
        EXPECT_EQ(std::max({found.weights[0], found.weights[1], found.weights[2]}), 1.0f);
    }
}

TEST(ClosestPoint, finds_nothing_beyond_the_distance_or_for_a_point_that_is_not_finite)
{
    const SurfaceTree tree(shapes::Triangle().view());
    EXPECT_FALSE(tree.closestPoint({0, 0, 2}, 1.0f).isValid());
    EXPECT_TRUE(tree.closestPoint({0, 0, 0.5f}, 1.0f).isValid());
    EXPECT_FALSE(tree.closestPoint({NAN, 0, 0}).isValid());
}

TEST(SurfaceTree, refuses_positions_that_the_ray_tracer_cannot_take)
{
    PolygonMesh cube = shapes::Cube(1.0f);
    cube.positions[3].y = -farthestPosition;
    EXPECT_TRUE(SurfaceTree(cube.view()).closestPoint({0, 0, 0}).isValid()) << "a planet is no trouble";
    for (const float far : {2e9f, 1e18f, -3e38f}) {
        cube.positions[3].y = far;
        EXPECT_THROW_MSG(SurfaceTree(cube.view()), TopologyError,
                         "vertex 3 lies farther than 1e+09 cm from the origin");
    }
}

TEST(ClosestPoint, goes_on_to_triangles_that_the_filter_accepts)
{
    const SurfaceTree tree(shapes::Lips(4, 1.0f, 0.1f).view());
    const Vec3f nearUpper{0.4f, 0.4f, 0.09f};
    EXPECT_NEAR(tree.closestPoint(nearUpper).distance, 0.01f, 1e-6f);
    const SurfacePoint facingUp =
        tree.closestPoint(nearUpper, 1.0f, [&](std::uint32_t triangle, const SurfacePoint&) {
            return tree.triangleNormal(triangle).z > 0.0f;
        });
    EXPECT_NEAR(facingUp.distance, 0.09f, 1e-6f);
}

TEST(ClosestPoint, leaves_slivers_and_empty_meshes_out)
{
    const SurfaceTree sliver(shapes::Sliver().view());
    EXPECT_EQ(sliver.closestPoint({2, 0, 0}).triangle, 0u);
    const SurfaceTree empty(shapes::FromFaces({}, {}).view());
    EXPECT_FALSE(empty.closestPoint({0, 0, 0}).isValid());
    EXPECT_FALSE(empty.firstHit({0, 0, 1}, {0, 0, -1}).isValid());
}

TEST(FirstHit, meets_the_nearer_side)
{
    const SurfaceTree tree(shapes::Cube(2.0f).view());
    const SurfacePoint hit = tree.firstHit({0.2f, 0.3f, 5}, {0, 0, -1});
    ASSERT_TRUE(hit.isValid());
    EXPECT_NEAR(hit.distance, 4.0f, 1e-6f);
    EXPECT_NEAR(tree.firstHit({0.2f, 0.3f, 5}, {0, 0, -1}, 4.5f).distance, 6.0f, 1e-6f);
    EXPECT_FALSE(tree.firstHit({0.2f, 0.3f, 5}, {0, 0, 1}).isValid());
}

TEST(SurfaceDistances, summarize_to_mean_percentile_and_maximum)
{
    const PolygonMesh grid = shapes::Grid(4, 1.0f);
    const std::vector<Vec3f> points{{0.5f, 0.5f, 1}, {0.5f, 0.5f, 3}};
    const DistanceSummary summary = Summarize(SurfaceDistances(points, grid.view()));
    EXPECT_NEAR(summary.mean, 2.0, 1e-6);
    EXPECT_NEAR(summary.max, 3.0, 1e-6);
    EXPECT_EQ(Summarize({}).max, 0.0);
    std::vector<float> hundred;
    for (int i = 0; i <= 100; ++i)
        hundred.push_back(static_cast<float>(i));
    EXPECT_EQ(Summarize(hundred).p95, 95.0);
    EXPECT_THROW_MSG(SurfaceDistances(points, shapes::FromFaces({}, {}).view()), TopologyError,
                     "the surface to measure to has no faces");
}

TEST(EstimateDistances, is_exact_where_all_vertices_are_measured)
{
    const PolygonMesh a = shapes::Sphere(10.0f, 30, 40), b = shapes::Sphere(10.5f, 21, 33);
    const PolygonMeshView from = a.view(), to = b.view();
    std::vector<float> all = SurfaceDistances(a.positions, to);
    const std::vector<float> back = SurfaceDistances(b.positions, from);
    all.insert(all.end(), back.begin(), back.end());
    const DistanceSummary exact = Summarize(all);
    const DistanceEstimate found = EstimateDistances({&from, 1}, {&to, 1}, all.size());
    EXPECT_EQ(found.measured, all.size());
    EXPECT_EQ(found.all, all.size());
    EXPECT_EQ(found.summary.mean, exact.mean);
    EXPECT_EQ(found.summary.p95, exact.p95);
    EXPECT_EQ(found.summary.max, exact.max);
    EXPECT_EQ(found.meanError, 0.0);
    EXPECT_EQ(found.p95Low, exact.p95);
    EXPECT_EQ(found.p95High, exact.p95);
}

TEST(EstimateDistances, keeps_to_the_limit_and_errs_as_it_says)
{
    // Bumps of many sizes, so that the distances differ from place to place.
    int inside = 0;
    constexpr int cases = 20;
    for (int seed = 0; seed < cases; ++seed) {
        std::mt19937 random(static_cast<unsigned>(seed));
        std::normal_distribution<float> bump(0.0f, 0.3f);
        const PolygonMesh a = shapes::Sphere(10.0f, 60, 80);
        PolygonMesh b = a;
        for (Vec3f& p : b.positions)
            p = p * (1.0f + 0.1f * std::abs(bump(random)));
        const PolygonMeshView from = a.view(), to = b.view();
        std::vector<float> all = SurfaceDistances(a.positions, to);
        const std::vector<float> back = SurfaceDistances(b.positions, from);
        all.insert(all.end(), back.begin(), back.end());
        const DistanceSummary exact = Summarize(all);
        const DistanceEstimate found = EstimateDistances({&from, 1}, {&to, 1}, 1000);
        EXPECT_LE(found.measured, 1000u + 2u); // each body's last run may be a short one
        EXPECT_GE(found.measured, 500u);
        EXPECT_EQ(found.all, all.size());
        EXPECT_EQ(found.summary.max, exact.max);
        EXPECT_GT(found.meanError, 0.0);
        inside += std::abs(found.summary.mean - exact.mean) <= found.meanError;
        inside += found.p95Low <= exact.p95 && exact.p95 <= found.p95High;
    }
    // 19 of 20 each: that fewer than 33 of 40 are inside happens less than once in a thousand times.
    EXPECT_GE(inside, 33);
}

TEST(EstimateDistances, counts_all_meshes_of_a_body)
{
    const PolygonMesh body = shapes::Grid(10, 10.0f), eye = shapes::Moved(shapes::Cube(1.0f), {50, 0, 0});
    const PolygonMeshView both[] = {body.view(), eye.view()}, alone[] = {body.view()};
    EXPECT_EQ(EstimateDistances({both, 2}, {both, 2}).summary.max, 0.0);
    EXPECT_NEAR(EstimateDistances({both, 2}, {alone, 1}, 20).summary.max, 40.5, 1.0);
}
