// Where joints go: closed forms on tubes, laws, accuracy on human meshes.
// SPDX-License-Identifier: MIT

#include "geometry/rig_fit.h"

#include "geometry/errors.h"
#include "geometry/surface_distance.h"
#include "humans.h"
#include "shapes.h"
#include "throws.h"

#include <random>

using namespace geometry;

namespace {

constexpr float pi = 3.14159265f;

/// Open at both ends, along Y, its middle in the origin.
PolygonMesh Tube(float radius, float length, std::uint32_t around = 24, std::uint32_t along = 40)
{
    PolygonMesh tube;
    auto topology = std::make_shared<Topology>();
    for (std::uint32_t row = 0; row <= along; ++row)
        for (std::uint32_t i = 0; i < around; ++i) {
            const float angle = 2.0f * pi * static_cast<float>(i) / static_cast<float>(around);
            tube.positions.push_back({radius * std::cos(angle),
                                      length * (static_cast<float>(row) / static_cast<float>(along) - 0.5f),
                                      radius * std::sin(angle)});
            const std::uint32_t here = row * around + i, next = row * around + (i + 1) % around;
            const std::uint32_t corners[] = {here, here + around, next + around, next};
            if (row < along)
                topology->addFace({corners, 4});
        }
    topology->vertexCount = static_cast<std::uint32_t>(tube.positions.size());
    tube.topology = topology;
    return tube;
}

template <class Field>
std::vector<Vec3f> On(const PolygonMesh& mesh, Field field)
{
    std::vector<Vec3f> values;
    for (const Vec3f p : mesh.positions)
        values.push_back(field(p));
    return values;
}

std::vector<RigPoint> At(std::initializer_list<Vec3f> positions)
{
    std::vector<RigPoint> points;
    for (const Vec3f position : positions)
        points.push_back({position, {}});
    return points;
}

std::vector<Vec3f> Shifts(const PolygonMesh& mesh, const std::vector<RigPoint>& points,
                          const std::vector<Vec3f>& displacements)
{
    const std::vector<std::vector<Vec3f>> parts{displacements};
    return FitRig(mesh.view(), {}, points, displacements, parts)[0];
}

const std::vector<RigPoint> inTube = At({{0, 0, 0}, {0, 6, 0}, {1, -4, 0.5f}});

} // namespace

TEST(FitRig, moves_joints_with_a_shape_that_moves_as_one)
{
    const PolygonMesh tube = Tube(4, 40);
    const Vec3f move{3, -12, 0.5f};
    for (const Vec3f shift : Shifts(tube, inTube, On(tube, [move](Vec3f) { return move; })))
        EXPECT_LE(Length(shift - move), 1e-4f); // single precision at 12 cm
}

TEST(FitRig, keeps_joints_in_place_in_a_shape_that_grows_and_turns_evenly)
{
    const PolygonMesh tube = Tube(4, 40);
    const auto change = [](Vec3f p) { return (p - Vec3f{0, -20, 2}) * 0.2f + Cross({0, 0, 0.1f}, p); };
    const std::vector<Vec3f> found = Shifts(tube, inTube, On(tube, change));
    for (std::size_t i = 0; i < found.size(); ++i) // the damping of turn and growth takes a little
        EXPECT_LE(Length(found[i] - change(inTube[i].position)), 0.05f) << i;
}

TEST(FitRig, leaves_the_axis_of_a_tube_in_place_when_flesh_grows_on_it)
{
    const PolygonMesh tube = Tube(4, 40);
    const auto outwards = [](Vec3f p) { return Vec3f{p.x, 0, p.z} * 0.25f; };
    const auto belly = [&outwards](Vec3f p) {
        return outwards(p) * (std::max(0.0f, p.z) * std::exp(-0.02f * p.y * p.y)); // up to 4 cm, in front
    };
    for (const Vec3f shift : Shifts(tube, inTube, On(tube, outwards)))
        EXPECT_LE(Length(shift), 1e-3f);
    for (const Vec3f shift : Shifts(tube, inTube, On(tube, belly)))
        EXPECT_LE(Length(shift), 1e-3f);
}

TEST(FitRig, takes_points_on_the_surface_along_with_flesh_that_grows)
{
    const PolygonMesh tube = Tube(4, 40);
    const auto outwards = [](Vec3f p) { return Vec3f{p.x, 0, p.z} * 0.25f; };
    const Vec3f onSurface = tube.positions[20 * 24];
    const std::vector<Vec3f> shifts =
        Shifts(tube, At({onSurface, onSurface * 0.9f, {0, 0, 0}}), On(tube, outwards));
    EXPECT_GE(shifts[0].x, 0.8f); // of 1 cm
    EXPECT_LE(shifts[1].x, shifts[0].x);
    EXPECT_LE(Length(shifts[2]), 1e-3f);
}

TEST(FitRig, does_not_listen_to_flesh_that_does_its_own_thing)
{
    const PolygonMesh tube = Tube(4, 40);
    const Vec3f move{0, 2, 0};
    // A sixth of the flesh goes another way by 11 cm: the mean of all would be off by 1.8 cm.
    const auto change = [move](Vec3f p) { return p.z > 3.4f ? Vec3f{0, -9, 3} : move; };
    for (const Vec3f shift : Shifts(tube, At({{0, 0, 0}, {0, 6, 0}}), On(tube, change)))
        EXPECT_LE(Length(shift - move), 0.2f);
}

TEST(FitRig, does_not_follow_the_single_vertex_that_a_joint_lies_on)
{
    const PolygonMesh tube = Tube(4, 40, 12, 20);
    const Vec3f place = tube.positions[10 * 12], move{0, 2, 0};
    const auto change = [&](Vec3f p) { return p == place ? Vec3f{0, -5, 1} : move; };
    EXPECT_LE(Length(Shifts(tube, At({place}), On(tube, change))[0] - move), 0.1f);
}

TEST(FitRig, takes_a_shift_far_below_what_it_cannot_explain_for_none)
{
    const PolygonMesh tube = Tube(4, 40);
    std::mt19937 random(4);
    std::uniform_real_distribution<float> noise(-1.0f, 1.0f);
    const auto change = [&](Vec3f) { return Vec3f{0, 0.1f + noise(random), 0}; };
    for (const Vec3f shift : Shifts(tube, inTube, On(tube, change)))
        EXPECT_LE(Length(shift), 0.03f);
}

TEST(FitRig, never_moves_a_joint_further_than_all_the_flesh)
{
    const PolygonMesh tube = Tube(4, 40);
    std::mt19937 random(9);
    std::uniform_real_distribution<float> noise(-1.0f, 1.0f);
    // Far outside, where a turn that the flesh suggests would carry a joint a long way.
    const std::vector<RigPoint> points = At({{0, 60, 0}, {90, 0, 0}, {4, 1, 0}, {0, -25, 30}});
    for (int round = 0; round < 20; ++round) {
        const float turn = noise(random);
        const std::vector<Vec3f> change = On(tube, [&](Vec3f p) {
            return Cross({turn, noise(random) * 0.1f, 0.3f}, p) + Vec3f{noise(random), 0, noise(random)};
        });
        float largest = 0.0f;
        for (const Vec3f d : change)
            largest = std::max(largest, Length(d));
        for (const Vec3f shift : Shifts(tube, points, change))
            EXPECT_LE(Length(shift), largest * 1.00001f) << round;
    }
}

TEST(FitRig, counts_the_flesh_of_other_joints_less)
{
    // Two fingers side by side; the thinner one, which has less flesh, grows longer from its root.
    const PolygonMesh finger = shapes::Moved(Tube(0.7f, 8), {-0.9f, 0, 0}),
                      other = shapes::Moved(Tube(0.8f, 8), {0.9f, 0, 0});
    const PolygonMesh hand = shapes::Joined(finger, other);
    const auto change = [](Vec3f p) { return p.x < 0 ? Vec3f{0, 2, 0} : Vec3f{}; };
    std::vector<JointWeights> joints(2);
    for (std::uint32_t v = 0; v < hand.vertexCount(); ++v) {
        joints[hand.positions[v].x < 0 ? 0 : 1].vertices.push_back(v);
        joints[hand.positions[v].x < 0 ? 0 : 1].weights.push_back(1.0f);
    }
    const SkinWeights weights = MakeSkinWeights(hand.vertexCount(), joints);
    // On the border between both, it is the flesh that decides.
    const std::vector<RigPoint> points{{{0, 0, 0}, {0}}, {{0, 0, 0}, {1}}};
    const std::vector<Vec3f> whole = On(hand, change);
    const std::vector<std::vector<Vec3f>> parts{whole};
    RigFitOptions options;
    options.foreignFlesh = 0.25f;
    const std::vector<Vec3f> shifts = FitRig(hand.view(), weights, points, whole, parts, options)[0];
    EXPECT_GE(shifts[0].y, 1.8f);
    EXPECT_LE(shifts[1].y, 0.2f);
}

TEST(FitRig, gives_parts_shares_that_add_up_to_the_whole)
{
    const PolygonMesh tube = Tube(4, 40);
    std::mt19937 random(2);
    std::uniform_real_distribution<float> share(0.0f, 1.0f);
    const std::vector<Vec3f> whole = On(tube, [](Vec3f p) {
        return Vec3f{p.y * 0.1f, 3.0f + p.x, std::sin(p.y)};
    });
    std::vector<std::vector<Vec3f>> parts(3, whole);
    for (std::size_t v = 0; v < whole.size(); ++v) {
        parts[0][v] *= share(random);
        parts[1][v] = whole[v] - parts[0][v];
    }
    const auto shifts = FitRig(tube.view(), {}, inTube, whole, parts);
    ASSERT_EQ(shifts.size(), 3u);
    for (std::size_t i = 0; i < inTube.size(); ++i) {
        EXPECT_GE(Length(shifts[0][i]), 0.5f);
        EXPECT_LE(Length(shifts[0][i] + shifts[1][i] - shifts[2][i]), 1e-5f); // rounding of about 3 cm
    }
}

TEST(FitRig, looks_at_a_choice_of_vertices_as_if_at_all)
{
    const PolygonMesh tube = Tube(4, 40, 60, 200);
    const std::vector<Vec3f> change = On(tube, [](Vec3f p) {
        return Vec3f{0.02f * p.y * p.z, 3 + 0.2f * p.y, p.y > 5 ? 0.5f * p.x : 0.0f};
    });
    const std::vector<std::vector<Vec3f>> parts{change};
    RigFitOptions all;
    all.samples = tube.vertexCount();
    const std::vector<Vec3f> few = Shifts(tube, inTube, change),
                             exact = FitRig(tube.view(), {}, inTube, change, parts, all)[0];
    for (std::size_t i = 0; i < few.size(); ++i)
        EXPECT_LE(Length(few[i] - exact[i]), 0.03f) << i; // of shifts of about 3 cm
}

TEST(FitRig, lives_through_slivers_loose_vertices_and_odd_faces)
{
    for (const PolygonMesh& mesh :
         {shapes::Sliver(), shapes::LooseVertex(), shapes::Mixed(), shapes::Triangle()})
        for (const Vec3f shift :
             Shifts(mesh, At({{0, 0, 0}, mesh.positions[0], {1e4f, 0, 0}}), mesh.positions))
            EXPECT_TRUE(IsFinite(shift));
}

TEST(FitRig, refuses_what_does_not_fit_together)
{
    const PolygonMesh cube = shapes::Cube(1.0f), bare = shapes::FromFaces({{0, 0, 0}}, {});
    std::vector<Vec3f> still(8), broken(8);
    broken[3].x = NAN;
    EXPECT_THROW_MSG(Shifts(cube, inTube, std::vector<Vec3f>(3)), TopologyError,
                     "the mesh has 8 vertices but 3 displacements are given");
    EXPECT_THROW_MSG(Shifts(cube, inTube, broken), TopologyError, "displacement of vertex 3 is not finite");
    EXPECT_THROW_MSG(Shifts(bare, inTube, std::vector<Vec3f>(1)), TopologyError,
                     "the mesh has no face with an area");
    SkinWeights weights;
    weights.offsets = {0, 1};
    weights.joints = {0};
    weights.weights = {1.0f};
    EXPECT_THROW_MSG(FitRig(cube.view(), weights, inTube, still, {}), TopologyError,
                     "the mesh has 8 vertices but the weights are for 1");
}

namespace {

/// How far the joints are that were found from where they truly are; cm, by morph.
struct JointErrors {
    std::vector<float> centers, ends;
};

std::vector<RigPoint> PointsOf(const humans::Skeleton& skeleton, const humans::JointPlaces& places)
{
    std::vector<RigPoint> points;
    for (std::size_t joint = 0; joint < skeleton.parents.size(); ++joint) {
        RigPoint point;
        point.joints.push_back(static_cast<std::uint32_t>(joint));
        if (skeleton.parents[joint] >= 0)
            point.joints.push_back(static_cast<std::uint32_t>(skeleton.parents[joint]));
        for (std::size_t child = 0; child < skeleton.parents.size(); ++child)
            if (skeleton.parents[child] == static_cast<int>(joint))
                point.joints.push_back(static_cast<std::uint32_t>(child));
        point.position = places.heads[joint];
        points.push_back(point);
        point.position = places.tails[joint];
        points.push_back(point);
    }
    return points;
}

JointErrors Judge(const PolygonMesh& mesh, const humans::Skeleton& skeleton, const SkinWeights& weights,
                  const humans::JointPlaces& before, const humans::JointPlaces& after,
                  const std::vector<Vec3f>& displacements)
{
    const std::vector<RigPoint> points = PointsOf(skeleton, before);
    const std::vector<std::vector<Vec3f>> parts{displacements};
    const std::vector<Vec3f> shifts = FitRig(mesh.view(), weights, points, displacements, parts)[0];
    JointErrors errors;
    for (std::size_t joint = 0; joint < skeleton.parents.size(); ++joint) {
        errors.centers.push_back(Length(before.heads[joint] + shifts[2 * joint] - after.heads[joint]));
        errors.ends.push_back(Length(before.tails[joint] + shifts[2 * joint + 1] - after.tails[joint]));
    }
    return errors;
}

void Append(JointErrors& all, const JointErrors& more)
{
    all.centers.insert(all.centers.end(), more.centers.begin(), more.centers.end());
    all.ends.insert(all.ends.end(), more.ends.begin(), more.ends.end());
}

void Print(const std::string& what, const JointErrors& errors)
{
    const DistanceSummary centers = Summarize(errors.centers), ends = Summarize(errors.ends);
    std::printf("%-34s centres: mean %.2f  p95 %.1f  max %.1f mm   ends: mean %.2f  p95 %.1f  max %.1f mm\n",
                what.c_str(), centers.mean * 10, centers.p95 * 10, centers.max * 10, ends.mean * 10,
                ends.p95 * 10, ends.max * 10);
}

float ShareAbove(const std::vector<float>& errors, float limit)
{
    const auto above = std::count_if(errors.begin(), errors.end(), [limit](float e) { return e > limit; });
    return static_cast<float>(above) / static_cast<float>(errors.size());
}

} // namespace

// Some of the true joints do not follow the flesh around them at all. Of the mixtures of what the skin does
// within twice a joint's depth, the best one is still off by 17 mm at the head's centre, 16 mm at the chest's
// and 9 mm at the ankles, where joints move 14 mm outwards and the skin moves by 3 mm. So some stay more than
// 10 mm off, whatever is done.
TEST(RigAccuracy, is_within_three_millimetres_in_the_mean)
{
    const auto folder = humans::Folder();
    if (!folder)
        GTEST_SKIP()
            << "the real human meshes are no part of the project; set GANTREL_HUMANS to their folder";
    const humans::Pair pair = humans::Load(*folder);
    const humans::Skeleton skeleton = humans::ReadSkeleton(*folder);
    PolygonMesh blank = pair.target;
    const std::vector<Vec3f> clone =
        humans::ReadDisplacements(*folder / "target" / "clone.csv.gz", blank.vertexCount());
    for (std::size_t v = 0; v < clone.size(); ++v)
        blank.positions[v] -= clone[v];
    const SkinWeights onSource = humans::ReadWeights(*folder / "source" / "weights.json.gz", skeleton),
                      onTarget = humans::ReadWeights(*folder / "target" / "weights.json.gz", skeleton);
    JointErrors source, target, whole;
    for (const humans::KnownMorph& morph : pair.morphs) {
        const humans::JointPlaces& morphed = skeleton.morphs.at(morph.name);
        std::vector<Vec3f> both = clone;
        for (std::size_t v = 0; v < both.size(); ++v)
            both[v] += morph.onTarget[v];
        const JointErrors here =
            Judge(pair.source, skeleton, onSource, skeleton.source, morphed, morph.onSource);
        const JointErrors there =
            Judge(pair.target, skeleton, onTarget, skeleton.source, morphed, morph.onTarget);
        const JointErrors all = Judge(blank, skeleton, onTarget, skeleton.target, morphed, both);
        Print(morph.name + ", source", here);
        Print(morph.name + ", target", there);
        Print(morph.name + ", from target's own", all);
        Append(source, here);
        Append(target, there);
        Append(whole, all);
    }
    Print("all, source", source);
    Print("all, target", target);
    Print("all, from target's own", whole);
    for (const JointErrors& errors : {source, target}) {
        EXPECT_LE(Summarize(errors.centers).mean, 0.3f);
        EXPECT_LE(Summarize(errors.ends).mean, 0.3f);
        EXPECT_LE(ShareAbove(errors.centers, 1.0f), 0.1f);
        EXPECT_LE(ShareAbove(errors.ends, 1.0f), 0.1f);
        EXPECT_LE(Summarize(errors.centers).max, 2.0f);
        EXPECT_LE(Summarize(errors.ends).max, 2.0f);
    }
    // From another body to this one; without a fit it would be 170 mm.
    EXPECT_LE(Summarize(whole.centers).mean, 1.0f);
    EXPECT_LE(Summarize(whole.ends).mean, 1.0f);
}
