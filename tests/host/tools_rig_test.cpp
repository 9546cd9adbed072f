// Joints that follow new morphs.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dzapp.h"
#include "dzbone.h"
#include "dzerclink.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "loading/channel_properties.h"
#include "openhost/diagnostics.h"
#include "openhost/rig_adjustment.h"
#include "tests/host/tools_fixture.h"

#include <cmath>
#include <numeric>

using geometry::Vec3f;
using openhost::AdjustedRig;
using openhost::AdjustRig;

namespace {

DzNumericProperty& Channel(const DzNode& node, const char* path)
{
    return *openhost::FindNodeChannel(node, path);
}

Vec3f Place(const DzNode& node, const std::string& member)
{
    Vec3f place;
    for (int axis = 0; axis < 3; ++axis)
        place[axis] = static_cast<float>(
            Channel(node, (member + "/" + static_cast<char>('x' + axis)).c_str()).getDoubleValue());
    return place;
}

void ExpectPlace(const DzNode& node, Vec3f wanted, float tolerance = 0.05f)
{
    const Vec3f place = Place(node, "center_point");
    EXPECT_LE(Length(place - wanted), tolerance) << place.x << " " << place.y << " " << place.z;
}

/// A tube of 40 cm along X; "upper" begins at one end, "lower" in the middle.
class RigTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        tube = std::make_unique<TubeFigure>();
        neutral = WorldPositions(*tube->figure);
        // Where bones end is nobody's concern here but that of the lower one, which ends with the tube.
        Channel(*tube->upper, "end_point/x").setDoubleRawValue(0);
        Channel(*tube->lower, "end_point/x").setDoubleRawValue(20);
    }

    template <class Field>
    DzMorph* addMorph(const char* name, Field field) const
    {
        std::vector<std::uint32_t> vertices(neutral.size());
        std::iota(vertices.begin(), vertices.end(), 0u);
        std::vector<Vec3f> deltas;
        for (const Vec3f p : neutral)
            deltas.push_back(field(p));
        return tube->addMorph(name, vertices, deltas);
    }
    static void dial(const DzMorph* morph, float value) { morph->getValueControl()->setValue(value); }
    static Vec3f longer(Vec3f p) { return {0.2f * (p.x + 20), 0.2f * p.y, 0.2f * p.z}; }

    std::unique_ptr<TubeFigure> tube;
    std::vector<Vec3f> neutral;
};

} // namespace

TEST_F(RigTest, joints_move_with_the_dial_of_a_morph_that_stretches_the_figure)
{
    DzMorph* const morph = addMorph("Longer", longer);
    const std::vector<AdjustedRig> told = AdjustRig(*tube->figure, {morph, {}});
    ExpectPlace(*tube->lower, {0, 0, 0}, 0.0f);
    dial(morph, 1);
    ExpectPlace(*tube->lower, {4, 0, 0});
    ExpectPlace(*tube->upper, {-20, 0, 0});
    EXPECT_LE(Length(Place(*tube->lower, "end_point") - Vec3f{28, 0, 0}), 0.1f);
    EXPECT_EQ(Place(*tube->upper, "end_point"), Place(*tube->lower, "center_point"));
    dial(morph, 0.5f);
    ExpectPlace(*tube->lower, {2, 0, 0});
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].morph, morph);
    EXPECT_EQ(told[0].joints, 2u);
    EXPECT_NEAR(told[0].largestShiftCm, 8.0, 0.1);
    EXPECT_EQ(told[0].furthest, tube->lower->getLabel().toStdString());
}

TEST_F(RigTest, tells_once_how_far_joints_follow)
{
    DzMorph* const whole = addMorph("Longer", longer);
    DzMorph* const half = addMorph("Half", [](Vec3f p) { return longer(p) * 0.5f; });
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    const std::vector<AdjustedRig> told = AdjustRig(*tube->figure, {whole, {half}});
    ASSERT_EQ(met.all().size(), 1u);
    EXPECT_EQ(met.all()[0].severity, base::Severity::Note);
    const int tenths = static_cast<int>(std::lround(100 * told.at(0).largestShiftCm));
    EXPECT_EQ(base::ToLine(met.all()[0]),
              tube->figure->getLabel().toStdString() + ": joints follow the new morphs, by up to " +
                  std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " mm (" +
                  tube->lower->getLabel().toStdString() + ")");
    EXPECT_NEAR(tenths, 800, 10);
}

TEST_F(RigTest, joints_stay_where_they_are_when_flesh_grows_around_them)
{
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    DzMorph* const morph = addMorph("Fat", [](Vec3f p) { return Vec3f{0, p.y, p.z} * 0.3f; });
    const std::vector<AdjustedRig> told = AdjustRig(*tube->figure, {morph, {}});
    EXPECT_EQ(told.at(0).joints, 0u);
    EXPECT_TRUE(met.all().empty());
    EXPECT_EQ(Channel(*tube->lower, "center_point/x").getNumControllers(), 0);
}

TEST_F(RigTest, parts_have_shares_that_make_up_the_whole)
{
    const auto left = [](Vec3f p) { return longer(p) * std::clamp(0.5f - p.x / 10, 0.0f, 1.0f); };
    DzMorph* const whole = addMorph("Longer", longer);
    DzMorph* const first = addMorph("Left", left);
    DzMorph* const second = addMorph("Right", [&](Vec3f p) { return longer(p) - left(p); });
    EXPECT_EQ(AdjustRig(*tube->figure, {whole, {first, second}}).size(), 3u);
    dial(whole, 1);
    const Vec3f together = Place(*tube->lower, "center_point");
    dial(whole, 0);
    dial(first, 1);
    const Vec3f one = Place(*tube->lower, "center_point");
    EXPECT_GE(one.x, 0.5f);
    EXPECT_LE(one.x, 3.5f);
    dial(second, 1);
    ExpectPlace(*tube->lower, together, 0.003f); // what is not worth a link
}

TEST_F(RigTest, parts_alone_make_up_the_whole_too)
{
    const auto left = [](Vec3f p) { return p.x < 0 ? longer(p) : Vec3f{}; };
    DzMorph* const first = addMorph("Left", left);
    DzMorph* const second = addMorph("Right", [&](Vec3f p) { return longer(p) - left(p); });
    AdjustRig(*tube->figure, {nullptr, {first, second}});
    dial(first, 1);
    dial(second, 1);
    ExpectPlace(*tube->lower, {4, 0, 0});
}

TEST_F(RigTest, a_part_does_not_count_again_in_what_the_whole_is_judged_by)
{
    // Bent by half of its flesh, so that it matters how far that half goes.
    const auto left = [](Vec3f p) { return p.x < 2.5f ? Vec3f{0, 3, 0} : Vec3f{}; };
    const auto change = [&](Vec3f p) { return left(p) + Vec3f{0, 2, 0}; };
    DzMorph* const whole = addMorph("Whole", change);
    AdjustRig(*tube->figure, {whole, {}});
    dial(whole, 1);
    const Vec3f alone = Place(*tube->lower, "center_point");
    dial(whole, 0);
    AdjustRig(*tube->figure, {whole, {addMorph("Left", left)}});
    dial(whole, 1);
    ExpectPlace(*tube->lower, alone, 1e-4f);
}

TEST_F(RigTest, adjusting_again_replaces_the_links)
{
    DzMorph* const morph = addMorph("Longer", longer);
    AdjustRig(*tube->figure, {morph, {}});
    AdjustRig(*tube->figure, {morph, {}});
    EXPECT_EQ(Channel(*tube->lower, "center_point/x").getNumControllers(), 1);
    dial(morph, 1);
    ExpectPlace(*tube->lower, {4, 0, 0});
}

TEST_F(RigTest, what_worn_shapes_say_of_joints_themselves_is_believed)
{
    // A control turns the shape and moves the joint: half as far as the flesh, and that is its own affair.
    DzMorph* const up = addMorph("Up", [](Vec3f) { return Vec3f{0, 10, 0}; });
    auto* const control = new DzFloatProperty(QStringLiteral("Lift"), true, true, 0.0f);
    tube->figure->addProperty(control);
    up->getValueControl()->insertController(new DzERCLink(control, 1.0, 0.0));
    Channel(*tube->lower, "center_point/y").insertController(new DzERCLink(control, 5.0, 0.0));
    control->setValue(1);
    DzMorph* const morph = addMorph("Longer", [](Vec3f p) { return longer(p); });
    AdjustRig(*tube->figure, {morph, {}});
    ExpectPlace(*tube->lower, {0, 5, 0}, 0.0f);
    dial(morph, 1);
    // The point of the joint is 5 cm below the axis of the lifted tube by now.
    ExpectPlace(*tube->lower, {4, 4, 0}, 0.3f);
}

TEST_F(RigTest, worn_shapes_that_say_nothing_of_joints_are_made_up_for)
{
    DzMorph* const up = addMorph("Up", [](Vec3f) { return Vec3f{0, 10, 0}; });
    dial(up, 0.5f);
    DzMorph* const morph = addMorph("Longer", longer);
    AdjustRig(*tube->figure, {morph, {}});
    dial(morph, 1);
    ExpectPlace(*tube->lower, {4, 5, 0});
    ExpectPlace(*tube->upper, {-20, 5, 0});
}

TEST_F(RigTest, of_parts_the_one_that_moves_the_flesh_makes_up_for_worn_shapes)
{
    dial(addMorph("Up", [](Vec3f) { return Vec3f{0, 10, 0}; }), 1);
    DzMorph* const near = addMorph("Near", [](Vec3f p) { return p.x < -15 ? Vec3f{1, 0, 0} : Vec3f{}; });
    DzMorph* const far = addMorph("Far", [](Vec3f p) { return p.x > 10 ? Vec3f{1, 0, 0} : Vec3f{}; });
    AdjustRig(*tube->figure, {nullptr, {near, far}});
    dial(far, 1);
    EXPECT_LE(Place(*tube->upper, "center_point").y, 1.0f);
    EXPECT_GE(Place(*tube->lower, "end_point").y, 9.0f);
    dial(near, 1);
    ExpectPlace(*tube->lower, {Place(*tube->lower, "center_point").x, 10, 0}, 0.1f);
}

TEST_F(RigTest, of_parts_the_last_makes_up_where_none_moves_the_flesh)
{
    dial(addMorph("Up", [](Vec3f) { return Vec3f{0, 10, 0}; }), 1);
    DzMorph* const head = addMorph("Head", [](Vec3f p) { return p.x < -15 ? Vec3f{1, 0, 0} : Vec3f{}; });
    DzMorph* const body = addMorph("Body", [](Vec3f) { return Vec3f{}; });
    AdjustRig(*tube->figure, {nullptr, {head, body}});
    dial(head, 1);
    EXPECT_EQ(Place(*tube->lower, "end_point").y, 0.0f);
    EXPECT_NEAR(Place(*tube->upper, "center_point").y, 10.0f, 0.1f);
    dial(body, 1);
    EXPECT_NEAR(Place(*tube->lower, "end_point").y, 10.0f, 0.1f);
    EXPECT_NEAR(Place(*tube->upper, "center_point").y, 10.0f, 0.1f);
}

TEST_F(RigTest, tells_a_whole_from_its_parts_by_their_shapes)
{
    const auto left = [](Vec3f p) { return p.x < 0 ? longer(p) : Vec3f{}; };
    DzMorph* const first = addMorph("Left", left);
    DzMorph* const second = addMorph("Right", [&](Vec3f p) { return longer(p) - left(p); });
    DzMorph* const whole = addMorph("Longer", longer);
    const openhost::NewMorphs all = openhost::WholeAndParts({first, whole, second});
    EXPECT_EQ(all.whole, whole);
    EXPECT_EQ(all.parts, (std::vector<DzMorph*>{first, second}));
    const openhost::NewMorphs halves = openhost::WholeAndParts({first, second});
    EXPECT_EQ(halves.whole, nullptr);
    EXPECT_EQ(halves.parts, (std::vector<DzMorph*>{first, second}));
    EXPECT_EQ(openhost::WholeAndParts({second}).whole, second);
    // One that goes the same way but further is no part.
    DzMorph* const further = addMorph("Further", [](Vec3f p) { return longer(p) * 1.5f; });
    EXPECT_EQ(openhost::WholeAndParts({whole, further}).whole, further);
    EXPECT_EQ(openhost::WholeAndParts({}).whole, nullptr);
}

TEST_F(RigTest, refuses_nodes_without_joints_and_morphs_of_others)
{
    DzMorph* const morph = addMorph("Longer", longer);
    const TubeFigure other("Other");
    DzNode* const prop = AddProp("Box", Tube(2));
    const auto refusal = [](DzNode& node, DzMorph* one) {
        try {
            AdjustRig(node, {one, {}});
        } catch (const base::Error& error) {
            return std::string(error.what());
        }
        return std::string();
    };
    EXPECT_EQ(refusal(*prop, morph), "Box has no joints that could follow a shape");
    EXPECT_EQ(refusal(*other.figure, morph), "Longer is no morph of Other");
}
