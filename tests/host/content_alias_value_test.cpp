// Values that files set on aliases, and aliases that stand for nothing.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dznumericproperty.h"
#include "tests/host/foreign_scene.h"

namespace {

using namespace doll;

class AliasValues : public ForeignScene {
protected:
    void writeAlias(const std::string& name, const std::string& target) const
    {
        writeShape("alias_" + name, R"({"id": ")" + name + R"(", "name": ")" + name +
                                        R"(", "parent": "/data/Nord/Doll/Doll.dsf#hand",
            "channel": {"id": "value", "type": "alias", "name": "Value", "label": ")" +
                                        name + R"(", "target_channel": ")" + target + R"("}})");
    }
    /// A morph with a second dial "Jaw" on the hand, through a third one.
    void writeJaw() const
    {
        writeShape("Up", Morph("Up", 1, 1.0));
        writeAlias("Chin", "Doll:#Up?value");
        writeAlias("Jaw", "hand:#Chin?value");
    }
    /// An entry of a scene's modifiers.
    static std::string set(const std::string& name, double value, const std::string& file = "alias_Jaw")
    {
        return R"({"id": "set )" + name + R"(", "parent": "#hand", "url": "/)" + shapes + file + ".dsf#" +
               name + R"(", "channel": {"id": "value", "type": "alias", "current_value": )" +
               fmt::format("{}", value) + "}}";
    }
    bool loadSetting(const std::string& modifiers)
    {
        return load("Scenes/Set.duf", Scene(Instance(), R"(, "modifiers": [)" + modifiers + "]"));
    }
    static double up() { return ValueIn(*dzScene->getPrimarySelection(), "Up"); }
};

} // namespace

TEST_F(AliasValues, go_to_what_the_aliases_stand_for)
{
    writeJaw();
    ASSERT_TRUE(loadSetting(set("Jaw", 0.75)));
    EXPECT_EQ(up(), 0.75);
    ExpectAt(VertexAt(*dzScene->getPrimarySelection(), 1), 5.0f, 0.75f, 0.0f);
}

TEST_F(AliasValues, do_not_count_where_the_target_has_its_own)
{
    writeJaw();
    for (const bool isFirst : {true, false}) {
        const std::string own = set("Up", 0.25, "Up"), other = set("Jaw", 0.75);
        dzScene->clear();
        ASSERT_TRUE(loadSetting(isFirst ? own + "," + other : other + "," + own));
        EXPECT_EQ(up(), 0.25);
    }
    EXPECT_EQ(timesLogged("1 alias is set otherwise than what it stands for, which counts, such as Jaw"), 2)
        << log().toStdString();
    dzScene->clear();
    ASSERT_TRUE(loadSetting(set("Up", 0.5, "Up") + "," + set("Jaw", 0.5)));
    EXPECT_EQ(timesLogged("is set otherwise"), 2);
}

TEST_F(AliasValues, of_0_say_nothing)
{
    writeShape("Up", Control("Up", "", R"({"id": "value", "value": 0.5})"));
    writeAlias("Jaw", "Doll:#Up?value");
    ASSERT_TRUE(loadSetting(set("Jaw", 0.0)));
    EXPECT_EQ(up(), 0.5);
}

TEST_F(AliasValues, of_a_node_s_channels_go_the_same_way)
{
    writeJaw();
    ASSERT_TRUE(load("Scenes/Set.duf", Scene(Instance("", "", R"(, "extra": [{"type": "studio_node_channels",
        "channels": [{"channel": {"id": "Jaw", "type": "float", "current_value": 0.5}}]}])"))));
    EXPECT_EQ(up(), 0.5);
}

TEST_F(AliasValues, of_animations_and_presets_go_the_same_way)
{
    writeJaw();
    const auto animated = [](const std::string& url, double value) {
        return R"("animations": [{"url": ")" + url + R"(", "keys": [[0, )" + fmt::format("{}", value) +
               "]]}]";
    };
    ASSERT_TRUE(load("Scenes/Moves.duf", Scene(Instance(), ", " + animated("hand:#Jaw?value/value", 0.75))));
    EXPECT_EQ(up(), 0.75);
    ASSERT_TRUE(loadPreset(animated("name://@selection/hand#Jaw:?value/value", 0.25)));
    EXPECT_EQ(up(), 0.25);
    // What is selected wears what a scene brings along for it.
    ASSERT_TRUE(load("Presets/Added.duf",
                     File(R"("scene": {"nodes": [{"id": "Group", "label": "Group"}], "modifiers": [
        {"id": "j", "url": "#Jaw", "parent": "name://@selection/hand:", "channel": {"current_value": 0.125}}]})",
                          "wearable")));
    EXPECT_EQ(ValueIn(*labelled("Doll"), "Up"), 0.125);
}

TEST_F(AliasValues, that_lead_nowhere_are_told)
{
    writeAlias("Jaw", "Doll:#Nothing?value");
    ASSERT_TRUE(loadSetting(set("Jaw", 0.75)));
    EXPECT_TRUE(logged("1 alias names what is not installed and is hidden, such as Doll:#Nothing?value"))
        << log().toStdString();
    EXPECT_TRUE(logged("1 value is set on an alias that stands for nothing, such as Jaw"))
        << log().toStdString();
}

TEST_F(AliasValues, of_circles_and_of_nothing_are_told_apart)
{
    writeAlias("Self", "hand:#Self?value");
    writeAlias("A", "hand:#B?value");
    writeAlias("B", "hand:#A?value");
    writeAlias("To circle", "hand:#A?value");
    writeAlias("Empty", "");
    writeAlias("Lost", "Doll:#Nothing?value");
    writeAlias("Of lost", "hand:#Lost?value");
    writeAlias("Farther", "hand:#Of lost?value");
    ASSERT_NE(openDoll(), nullptr);
    EXPECT_TRUE(logged("4 aliases stand for themselves in the end and are hidden, such as A, B and Self"))
        << log().toStdString();
    EXPECT_TRUE(logged("1 alias names no target and is hidden, such as Empty")) << log().toStdString();
    EXPECT_TRUE(logged("1 alias names what is not installed and is hidden, such as Doll:#Nothing?value"))
        << log().toStdString();
    EXPECT_TRUE(
        logged("2 aliases stand for others that are hidden and are hidden, too, such as Farther and Of "
               "lost"))
        << log().toStdString();
}
