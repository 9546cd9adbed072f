// Dials of equal names: aliases and what they stand for, bones and the figure.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "tests/host/foreign_scene.h"
#include "tests/host/save_fixture.h"

namespace {

namespace fs = std::filesystem;
using namespace doll;

struct Saver : SaveTest {
    using SaveTest::save;
};

class EqualNames : public ForeignScene {
protected:
    /// Of other tools an alias has the id and the name of what it stands for.
    static std::string alias(const std::string& name, const std::string& target,
                             const std::string& parent = "hand")
    {
        return R"({"id": ")" + name + R"(", "name": ")" + name +
               R"(", "parent": "/data/Nord/Doll/Doll.dsf#)" + parent +
               R"(", "channel": {"id": "value", "type": "alias", "name": "Value", "label": "Here",
               "target_channel": ")" +
               target + R"("}})";
    }
    static std::string controlOf(const std::string& node, const std::string& name,
                                 const std::string& more = "")
    {
        std::string control = Control(name, more);
        const std::string root = "Doll.dsf#Doll\"";
        return control.replace(control.find(root), root.size(), "Doll.dsf#" + node + "\"");
    }
    static DzNumericProperty* on(const DzNode& node, const char* name)
    {
        return qobject_cast<DzNumericProperty*>(node.findProperty(QString::fromUtf8(name)));
    }
    static double valueOn(const DzNode& node, const char* name)
    {
        const DzNumericProperty* const property = on(node, name);
        return property ? property->getDoubleValue() : -1000.0;
    }
};

} // namespace

TEST_F(EqualNames, an_alias_never_costs_the_dial_that_it_stands_for_wherever_both_hang)
{
    // File names decide which of the two is met first.
    const char* const places[][2] = {{"hand", "Doll"}, {"hand", "hand"}, {"Doll", "Doll"}, {"Doll", "hand"}};
    int renamed = 0;
    for (const char* const first : {"alias_head_", "zalias_"})
        for (const auto& [ofAlias, ofDial] : places) {
            SCOPED_TRACE(std::string(first) + " on " + ofAlias + " for one on " + ofDial);
            dzScene->clear();
            fs::remove_all(_library / shapes);
            writeShape(std::string(first) + "Jaw",
                       alias("Jaw", "Doll:/" + std::string(shapes) + "Jaw.dsf#Jaw?value", ofAlias));
            writeShape("Jaw", controlOf(ofDial, "Jaw"));
            DzFigure* const figure = openDoll();
            ASSERT_NE(figure, nullptr);
            const auto node = [&](const std::string& id) -> const DzNode& {
                return id == "Doll" ? *figure : *BoneOf(*figure, id.c_str());
            };
            DzNumericProperty* const dial = on(node(ofDial), "Jaw");
            ASSERT_NE(dial, nullptr);
            EXPECT_EQ(dial->getAliasTarget(), nullptr);
            const bool areTogether = std::string(ofAlias) == ofDial;
            DzNumericProperty* const second = on(node(ofAlias), areTogether ? "alias_Jaw" : "Jaw");
            ASSERT_NE(second, nullptr);
            EXPECT_EQ(second->getAliasTarget(), dial);
            EXPECT_FALSE(second->isHidden());
            renamed += areTogether;
            EXPECT_EQ(timesLogged("1 alias has the name of a dial beside it and gets another, such as Jaw"),
                      renamed)
                << log().toStdString();
        }
    EXPECT_FALSE(logged("taken and get")) << log().toStdString();
}

TEST_F(EqualNames, an_alias_of_a_morph_leaves_it_its_name)
{
    writeShape("alias_Up", alias("Up", "Doll:#Up?value", "Doll"));
    writeShape("Up", Morph("Up", 1, 1.0));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(FindMorph(*figure, "Up"), nullptr);
    EXPECT_EQ(on(*figure, "Up"), nullptr);
    ASSERT_NE(on(*figure, "alias_Up"), nullptr);
    on(*figure, "alias_Up")->setDoubleValue(0.5);
    EXPECT_EQ(FindMorph(*figure, "Up")->getValueControl()->getValue(), 0.5f);
}

TEST_F(EqualNames, many_aliases_before_their_targets_leave_all_dials_and_the_shape_whole)
{
    std::string worn;
    for (int i = 0; i < 8; ++i) {
        const std::string name = "Move" + std::to_string(i);
        writeShape("alias_hand_" + name, alias(name, "Doll:#" + name + "?value", "Doll"));
        writeShape(name, Control(name, Driven("Doll:#Shape" + std::to_string(i) + "?value",
                                              "Doll:#" + name + "?value", "1")));
        writeShape("Shape" + std::to_string(i), Morph("Shape" + std::to_string(i), i, 1.0));
        worn += (worn.empty() ? "" : ", ") +
                (R"({"id": "m)" + name + R"(", "parent": "#Doll-1", "url": "/)") + shapes + name + ".dsf#" +
                name + R"(", "channel": {"current_value": 1}})";
    }
    ASSERT_TRUE(load("People/Worn.duf", Scene(Instance(), ", \"modifiers\": [" + worn + "]")));
    const DzNode& figure = *dzScene->getPrimarySelection();
    for (int i = 0; i < 8; ++i)
        ExpectAt(VertexAt(figure, i), i % 2 ? 5.0f : 0.0f, float(i / 2 * 10 + 1), 0.0f);
}

TEST_F(EqualNames, aliases_stand_for_aliases_in_any_order_and_circles_are_hidden)
{
    writeShape("a1", alias("Jaw", "hip:#Jaw?value", "hand"));
    writeShape("a2", alias("Jaw", "Doll:#Jaw?value", "hip"));
    writeShape("Jaw", Control("Jaw"));
    writeShape("a3", alias("Own", "hand:#Own?value", "hand")); // not itself
    writeShape("Own", Control("Own"));
    writeShape("c1", alias("Ring1", "Doll:#Ring2?value"));
    writeShape("c2", alias("Ring2", "Doll:#Ring3?value"));
    writeShape("c3", alias("Ring3", "Doll:#Ring1?value"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    const DzNode &hand = *BoneOf(*figure, "hand"), &hip = *BoneOf(*figure, "hip");
    on(hand, "Jaw")->setDoubleValue(0.25);
    EXPECT_EQ(valueOn(hip, "Jaw"), 0.25);
    EXPECT_EQ(valueOn(*figure, "Jaw"), 0.25);
    EXPECT_FALSE(on(hand, "Jaw")->isHidden());
    on(hand, "Own")->setDoubleValue(0.5);
    EXPECT_EQ(valueOn(*figure, "Own"), 0.5);
    for (const char* const name : {"Ring1", "Ring2", "Ring3"})
        EXPECT_TRUE(on(hand, name)->isHidden()) << name;
    EXPECT_TRUE(logged("3 aliases stand for themselves in the end and are hidden, such as Ring1, Ring2 and "
                       "Ring3"))
        << log().toStdString();
}

TEST_F(EqualNames, bones_and_the_figure_have_dials_of_one_name_and_each_is_found)
{
    writeShape("A_hand_Bend", controlOf("hand", "Bend"));
    writeShape("D_hip_Bend", controlOf("hip", "Bend"));
    writeShape("C_Bend", Morph("Bend", 1, 1.0));
    const auto twice = [](const char* name, const std::string& input) {
        return Control(name, Driven(std::string("Doll:#") + name + "?value", input, "2"));
    };
    writeShape("E_Bend", Control("Bend")); // the figure's own name for its morph
    writeShape("OfHand", twice("OfHand", "hand:#Bend?value"));
    writeShape("OfHip", twice("OfHip", "hip:#Bend?value"));
    writeShape("OfDoll", twice("OfDoll", "Doll:#Bend?value"));
    writeShape("OfNobody", twice("OfNobody", "#Bend?value"));
    writeShape("OfFile", twice("OfFile", "Doll:/" + std::string(shapes) + "D_hip_Bend.dsf#Bend?value"));
    const char* const liked = R"(, "extra": {"type": "studio/node", "favorites": ["Bend"]})";
    ASSERT_TRUE(load("Scenes/Bends.duf", Scene(Instance("", "", liked))));
    const DzNode& figure = *dzScene->getPrimarySelection();
    const DzNode &hand = *BoneOf(figure, "hand"), &hip = *BoneOf(figure, "hip");
    ASSERT_TRUE(on(hand, "Bend") && on(hip, "Bend") && FindMorph(figure, "Bend")) << log().toStdString();
    on(hand, "Bend")->setDoubleValue(0.1);
    on(hip, "Bend")->setDoubleValue(0.2);
    FindMorph(figure, "Bend")->getValueControl()->setDoubleValue(0.3);
    EXPECT_NEAR(ValueIn(figure, "OfHand"), 0.2, 1e-6);
    EXPECT_NEAR(ValueIn(figure, "OfHip"), 0.4, 1e-6);
    EXPECT_NEAR(ValueIn(figure, "OfDoll"), 0.6, 1e-6);
    EXPECT_NEAR(ValueIn(figure, "OfNobody"), 0.6, 1e-6);
    EXPECT_NEAR(ValueIn(figure, "OfFile"), 0.4, 1e-6);
    EXPECT_TRUE(on(hand, "Bend")->isFavorite());
    EXPECT_FALSE(on(hip, "Bend")->isFavorite());
    EXPECT_FALSE(FindMorph(figure, "Bend")->getValueControl()->isFavorite());
    EXPECT_NE(on(figure, "Bend 2"), nullptr);
    EXPECT_TRUE(logged("1 morph has a name that is taken and gets another")) << log().toStdString();
}

TEST_F(EqualNames, a_control_means_itself_where_it_says_no_node)
{
    writeShape("A", Control("Turn"));
    writeShape("B", controlOf("hand", "Turn", R"(, "formulas": [{"output": "hand:#hand?rotation/z",
        "operations": [{"op": "push", "url": "#Turn?value"}]}])"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    on(*figure, "Turn")->setDoubleValue(7.0);
    on(*BoneOf(*figure, "hand"), "Turn")->setDoubleValue(3.0);
    EXPECT_EQ(BoneOf(*figure, "hand")->getZRotControl()->getValue(), 3.0f);
}

TEST_F(EqualNames, presets_find_the_dial_of_the_node_that_they_name_and_aliases_last)
{
    writeShape("A_hip_Bend", alias("Bend", "Doll:#Other?value", "hip"));
    writeShape("B_hand_Bend", controlOf("hand", "Bend"));
    writeShape("C_Bend", Control("Bend"));
    writeShape("Other", Control("Other"));
    writeShape("D_alias_Only", alias("Only", "Doll:#Other?value", "hip"));
    writeShape("E_hand_Only", controlOf("hand", "Only"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    const DzNode& hand = *BoneOf(*figure, "hand");
    const auto apply = [this](const std::string& url, double value) {
        return loadPreset(R"("animations": [{"url": ")" + url + R"(", "keys": [[0, )" +
                          fmt::format("{}", value) + "]]}]");
    };
    EXPECT_TRUE(apply("name://@selection#Bend:?value/value", 0.1));
    EXPECT_NEAR(valueOn(*figure, "Bend"), 0.1, 1e-6);
    EXPECT_TRUE(apply("name://@selection/hand#Bend:?value/value", 0.2));
    EXPECT_NEAR(valueOn(hand, "Bend"), 0.2, 1e-6);
    EXPECT_TRUE(apply("name://@selection/hand/Bend:?value/value", 0.3));
    EXPECT_NEAR(valueOn(hand, "Bend"), 0.3, 1e-6);
    EXPECT_TRUE(apply("name://@selection/hip#Bend:?value/value", 0.4));
    EXPECT_NEAR(valueOn(*figure, "Other"), 0.4, 1e-6);
    EXPECT_TRUE(apply("name://@selection/hand#Other:?value/value", 0.5)); // only the figure has it
    EXPECT_NEAR(valueOn(*figure, "Other"), 0.5, 1e-6);
    EXPECT_TRUE(apply("name://@selection#Only:?value/value", 0.6));
    EXPECT_NEAR(valueOn(hand, "Only"), 0.6, 1e-6);
    EXPECT_NEAR(valueOn(*figure, "Bend"), 0.1, 1e-6);
    EXPECT_NEAR(valueOn(*figure, "Other"), 0.5, 1e-6);
}

TEST_F(EqualNames, all_come_back_when_the_scene_is_saved_and_loaded)
{
    writeShape("A_hand_Bend", controlOf("hand", "Bend"));
    writeShape("B_Bend", Control("Bend"));
    writeShape("C_alias_hip_Bend",
               alias("Bend", "Doll:/" + std::string(shapes) + "B_Bend.dsf#Bend?value", "hip"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    on(*BoneOf(*figure, "hand"), "Bend")->setDoubleValue(0.25);
    on(*figure, "Bend")->setDoubleValue(0.5);
    on(*BoneOf(*figure, "hand"), "Bend")->setIsFavorite(true);
    // Of the next two the scene alone knows.
    for (DzNode* const node : {static_cast<DzNode*>(figure), BoneOf(*figure, "hand")})
        node->addProperty(new DzFloatProperty(QStringLiteral("Mine"), true, true, 0.0f));
    on(*figure, "Mine")->setDoubleValue(0.75);
    on(*BoneOf(*figure, "hand"), "Mine")->setDoubleValue(0.125);
    const fs::path saved = folder("saved") / "Bends.duf";
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(Saver::save("DzSceneAssetFilter", saved), 0);
        dzScene->clear();
        ASSERT_TRUE(open(saved)) << log().toStdString();
        const DzNode& again = *dzScene->getPrimarySelection();
        EXPECT_EQ(valueOn(*BoneOf(again, "hand"), "Bend"), 0.25);
        EXPECT_EQ(valueOn(again, "Bend"), 0.5);
        EXPECT_EQ(valueOn(*BoneOf(again, "hip"), "Bend"), 0.5);
        EXPECT_EQ(valueOn(again, "Mine"), 0.75);
        EXPECT_EQ(valueOn(*BoneOf(again, "hand"), "Mine"), 0.125);
        EXPECT_TRUE(on(*BoneOf(again, "hand"), "Bend")->isFavorite());
        EXPECT_FALSE(on(again, "Bend")->isFavorite());
    }
}

TEST_F(EqualNames, a_saved_pose_brings_each_dial_to_its_own_node)
{
    const char* const pose = R"(, "presentation": {"type": "Modifier/Pose"})";
    writeShape("A_hand_Bend", controlOf("hand", "Bend", pose));
    writeShape("B_Bend", Control("Bend", pose));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    on(*BoneOf(*figure, "hand"), "Bend")->setDoubleValue(0.25);
    on(*figure, "Bend")->setDoubleValue(0.5);
    const fs::path saved = folder("saved") / "Pose.duf";
    ASSERT_EQ(Saver::save("DzPoseAssetFilter", saved), 0) << log().toStdString();
    on(*BoneOf(*figure, "hand"), "Bend")->setDoubleValue(0.0);
    on(*figure, "Bend")->setDoubleValue(0.0);
    ASSERT_TRUE(open(saved)) << log().toStdString();
    EXPECT_EQ(valueOn(*BoneOf(*figure, "hand"), "Bend"), 0.25);
    EXPECT_EQ(valueOn(*figure, "Bend"), 0.5);
}

TEST_F(EqualNames, a_control_named_as_a_channel_of_its_node_gets_another_name_and_a_line_says_so)
{
    writeShape("Scale", Control("Scale"));
    writeShape("Twist", controlOf("hand", "ZRotate"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_NE(on(*figure, "Scale 2"), nullptr);
    EXPECT_NE(on(*BoneOf(*figure, "hand"), "ZRotate 2"), nullptr);
    EXPECT_EQ(on(*figure, "Scale"), figure->getScaleControl());
    EXPECT_TRUE(logged("2 morphs have names that are taken and get others")) << log().toStdString();
}
