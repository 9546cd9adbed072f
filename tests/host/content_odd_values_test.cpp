// Values of other kinds than they should be of, and fits to what cannot be fitted to.
// SPDX-License-Identifier: MIT

#include "dson/reader.h"
#include "dzbone.h"
#include "dzdformzone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmodifier.h"
#include "dzobject.h"
#include "figure/cage_modifier.h"
#include "geometry/deform_field.h"
#include "tests/host/foreign_fixture.h"

namespace {

using namespace doll;
using Told = std::vector<std::string>;

class OddValues : public ForeignTest {
protected:
    /// What is told of a file of these members.
    Told told(const std::string& members) const
    {
        Told all;
        for (const base::Diagnostic& diagnostic : read(members).diagnostics)
            all.push_back((diagnostic.asset.empty() ? "" : diagnostic.asset + ": ") + diagnostic.what);
        return all;
    }
    dson::Document read(const std::string& members) const
    {
        return dson::ReadDocument(write("file.dsf", File(members)));
    }
    /// The Doll and another one that says so of what it is fitted to.
    bool loadFitted(const std::string& target, const std::string& first = "")
    {
        dzScene->clear();
        return load("Scenes/Fit.duf",
                    Scene(Instance("", R"(, "label": "Body")" + first) + ", " +
                          Instance("-2", R"(, "label": "Coat", "conform_target": )" + target)));
    }
};

std::string Smoothing(const std::string& iterations, const std::string& weight)
{
    return R"("modifier_library": [{"id": "M", "name": "M", "parent": "#Doll-1", "extra": [
        {"type": "studio/modifier/smoothing"}, {"type": "studio_modifier_channels", "channels": [
        {"channel": {"id": "Smoothing Iterations", "name": "Smoothing Iterations", "type": "int", "value": )" +
           iterations + R"(}}, {"channel": {"id": "Weight", "name": "Weight", "type": "float", "value": )" +
           weight + "}}]}]}]";
}

} // namespace

TEST_F(OddValues, numbers_in_texts_are_read_and_told_once)
{
    const std::string members = R"("modifier_library": [{"id": "M", "name": "M", "channel":
        {"id": "value", "type": "float", "value": " 0.25 ", "min": "-1", "max": 2, "label": "5"},
        "morph": {"vertex_count": "8", "deltas": {"count": 1, "values": [["1", 0, "1e1", 0]]}}}])";
    const dson::Document document = read(members);
    ASSERT_EQ(document.modifiers.size(), 1u);
    const dson::Modifier& modifier = document.modifiers[0];
    EXPECT_EQ(modifier.channel.value, 0.25);
    EXPECT_EQ(modifier.channel.min, -1.0);
    EXPECT_EQ(modifier.morph->vertexCount, 8);
    ASSERT_EQ(modifier.morph->deltas.size(), 1u);
    EXPECT_EQ(modifier.morph->deltas.deltas[0], (geometry::Vec3f{0, 10, 0}));
    const std::string text = "as texts, read as what they say, such as \"";
    ASSERT_EQ(document.diagnostics.size(), 1u);
    EXPECT_NE(document.diagnostics[0].what.find(text), std::string::npos) << document.diagnostics[0].what;
    base::Diagnostics later;
    EXPECT_EQ(dson::ReadDeltas(document.file, "M", &later).size(), 1u);
    ASSERT_EQ(later.size(), 1u);
    EXPECT_EQ(later[0].what, "has 3 numbers as texts, read as what they say, such as \"8\"");
}

TEST_F(OddValues, texts_that_are_no_numbers_are_none)
{
    for (const char* const text :
         {"", " ", "0,5", "1 2", "x1", "1x", "nan", "inf", "1e300", "0x10", "true"}) {
        const dson::Document document =
            read(std::string(R"("modifier_library": [{"id": "M", "channel": {"id": "value", "value": ")") +
                 text + "\"}}]");
        EXPECT_EQ(document.modifiers.at(0).channel.value, 0.0) << text;
        ASSERT_EQ(document.diagnostics.size(), 1u) << text;
        EXPECT_EQ(document.diagnostics[0].what,
                  "has 1 value that is no number, not taken over, such as of value")
            << text;
    }
}

TEST_F(OddValues, texts_of_channels_of_texts_are_no_numbers)
{
    const dson::Document document = read(
        R"("modifier_library": [{"id": "M", "channel": {"id": "value", "type": "string", "value": "5"}}])");
    EXPECT_EQ(document.modifiers.at(0).channel.text, "5");
    EXPECT_EQ(document.diagnostics, base::Diagnostics{});
}

TEST_F(OddValues, instead_of_lists_are_told)
{
    const std::string figure = R"("geometry_library": [{"id": "G", "vertices": 5, "polylist": {"values": "x"},
        "polygon_groups": true, "edge_weights": {"values": {}}}], "node_library": 7,
        "modifier_library": [{"id": "M", "formulas": "y", "channel": {"id": "value"}}, {"id": "N", "formulas": 1}])";
    EXPECT_EQ(told(figure).back(), "has members that should be lists and are none: formulas, polygon_groups, "
                                   "values, vertices");
    EXPECT_EQ(told(R"("node_library": [], "modifier_library": {"id": "M", "formulas": null})"),
              Told{"1 list is one thing by itself, which is read: modifier_library"});
}

TEST_F(OddValues, of_places_are_told_and_leave_the_definition_s)
{
    ASSERT_TRUE(load("Scenes/Odd.duf", Scene(Instance("", R"(, "label": "Doll", "translation": [
        {"id": "x", "current_value": "12"}, {"id": "y", "current_value": "far"}, {"id": "z", "value": []}],
        "scale": ["x", {"id": "y", "current_value": {}}], "general_scale": "big")"))));
    const DzFigure& figure = *labelled("Doll");
    EXPECT_EQ(figure.getXPosControl()->getValue(), 12.0f);
    EXPECT_EQ(figure.getYPosControl()->getValue(), 0.0f);
    EXPECT_EQ(figure.getZPosControl()->getValue(), 0.0f);
    EXPECT_EQ(figure.getXScaleControl()->getValue(), 1.0f);
    EXPECT_EQ(figure.getYScaleControl()->getValue(), 1.0f);
    EXPECT_EQ(figure.getScaleControl()->getValue(), 1.0f);
    EXPECT_TRUE(logged("has 1 number as texts, read as what they say, such as \"12\""));
    EXPECT_TRUE(logged("has 5 values that are no numbers, not taken over, such as of y"))
        << log().toStdString();
}

TEST_F(OddValues, of_modifiers_are_read_from_texts_or_left_at_what_the_kind_has)
{
    const auto rounds = [this](const std::string& iterations, const std::string& weight, const char* dial) {
        dzScene->clear();
        EXPECT_TRUE(
            load("Scenes/Soft.duf", File(Smoothing(iterations, weight) + R"(, "scene": {"nodes": [)" +
                                             Instance("", R"(, "label": "Doll")") + R"(], "modifiers": [
                              {"id": "M-1", "url": "#M", "parent": "#Doll-1"}]})",
                                         "scene")));
        DzModifier* const made = labelled("Doll")->getObject()->findModifier(QStringLiteral("M"));
        return qobject_cast<DzNumericProperty*>(made->findProperty(QLatin1String(dial)))->getDoubleValue();
    };
    EXPECT_EQ(rounds("\"7\"", "0.25", "Smoothing Iterations"), 7.0);
    EXPECT_EQ(rounds("\"many\"", "0.25", "Smoothing Iterations"), 2.0);
    EXPECT_EQ(rounds("[]", "\"much\"", "Weight"), 0.5);
    EXPECT_TRUE(logged("has 1 value that is no number, not taken over, such as of Smoothing Iterations"));
    EXPECT_TRUE(logged("has 2 values that are no numbers, not taken over, such as of Smoothing Iterations"));
}

TEST_F(OddValues, beyond_the_limits_of_their_dials_are_held_by_these_and_told)
{
    const std::string limited = R"(, "rotation": [{"id": "z", "current_value": 120, "min": -90, "max": 90,
        "clamped": true}, {"id": "x", "current_value": 120, "min": -90, "max": 90, "clamped": false}])";
    writeShape("Up",
               Control("Up", "", R"({"id": "value", "type": "float", "min": 0, "max": 1, "clamped": true})"));
    ASSERT_TRUE(
        load("Scenes/Odd.duf", Scene(Instance("", R"(, "label": "Doll")", limited),
                                     R"(, "modifiers": [{"id": "Up-1", "url": "/)" + std::string(shapes) +
                                         R"(Up.dsf#Up", "parent": "#Doll-1",
                                                 "channel": {"id": "value", "current_value": 3}}])")));
    const DzNode& hand = *BoneOf(*labelled("Doll"), "hand");
    EXPECT_EQ(hand.getZRotControl()->getValue(), 90.0f);
    EXPECT_EQ(hand.getXRotControl()->getValue(), 120.0f);
    EXPECT_EQ(ValueIn(*labelled("Doll"), "Up"), 1.0);
    EXPECT_TRUE(
        logged("2 values are beyond the limits of their dials, which hold them, such as Z Rotate and Up"))
        << log().toStdString();
}

TEST_F(OddValues, levels_of_subdivision_that_there_are_not_are_told)
{
    const auto geometry = [](const std::string& level) {
        return R"("geometry_library": [{"id": "G", "extra": [{"type": "studio_geometry_channels", "channels":
            [{"channel": {"id": "SubDIALevel", "type": "int", "value": )" +
               level + "}}]}]}]";
    };
    EXPECT_EQ(told(geometry("99")), Told{"G: is to be subdivided to level 99; 10 is taken"});
    EXPECT_EQ(told(geometry("-1")), Told{"G: is to be subdivided to level -1; 0 is taken"});
    EXPECT_EQ(told(geometry("10")), Told{});
    EXPECT_EQ(told(R"("scene": {"nodes": [{"id": "N", "geometries": [{"id": "G", "url": "#G",
                      "current_subdivision_level": 1e9}]}]})"),
              Told{"G: is to be subdivided to level 1000000000; 10 is taken"});
}

TEST_F(OddValues, of_d_formers_are_told)
{
    const std::string zone = R"("node_library": [{"id": "Z", "name": "Z", "type": "node", "extra":
        [{"type": "studio/node/dform_zone", "influence_mode": "psychic",
          "falloff": [[0, 1], ["x", 1], 5, [0.5], [1, "0"]]}]}])";
    const dson::Document document = read(zone);
    ASSERT_TRUE(document.nodes.at(0).dform);
    EXPECT_EQ(document.nodes[0].dform->usesWeights, false);
    EXPECT_EQ(document.nodes[0].dform->falloff, (std::vector<std::array<double, 2>>{{0, 1}, {1, 0}}));
    EXPECT_EQ(told(zone), (Told{"Z: has an unknown influence mode; its field counts",
                                "Z: 3 rows of its falloff are not a distance and a strength and left out",
                                "has 1 number as texts, read as what they say, such as \"0\""}));
    EXPECT_EQ(told(R"("modifier_library": [{"id": "D", "name": "D", "dform": "x"}])"),
              Told{"D: is a D-Former that is no object and has no effect"});
    EXPECT_EQ(told(R"("modifier_library": [{"id": "D", "name": "D", "dform": {"influence_weights": 3}}])"),
              Told{"D: has members that should be lists and are none: influence_weights"});
}

TEST_F(OddValues, figures_are_fitted_to_what_is_meant_and_that_is_told)
{
    ASSERT_TRUE(loadFitted("\"Doll\""));
    EXPECT_EQ(labelled("Coat")->getFollowTarget(), labelled("Body"));
    ASSERT_TRUE(loadFitted("\"#hand\""));
    EXPECT_EQ(labelled("Coat")->getFollowTarget(), labelled("Body"));
    EXPECT_TRUE(logged("Coat is to be fitted to Hand; the figure that has it is taken"));
}

TEST_F(OddValues, figures_that_are_fitted_to_nothing_that_there_is_are_told)
{
    for (const char* const target : {"\"#none\"", "\"none\"", "\"#\"", "\"#Doll-2\""}) {
        const int before = timesLogged("there is nothing that Coat can be fitted to");
        ASSERT_TRUE(loadFitted(target)) << target;
        EXPECT_EQ(labelled("Coat")->getFollowTarget(), nullptr) << target;
        EXPECT_EQ(timesLogged("there is nothing that Coat can be fitted to"), before + 1) << target;
    }
    for (const char* const target : {"5", "[]", "{}", "true"}) {
        const int before = timesLogged("is to be fitted to what is no reference to a figure");
        ASSERT_TRUE(loadFitted(target)) << target;
        EXPECT_EQ(labelled("Coat")->getFollowTarget(), nullptr) << target;
        EXPECT_EQ(timesLogged("is to be fitted to what is no reference to a figure"), before + 1) << target;
    }
}

TEST_F(OddValues, figures_that_are_fitted_in_a_circle_are_told_and_fitted_once)
{
    ASSERT_TRUE(loadFitted("\"#Doll\"", R"(, "conform_target": "#Doll-2")"));
    EXPECT_EQ(labelled("Body")->getFollowTarget(), labelled("Coat"));
    EXPECT_EQ(labelled("Coat")->getFollowTarget(), nullptr);
    EXPECT_TRUE(logged("Coat is to be fitted to Body, which is fitted to it; it is left as it is"));
}

TEST_F(OddValues, what_is_no_figure_is_fitted_to_nothing_and_told)
{
    ASSERT_TRUE(
        load("Scenes/Prop.duf", Scene(Instance("", R"(, "label": "Body")") +
                                      R"(, {"id": "p", "label": "Hat", "conform_target": "#Doll"})")));
    EXPECT_TRUE(logged("Hat is no figure that could be fitted to anything"));
}

TEST_F(OddValues, dials_in_more_groups_than_a_tree_holds_are_told_together)
{
    std::string deep;
    for (int level = 0; level < 65; ++level)
        deep += "/g";
    const auto dial = [&](const char* name) {
        return std::string(R"({"id": ")") + name + R"(", "name": ")" + name +
               R"(", "parent": "#Doll-1", "group": ")" + deep +
               R"(", "channel": {"id": "value", "type": "float", "value": 0}})";
    };
    ASSERT_TRUE(
        load("Scenes/Deep.duf",
             File(R"("modifier_library": [)" + dial("A") + ", " + dial("B") + R"(], "scene": {"nodes": [)" +
                      Instance() + R"(], "modifiers": [{"id": "A-1", "url": "#A", "parent": "#Doll-1"},
                              {"id": "B-1", "url": "#B", "parent": "#Doll-1"}]})",
                  "scene")));
    EXPECT_TRUE(logged(
        "2 dials lie deeper than 64 groups in each other and are left in the last of them, such as A and B"))
        << log().toStdString();
}

TEST_F(OddValues, influence_weights_are_found_however_deep_they_lie)
{
    std::string before, behind;
    for (int level = 0; level < 100; ++level) {
        before += R"({"in": )";
        behind += "}";
    }
    const dson::Document document =
        read(R"("scene": {"extra": [)" + before +
             R"({"influence_vertex_count": 8, "influence_weights": {"values": [[3, 1]]}})" + behind + "]}");
    ASSERT_EQ(document.influenceMaps.size(), 1u);
    EXPECT_EQ(document.influenceMaps[0].vertices, std::vector<std::uint32_t>{3});
}
