// Morphs of subdivided meshes: splitting a shape, under poses and beside other morphs.
// SPDX-License-Identifier: MIT

#include "geometry/morph_split.h"

#include "geometry/errors.h"
#include "shapes.h"
#include "throws.h"

#include <random>

using namespace geometry;

namespace {

constexpr int level = 2;

/// Turned by two joints, each vertex by both.
struct Rig {
    explicit Rig(base::Span<const Vec3f> rest)
    {
        std::vector<Joint> joints(2);
        joints[0].rotation = {0, 0, 25};
        joints[1].parent = 0;
        joints[1].center = {0, 5, 0};
        joints[1].rotation = {40, 10, 0};
        poses = EvaluateSkeleton(joints);
        std::vector<JointWeights> lists(2);
        for (std::uint32_t v = 0; v < rest.size(); ++v)
            for (std::size_t j = 0; j < 2; ++j) {
                lists[j].vertices.push_back(v);
                lists[j].weights.push_back(j == 0 ? 0.3f : 0.7f);
            }
        weights = MakeSkinWeights(rest.size(), lists);
    }
    CagePose pose() const { return {&weights, poses, SkinMode::DualQuaternion}; }
    std::vector<Vec3f> posed(base::Span<const Vec3f> rest) const
    {
        return Skin(rest, weights, poses, SkinMode::DualQuaternion);
    }

    std::vector<JointPose> poses;
    SkinWeights weights;
};

std::vector<Vec3f> Bumped(std::vector<Vec3f> positions, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> along(-0.2f, 0.2f);
    for (Vec3f& position : positions)
        position += {along(random), along(random), along(random)};
    return positions;
}

/// What the mesh looks like with a morph at 1: its cage posed, its detail beside that of others.
std::vector<Vec3f> Worn(const Subdivision& subdivision, const PresentShape& present,
                        const SubdividedMorph& morph)
{
    std::vector<Vec3f> cage(present.rest.begin(), present.rest.end());
    AddDeltas(cage, morph.deltas, 1.0f);
    if (present.pose.weights)
        cage = Skin(cage, *present.pose.weights, present.pose.joints, present.pose.blend);
    std::vector<ActiveDetail> details(present.details.begin(), present.details.end());
    details.push_back({&morph.detail});
    return RefineWithDetail(subdivision, cage, level, details);
}

float LargestDistance(const std::vector<Vec3f>& a, const std::vector<Vec3f>& b)
{
    EXPECT_EQ(a.size(), b.size());
    float largest = 0.0f;
    for (std::size_t v = 0; v < a.size(); ++v)
        largest = std::max(largest, Length(a[v] - b[v]));
    return largest;
}

class SplitMorphOfSphere : public testing::Test {
protected:
    const PolygonMesh _sphere = shapes::Sphere(10, 8, 10);
    const Subdivision _subdivision{_sphere.topology, level};
    const std::vector<Vec3f> _smooth = _subdivision.refine(_sphere.positions, 0, level);
    const PresentShape _atRest{_sphere.positions, _sphere.positions, _sphere.positions, {}, {}};
};

} // namespace

TEST_F(SplitMorphOfSphere, makes_the_shape_with_either_cage)
{
    const std::vector<Vec3f> fine = Bumped(_smooth, 1);
    for (const bool smoothCage : {true, false}) {
        MorphSplitOptions options;
        options.smoothCage = smoothCage;
        options.tolerance = 0.0f;
        const SubdividedMorph morph = SplitMorph(_subdivision, fine, level, _atRest, options);
        // Single precision on coordinates of ten centimetres.
        EXPECT_LE(LargestDistance(Worn(_subdivision, _atRest, morph), fine), 1e-5f);
    }
}

TEST_F(SplitMorphOfSphere, has_a_smooth_cage_that_leaves_less_to_the_detail)
{
    std::vector<Vec3f> larger = _sphere.positions;
    for (Vec3f& position : larger)
        position *= 1.1f;
    const std::vector<Vec3f> fine = _subdivision.refine(larger, 0, level);
    MorphSplitOptions options;
    const SubdividedMorph smooth = SplitMorph(_subdivision, fine, level, _atRest, options);
    options.smoothCage = false;
    const SubdividedMorph sampled = SplitMorph(_subdivision, fine, level, _atRest, options);
    EXPECT_TRUE(smooth.detail.empty());
    EXPECT_FALSE(sampled.detail.empty());
}

TEST_F(SplitMorphOfSphere, undoes_the_pose_and_what_other_morphs_add)
{
    const std::vector<Vec3f> morphed = Bumped(_sphere.positions, 2);
    const Rig rig(morphed);
    const std::vector<Vec3f> posed = rig.posed(morphed);
    const MultiresDetail other =
        SplitDetail(_subdivision, Bumped(_subdivision.refine(posed, 0, level), 3), level, posed, {}, 0.0f);
    const ActiveDetail active{&other, 0.5f};
    const PresentShape present{_sphere.positions, morphed, posed, rig.pose(), {&active, 1}};
    const std::vector<Vec3f> fine = Bumped(_subdivision.refine(posed, 0, level), 4);
    const SubdividedMorph morph = SplitMorph(_subdivision, fine, level, present, {});
    EXPECT_LE(LargestDistance(Worn(_subdivision, present, morph), fine), 0.01f + 1e-5f); // the tolerance
}

TEST_F(SplitMorphOfSphere, finds_the_deltas_that_a_pose_has_turned)
{
    const std::vector<Vec3f> wanted = Bumped(_sphere.positions, 6);
    const Rig rig(_sphere.positions);
    const std::vector<Vec3f> posed = rig.posed(_sphere.positions);
    const PresentShape present{_sphere.positions, _sphere.positions, posed, rig.pose(), {}};
    const std::vector<Vec3f> fine = _subdivision.refine(rig.posed(wanted), 0, level);
    const SubdividedMorph morph = SplitMorph(_subdivision, fine, level, present, {});
    std::vector<Vec3f> found = _sphere.positions;
    AddDeltas(found, morph.deltas, 1.0f);
    EXPECT_LE(LargestDistance(found, wanted), 0.01f); // the tolerance
}

TEST_F(SplitMorphOfSphere, is_nothing_where_nothing_is_changed)
{
    const MultiresDetail other =
        SplitDetail(_subdivision, Bumped(_smooth, 7), level, _sphere.positions, {}, 0.0f);
    const ActiveDetail active{&other};
    PresentShape besideAnother = _atRest;
    besideAnother.details = {&active, 1};
    for (const PresentShape& present : {_atRest, besideAnother}) {
        const std::vector<Vec3f> fine =
            RefineWithDetail(_subdivision, _sphere.positions, level, present.details);
        const SubdividedMorph morph = SplitMorph(_subdivision, fine, level, present, {});
        EXPECT_TRUE(morph.deltas.empty());
        EXPECT_TRUE(morph.detail.empty());
    }
}

TEST_F(SplitMorphOfSphere, keeps_the_levels_that_are_wanted)
{
    const std::vector<Vec3f> fine = Bumped(_smooth, 5);
    const SubdividedMorph whole = SplitMorph(_subdivision, fine, level, _atRest, {});
    MorphSplitOptions options;
    options.coarsestLevel = options.finestLevel = 1;
    const SubdividedMorph middle = SplitMorph(_subdivision, fine, level, _atRest, options);
    EXPECT_TRUE(middle.deltas.empty());
    EXPECT_EQ(middle.detail.levels[0].offsets, whole.detail.levels[0].offsets);
    EXPECT_TRUE(middle.detail.levels[1].empty());
    EXPECT_FALSE(whole.deltas.empty() || whole.detail.levels[1].empty());
}

TEST_F(SplitMorphOfSphere, mirrors_cage_and_detail_together)
{
    // A bump on the left, as large as the finest level shows it.
    std::vector<Vec3f> fine = _smooth, expected = _smooth;
    for (std::size_t v = 0; v < fine.size(); ++v) {
        const Vec3f bump{0.3f, 0.2f * std::sin(3 * fine[v].y), 0.1f};
        if (fine[v].x < -6.0f)
            fine[v] += bump;
        if (expected[v].x > 6.0f)
            expected[v] += {-bump.x, bump.y, bump.z};
    }
    MorphSplitOptions options;
    options.tolerance = 0.0f;
    options.mirroring = Mirroring{0, MirrorSide::Swap};
    const SubdividedMorph morph = SplitMorph(_subdivision, fine, level, _atRest, options);
    EXPECT_LE(LargestDistance(Worn(_subdivision, _atRest, morph), expected), 1e-4f);
}

TEST_F(SplitMorphOfSphere, refuses_shapes_of_another_mesh)
{
    EXPECT_THROW_MSG(SplitMorph(_subdivision, std::vector<Vec3f>(3), level, _atRest), TopologyError,
                     "subdivision level 2 has " + std::to_string(_smooth.size()) +
                         " vertices but 3 values are given");
    const std::vector<Vec3f> two(2);
    PresentShape present = _atRest;
    present.rest = two;
    EXPECT_THROW_MSG(SplitMorph(_subdivision, _smooth, level, present), TopologyError,
                     "subdivision level 0 has " + std::to_string(_sphere.vertexCount()) +
                         " vertices but 2 values are given");
}
