// Parts of files that hang on nothing, or on something that is called otherwise.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "tests/host/foreign_scene.h"

#include <limits>

namespace {

using namespace doll;

class OddParts : public ForeignScene {
protected:
    void writeFigure(const std::string& what, const std::string& instead) const
    {
        std::string figure = Figure();
        const std::size_t at = figure.find(what);
        ASSERT_NE(at, figure.npos) << what;
        figure.replace(at, what.size(), instead);
        write("data/Nord/Doll/Doll.dsf", File(figure, "figure"));
    }
};

} // namespace

TEST_F(OddParts, a_bone_may_stand_before_its_parent)
{
    writeFigure(R"("node_library": [)", R"("node_library": [
        {"id": "tip", "type": "bone", "parent": "#finger"}, {"id": "finger", "type": "bone", "parent": "#hand"},)");
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    for (const auto& [bone, parent] : {std::pair("tip", "finger"), {"finger", "hand"}, {"hand", "hip"}}) {
        ASSERT_NE(BoneOf(*figure, bone), nullptr) << bone;
        EXPECT_EQ(BoneOf(*figure, bone)->getNodeParent(), BoneOf(*figure, parent)) << bone;
    }
    EXPECT_FALSE(logged("on nothing that is there")) << log().toStdString();
}

TEST_F(OddParts, a_bone_whose_parent_is_nowhere_hangs_on_the_figure_and_a_line_says_so)
{
    writeFigure(R"("parent": "#hip", "rotation_order")", R"("parent": "#pelvis", "rotation_order")");
    writeShape("Turn", Control("Turn", R"(, "formulas": [{"output": "hand:#hand?rotation/z",
        "operations": [{"op": "push", "url": "Doll:#Turn?value"}]}])"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(BoneOf(*figure, "hand"), nullptr);
    EXPECT_EQ(BoneOf(*figure, "hand")->getNodeParent(), figure);
    DialIn(*figure, "Turn")->setDoubleValue(90.0);
    ExpectAt(VertexAt(*figure, 6), -10, 20, 0);
    EXPECT_TRUE(
        logged("1 bone hangs on nothing that is there and is hung on the figure itself, such as hand"))
        << log().toStdString();
}

TEST_F(OddParts, a_bone_whose_parent_is_nowhere_hangs_on_the_figure_also_when_it_stands_before_it)
{
    writeFigure(R"("node_library": [)", R"("node_library": [
        {"id": "tip", "type": "bone", "parent": "#finger"}, {"id": "finger", "type": "bone", "parent": "#gone"},)");
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(BoneOf(*figure, "finger"), nullptr);
    ASSERT_NE(BoneOf(*figure, "tip"), nullptr);
    EXPECT_EQ(BoneOf(*figure, "finger")->getNodeParent(), figure);
    EXPECT_EQ(BoneOf(*figure, "tip")->getNodeParent(), BoneOf(*figure, "finger"));
}

TEST_F(OddParts, a_bone_hangs_on_its_parent_by_id_or_by_name)
{
    writeFigure(R"("node_library": [)", R"("node_library": [
        {"id": "a-1", "name": "a", "type": "bone", "parent": "#hip"},
        {"id": "b", "type": "bone", "parent": "#a-1"}, {"id": "c", "type": "bone", "parent": "#a"},)");
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    for (const char* const bone : {"b", "c"}) {
        ASSERT_NE(BoneOf(*figure, bone), nullptr) << bone;
        EXPECT_EQ(BoneOf(*figure, bone)->getNodeParent(), BoneOf(*figure, "a")) << bone;
    }
    EXPECT_FALSE(logged("on nothing that is there")) << log().toStdString();
}

TEST_F(OddParts, a_bone_whose_parent_is_nowhere_hangs_on_the_first_figure_of_its_file_alone)
{
    writeFigure(R"("node_library": [)", R"("node_library": [
        {"id": "Puppet", "type": "figure"}, {"id": "lone", "type": "bone", "parent": "#gone"},)");
    const DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(BoneOf(*figure, "lone"), nullptr);
}

TEST_F(OddParts, of_bones_of_one_name_the_file_s_first_is_meant_however_deep_it_hangs)
{
    writeFigure(R"({"id": "z", "value": 0}]}],)", R"({"id": "z", "value": 0}]},
        {"id": "deep", "name": "x", "type": "bone", "parent": "#hand"},
        {"id": "high", "name": "x", "type": "bone", "parent": "#hip"}],)");
    const char* const nodes = R"({"id": "d", "url": "/data/Nord/Doll/Doll.dsf#doll"},
        {"id": "x", "url": "/data/Nord/Doll/Doll.dsf#x", "parent": "#d", "label": "Here"})";
    ASSERT_TRUE(load("People/Names.duf", Scene(nodes))) << log().toStdString();
    const DzNode* const found = dzScene->findNodeByLabel(QStringLiteral("Here"));
    ASSERT_NE(found, nullptr) << log().toStdString();
    EXPECT_EQ(found->getNodeParent()->getName(), QStringLiteral("hand"));
}

TEST_F(OddParts, nodes_are_known_whatever_their_letter_case_and_a_line_says_so)
{
    writeShape("Up", Morph("Up", 1, 1.0));
    writeShape("Turn", Control("Turn", R"(, "formulas": [{"output": "HAND:#HAND?rotation/z",
        "operations": [{"op": "push", "url": "doll:#Turn?value"}]}])"));
    const char* const nodes = R"({"id": "d", "url": "/data/Nord/Doll/Doll.dsf#doll", "geometries":
        [{"id": "g", "url": "/data/Nord/Doll/Doll.dsf#doll-1"}]},
        {"id": "h", "url": "/data/Nord/Doll/Doll.dsf#Hand", "parent": "#d", "label": "Here"})";
    ASSERT_TRUE(load("People/Case.duf", Scene(nodes, R"(, "modifiers": [{"id": "u", "parent": "#g",
        "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up", "channel": {"current_value": 1}}])")))
        << log().toStdString();
    const DzNode& figure = *dzScene->getPrimarySelection();
    EXPECT_EQ(dzScene->getNumNodes(), 3);
    ExpectAt(VertexAt(figure, 1), 5, 1, 0);
    EXPECT_EQ(BoneOf(figure, "hand")->getLabel(), QStringLiteral("Here"));
    DialIn(figure, "Turn")->setDoubleValue(90.0);
    ExpectAt(VertexAt(figure, 6), -10, 20, 0);
    EXPECT_TRUE(
        logged("3 names of nodes differ from the figure's in letter case alone and are taken for them, "
               "such as HAND, Hand and doll"))
        << log().toStdString();
}

TEST_F(OddParts, dials_are_known_to_scenes_and_presets_whatever_their_letter_case_and_a_line_says_so)
{
    writeShape("Nose", Control("Nose"));
    writeShape("Up", Morph("Up", 1, 1.0));
    ASSERT_TRUE(load("Scenes/Case.duf", Scene(Instance(), R"(, "modifiers": [{"id": "n", "parent": "#Doll",
        "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Gone.dsf#nose", "channel": {"current_value": 0.5}}])")));
    const DzNode& figure = *dzScene->getPrimarySelection();
    EXPECT_EQ(ValueIn(figure, "Nose"), 0.5);
    EXPECT_TRUE(logged("1 name of a dial differs from the figure's in letter case alone and is taken for it, "
                       "such as nose"))
        << log().toStdString();
    ASSERT_TRUE(loadPreset(R"("animations": [
        {"url": "name://@selection#NOSE:?value/value", "keys": [[0, 0.25]]},
        {"url": "name://@selection#UP:?value/value", "keys": [[0, 0.75]]}])"));
    EXPECT_EQ(ValueIn(figure, "Nose"), 0.25);
    EXPECT_EQ(ValueIn(figure, "Up"), 0.75);
    EXPECT_TRUE(logged("2 names of dials differ from those of Doll in letter case alone and are taken for "
                       "them, such as NOSE and UP"))
        << log().toStdString();
}

TEST_F(OddParts, what_formulas_name_in_vain_is_named)
{
    int number = 0;
    for (const char* const input : {"Doll:#Gone?value", "Doll:#Lost?value", "Doll:#Gone?value",
                                    "tail:#tail?rotation/x", "Doll:#Away?value"}) {
        const std::string name = "C" + std::to_string(number++);
        writeShape(name, Control(name, Driven("Doll:#" + name + "?value", input, "1")));
    }
    writeShape("Out", Control("Out", Driven("Doll:#Nowhere?value", "Doll:#Out?value", "1")));
    ASSERT_NE(openDoll(), nullptr);
    EXPECT_TRUE(logged("6 formulas name what is not installed and are left out, such as "
                       "Doll:#Gone?value, Doll:#Lost?value and tail:#tail?rotation/x"))
        << log().toStdString();
}

TEST_F(OddParts, what_is_set_on_nothing_is_told_and_what_is_set_on_the_selection_is_set)
{
    writeHat();
    writeShape("Up", Morph("Up", 1, 1.0));
    writeShape("Turn", Control("Turn"));
    const auto set = [](const char* name, const char* parent, const char* value) {
        return std::string(R"({"id": "m)") + name + parent +
               R"(", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/)" + name + ".dsf#" + name +
               R"(", "parent": ")" + parent + R"(", "channel": {"current_value": )" + value + "}}";
    };
    const std::string modifiers = ", \"modifiers\": [" + set("Up", "#Gone", "1") + ", " +
                                  set("Turn", "", "1") + ", " + set("Up", "name://@selection:", "0.5") +
                                  ", " + set("None", "name://@selection:", "0.5") + "]";
    const std::string hat = R"({"id": "hat", "url": "/data/Nord/Hat.dsf#Hat", "label": "Hat",
        "parent": "name://@selection/hand:"})";
    const std::string gone = "shapes and controls are set on what is not there and are left out, such as "
                             "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up";
    ASSERT_TRUE(load("Wardrobe/Hat.duf", Scene(hat, modifiers, "wearable")));
    EXPECT_TRUE(logged("4 " + gone)) << log().toStdString();
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    dzScene->setPrimarySelection(BoneOf(*figure, "hand"));
    ASSERT_TRUE(load("Wardrobe/Hat.duf", Scene(hat, modifiers, "wearable")));
    EXPECT_TRUE(logged("2 " + gone)) << log().toStdString();
    EXPECT_TRUE(logged("1 shape or control is set on what is selected, which has none of its name, such as "
                       "/data/Nord/Doll/Morphs/Nord/Shapes/None.dsf#None"))
        << log().toStdString();
    EXPECT_EQ(ValueIn(*figure, "Up"), 0.5);
    EXPECT_EQ(ValueIn(*figure, "Turn"), 0.0);
}

TEST_F(OddParts, presets_know_bones_whatever_their_letter_case_and_a_line_says_so)
{
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_TRUE(loadPreset(R"("animations": [
        {"url": "name://@selection/HAND:?rotation/z/value", "keys": [[0, 30]]},
        {"url": "name://@selection/hip/Hand:?rotation/x/value", "keys": [[0, 20]]},
        {"url": "name://@selection/hip:?rotation/x/value", "keys": [[0, 10]]}])"));
    EXPECT_EQ(BoneOf(*figure, "hand")->getZRotControl()->getValue(), 30.0f);
    EXPECT_EQ(BoneOf(*figure, "hand")->getXRotControl()->getValue(), 20.0f);
    EXPECT_EQ(BoneOf(*figure, "hip")->getXRotControl()->getValue(), 10.0f);
    EXPECT_TRUE(
        logged("2 names of nodes differ from those of Doll in letter case alone and are taken for them, "
               "such as HAND and Hand"))
        << log().toStdString();
}

TEST_F(OddParts, a_skin_that_does_not_say_what_it_binds_binds_the_figure_and_a_line_says_so)
{
    const std::string skin = R"("node": "#Doll", "geometry": "#Doll-1",)";
    const std::pair<const char*, const char*> cases[] = {
        {R"("node": "#Doll",)", "the skin Skin names no geometry; the only one of the file is used"},
        {R"("geometry": "#Doll-1",)", "the skin Skin names no node; it binds the figure"},
        {R"("node": "#Doll", "geometry": "#Other",)", "the skin Skin names the geometry Other, which is not "
                                                      "in the file; the only one of the file is used"}};
    for (const auto& [instead, line] : cases) {
        dzScene->clear();
        writeFigure(skin, instead);
        DzFigure* const figure = openDoll();
        ASSERT_NE(figure, nullptr) << instead;
        BoneOf(*figure, "hand")->getZRotControl()->setValue(90.0f);
        ExpectAt(VertexAt(*figure, 6), -10, 20, 0);
        EXPECT_EQ(timesLogged(line), 1) << log().toStdString();
    }
}

TEST_F(OddParts, a_scene_may_define_a_skin_that_names_no_node)
{
    std::string figure = Figure();
    const std::string node = R"("node": "#Doll", )";
    figure.replace(figure.find(node), node.size(), "");
    ASSERT_TRUE(load("Scenes/Own.duf", File(figure + R"(, "scene": {"nodes": [{"id": "Doll-2", "url": "#Doll",
        "geometries": [{"id": "Doll-3", "url": "#Doll-1"}]}]})",
                                            "scene")))
        << log().toStdString();
    const DzNode& loaded = *dzScene->getPrimarySelection();
    BoneOf(loaded, "hand")->getZRotControl()->setValue(90.0f);
    ExpectAt(VertexAt(loaded, 6), -10, 20, 0);
    EXPECT_TRUE(logged("the skin Skin names no node; it binds the figure")) << log().toStdString();
    EXPECT_FALSE(logged("names no geometry")) << log().toStdString();
}

TEST_F(OddParts, dials_of_unknown_types_are_numbers_and_those_without_a_number_are_told)
{
    writeShape("Wheel", Control("Wheel", "", R"({"id": "value", "type": "dial_wheel", "value": 0.5, "min": -3,
        "max": 3, "current_value": 2})"));
    writeShape("Tint", Control("Tint", "", R"({"id": "value", "type": "color", "value": [1, 0, 0]})"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(ValueIn(*figure, "Wheel"), 2.0);
    EXPECT_EQ(DialIn(*figure, "Wheel")->getDoubleMin(), -3.0);
    EXPECT_EQ(DialIn(*figure, "Tint"), nullptr);
    EXPECT_TRUE(logged("1 morph has a channel of an unknown type and is shown as a number, such as "));
    EXPECT_TRUE(logged("1 modifier has a value that is not one number; it is kept as it is, such as Tint"))
        << log().toStdString();
}

TEST_F(OddParts, limits_beyond_single_precision_are_the_nearest_and_a_line_says_so)
{
    constexpr double largest = std::numeric_limits<float>::max();
    const char* const limits =
        R"({"id": "value", "type": "float", "min": -1e300, "max": 1e300, "clamped": true})";
    writeShape("Far", Control("Far", "", limits));
    writeFigure(R"("label": "Hand",)",
                R"("label": "Hand", "rotation": [{"id": "x", "value": 0, "max": 1e39}],)");
    writeShape("Near", Control("Near", "", R"({"id": "value", "type": "float", "min": -2, "max": 2})"));
    writeShape(
        "Shape",
        Control("Shape", R"(, "morph": {"vertex_count": 8, "deltas": {"values": [[1, 0, 1, 0]]}})", limits));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    for (const char* const name : {"Far", "Shape"}) {
        EXPECT_EQ(DialIn(*figure, name)->getDoubleMin(), -largest);
        EXPECT_EQ(DialIn(*figure, name)->getDoubleMax(), largest);
    }
    EXPECT_EQ(BoneOf(*figure, "hand")->getXRotControl()->getDoubleMax(), largest);
    EXPECT_TRUE(logged("1 node has limits beyond single precision and gets the nearest, such as hand"))
        << log().toStdString();
    EXPECT_TRUE(logged("2 morphs have limits beyond single precision and get the nearest, such as "))
        << log().toStdString();
}

TEST_F(OddParts, a_dial_that_is_set_to_no_number_stays_and_a_line_says_so)
{
    writeShape("Up", Morph("Up", 6, 1.0));
    for (const char* const value : {"\"half\"", "1e300", "[1]"}) {
        ASSERT_TRUE(load(std::string("Scenes/") + std::to_string(timesLogged("Up-1: is set")) + ".duf",
                         Scene(Instance(), R"(, "modifiers": [{"id": "Up-1", "parent": "#Doll-1",
            "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up", "channel": {"id": "value", "current_value": )" +
                                               std::string(value) + "}}]")));
        EXPECT_EQ(ValueIn(*dzScene->getPrimarySelection(), "Up"), 0.0) << value;
    }
    EXPECT_EQ(timesLogged("Up-1: is set to what is no number that a dial can hold; it stays as it is"), 3)
        << log().toStdString();
}

TEST_F(OddParts, a_figure_of_the_scene_s_own_gets_its_geometry_also_without_a_word_about_it)
{
    const std::string node = R"("scene": {"nodes": [{"id": "Own-1", "url": "#Doll", "label": "Own"}]})";
    ASSERT_TRUE(load("Scenes/Own.duf", File(Figure() + ", " + node, "scene")));
    ASSERT_NE(labelled("Own")->getObject(), nullptr);
    ExpectAt(VertexAt(*labelled("Own"), 7), 5, 30, 0);
    EXPECT_FALSE(logged("names no geometry")) << "the skin names it";

    std::string bare = Figure();
    bare.replace(bare.find("modifier_library"), 16, "other_library");
    ASSERT_TRUE(load("Scenes/Bare.duf", File(bare + ", " + node, "scene")));
    ASSERT_NE(labelled("Own (2)")->getObject(), nullptr);
    ExpectAt(VertexAt(*labelled("Own (2)"), 7), 5, 30, 0);
    EXPECT_TRUE(logged("Doll names no geometry and gets the only one of its file")) << log().toStdString();
}

TEST_F(OddParts, shapes_on_a_geometry_that_the_instance_leaves_out_are_the_figure_s)
{
    writeShape("Up", Morph("Up", 1, 1.0));
    const auto scene = [](const std::string& parent, const std::string& more = "") {
        return Scene(R"({"id": "Doll", "url": "/data/Nord/Doll/Doll.dsf#Doll", "label": "Doll"})" + more,
                     R"(, "modifiers": [{"id": "u", "url": "/)" + std::string(shapes) +
                         R"(Up.dsf#Up", "parent": "#)" + parent +
                         R"(", "channel": {"current_value": 0.5}}])");
    };
    const std::string defined = "Doll-1"; // as the figure's file calls it
    ASSERT_NE(Figure().find("\"id\": \"" + defined + "\""), std::string::npos);
    ASSERT_TRUE(load("Scenes/Open.duf", scene(defined)));
    EXPECT_EQ(ValueIn(*labelled("Doll"), "Up"), 0.5);
    EXPECT_FALSE(logged("is taken for")) << log().toStdString();

    dzScene->clear();
    ASSERT_TRUE(load("Scenes/Open.duf", scene("Doll-geometry")));
    EXPECT_EQ(ValueIn(*labelled("Doll"), "Up"), 0.5);
    EXPECT_TRUE(
        logged("shapes and controls are set on what is not there: Doll-geometry is taken for Doll, the "
               "geometry of which is left out"))
        << log().toStdString();

    // Which of two is meant cannot be known.
    dzScene->clear();
    ASSERT_TRUE(load("Scenes/Two.duf",
                     scene("Doll-geometry", R"(, {"id": "Two", "url": "/data/Nord/Doll/Doll.dsf#Doll"})")));
    EXPECT_EQ(ValueIn(*labelled("Doll"), "Up"), 0.0);
    EXPECT_TRUE(logged("1 shape or control is set on what is not there and is left out"))
        << log().toStdString();
}

TEST_F(OddParts, without_addresses_are_told_by_their_ids)
{
    ASSERT_TRUE(load("Scenes/Bare.duf", Scene(Instance(), R"(, "modifiers": [
        {"id": "Nameless", "parent": "#Nowhere", "channel": {"id": "value", "current_value": 1}}])")));
    EXPECT_TRUE(logged("1 shape or control is set on what is not there and is left out, such as Nameless"))
        << log().toStdString();
}

TEST_F(OddParts, without_any_name_are_counted_alone)
{
    ASSERT_TRUE(load("Scenes/Bare.duf", Scene(Instance(), R"(, "modifiers": [
        {"parent": "#Nowhere", "channel": {"id": "value", "current_value": 1}}])")));
    EXPECT_TRUE(logged("1 shape or control is set on what is not there and is left out\n"))
        << log().toStdString();
}
