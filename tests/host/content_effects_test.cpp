// Modifiers that smooth, push and simulate, as files bring them.
// SPDX-License-Identifier: MIT

#include "dzboolproperty.h"
#include "dzenumproperty.h"
#include "dzfigure.h"
#include "dzmodifier.h"
#include "dzobject.h"
#include "figure/cage_modifier.h"
#include "figure/pipeline.h"
#include "ks_daz-helpers.h"
#include "tests/host/foreign_fixture.h"

namespace {

using namespace doll;
using kst::daz::PropertyLocation;

/// The entry of a modifier's further dial.
std::string Channel(const std::string& name, const std::string& type, const std::string& value,
                    const std::string& more = "")
{
    return R"({"channel": {"id": ")" + name + R"(", "type": ")" + type + R"(", "name": ")" + name +
           R"(", "label": ")" + name + R"(", "value": )" + value + more + R"(}, "group": "/General/Own"})";
}

/// An `extra` member: the kind's own object and one with dials.
std::string Extra(const std::string& kind, const std::string& channels, const std::string& more = "")
{
    return R"("extra": [{"type": ")" + kind + "\"" + more + R"(}, {"type": "studio_modifier_channels",
        "version": "0.1.7", "channels": [)" +
           channels + "]}]";
}

std::string Smoothing(const std::string& more = "")
{
    return Extra("studio/modifier/smoothing", Channel("Enable Smoothing", "bool", "true") + ", " +
                                                  Channel("Weight", "float", "0.5") + ", " +
                                                  Channel("Smoothing Iterations", "int", "1") + more);
}

class Effects : public ForeignTest {
protected:
    void SetUp() override
    {
        ForeignTest::SetUp();
        writeShape("Up", Morph("Up", 3, 2.0));
    }

    /// The Doll, vertex 3 moved up by 2, in a scene that defines one modifier on it.
    /// @param instance  what its instance says of it, with a comma in front
    DzFigure* loadWith(const std::string& definition, const std::string& instance = "")
    {
        const std::string up =
            R"({"id": "Up-1", "url": "/)" + std::string(shapes) +
            R"(Up.dsf#Up", "parent": "#Doll-1", "channel": {"id": "value", "current_value": 1}})";
        const std::string text = R"("modifier_library": [{"id": "Mod", "name": "Mod", "parent": "#Doll-1")" +
                                 (definition.empty() ? "" : ", " + definition) +
                                 R"(}], "scene": {"nodes": [)" + Instance("", R"(, "label": "Doll")") +
                                 R"(], "modifiers": [)" + up +
                                 R"(, {"id": "Mod-1", "url": "#Mod", "parent": "#Doll-1")" + instance + "}]}";
        return load("Scenes/Mod.duf", File(text, "scene")) ? labelled("Doll") : nullptr;
    }

    static DzModifier* modifierOf(const DzFigure& figure, const char* name = "Mod")
    {
        return figure.getObject()->findModifier(QLatin1String(name));
    }
    static DzNumericProperty& dial(const DzFigure& figure, const char* name)
    {
        return *qobject_cast<DzNumericProperty*>(
            kst::daz::FindProperty(const_cast<DzFigure&>(figure), PropertyLocation::Modifiers, name, true));
    }
};

} // namespace

TEST_F(Effects, smoothing_moves_the_cage_as_its_dials_say)
{
    const DzFigure* const figure = loadWith(Smoothing());
    ASSERT_NE(figure, nullptr);
    // Along the border between (5, 0) and (5, 20): half the way from 12 to 10.
    ExpectAt(VertexAt(*figure, 3), 5, 11, 0);
    dial(*figure, "Weight").setDoubleValue(0.25);
    ExpectAt(VertexAt(*figure, 3), 5, 11.5f, 0);
    dial(*figure, "Smoothing Iterations").setDoubleValue(0);
    ExpectAt(VertexAt(*figure, 3), 5, 12, 0);
    dial(*figure, "Smoothing Iterations").setDoubleValue(1);
    auto* const enabled = kst::daz::FindEnableSmoothingProperty(const_cast<DzFigure&>(*figure), true);
    EXPECT_TRUE(enabled->getBoolValue());
    enabled->setBoolValue(false);
    ExpectAt(VertexAt(*figure, 3), 5, 12, 0);
    EXPECT_EQ(enabled->getPath(), QLatin1String("/General/Own"));
}

TEST_F(Effects, an_instance_says_what_the_dials_of_a_modifier_are)
{
    const DzFigure* const figure = loadWith(Smoothing(), R"(, "extra": [{"type": "studio/modifier/smoothing"},
            {"type": "studio_modifier_channels", "channels": [
                {"channel": {"id": "Weight", "type": "float", "name": "Weight", "current_value": 1}},
                {"channel": {"id": "Enable Smoothing", "label": "no value"}}]}])");
    ASSERT_NE(figure, nullptr);
    ExpectAt(VertexAt(*figure, 3), 5, 10, 0);
    EXPECT_EQ(dial(*figure, "Weight").getDoubleDefaultValue(), 0.5);
}

TEST_F(Effects, dials_of_the_kind_are_known_in_any_case)
{
    const DzFigure* const figure =
        loadWith(Extra("studio/modifier/smoothing",
                       Channel("WEIGHT", "float", "1") + ", " + Channel("smoothing iterations", "int", "1") +
                           ", " + Channel("Mine", "float", "3") + ", " + Channel("MINE", "float", "4")));
    ASSERT_NE(figure, nullptr);
    ExpectAt(VertexAt(*figure, 3), 5, 10, 0);
    EXPECT_EQ(modifierOf(*figure)->findProperty(QStringLiteral("WEIGHT")), nullptr);
    EXPECT_EQ(dial(*figure, "Mine").getDoubleValue(), 4.0);
}

TEST_F(Effects, a_choice_of_the_kind_that_a_file_makes_a_text_is_none_any_more)
{
    const DzFigure* const figure = loadWith(
        Smoothing(", " + Channel("Smoothing Type", "string", "\"a\"", R"(, "enum_values": ["a", "b"])") +
                  ", " + Channel("smoothing type", "float", "2")));
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(dial(*figure, "smoothing type").getDoubleValue(), 2.0);
}

TEST_F(Effects, smoothing_that_no_file_defines_is_made_from_its_instance)
{
    const std::string scene =
        Scene(Instance("", R"(, "label": "Doll")"),
              R"(, "modifiers": [{"id": "Soft", "url": "/data/Gone.dsf#Soft", "parent": "#Doll-1", )" +
                  Smoothing() + "}]");
    ASSERT_TRUE(load("Scenes/Soft.duf", scene));
    const DzFigure& figure = *labelled("Doll");
    ASSERT_NE(modifierOf(figure, "Soft"), nullptr);
    dial(figure, "Up").setDoubleValue(1.0);
    ExpectAt(VertexAt(figure, 3), 5, 11, 0);
}

TEST_F(Effects, smoothing_behind_the_skin_draws_towards_the_unposed_shape_when_it_says_so)
{
    const auto bent = [this](const std::string& type) {
        const DzFigure* const figure = loadWith(Smoothing(
            ", " + Channel("Smoothing Type", "enum", type, R"(, "enum_values": ["Match Shape", "Plain"])")));
        qobject_cast<DzNumericProperty*>(BoneOf(*figure, "hip")->findProperty(QLatin1String("XTranslate")))
            ->setDoubleValue(30.0);
        const DzVec3 corner = VertexAt(*figure, 0);
        dzScene->clear();
        return corner;
    };
    // The whole figure has moved; its corner is a corner of the shape, which plain smoothing rounds.
    ExpectAt(bent("0"), 30, 0, 0);
    ExpectAt(bent("1"), 31.25f, 2.5f, 0);
}

TEST_F(Effects, a_push_moves_the_cage_along_its_normals)
{
    const DzFigure* const figure = loadWith(
        R"("channel": {"id": "value", "name": "Value", "label": "Offset", "type": "float", "value": 2},)" +
        Extra("studio/modifier/push", ""));
    ASSERT_NE(figure, nullptr);
    ExpectAt(VertexAt(*figure, 3), 5, 12, 2);
    dial(*figure, "Mod").setDoubleValue(-1.0);
    ExpectAt(VertexAt(*figure, 0), 0, 0, -1);
    EXPECT_EQ(dial(*figure, "Mod").getLabel(), QLatin1String("Offset"));
}

TEST_F(Effects, a_push_goes_as_far_as_its_weights_say)
{
    const DzFigure* const figure = loadWith(Extra(
        "studio/modifier/push", Channel("Offset Distance", "float", "3"),
        R"(, "influence_vertex_count": 8, "influence_weights": {"count": 2, "values": [[3, 1], [4, 0.5]]})"));
    ASSERT_NE(figure, nullptr);
    ExpectAt(VertexAt(*figure, 0), 0, 0, 0);
    ExpectAt(VertexAt(*figure, 3), 5, 12, 3);
    ExpectAt(VertexAt(*figure, 4), 0, 20, 1.5f);
}

TEST_F(Effects, a_push_for_another_mesh_does_nothing_and_says_so)
{
    for (const char* const weights :
         {R"(, "influence_vertex_count": 9, "influence_weights": {"values": [[3, 1]]})",
          R"(, "influence_weights": {"values": [[8, 1]]})"}) {
        const DzFigure* const figure =
            loadWith(Extra("studio/modifier/push", Channel("Offset", "float", "3"), weights));
        ASSERT_NE(figure, nullptr);
        ExpectAt(VertexAt(*figure, 3), 5, 12, 0);
        EXPECT_TRUE(
            logged("Mod has influence weights for another mesh than that of 8 vertices and does nothing"));
        TestHost().reset();
        use(_library);
    }
}

TEST_F(Effects, a_push_acts_in_its_turn_or_behind_all_smoothing)
{
    const auto pushed = [this](const std::string& post) {
        const std::string text = R"("modifier_library": [{"id": "Push", "parent": "#Doll-1", )" +
                                 Extra("studio/modifier/push", Channel("Offset", "float", "2"),
                                       post + R"(, "influence_weights": {"values": [[3, 1]]})") +
                                 R"(}, {"id": "Soft", "parent": "#Doll-1", )" + Smoothing() +
                                 R"(}], "scene": {"nodes": [)" + Instance("", R"(, "label": "Doll")") +
                                 R"(], "modifiers": [{"id": "P-1", "url": "#Push", "parent": "#Doll-1"},
                {"id": "S-1", "url": "#Soft", "parent": "#Doll-1"}]})";
        EXPECT_TRUE(load("Scenes/Both.duf", File(text, "scene")));
        const DzVec3 position = VertexAt(*labelled("Doll"), 3);
        dzScene->clear();
        return position;
    };
    ExpectAt(pushed(""), 5, 10, 1);
    ExpectAt(pushed(R"(, "push_post_smooth": true)"), 5, 10, 2);
}

TEST_F(Effects, what_is_not_evaluated_is_told_once_and_has_its_dials)
{
    const DzFigure* const figure = loadWith(
        Extra("studio/modifier/dynamic_simulation", Channel("Freeze Simulation", "bool", "true") + ", " +
                                                        Channel("Dynamics Strength", "float", "0.75")));
    ASSERT_NE(figure, nullptr);
    ExpectAt(VertexAt(*figure, 3), 5, 12, 0);
    EXPECT_TRUE(qobject_cast<openhost::SimulationModifier*>(modifierOf(*figure)));
    EXPECT_EQ(dial(*figure, "Freeze Simulation").getDoubleValue(), 1.0);
    EXPECT_EQ(dial(*figure, "Dynamics Strength").getDoubleValue(), 0.75);
    EXPECT_EQ(timesLogged("1 modifier of the kind studio/modifier/dynamic_simulation is kept but not "
                          "evaluated, such as Mod"),
              1);
}

TEST_F(Effects, collisions_of_smoothing_are_told_to_be_left_out)
{
    ASSERT_NE(loadWith(Smoothing(", " + Channel("Collision Iterations", "int", "3") + ", " +
                                 Channel("Collision Item", "node", "\"#Doll\""))),
              nullptr);
    EXPECT_EQ(timesLogged("1 smoothing modifier is evaluated without its collisions, such as Mod"), 1);
    EXPECT_EQ(dial(*labelled("Doll"), "Collision Iterations").getDoubleValue(), 3.0);
}

TEST_F(Effects, smoothing_beyond_what_it_can_do_is_held_and_told)
{
    const DzFigure* const figure =
        loadWith(Extra("studio/modifier/smoothing",
                       Channel("Weight", "float", "4") + ", " + Channel("Smoothing Iterations", "int", "1")));
    ASSERT_NE(figure, nullptr);
    ExpectAt(VertexAt(*figure, 3), 5, 10, 0);
    EXPECT_EQ(timesLogged("1 smoothing modifier is held within a weight of 1 and 1000 rounds, such as Mod"),
              1);
}

TEST_F(Effects, for_a_mesh_that_is_not_there_are_told)
{
    const std::string text =
        R"("node_library": [{"id": "Empty", "type": "node", "label": "Empty"}],
        "modifier_library": [{"id": "Mod", "parent": "#Empty", )" +
        Smoothing() + R"(}], "scene": {"nodes": [{"id": "Empty-1", "url": "#Empty"}],
        "modifiers": [{"id": "Mod-1", "url": "#Mod", "parent": "#Empty-1"}]})";
    ASSERT_TRUE(load("Scenes/Empty.duf", File(text, "scene")));
    EXPECT_EQ(timesLogged("1 modifier is for a mesh that is not there and is left out, such as Mod"), 1);
}

TEST_F(Effects, of_unknown_kinds_are_no_dials_and_are_told)
{
    const struct {
        const char *members, *told;
    } cases[] = {
        {R"("wind": {"speed": 3})", "1 modifier of the unknown kind wind is kept but not evaluated"},
        {R"("extra": {"type": "acme/gravity", "g": 9.8})",
         "1 modifier of the unknown kind acme/gravity is kept but not evaluated"},
        {"", "1 modifier does not say what it does; it is kept as it is"},
    };
    for (const auto& one : cases) {
        const DzFigure* const figure = loadWith(one.members);
        ASSERT_NE(figure, nullptr);
        EXPECT_EQ(figure->findProperty(QLatin1String("Mod")), nullptr);
        ASSERT_NE(modifierOf(*figure), nullptr);
        EXPECT_EQ(modifierOf(*figure)->getNumProperties(), 0);
        EXPECT_EQ(timesLogged(one.told), 1) << log().toStdString();
        TestHost().reset();
        use(_library);
    }
}

TEST_F(Effects, formulas_without_a_channel_drive_what_they_name_and_are_no_dial)
{
    writeShape("Half", R"({"id": "Half", "name": "Half", "parent": "/data/Nord/Doll/Doll.dsf#Doll")" +
                           Driven("Doll:#Up?value", "Doll:#Size?value", "0.5") + "}");
    writeShape("Size", Control("Size"));
    const DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(DialIn(*figure, "Half"), nullptr);
    DialIn(*figure, "Size")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*figure, 3), 5, 11, 0);
}

TEST_F(Effects, a_figure_without_them_keeps_its_posed_cage_as_the_last_stage)
{
    writeShape("Up", Morph("Up", 3, 2.0));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    openhost::Pipeline& pipeline = figure->getObject()->pipeline();
    EXPECT_EQ(pipeline.shapedCage().data(), pipeline.morphedCage().data()) << "nothing is copied";
    EXPECT_TRUE(pipeline.shapingOffsets().empty());
}

TEST_F(Effects, a_preset_puts_its_modifiers_on_the_selected_figure)
{
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    dial(*figure, "Up").setDoubleValue(1.0);
    const auto preset = [](const std::string& definition, const std::string& instance) {
        return File("\"modifier_library\": [" + definition + R"(], "scene": {"modifiers": [)" + instance +
                        "]}",
                    "preset_properties");
    };
    const std::string soft =
        R"({"id": "Soft", "name": "Soft", "label": "Evenly", "parent": "name://@selection:", )" +
        Smoothing() + "}";
    const std::string again = R"({"id": "Soft-1", "url": "#Soft", "parent": "name://@selection:")";
    ASSERT_TRUE(load("Presets/Soft.duf", preset(soft, again + "}"))) << log().toStdString();
    ASSERT_NE(modifierOf(*figure, "Soft"), nullptr);
    EXPECT_EQ(modifierOf(*figure, "Soft")->getLabel(), QLatin1String("Evenly"));
    ExpectAt(VertexAt(*figure, 3), 5, 11, 0);
    const int count = figure->getObject()->getNumModifiers();
    const std::string weight = R"(, "extra": [{"type": "studio/modifier/smoothing"},
        {"type": "studio_modifier_channels", "channels": [{"channel": {"id": "Weight", "current_value": 1}}]}]})";
    ASSERT_TRUE(load("Presets/Softer.duf", preset(soft, again + weight)));
    EXPECT_EQ(figure->getObject()->getNumModifiers(), count) << "it has that one already";
    ExpectAt(VertexAt(*figure, 3), 5, 10, 0);
    EXPECT_FALSE(logged("on what is not there"));

    ASSERT_TRUE(
        load("Presets/Off.duf",
             preset("", R"({"id": "x", "url": "name://@selection#Soft:", "parent": "name://@selection:", )" +
                            Extra("studio/modifier/smoothing", Channel("Enable Smoothing", "bool", "false")) +
                            "}")));
    ExpectAt(VertexAt(*figure, 3), 5, 12, 0);
}

TEST_F(Effects, a_preset_may_push_what_is_selected_by_the_modifiers_own_dial)
{
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_TRUE(
        load("Presets/Push.duf",
             File(R"("modifier_library": [{"id": "P", "name": "P", "parent": "name://@selection:", "channel":
        {"id": "value", "name": "Value", "type": "float", "value": 2}, )" +
                      Extra("studio/modifier/push", "") +
                      R"(}], "scene": {"modifiers": [{"id": "P-1", "url": "#P",
        "parent": "name://@selection:", "channel": {"id": "value", "current_value": 3}}]})",
                  "preset_properties")))
        << log().toStdString();
    ExpectAt(VertexAt(*figure, 3), 5, 10, 3);
}

TEST_F(Effects, clothes_may_bring_a_modifier_for_what_is_selected)
{
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    dial(*figure, "Up").setDoubleValue(1.0);
    ASSERT_TRUE(
        load("Wear/Hat.duf",
             File(R"("modifier_library": [{"id": "Soft", "name": "Soft", "parent": "name://@selection:", )" +
                      Smoothing() + R"(}], "scene": {"nodes": [{"id": "hat", "label": "Hat"}],
        "modifiers": [{"id": "Soft-1", "url": "#Soft", "parent": "name://@selection:"}]})",
                  "wearable")))
        << log().toStdString();
    ExpectAt(VertexAt(*figure, 3), 5, 11, 0);
    EXPECT_FALSE(logged("which has none of them")) << log().toStdString();
}

TEST_F(Effects, a_preset_for_a_mesh_fails_on_what_has_none)
{
    ASSERT_TRUE(load("Scenes/Group.duf", Scene(R"({"id": "g", "label": "Group"})")));
    EXPECT_FALSE(
        load("Presets/Soft.duf",
             File(R"("modifier_library": [{"id": "Soft", "name": "Soft", "parent": "name://@selection:", )" +
                      Smoothing() + R"(}], "scene": {"modifiers": [{"id": "Soft-1", "url": "#Soft",
        "parent": "name://@selection:"}]})",
                  "preset_properties")));
    EXPECT_TRUE(logged("1 modifier is for a mesh that is not there and is left out, such as Soft"));
}
