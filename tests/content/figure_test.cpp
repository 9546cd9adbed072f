// The sample figures' shapes.
// SPDX-License-Identifier: MIT

#include "content/sample_figures.h"
#include "geometry/surface_distance.h"
#include "geometry/surface_tree.h"
#include "tests/content/sample_topologies.h"

#include <gtest/gtest.h>

#include <set>

using namespace content;
using geometry::PolygonMesh;

namespace {

PolygonMesh Shaped(const SampleTopology& topology, std::vector<Vec3f> positions)
{
    PolygonMesh mesh;
    mesh.topology = topology.canonical.topology;
    mesh.positions = std::move(positions);
    return mesh;
}

/// The newest figure wearing a clone, its thighs turned out.
std::vector<Vec3f> WearingClone(const CloneShape& clone, double thighDegrees)
{
    const auto& canonical = NewTopology().canonical.positions;
    std::vector<Vec3f> rest = NeutralPositions(FigureKind::Genesis9, canonical);
    for (std::size_t v = 0; v < rest.size(); ++v)
        rest[v] += clone.deltas[v];
    return geometry::Skin(rest, geometry::MakeSkinWeights(rest.size(), NewTopology().weights),
                          geometry::EvaluateSkeleton(PosedJoints(clone.joints, thighDegrees)),
                          geometry::SkinMode::DualQuaternion);
}

double MeanDistance(const std::vector<Vec3f>& from, const PolygonMesh& to)
{
    return geometry::Summarize(geometry::SurfaceDistances(from, to.view())).mean;
}

TEST(Neutrals, stand_on_the_ground)
{
    for (const FigureKindInfo& info : FigureKinds()) {
        const auto positions = NeutralPositions(info.kind, OldTopology().canonical.positions);
        EXPECT_NEAR(geometry::BoundingBox(positions).min.y, 0.0f, 0.3f) << info.label;
    }
}

TEST(Neutrals, of_different_kinds_differ_by_centimetres)
{
    const FigureKind kinds[] = {FigureKind::Genesis3Female, FigureKind::Genesis3Male,
                                FigureKind::Genesis8Female, FigureKind::Genesis8Male, FigureKind::Genesis9};
    const auto& canonical = OldTopology().canonical.positions;
    for (const FigureKind a : kinds)
        for (const FigureKind b : kinds) {
            if (a == b)
                continue;
            double sum = 0.0;
            for (const Vec3f p : canonical)
                sum += Length(NeutralPlace(a, p) - NeutralPlace(b, p));
            EXPECT_GT(sum / canonical.size(), 1.0) << InfoOf(a).label << ", " << InfoOf(b).label;
        }
}

TEST(Neutrals, of_generation_8_stand_with_legs_further_apart)
{
    const Vec3f ankle{9.8f, 8.0f, -3.0f}, hip{8.8f, 89.5f, -0.5f};
    const auto angle = [&](FigureKind kind) {
        const Vec3f leg = NeutralPlace(kind, ankle) - NeutralPlace(kind, hip);
        return std::atan2(leg.x, -leg.y) * 57.29578f;
    };
    // Hips and feet of the kinds differ in width too, which turns the line between them by up to a degree.
    EXPECT_NEAR(angle(FigureKind::Genesis8Female) - angle(FigureKind::Genesis9), 6.5f, 1.5f);
    EXPECT_NEAR(angle(FigureKind::Genesis8Male) - angle(FigureKind::Genesis9), 6.5f, 1.5f);
    EXPECT_NEAR(angle(FigureKind::Genesis3Female) - angle(FigureKind::Genesis9), 0.0f, 1.5f);
    EXPECT_NEAR(angle(FigureKind::Genesis3Male) - angle(FigureKind::Genesis9), 0.0f, 1.5f);
}

TEST(Clone, of_generation_8_lies_on_its_neutral_once_the_thighs_are_turned)
{
    for (const FigureKind kind : {FigureKind::Genesis8Female, FigureKind::Genesis8Male}) {
        const PolygonMesh neutral =
            Shaped(OldTopology(), NeutralPositions(kind, OldTopology().canonical.positions));
        const CloneShape clone = MakeClone(kind, NewTopology());
        EXPECT_LT(MeanDistance(WearingClone(clone, 6.5), neutral), 0.1) << InfoOf(kind).label;
        // At rest the legs are elsewhere: it is the pose that brings them there.
        EXPECT_GT(MeanDistance(WearingClone(clone, 0.0), neutral), 0.3) << InfoOf(kind).label;
    }
}

TEST(Clone, of_generation_3_lies_on_its_neutral_at_rest)
{
    for (const FigureKind kind : {FigureKind::Genesis3Female, FigureKind::Genesis3Male}) {
        const PolygonMesh neutral =
            Shaped(OldTopology(), NeutralPositions(kind, OldTopology().canonical.positions));
        EXPECT_LT(MeanDistance(WearingClone(MakeClone(kind, NewTopology()), 0.0), neutral), 0.1)
            << InfoOf(kind).label;
    }
}

TEST(Clone, misses_its_neutral_by_no_more_than_its_flaw)
{
    const auto& canonical = NewTopology().canonical.positions;
    const auto worn = WearingClone(MakeClone(FigureKind::Genesis8Female, NewTopology()), 6.5);
    float largest = 0.0f;
    for (std::size_t v = 0; v < canonical.size(); ++v) {
        const Vec3f exact = NeutralPlace(FigureKind::Genesis8Female, canonical[v]) + CloneFlaw(canonical[v]);
        // Unskinning and skinning at 1.8 m in single precision: a few float steps of 1.5e-5 cm.
        ASSERT_LT(Length(worn[v] - exact), 1e-3f) << v;
        largest = std::max(largest, Length(CloneFlaw(canonical[v])));
    }
    EXPECT_GT(largest, 0.03f);
    EXPECT_LT(largest, 0.09f);
}

TEST(Clone, keeps_its_joints_where_the_older_figure_has_them)
{
    const auto places = NeutralJoints(FigureKind::Genesis8Male);
    const auto poses = geometry::EvaluateSkeleton(
        PosedJoints(MakeClone(FigureKind::Genesis8Male, NewTopology()).joints, 6.5));
    for (std::size_t b = 0; b < places.size(); ++b)
        EXPECT_LT((poses[b].origin - geometry::ToEigen(places[b].center)).norm(), 1e-3)
            << BodyBones()[b].newName;
}

TEST(ThighPose, moves_its_own_leg_only_and_tears_nothing)
{
    const auto& canonical = NewTopology().canonical;
    const auto rest = NeutralPositions(FigureKind::Genesis9, canonical.positions);
    auto joints = PosedJoints(NeutralJoints(FigureKind::Genesis9), 6.5);
    for (std::size_t b = 0; b < joints.size(); ++b)
        if (BodyBones()[b].newName == "r_thigh")
            joints[b].rotation.setZero();
    const auto posed = geometry::Skin(rest, geometry::MakeSkinWeights(rest.size(), NewTopology().weights),
                                      geometry::EvaluateSkeleton(joints), geometry::SkinMode::DualQuaternion);
    for (std::size_t v = 0; v < rest.size(); ++v) {
        const Vec3f moved = posed[v] - rest[v];
        if (canonical.positions[v].x < 0.0f) {
            ASSERT_LT(Length(moved), 1e-3f) << v;
        } else if (canonical.positions[v].y < 60.0f && canonical.positions[v].x < 25.0f) {
            ASSERT_GT(moved.x, 2.0f) << v;
        }
    }
    for (std::size_t f = 0; f < canonical.faceCount(); ++f)
        for (int c = 0; c < 4; ++c) {
            const auto a = canonical.topology->face(f)[c], b = canonical.topology->face(f)[(c + 1) & 3];
            const float before = Length(rest[a] - rest[b]), after = Length(posed[a] - posed[b]);
            // Across the crotch the legs part by two sines of 3.25 degrees over their length above it, no
            // more.
            ASSERT_LT(after, 2.0f * before + 1.0f) << f;
        }
}

TEST(Morphs, are_the_same_surface_on_both_topologies)
{
    const auto shaped = [](const SampleTopology& topology, const SampleMorph& morph) {
        std::vector<Vec3f> positions = topology.canonical.positions;
        for (Vec3f& p : positions)
            p += Displacement(morph.parts, p);
        return Shaped(topology, std::move(positions));
    };
    // Both meshes hang their corners on one smooth surface; between corners their quads cut it by the sagitta
    // of an edge of 1.5 cm on a limb of 4 cm radius, 0.7 mm at most and a fraction of it on average.
    for (const SampleMorph& morph : SourceMorphs())
        EXPECT_LT(MeanDistance(shaped(NewTopology(), morph).positions, shaped(OldTopology(), morph)), 0.05)
            << morph.name;
}

TEST(Morphs, move_what_they_say)
{
    const auto& canonical = OldTopology().canonical.positions;
    for (const SampleMorph& morph : SourceMorphs()) {
        float largestOnHead = 0.0f, largestOnBody = 0.0f;
        for (const Vec3f p : canonical) {
            const float length = Length(Displacement(morph.parts, p));
            if (HeadInfluence(p) == 0.0f)
                largestOnBody = std::max(largestOnBody, length);
            else if (HeadInfluence(p) == 1.0f)
                largestOnHead = std::max(largestOnHead, length);
        }
        if (morph.group.rfind("/Head", 0) == 0) {
            EXPECT_GT(largestOnHead, 0.2f) << morph.name;
            EXPECT_LT(largestOnBody, 0.1f) << morph.name;
        } else {
            EXPECT_GT(largestOnBody, 0.7f) << morph.name;
        }
    }
}

TEST(Morphs, have_names_of_their_own)
{
    for (const auto* morphs : {&SourceMorphs(), &TargetMorphs()}) {
        std::set<std::string> names;
        for (const SampleMorph& morph : *morphs)
            EXPECT_TRUE(names.insert(morph.name).second) << morph.name;
    }
}

TEST(ProportionHeight, changes_the_height_by_more_than_ten_centimetres_each_way)
{
    const Vec3f top{0.0f, 170.0f, -1.0f};
    for (const SampleMorph& morph : TargetMorphs())
        if (morph.name == proportionHeightName) {
            EXPECT_EQ(morph.lowest, -1.0f);
            EXPECT_GT(Displacement(morph.parts, top).y, 10.0f);
            return;
        }
    FAIL() << "there is no such dial";
}

TEST(HeadInfluence, is_whole_on_the_face_and_ends_above_the_shoulders)
{
    for (const Vec3f p : NewTopology().canonical.positions) {
        const float influence = HeadInfluence(p);
        ASSERT_GE(influence, 0.0f);
        ASSERT_LE(influence, 1.0f);
        if (p.y > 154.0f) {
            ASSERT_EQ(influence, 1.0f) << p.x << " " << p.y << " " << p.z;
        } else if (std::abs(p.x) > 12.0f || p.y < 138.0f) {
            ASSERT_EQ(influence, 0.0f) << p.x << " " << p.y << " " << p.z;
        }
    }
}

} // namespace
