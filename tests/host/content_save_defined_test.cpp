// Definitions whose present value is not their default, and what a scene sets them to.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dzmodifier.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "loading/channel_properties.h"
#include "tests/host/keep_fixture.h"

namespace {

class SavedOverDefined : public KeepTest {
protected:
    /// The Doll with members of the figure itself, which begin with a comma, and of the hand.
    void define(const std::string& figure, const std::string& hand = "") const
    {
        std::string text = doll::Figure();
        const std::string ofFigure = R"("inherits_scale": true)",
                          ofHand = R"("name": "hand", "type": "bone")";
        text.insert(text.find(ofHand) + ofHand.size(), hand);
        text.insert(text.find(ofFigure) + ofFigure.size(), figure);
        write("data/Nord/Doll/Doll.dsf", doll::File(text, "figure"));
    }
    bool openScene(const std::string& more = "")
    {
        return load("Scenes/Foreign.duf", doll::File(scene(doll::Instance(), more), "scene"));
    }
    bool saveAndReload()
    {
        saved();
        TestHost().reset();
        use(_library);
        return open(target());
    }
    static DzFigure& figure() { return *labelled("Doll"); }
    static DzNumericProperty& channel(const char* path, const char* bone = nullptr)
    {
        return *openhost::FindNodeChannel(bone ? *BoneOf(figure(), bone) : static_cast<DzNode&>(figure()),
                                          path);
    }
    void expectSetBackIsKept(const char* path, double to, const char* bone = nullptr)
    {
        SCOPED_TRACE(path);
        ASSERT_TRUE(openScene());
        ASSERT_EQ(channel(path, bone).getDoubleRawValue(), 7);
        channel(path, bone).setDoubleValue(to);
        ASSERT_TRUE(saveAndReload());
        EXPECT_EQ(channel(path, bone).getDoubleRawValue(), to);
        dzScene->clear();
    }
    static DzNumericProperty& weight()
    {
        return *qobject_cast<DzNumericProperty*>(figure()
                                                     .getObject()
                                                     ->findModifier(QStringLiteral("Soft"))
                                                     ->findProperty(QStringLiteral("Weight")));
    }
    void defineSmoothing(const std::string& channels) const
    {
        writeShape("Soft", R"({"id": "Soft", "name": "Soft", "parent": "/data/Nord/Doll/Doll.dsf#Doll-1",
            "extra": [{"type": "studio/modifier/smoothing"},
                      {"type": "studio_modifier_channels", "channels": [)" +
                               channels + "]}]}");
    }
    static std::string smoothing(const std::string& channel)
    {
        return R"(, "modifiers": [{"id": "Soft-1", "url": "/)" + std::string(doll::shapes) +
               R"(Soft.dsf#Soft", "parent": "#Doll-1", "extra": [
                {"type": "studio_modifier_channels", "channels": [)" +
               channel + "]}]}]";
    }
};

} // namespace

TEST_F(SavedOverDefined, general_scale_is_one_again_though_the_definition_has_another)
{
    for (const char* const seven : {R"({"id": "general_scale", "value": 7})",
                                    R"({"id": "general_scale", "value": 1, "current_value": 7})", "7"}) {
        define(std::string(", \"general_scale\": ") + seven);
        expectSetBackIsKept("general_scale", 1);
    }
}

TEST_F(SavedOverDefined, places_are_at_their_defaults_again_though_the_definition_has_others)
{
    const auto seven = [](const char* member, const char* value) {
        return std::string(", \"") + member + R"(": [{"id": "x", "value": )" + value +
               R"(, "current_value": 7}])";
    };
    define(seven("translation", "0") + seven("rotation", "0") + seven("scale", "1"), seven("scale", "1"));
    expectSetBackIsKept("translation/x", 0);
    expectSetBackIsKept("rotation/x", 0);
    expectSetBackIsKept("scale/x", 1);
    expectSetBackIsKept("scale/x", 1, "hand");
}

TEST_F(SavedOverDefined, dials_are_at_their_defaults_again_though_their_files_have_others)
{
    const char* const value = R"({"id": "value", "type": "float", "value": 0.5, "current_value": 0.875})";
    std::string morph = doll::Morph("Wide", 3, 2);
    const std::string plain = R"({"id": "value", "type": "float"})";
    writeShape("Wide", morph.replace(morph.find(plain), plain.size(), value));
    writeShape("Turn", doll::Control("Turn", "", value));
    ASSERT_TRUE(openScene());
    ASSERT_EQ(ValueIn(figure(), "Wide"), 0.875);
    ASSERT_EQ(ValueIn(figure(), "Turn"), 0.875);
    DialIn(figure(), "Wide")->setDoubleValue(0.5);
    DialIn(figure(), "Turn")->setDoubleValue(0.5);
    ASSERT_TRUE(saveAndReload());
    EXPECT_EQ(ValueIn(figure(), "Wide"), 0.5);
    EXPECT_EQ(ValueIn(figure(), "Turn"), 0.5);
}

TEST_F(SavedOverDefined, channels_of_modifiers_are_at_their_defaults_again_though_their_files_have_others)
{
    defineSmoothing(R"({"channel": {"id": "Weight", "type": "float", "name": "Weight", "value": 0.5,
                                    "current_value": 0.875}})");
    ASSERT_TRUE(openScene());
    ASSERT_EQ(weight().getDoubleRawValue(), 0.875);
    weight().setDoubleValue(0.5);
    ASSERT_TRUE(saveAndReload());
    EXPECT_EQ(weight().getDoubleRawValue(), 0.5);
}

TEST_F(SavedOverDefined, channels_that_the_scene_alone_gives_a_modifier_are_kept_at_their_defaults)
{
    defineSmoothing("");
    ASSERT_TRUE(openScene(
        smoothing(R"({"channel": {"id": "Weight", "type": "float", "name": "Weight", "value": 0.625}})")));
    ASSERT_EQ(weight().getDoubleRawValue(), 0.625);
    ASSERT_TRUE(saveAndReload());
    EXPECT_EQ(weight().getDoubleRawValue(), 0.625);
}

TEST_F(SavedOverDefined, values_that_nobody_has_changed_are_left_to_the_definition)
{
    define(R"(, "general_scale": {"id": "general_scale", "value": 1})");
    writeShape("Wide", doll::Morph("Wide", 3, 2));
    ASSERT_TRUE(openScene());
    const nlohmann::ordered_json file = saved();
    EXPECT_EQ(file["scene"]["nodes"][0].count("general_scale"), 0u);
    EXPECT_EQ(file["scene"]["modifiers"].size(), 1u) << "the skin alone: " << file["scene"]["modifiers"];
}
