// Multi-resolution morphs: frames, splitting a fine shape and putting it together again.
// SPDX-License-Identifier: MIT

#include "geometry/deltas.h"
#include "geometry/errors.h"
#include "geometry/multires_detail.h"
#include "geometry/transform.h"
#include "tests/geometry/shapes.h"
#include "tests/geometry/throws.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>

using namespace geometry;

namespace {

/// Two unlike numbers for each of its arguments, between -1 and 1.
std::vector<Vec3f> Noise(std::size_t count, float size, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> along(-size, size);
    std::vector<Vec3f> noise(count);
    for (Vec3f& one : noise)
        one = {along(random), along(random), along(random)};
    return noise;
}

std::vector<Vec3f> Sum(std::vector<Vec3f> a, const std::vector<Vec3f>& b)
{
    for (std::size_t i = 0; i < a.size(); ++i)
        a[i] += b[i];
    return a;
}

float LargestDistance(const std::vector<Vec3f>& a, const std::vector<Vec3f>& b)
{
    EXPECT_EQ(a.size(), b.size());
    float largest = 0.0f;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        largest = std::max(largest, Length(a[i] - b[i]));
    return largest;
}

std::vector<Vec3f> Put(const Subdivision& subdivision, const std::vector<Vec3f>& cage, int level,
                       const MultiresDetail& detail, float value = 1.0f)
{
    const ActiveDetail active{&detail, value};
    return RefineWithDetail(subdivision, cage, level, {&active, 1});
}

/// A mesh with bumps on its subdivision that the cage cannot follow.
struct Bumpy {
    explicit Bumpy(PolygonMesh mesh, int levels) : cage(std::move(mesh)), subdivision(cage.topology, levels)
    {
        fine = subdivision.refine(cage.positions, 0, levels);
        fine = Sum(fine, Noise(fine.size(), 0.2f, 7));
    }

    PolygonMesh cage;
    Subdivision subdivision;
    std::vector<Vec3f> fine;
};

/// A turn about an axis that is none of the three, and a shift.
std::vector<Vec3f> Turned(std::vector<Vec3f> positions)
{
    const Eigen::Matrix3d turn =
        Eigen::AngleAxisd(1.1, Eigen::Vector3d(1, 2, -1).normalized()).toRotationMatrix();
    for (Vec3f& position : positions)
        position = FromEigen(turn * ToEigen(position) + Eigen::Vector3d(3, -2, 5));
    return positions;
}

} // namespace

TEST(CornerFrames, of_a_square_lie_along_its_edges_and_its_normal)
{
    const PolygonMesh square =
        shapes::FromFaces({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, {{0, 1, 2, 3}});
    const std::vector<CornerFrame> frames = CornerFrames(*square.topology, square.positions);
    ASSERT_EQ(frames.size(), 4u);
    const Vec3f up{0, 0, 1};
    const Vec3f towardsTheOneBefore[] = {{0, 1, 0}, {-1, 0, 0}, {0, -1, 0}, {1, 0, 0}};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(frames[i].x, towardsTheOneBefore[i]);
        EXPECT_EQ(frames[i].n, up);
        EXPECT_EQ(frames[i].z, Cross(towardsTheOneBefore[i], up));
        EXPECT_TRUE(frames[i].isUsable());
    }
}

TEST(CornerFrames, give_a_displacement_back_also_where_the_face_is_bent)
{
    const PolygonMesh bent = shapes::FromFaces({{0, 0, 0}, {2, 0, 0}, {2, 2, 1}, {0, 2, 0}}, {{0, 1, 2, 3}});
    for (const CornerFrame& frame : CornerFrames(*bent.topology, bent.positions)) {
        const Vec3f displacement{0.3f, -0.7f, 0.2f};
        EXPECT_LE(Length(frame.toWorld(frame.toLocal(displacement)) - displacement), 1e-6f);
    }
}

TEST(CornerFrames, of_a_face_without_area_are_of_no_use)
{
    const PolygonMesh flat = shapes::FromFaces({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}}, {{0, 1, 2, 3}});
    for (const CornerFrame& frame : CornerFrames(*flat.topology, flat.positions))
        EXPECT_FALSE(frame.isUsable());
}

TEST(Detail, of_one_square_moves_the_vertex_that_its_corner_names)
{
    const PolygonMesh square =
        shapes::FromFaces({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, {{0, 1, 2, 3}});
    const Subdivision subdivision(square.topology, 1);
    const std::vector<Vec3f> smooth = subdivision.refine(square.positions, 0, 1);
    // At each corner of the square, the four vertices of its quarter: the corner itself, the middles of the
    // two edges and the middle of the face.
    const Vec3f middle{1, 1, 0};
    for (std::uint32_t corner = 0; corner < 4; ++corner)
        for (std::uint32_t slot = 0; slot < 4; ++slot) {
            MultiresDetail detail;
            detail.levels.push_back({{4 * corner + slot}, {{0, 0.5f, 0}}}); // along the normal
            const std::vector<Vec3f> moved = Put(subdivision, square.positions, 1, detail);
            std::size_t count = 0;
            for (std::size_t v = 0; v < moved.size(); ++v) {
                if (moved[v] == smooth[v])
                    continue;
                ++count;
                EXPECT_EQ(moved[v], (smooth[v] + Vec3f{0, 0, 0.5f}));
                const bool isMiddle = Length(smooth[v] - middle) < 1e-6f;
                EXPECT_EQ(isMiddle, slot == (corner + 2) % 4) << corner << ' ' << slot;
                const bool isOwnCorner = slot == corner;
                EXPECT_EQ(isOwnCorner, Length(smooth[v] - square.positions[corner]) < 0.51f &&
                                           smooth[v].x != 1.0f && smooth[v].y != 1.0f);
            }
            EXPECT_EQ(count, 1u);
        }
}

TEST(Detail, makes_the_fine_shape_again)
{
    for (const int level : {1, 2, 3}) {
        const PolygonMesh meshes[] = {shapes::Cube(4), shapes::Sphere(10, 8, 10), shapes::Grid(5, 10),
                                      shapes::Mixed()};
        for (const PolygonMesh& mesh : meshes) {
            const Bumpy bumpy(mesh, level);
            const MultiresDetail detail =
                SplitDetail(bumpy.subdivision, bumpy.fine, level, mesh.positions, {}, 0.0f);
            EXPECT_EQ(detail.levels.size(), std::size_t(level));
            // Single precision on coordinates of ten centimetres.
            EXPECT_LE(LargestDistance(Put(bumpy.subdivision, mesh.positions, level, detail), bumpy.fine),
                      1e-5f)
                << "level " << level;
        }
    }
}

TEST(Detail, names_each_vertex_once_and_its_corners_ascend)
{
    const Bumpy bumpy(shapes::Sphere(10, 8, 10), 2);
    const MultiresDetail detail =
        SplitDetail(bumpy.subdivision, bumpy.fine, 2, bumpy.cage.positions, {}, 0.0f);
    for (int level = 1; level <= 2; ++level) {
        const DetailLevel& current = detail.levels[std::size_t(level) - 1];
        EXPECT_TRUE(std::is_sorted(current.corners.begin(), current.corners.end()));
        std::set<std::uint32_t> vertices;
        for (const std::uint32_t corner : current.corners)
            EXPECT_TRUE(vertices.insert(bumpy.subdivision.topology(level)->cornerVertices[corner]).second);
    }
}

TEST(Detail, turns_with_the_cage)
{
    const Bumpy bumpy(shapes::Sphere(10, 8, 10), 2);
    const MultiresDetail detail =
        SplitDetail(bumpy.subdivision, bumpy.fine, 2, bumpy.cage.positions, {}, 0.0f);
    EXPECT_LE(
        LargestDistance(Put(bumpy.subdivision, Turned(bumpy.cage.positions), 2, detail), Turned(bumpy.fine)),
        3e-5f);
}

TEST(Detail, is_scaled_by_the_dial_and_adds_up_over_morphs)
{
    const Bumpy bumpy(shapes::Sphere(10, 8, 10), 2);
    const std::vector<Vec3f>& cage = bumpy.cage.positions;
    const MultiresDetail detail = SplitDetail(bumpy.subdivision, bumpy.fine, 2, cage, {}, 0.0f);
    const std::vector<Vec3f> smooth = bumpy.subdivision.refine(cage, 0, 2);
    const std::vector<Vec3f> half = Put(bumpy.subdivision, cage, 2, detail, 0.5f);
    const std::vector<ActiveDetail> twoHalves{{&detail, 0.5f}, {&detail, 0.5f}};
    EXPECT_LE(LargestDistance(RefineWithDetail(bumpy.subdivision, cage, 2, twoHalves), bumpy.fine), 1e-5f);
    for (std::size_t v = 0; v < half.size(); ++v)
        EXPECT_LE(Length(half[v] - (smooth[v] + bumpy.fine[v]) * 0.5f), 1e-5f);
}

TEST(Detail, shows_up_to_its_limit_and_only_at_the_levels_in_view)
{
    const Bumpy bumpy(shapes::Sphere(10, 8, 10), 2);
    const std::vector<Vec3f>& cage = bumpy.cage.positions;
    MultiresDetail detail = SplitDetail(bumpy.subdivision, bumpy.fine, 2, cage, {}, 0.0f);
    const std::vector<Vec3f> coarse = Put(bumpy.subdivision, cage, 1, detail);
    EXPECT_GT(LargestDistance(coarse, bumpy.subdivision.refine(cage, 0, 1)), 0.05f);
    const ActiveDetail limited{&detail, 1.0f, 1};
    EXPECT_EQ(RefineWithDetail(bumpy.subdivision, cage, 2, {&limited, 1}),
              bumpy.subdivision.refine(coarse, 1, 2));
    EXPECT_EQ(RefineWithDetail(bumpy.subdivision, cage, 0, {&limited, 1}), cage);
}

TEST(Detail, of_a_coarser_level_is_the_nearest_that_the_level_can_be)
{
    // No change of a level-1 vertex brings the refined shape nearer to the fine one.
    const Bumpy bumpy(shapes::Cube(4), 2);
    const std::vector<Vec3f>& cage = bumpy.cage.positions;
    const MultiresDetail detail = SplitDetail(bumpy.subdivision, bumpy.fine, 2, cage, {}, 0.0f);
    std::vector<Vec3f> coarse = Put(bumpy.subdivision, cage, 1, detail);
    const auto squares = [&] {
        const std::vector<Vec3f> refined = bumpy.subdivision.refine(coarse, 1, 2);
        double sum = 0.0;
        for (std::size_t v = 0; v < refined.size(); ++v)
            sum += double(LengthSquared(refined[v] - bumpy.fine[v]));
        return sum;
    };
    const double best = squares();
    for (std::size_t v = 0; v < coarse.size(); ++v)
        for (int axis = 0; axis < 3; ++axis)
            for (const float step : {-0.01f, 0.01f}) {
                coarse[v][axis] += step;
                EXPECT_GT(squares(), best) << v << ' ' << axis;
                coarse[v][axis] -= step;
            }
}

TEST(Detail, drops_what_is_short_and_errs_by_no_more)
{
    const Bumpy bumpy(shapes::Sphere(10, 8, 10), 2);
    const std::vector<Vec3f>& cage = bumpy.cage.positions;
    const float tolerance = 0.1f;
    const MultiresDetail all = SplitDetail(bumpy.subdivision, bumpy.fine, 2, cage, {}, 0.0f);
    const MultiresDetail some = SplitDetail(bumpy.subdivision, bumpy.fine, 2, cage, {}, tolerance);
    EXPECT_LT(some.levels[1].size(), all.levels[1].size());
    EXPECT_GT(some.levels[1].size(), 0u);
    EXPECT_LE(LargestDistance(Put(bumpy.subdivision, cage, 2, some), bumpy.fine), tolerance + 1e-5f);
}

TEST(Detail, beside_that_of_others_makes_the_shape_that_both_give)
{
    const Bumpy bumpy(shapes::Sphere(10, 8, 10), 2);
    const std::vector<Vec3f>& cage = bumpy.cage.positions;
    const MultiresDetail other = SplitDetail(bumpy.subdivision, bumpy.fine, 2, cage, {}, 0.0f);
    const std::vector<Vec3f> wanted = Sum(bumpy.fine, Noise(bumpy.fine.size(), 0.1f, 8));
    const ActiveDetail present{&other, 0.7f};
    const MultiresDetail mine = SplitDetail(bumpy.subdivision, wanted, 2, cage, {&present, 1}, 0.0f);
    const std::vector<ActiveDetail> both{present, {&mine, 1.0f}};
    EXPECT_LE(LargestDistance(RefineWithDetail(bumpy.subdivision, cage, 2, both), wanted), 1e-5f);
}

TEST(Detail, parts_of_a_map_and_of_its_complement_add_up)
{
    const Bumpy bumpy(shapes::Sphere(10, 8, 10), 2);
    const std::vector<Vec3f>& cage = bumpy.cage.positions;
    std::vector<float> weights(cage.size());
    for (std::size_t v = 0; v < weights.size(); ++v)
        weights[v] = float(v % 5) / 4.0f;
    const MultiresDetail whole = SplitDetail(bumpy.subdivision, bumpy.fine, 2, cage, {}, 0.0f);
    MultiresDetail head = whole, body = whole;
    Attenuate(head, bumpy.subdivision, weights, 1.0f);
    Attenuate(body, bumpy.subdivision, weights, -1.0f);
    const std::vector<ActiveDetail> both{{&head, 1.0f}, {&body, 1.0f}};
    EXPECT_LE(LargestDistance(RefineWithDetail(bumpy.subdivision, cage, 2, both), bumpy.fine), 1e-5f);

    MultiresDetail none = whole;
    Attenuate(none, bumpy.subdivision, std::vector<float>(cage.size()), 1.0f);
    EXPECT_TRUE(none.empty());
    MultiresDetail unchanged = whole;
    Attenuate(unchanged, bumpy.subdivision, std::vector<float>(cage.size(), 1.0f), 1.0f);
    EXPECT_EQ(unchanged.levels[1].corners, whole.levels[1].corners);
}

TEST(Detail, is_kept_where_a_fresh_one_moves_nothing)
{
    const PolygonMesh square =
        shapes::FromFaces({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, {{0, 1, 2, 3}});
    const Subdivision subdivision(square.topology, 1);
    // Corner 2 of face 0 and corner 3 of face 1 are both the middle of the square.
    const std::vector<std::uint32_t>& vertices = subdivision.topology(1)->cornerVertices;
    ASSERT_EQ(vertices[2], vertices[7]);
    const DetailLevel old{{0, 2, 9}, {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}};
    const DetailLevel fresh{{5, 7}, {{4, 0, 0}, {5, 0, 0}}};
    const DetailLevel merged = WithPreserved(old, fresh, *subdivision.topology(1));
    EXPECT_EQ(merged.corners, (std::vector<std::uint32_t>{0, 5, 7, 9}));
    EXPECT_EQ(merged.offsets, (std::vector<Vec3f>{{1, 0, 0}, {4, 0, 0}, {5, 0, 0}, {3, 0, 0}}));
}

TEST(Detail, leaves_vertices_out_that_lie_on_faces_without_area_only)
{
    const PolygonMesh sliver = shapes::Joined(
        shapes::Cube(4), shapes::FromFaces({{9, 0, 0}, {10, 0, 0}, {11, 0, 0}, {12, 0, 0}}, {{0, 1, 2, 3}}));
    const Bumpy bumpy(sliver, 1);
    const MultiresDetail detail = SplitDetail(bumpy.subdivision, bumpy.fine, 1, sliver.positions, {}, 0.0f);
    for (const Vec3f offset : detail.levels[0].offsets)
        EXPECT_TRUE(IsFinite(offset));
    const std::vector<Vec3f> made = Put(bumpy.subdivision, sliver.positions, 1, detail);
    const std::size_t ofCube = 26;
    for (std::size_t v = 0; v < made.size(); ++v) {
        const float limit = bumpy.fine[v].x < 5.0f ? 1e-5f : 1.0f;
        EXPECT_LE(Length(made[v] - bumpy.fine[v]), limit);
    }
    EXPECT_EQ(detail.levels[0].size(), ofCube);
}

TEST(SampleCage, stands_where_its_vertices_stand_in_the_fine_shape)
{
    // Flat grids stay where they are: descendants of inner vertices lie on them.
    const PolygonMesh grid = shapes::Grid(4, 8);
    const Subdivision subdivision(grid.topology, 2, BoundaryRule::EdgeAndCorner);
    const std::vector<Vec3f> sampled =
        SampleCage(subdivision, subdivision.refine(grid.positions, 0, 2), 2, grid.positions);
    EXPECT_LE(LargestDistance(sampled, grid.positions), 1e-5f);

    const PolygonMesh mixed = shapes::Joined(shapes::Mixed(), shapes::LooseVertex());
    const Subdivision ofMixed(mixed.topology, 2);
    const std::vector<Vec3f> once = ofMixed.refine(mixed.positions, 0, 1);
    // The limit of moving one vertex far away: its descendant is what moves most.
    for (std::size_t v = 0; v < mixed.positions.size(); ++v) {
        std::vector<Vec3f> cage(mixed.positions.size());
        cage[v] = {1, 0, 0};
        const std::vector<Vec3f> fine = ofMixed.refine(cage, 0, 2);
        const Vec3f most =
            *std::max_element(fine.begin(), fine.end(), [](Vec3f a, Vec3f b) { return a.x < b.x; });
        EXPECT_EQ(SampleCage(ofMixed, fine, 2, cage)[v], v + 1 == mixed.positions.size() ? cage[v] : most)
            << v;
    }
}

TEST(Detail, refuses_what_does_not_fit)
{
    const Bumpy bumpy(shapes::Cube(4), 1);
    MultiresDetail beyond;
    beyond.levels.push_back({{96}, {{0, 0, 1}}});
    EXPECT_THROW_MSG(Put(bumpy.subdivision, bumpy.cage.positions, 1, beyond), TopologyError,
                     "detail of level 1 names corner 96 of a mesh with 96");
    EXPECT_THROW_MSG(SplitDetail(bumpy.subdivision, std::vector<Vec3f>(3), 1, bumpy.cage.positions, {}, 0.0f),
                     TopologyError, "subdivision level 1 has 26 vertices but 3 values are given");
}
