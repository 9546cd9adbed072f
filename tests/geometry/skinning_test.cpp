// Rotations, skeletons and skinning.
// SPDX-License-Identifier: MIT

#include "geometry/skinning.h"

#include "geometry/errors.h"
#include "throws.h"

#include <random>

using namespace geometry;
using Eigen::Vector3d;

namespace {

void ExpectNear(const Vector3d& found, const Vector3d& expected, double tolerance)
{
    EXPECT_LE((found - expected).norm(), tolerance)
        << found.transpose() << " instead of " << expected.transpose();
}

/// Upper and lower arm: the elbow 10 cm along X from a shoulder at 100 cm.
std::vector<Joint> Arm(const Vector3d& childOrientation, const Vector3d& childRotation)
{
    Joint shoulder, elbow;
    shoulder.center = {0, 100, 0};
    shoulder.rotation = {0, 0, 90};
    elbow.parent = 0;
    elbow.center = {10, 100, 0};
    elbow.orientation = childOrientation;
    elbow.rotation = childRotation;
    elbow.order = RotationOrder::YZX;
    return {shoulder, elbow};
}

struct RandomRig {
    std::vector<Joint> joints;
    SkinWeights weights;
    std::vector<Vec3f> rest;
};

RandomRig MakeRandomRig(unsigned seed, double angle, bool scaled)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const auto vector = [&](double size) {
        return Vector3d(size * unit(random), size * unit(random), size * unit(random));
    };
    RandomRig rig;
    for (int j = 0; j < 12; ++j) {
        Joint joint;
        joint.parent = j == 0 ? -1 : static_cast<int>(random() % static_cast<unsigned>(j));
        joint.center = vector(90);
        joint.orientation = vector(180);
        joint.order = static_cast<RotationOrder>(random() % 6);
        joint.rotation = vector(angle);
        joint.inheritsScale = random() % 2;
        if (scaled) {
            joint.translation = vector(5);
            joint.scale = Vector3d::Ones() + vector(0.2);
        }
        rig.joints.push_back(joint);
    }
    std::vector<JointWeights> lists(rig.joints.size());
    for (std::uint32_t v = 0; v < 200; ++v) {
        const Vector3d at = vector(90);
        rig.rest.push_back(FromEigen(at));
        for (int i = 0; i < 4; ++i) {
            JointWeights& list = lists[random() % lists.size()];
            list.vertices.push_back(v);
            list.weights.push_back(static_cast<float>(0.01 + std::abs(unit(random))));
        }
    }
    rig.weights = MakeSkinWeights(rig.rest.size(), lists);
    return rig;
}

} // namespace

TEST(RotationOrder, reads_and_names_all_six)
{
    for (const char* name : {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"})
        EXPECT_EQ(RotationOrderName(ParseRotationOrder(name)), name);
    EXPECT_THROW_MSG(ParseRotationOrder("XXY"), base::FormatError, "unknown rotation order \"XXY\"");
}

TEST(EulerRotation, applies_the_first_letter_first)
{
    ExpectNear(EulerRotation({90, 90, 0}, RotationOrder::XYZ) * Vector3d(0, 0, 1), {0, -1, 0}, 1e-12);
    ExpectNear(EulerRotation({90, 90, 0}, RotationOrder::YXZ) * Vector3d(0, 0, 1), {1, 0, 0}, 1e-12);
}

TEST(EvaluateSkeleton, carries_a_child_around_its_parent)
{
    const std::vector<JointPose> poses = EvaluateSkeleton(Arm(Vector3d::Zero(), Vector3d::Zero()));
    ExpectNear(poses[1].origin, {0, 110, 0}, 1e-12);
}

TEST(EvaluateSkeleton, turns_about_the_orientation)
{
    // Known to four decimals.
    ExpectNear(EvaluateSkeleton(Arm({0, 0, 30}, {0, 45, 0}))[1].apply({20, 100, 0}),
               {1.2683, 117.8033, -6.1237}, 1e-4);
    ExpectNear(EvaluateSkeleton(Arm({0, 0, 30}, {20, 30, 40}))[1].apply({20, 100, 5}),
               {-7.5512, 118.1970, 0.8884}, 1e-4);
}

TEST(EvaluateSkeleton, passes_scale_on_only_where_it_is_inherited)
{
    std::vector<Joint> arm = Arm(Vector3d::Zero(), Vector3d::Zero());
    arm[0].rotation = Vector3d::Zero();
    arm[0].orientation = {10, 20, 30};
    arm[0].scale = {2, 2, 2};
    ExpectNear(EvaluateSkeleton(arm)[1].apply({20, 100, 0}), {40, 100, 0}, 1e-12);
    arm[1].inheritsScale = false;
    ExpectNear(EvaluateSkeleton(arm)[1].apply({20, 100, 0}), {30, 100, 0},
               1e-12); // the elbow moves all the same
}

TEST(EvaluateSkeleton, survives_a_parent_scaled_to_nothing)
{
    std::vector<Joint> arm = Arm(Vector3d::Zero(), Vector3d::Zero());
    arm[0].scale = {0, 0, 0};
    arm[1].inheritsScale = false;
    EXPECT_TRUE(EvaluateSkeleton(arm)[1].apply({20, 100, 0}).allFinite());
}

TEST(Skin, keeps_the_volume_where_linear_blending_collapses)
{
    const auto skinned = [](double degrees, SkinMode mode) {
        Joint a, b;
        a.rotation = {0, 0, degrees};
        b.rotation = {0, 0, -degrees};
        const std::vector<JointWeights> lists{{{0}, {0.5f}}, {{0}, {0.5f}}};
        return Skin(std::vector<Vec3f>{{1, 0, 0}}, MakeSkinWeights(1, lists),
                    EvaluateSkeleton(std::vector<Joint>{a, b}), mode)[0];
    };
    EXPECT_LE(Length(skinned(170, SkinMode::DualQuaternion) - Vec3f{-1, 0, 0}), 1e-6f);
    EXPECT_LE(Length(skinned(90, SkinMode::Linear)), 1e-6f);
}

/// One vertex at (1, 0, 0), held half by a joint that turns about Z and half by one that stays.
Vec3f HalfTurned(double degrees, const SkinBlend& blend)
{
    Joint turning;
    turning.rotation = {0, 0, degrees};
    const std::vector<JointWeights> lists{{{0}, {0.5f}}, {{0}, {0.5f}}};
    return Skin(std::vector<Vec3f>{{1, 0, 0}}, MakeSkinWeights(1, lists),
                EvaluateSkeleton(std::vector<Joint>{turning, Joint()}), blend)[0];
}

TEST(Skin, mixes_the_two_blends_by_the_share_of_each_vertex)
{
    // Linear: half way on the chord. Dual quaternions: half the angle.
    const double angle = 170.0 * M_PI / 180.0;
    const Vector3d chord(0.5 * (1.0 + std::cos(angle)), 0.5 * std::sin(angle), 0);
    const Vector3d arc(std::cos(angle / 2), std::sin(angle / 2), 0);
    for (const float share : {0.0f, 0.25f, 1.0f}) {
        SkinBlend blend(SkinMode::Linear);
        blend.dualQuaternionShares = base::Span<const float>(&share, 1);
        ExpectNear(ToEigen(HalfTurned(170.0, blend)), (1.0 - share) * chord + share * arc, 1e-6);
    }
}

TEST(Skin, scales_by_weights_of_their_own_where_there_are_such)
{
    Joint growing;
    growing.scale = {3, 3, 3};
    growing.rotation = {0, 0, 90};
    const std::vector<JointPose> poses = EvaluateSkeleton(std::vector<Joint>{growing, Joint()});
    const SkinWeights turns = MakeSkinWeights(3, std::vector<JointWeights>{{{0, 1, 2}, {1, 1, 1}}});
    // The first half, the second not at all, the third has no row.
    const SkinWeights scales =
        MakeSkinWeights(3, std::vector<JointWeights>{{{0}, {0.5f}}, {{0, 1}, {0.5f, 1.0f}}});
    const std::vector<Vec3f> rest{{1, 0, 0}, {1, 0, 0}, {1, 0, 0}};
    for (const SkinMode mode : {SkinMode::Linear, SkinMode::DualQuaternion}) {
        SkinBlend blend(mode);
        blend.scaleWeights = &scales;
        const std::vector<Vec3f> posed = Skin(rest, turns, poses, blend);
        ExpectNear(ToEigen(posed[0]), {0, 2, 0}, 1e-6);
        ExpectNear(ToEigen(posed[1]), {0, 1, 0}, 1e-6);
        ExpectNear(ToEigen(posed[2]), {0, 1, 0}, 1e-6);
    }
}

TEST(Skin, refuses_a_blend_for_another_mesh)
{
    const SkinWeights weights = MakeSkinWeights(2, std::vector<JointWeights>{{{0}, {1.0f}}});
    const SkinWeights fewer = MakeSkinWeights(1, std::vector<JointWeights>{{{0}, {1.0f}}});
    const std::vector<JointPose> poses = EvaluateSkeleton(std::vector<Joint>{Joint()});
    const std::vector<Vec3f> rest{{1, 2, 3}, {4, 5, 6}};
    const float share = 0.5f;
    SkinBlend ofOne, byFewer;
    ofOne.dualQuaternionShares = base::Span<const float>(&share, 1);
    byFewer.scaleWeights = &fewer;
    EXPECT_THROW(Skin(rest, weights, poses, ofOne), TopologyError);
    EXPECT_THROW(Skin(rest, weights, poses, byFewer), TopologyError);
}

TEST(Skin, moves_nothing_in_the_bind_pose)
{
    RandomRig rig = MakeRandomRig(5, 0.0, false);
    for (const SkinMode mode : {SkinMode::Linear, SkinMode::DualQuaternion})
        EXPECT_EQ(Skin(rig.rest, rig.weights, EvaluateSkeleton(rig.joints), mode), rig.rest);
}

TEST(Skin, follows_one_joint_exactly_under_full_weight)
{
    const std::vector<JointPose> poses = EvaluateSkeleton(Arm({0, 0, 30}, {20, 30, 40}));
    const SkinWeights weights = MakeSkinWeights(1, std::vector<JointWeights>{{}, {{0}, {0.3f}}});
    for (const SkinMode mode : {SkinMode::Linear, SkinMode::DualQuaternion})
        ExpectNear(ToEigen(Skin(std::vector<Vec3f>{{20, 100, 5}}, weights, poses, mode)[0]),
                   poses[1].apply({20, 100, 5}), 2e-5); // about one float step at 1.2 m
}

TEST(Skin, leaves_a_vertex_without_weights_in_place)
{
    const std::vector<JointPose> poses = EvaluateSkeleton(Arm(Vector3d::Zero(), Vector3d::Zero()));
    const SkinWeights weights = MakeSkinWeights(2, std::vector<JointWeights>{{{0}, {1.0f}}});
    const std::vector<Vec3f> rest{{1, 2, 3}, {4, 5, 6}};
    EXPECT_EQ(Skin(rest, weights, poses, SkinMode::DualQuaternion)[1], rest[1]);
}

TEST(Unskin, undoes_mixed_blends_and_scales_of_their_own)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        const RandomRig rig = MakeRandomRig(seed, 40.0, true), other = MakeRandomRig(seed + 100, 0.0, false);
        std::vector<float> shares;
        for (std::size_t v = 0; v < rig.rest.size(); ++v)
            shares.push_back(static_cast<float>(v % 5) / 4.0f);
        SkinBlend blend;
        blend.dualQuaternionShares = shares;
        blend.scaleWeights = &other.weights;
        const std::vector<JointPose> poses = EvaluateSkeleton(rig.joints);
        const std::vector<Vec3f> back =
            Unskin(Skin(rig.rest, rig.weights, poses, blend), rig.weights, poses, blend);
        for (std::size_t v = 0; v < back.size(); ++v) // as below; a mixture may shrink things a little more
            EXPECT_LE(Length(back[v] - rig.rest[v]), 5e-3f);
    }
}

TEST(Unskin, undoes_any_pose)
{
    for (unsigned seed = 1; seed <= 50; ++seed) {
        SCOPED_TRACE(seed);
        const RandomRig rig = MakeRandomRig(seed, 60.0, true);
        const std::vector<JointPose> poses = EvaluateSkeleton(rig.joints);
        const std::vector<Vec3f> posed = Skin(rig.rest, rig.weights, poses, SkinMode::DualQuaternion);
        const std::vector<Vec3f> back = Unskin(posed, rig.weights, poses, SkinMode::DualQuaternion);
        for (std::size_t v = 0; v < back.size(); ++v) // float steps at some metres, scaled back by up to four
            EXPECT_LE(Length(back[v] - rig.rest[v]), 2e-3f);
    }
}

TEST(Unskin, leaves_a_flattened_vertex_where_it_is)
{
    Joint joint;
    joint.scale = {1, 0, 1};
    const std::vector<JointPose> poses = EvaluateSkeleton(std::vector<Joint>{joint});
    const SkinWeights weights = MakeSkinWeights(1, std::vector<JointWeights>{{{0}, {1.0f}}});
    const std::vector<Vec3f> posed{{1, 2, 3}};
    EXPECT_EQ(Unskin(posed, weights, poses, SkinMode::Linear), posed);
}

TEST(MakeSkinWeights, sums_to_one_and_refuses_a_vertex_out_of_range)
{
    const SkinWeights weights = MakeSkinWeights(1, std::vector<JointWeights>{{{0}, {3.0f}}, {{0}, {1.0f}}});
    EXPECT_EQ(weights.weights, (std::vector<float>{0.75f, 0.25f}));
    EXPECT_THROW_MSG(MakeSkinWeights(1, std::vector<JointWeights>{{{1}, {1.0f}}}), TopologyError,
                     "joint 0 weighs vertex 1 but only 1 is defined");
}

TEST(Skin, refuses_lengths_and_joints_that_do_not_fit)
{
    const SkinWeights weights = MakeSkinWeights(1, std::vector<JointWeights>{{}, {{0}, {1.0f}}});
    EXPECT_THROW_MSG(Skin(std::vector<Vec3f>(2), weights, std::vector<JointPose>(2), SkinMode::Linear),
                     TopologyError, "shape has 2 vertices but the weights are for 1");
    EXPECT_THROW_MSG(Skin(std::vector<Vec3f>(1), weights, std::vector<JointPose>(1), SkinMode::Linear),
                     TopologyError, "weight names joint 1 but only 1 is defined");
}
