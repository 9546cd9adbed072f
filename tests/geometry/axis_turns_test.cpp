// Skins with weights of their own for each angle of a joint.
// SPDX-License-Identifier: MIT

#include "geometry/errors.h"
#include "geometry/skinning.h"
#include "throws.h"

using namespace geometry;
using Eigen::Vector3d;

namespace {

SkinWeights Weights(std::vector<JointWeights> lists, std::size_t vertexCount = 1)
{
    return MakeSkinWeights(vertexCount, lists);
}

/// Upper arm from the origin along X, lower arm from x = 10, hand from x = 20.
std::vector<Joint> Arm()
{
    std::vector<Joint> joints(3);
    for (int j = 0; j < 3; ++j) {
        joints[static_cast<std::size_t>(j)].parent = j - 1;
        joints[static_cast<std::size_t>(j)].center = {10.0 * j, 0, 0};
    }
    return joints;
}

/// The vertex of a skin in which it belongs half to the upper and half to the lower arm, but for X alone to
/// the upper and for Y alone to the lower.
Vec3f Posed(const std::vector<Joint>& joints, Vec3f rest, const std::vector<float>& generalShares = {},
            SkinMode mode = SkinMode::Linear)
{
    const SkinWeights half = Weights({{{0}, {0.5f}}, {{0}, {0.5f}}, {}});
    const AxisWeights axes{Weights({{{0}, {1}}, {}, {}}), Weights({{}, {{0}, {1}}, {}}), half};
    SkinBlend blend(mode);
    blend.axisWeights = &axes;
    blend.generalShares = generalShares;
    const std::vector<JointPose> poses = EvaluateSkeleton(joints);
    const Vec3f posed = Skin(std::vector<Vec3f>{rest}, half, poses, blend)[0];
    EXPECT_LE(Length(Unskin(std::vector<Vec3f>{posed}, half, poses, blend)[0] - rest), 1e-5f);
    return posed;
}

void ExpectNear(Vec3f found, Vec3f expected)
{
    EXPECT_LE(Length(found - expected), 1e-5f)
        << found.x << " " << found.y << " " << found.z << " instead of " << expected.x << " " << expected.y
        << " " << expected.z;
}

} // namespace

TEST(AxisTurns, take_each_angle_by_its_own_weights)
{
    std::vector<Joint> arm = Arm();
    arm[1].rotation = {90, 0, 0};
    ExpectNear(Posed(arm, {12, 1, 3}), {12, 1, 3});
    arm[1].rotation = {0, 90, 0};
    ExpectNear(Posed(arm, {12, 1, 3}), {13, 1, -2});
    const float half = std::sqrt(0.5f);
    arm[1].rotation = {0, 0, 90};
    ExpectNear(Posed(arm, {12, 1, 3}), {10 + 2 * half - half, 2 * half + half, 3});
}

TEST(AxisTurns, follow_the_joints_above_as_a_whole)
{
    std::vector<Joint> arm = Arm();
    arm[0].rotation = {0, 0, 90};
    arm[1].rotation = {0, 90, 0};
    ExpectNear(Posed(arm, {12, 1, 3}), {-1, 13, -2});
}

TEST(AxisTurns, keep_the_length_where_the_chord_shortens_it)
{
    std::vector<Joint> arm = Arm();
    arm[1].rotation = {0, 0, 120};
    EXPECT_NEAR(Length(Posed(arm, {14, 0, 0}) - Vec3f{10, 0, 0}), 4.0f, 1e-5f);
    const std::vector<float> all{1.0f};
    EXPECT_NEAR(Length(Posed(arm, {14, 0, 0}, all) - Vec3f{10, 0, 0}), 2.0f, 1e-5f);
}

TEST(AxisTurns, keep_the_joints_own_order_and_axes)
{
    std::vector<Joint> arm = Arm();
    arm[1].orientation = {0, 0, 90}; // its X axis is Y of the figure, its Y axis -X
    arm[1].rotation = {0, 90, 0};
    ExpectNear(Posed(arm, {12, 1, 3}), {12, 3, -1});
    arm[1].orientation = Vector3d::Zero();
    arm[1].rotation = {0, 90, 180}; // half of Z: 90
    arm[1].order = RotationOrder::YZX;
    ExpectNear(Posed(arm, {12, 1, 3}), {9, 3, -2});
    arm[1].order = RotationOrder::ZYX;
    ExpectNear(Posed(arm, {12, 1, 3}), {13, 2, 1});
}

TEST(AxisTurns, move_by_the_mean_of_the_shares_and_scale_before_they_turn)
{
    std::vector<Joint> arm = Arm();
    arm[1].translation = {0, 6, 0}; // shares 0, 1 and a half
    ExpectNear(Posed(arm, {12, 1, 3}), {12, 4, 3});
    arm[1].translation = Vector3d::Zero();
    arm[1].scale = {3, 1, 1}; // the skin's own half of it
    arm[1].rotation = {0, 90, 0};
    ExpectNear(Posed(arm, {12, 1, 3}), {13, 1, -4});
}

TEST(AxisTurns, mix_with_the_general_map_by_shares)
{
    std::vector<Joint> arm = Arm();
    arm[1].rotation = {0, 90, 0}; // axes: (13, 1, -2); linear half way from (12, 1, 3): (12.5, 1, 0.5)
    const std::vector<float> quarter{0.25f};
    ExpectNear(Posed(arm, {12, 1, 3}, quarter), {12.875f, 1, -1.375f});
}

TEST(AxisTurns, leave_a_figure_at_rest_as_it_is_to_the_bit)
{
    std::vector<Joint> arm = Arm();
    arm[2].rotation = {10, 20, 30}; // holds nothing
    const Vec3f rest{12.3f, 1.7f, 3.9f}, posed = Posed(arm, rest);
    EXPECT_EQ(posed.x, rest.x);
    EXPECT_EQ(posed.y, rest.y);
    EXPECT_EQ(posed.z, rest.z);
}

TEST(AxisTurns, count_where_the_general_weights_hold_nothing_that_moves)
{
    std::vector<Joint> arm = Arm();
    arm[1].rotation = {0, 90, 0};
    const SkinWeights upper = Weights({{{0}, {1}}, {}, {}}), lower = Weights({{}, {{0}, {1}}, {}});
    const AxisWeights axes{lower, lower, lower};
    SkinBlend blend;
    blend.axisWeights = &axes;
    ExpectNear(Skin(std::vector<Vec3f>{{12, 1, 3}}, upper, EvaluateSkeleton(arm), blend)[0], {13, 1, -2});
}

TEST(AxisTurns, go_about_joints_where_the_scales_above_put_them)
{
    std::vector<Joint> arm = Arm();
    arm[0].scale = {2, 2, 2}; // the lower arm begins at x = 20, and inherits the scale
    arm[1].rotation = {0, 90, 0};
    ExpectNear(Posed(arm, {12, 1, 3}), {26, 2, -4});
}

TEST(AxisTurns, of_equal_weights_move_what_one_joint_holds_as_every_blend_does)
{
    std::vector<Joint> arm = Arm();
    arm[0].rotation = {10, -20, 30};
    arm[1].rotation = {-40, 50, 60};
    arm[1].translation = {1, 2, 3};
    arm[2].rotation = {70, 15, -25};
    arm[2].order = RotationOrder::ZXY;
    arm[2].orientation = {5, 6, 7};
    arm[1].scale = {1.5, 0.5, 2};
    const SkinWeights hand = Weights({{}, {}, {{0}, {1}}});
    const AxisWeights axes{hand, hand, hand};
    SkinBlend blend;
    blend.axisWeights = &axes;
    const std::vector<JointPose> poses = EvaluateSkeleton(arm);
    ExpectNear(Skin(std::vector<Vec3f>{{22, 1, 3}}, hand, poses, blend)[0],
               FromEigen(poses[2].apply({22, 1, 3})));
}

TEST(AxisTurns, refuse_weights_for_another_mesh)
{
    const SkinWeights one = Weights({{{0}, {1}}}), two = Weights({{{0}, {1}}}, 2);
    const AxisWeights axes{one, two, one};
    SkinBlend blend;
    blend.axisWeights = &axes;
    const std::vector<JointPose> poses = EvaluateSkeleton(std::vector<Joint>(1));
    EXPECT_THROW_MSG(Skin(std::vector<Vec3f>{{1, 2, 3}}, one, poses, blend), TopologyError,
                     "shape has 1 vertex but the weights are for 2");
}
