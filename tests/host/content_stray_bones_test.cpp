// Bones that files hang on nothing, on themselves or on what they do not list.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "tests/host/foreign_scene.h"

namespace {

using namespace doll;

class StrayBones : public ForeignScene {
protected:
    /// The figure's file with another text in place of one that it has.
    void rewrite(const std::string& text, const std::string& instead) const
    {
        std::string figure = Figure();
        figure.replace(figure.find(text), text.size(), instead);
        write("data/Nord/Doll/Doll.dsf", File(figure, "figure"));
    }
    static std::string doll(const std::string& id = "Doll", const std::string& more = "")
    {
        return R"({"id": ")" + id + R"(", "url": "/data/Nord/Doll/Doll.dsf#Doll", "label": ")" + id +
               R"(", "geometries": [{"id": ")" + id + R"(-g", "url": "/data/Nord/Doll/Doll.dsf#Doll-1"}])" +
               more + "}";
    }
    static std::string bone(const std::string& id, const std::string& name, const std::string& more = "")
    {
        return R"({"id": ")" + id + R"(", "url": "/data/Nord/Doll/Doll.dsf#)" + name + "\"" + more + "}";
    }
    static std::string turned(const std::string& degrees)
    {
        return R"(, "rotation": [{"id": "z", "current_value": )" + degrees + "}]";
    }
    static float turnOf(const char* figure, const char* bone)
    {
        return BoneOf(*labelled(figure), bone)->getZRotControl()->getValue();
    }
    static QString parentOf(const char* label)
    {
        const DzNode* const parent = dzScene->findNodeByLabel(QString::fromUtf8(label))->getNodeParent();
        return parent ? parent->getName() : QString();
    }
};

} // namespace

TEST_F(StrayBones, without_parents_in_the_figures_file_hang_on_it)
{
    rewrite(R"("parent": "#hip", )", "");
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(BoneOf(*figure, "hand"), nullptr);
    EXPECT_EQ(BoneOf(*figure, "hand")->getNodeParent(), figure);
    BoneOf(*figure, "hand")->getZRotControl()->setValue(90.0f);
    ExpectAt(VertexAt(*figure, 6), -10, 20, 0);
    EXPECT_TRUE(
        logged("1 bone hangs on nothing that is there and is hung on the figure itself, such as hand"))
        << log().toStdString();
}

TEST_F(StrayBones, beside_a_figure_in_a_scene_are_bones_by_themselves)
{
    ASSERT_TRUE(load("Scenes/Lone.duf", File(Figure() + R"(, "node_library": [{"id": "Lone", "type": "bone"}],
        "scene": {"nodes": [{"id": "d", "url": "#Doll", "label": "Doll"},
        {"id": "l", "url": "#Lone", "label": "Lone"}]})",
                                             "scene")));
    const DzNode* const lone = dzScene->findNodeByLabel(QStringLiteral("Lone"));
    ASSERT_NE(lone, nullptr);
    EXPECT_EQ(lone->getNodeParent(), nullptr);
    EXPECT_EQ(dzScene->getNumNodes(), 4);
}

TEST_F(StrayBones, that_are_each_others_parents_hang_on_the_figure)
{
    rewrite(R"("label": "Hip", "parent": "#Doll")", R"("label": "Hip", "parent": "#hand")");
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(BoneOf(*figure, "hip"), nullptr);
    EXPECT_EQ(BoneOf(*figure, "hip")->getNodeParent(), figure);
    EXPECT_EQ(BoneOf(*figure, "hand")->getNodeParent()->getName(), QStringLiteral("hip"));
    EXPECT_TRUE(logged("1 bone is below itself and is hung on the figure itself, such as hip"))
        << log().toStdString();
}

TEST_F(StrayBones, of_a_scene_are_those_of_the_only_figure_that_lacks_them)
{
    ASSERT_TRUE(
        load("Scenes/Stray.duf", Scene(bone("b2", "hand", R"(, "parent": "#nowhere")" + turned("20")) + ", " +
                                       bone("b1", "hip", turned("10")) + ", " + doll())));
    EXPECT_EQ(dzScene->getNumNodes(), 3);
    EXPECT_EQ(turnOf("Doll", "hip"), 10.0f);
    EXPECT_EQ(turnOf("Doll", "hand"), 20.0f);
    EXPECT_TRUE(logged("2 bones hang on no figure and are given to the only ones that lack them, such as "))
        << log().toStdString();
}

TEST_F(StrayBones, of_a_scene_that_two_figures_lack_are_given_to_none)
{
    ASSERT_TRUE(
        load("Scenes/Open.duf", Scene(doll("A") + ", " + doll("B") + ", " + bone("b", "hip", turned("10")))));
    EXPECT_EQ(turnOf("A", "hip"), 0.0f);
    EXPECT_EQ(turnOf("B", "hip"), 0.0f);
    EXPECT_EQ(dzScene->getNumNodes(), 7);
    EXPECT_TRUE(logged("1 bone hangs on no figure and is a node by itself, such as hip"))
        << log().toStdString();
}

TEST_F(StrayBones, that_the_figure_does_not_have_are_told_with_what_hangs_on_them)
{
    writeHat();
    ASSERT_TRUE(
        load("Scenes/Tail.duf",
             Scene(doll() + ", " + bone("t", "tail", R"(, "parent": "#Doll")") +
                   R"(, {"id": "h", "url": "/data/Nord/Hat.dsf#Hat", "label": "Hat", "parent": "#t"})")));
    EXPECT_EQ(parentOf("Hat"), QString());
    EXPECT_TRUE(logged("1 bone is none that its figure has and is left out, such as tail"))
        << log().toStdString();
    EXPECT_TRUE(logged("1 node hangs on nothing that is there and is at the root, such as Hat"))
        << log().toStdString();
}

TEST_F(StrayBones, that_the_scene_does_not_list_carry_props_and_dials)
{
    writeHat();
    writeShape("Turn", Control("Turn"));
    ASSERT_TRUE(load(
        "Scenes/Unlisted.duf",
        Scene(
            R"({"id": "h", "url": "/data/Nord/Hat.dsf#Hat", "label": "Hat", "parent": "#hand"}, )" + doll(),
            R"(, "modifiers": [{"id": "t", "parent": "#hip", "channel": {"id": "value", "current_value": 0.5},
        "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Turn.dsf#Turn"}])")));
    EXPECT_EQ(parentOf("Hat"), QStringLiteral("hand"));
    EXPECT_EQ(ValueIn(*labelled("Doll"), "Turn"), 0.5);
    EXPECT_TRUE(logged("2 bones are not listed and are taken from the figures, such as hand and hip"))
        << log().toStdString();
}

TEST_F(StrayBones, that_carry_their_own_figure_do_not)
{
    for (const bool figureFirst : {true, false}) {
        dzScene->clear();
        const std::string figure = doll("Doll", R"(, "parent": "#hand")");
        const std::string bones = bone("hip", "hip", R"(, "parent": "#Doll")" + turned("10")) + ", " +
                                  bone("hand", "hand", R"(, "parent": "#hip")" + turned("20"));
        ASSERT_TRUE(
            load("Scenes/Circle.duf", Scene(figureFirst ? figure + ", " + bones : bones + ", " + figure)))
            << log().toStdString();
        ASSERT_NE(labelled("Doll"), nullptr);
        EXPECT_EQ(dzScene->getNumNodes(), 3);
        EXPECT_EQ(turnOf("Doll", "hip"), 10.0f);
        EXPECT_EQ(turnOf("Doll", "hand"), 20.0f);
    }
    EXPECT_EQ(timesLogged("Doll is below itself; its parent is left out"), 2) << log().toStdString();
}

TEST_F(StrayBones, of_a_second_figure_with_the_ids_of_the_first_are_its_own)
{
    const auto figure = [](const std::string& label, const std::string& degrees) {
        std::string nodes = Instance("", R"(, "label": ")" + label + "\"", turned(degrees));
        return nodes;
    };
    ASSERT_TRUE(load("Scenes/Twins.duf", Scene(figure("One", "10") + ", " + figure("Two", "20"))));
    ASSERT_NE(labelled("Two"), nullptr);
    EXPECT_EQ(dzScene->getNumNodes(), 6);
    EXPECT_EQ(turnOf("One", "hand"), 10.0f);
    EXPECT_EQ(turnOf("Two", "hand"), 20.0f);
    EXPECT_TRUE(
        logged("3 ids of nodes are given more than once, such as Doll; what names them means the first"))
        << log().toStdString();
}

TEST_F(StrayBones, of_a_missing_figure_do_not_take_along_what_hangs_on_them)
{
    writeHat();
    ASSERT_TRUE(load(
        "Scenes/Gone.duf",
        Scene(Instance("-x", "", "", "/data/Nord/Gone.dsf") +
              R"(, {"id": "h", "url": "/data/Nord/Hat.dsf#Hat", "label": "Hat", "parent": "#hand-x"})")));
    EXPECT_NE(dzScene->findNodeByLabel(QStringLiteral("Hat")), nullptr);
    EXPECT_TRUE(logged("1 node hangs on nothing that is there and is at the root, such as Hat"))
        << log().toStdString();
}

TEST_F(StrayBones, and_others_that_animations_name_in_vain_are_told)
{
    ASSERT_TRUE(load("Scenes/Moving.duf", Scene(Instance(), R"(, "animations": [
        {"url": "hand:?rotation/z/value", "keys": [[0, 5]]}, {"url": "tail:?rotation/z/value", "keys": [[0, 5]]},
        {"url": "Doll:#materials/Skin:?diffuse/value", "keys": [[0, 1]]}])")));
    EXPECT_EQ(BoneOf(*dzScene->getPrimarySelection(), "hand")->getZRotControl()->getValue(), 5.0f);
    EXPECT_TRUE(logged("1 of 3 animated values names nothing that is there, such as tail:?rotation/z/value"))
        << log().toStdString();
}
