// Colours, texts and other values that are not one number, in saved scenes.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dzmodifier.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "openhost/missing_shapes.h"
#include "tests/host/foreign_fixture.h"
#include "tests/host/keep_fixture.h"
#include "tests/host/save_fixture.h"

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

/// A figure of a data file and a prop of the scene, each with values of many types.
const char* const scene = R"({
    "file_version": "0.6.0.0", "asset_info": {"id": "/Scenes/All.duf", "type": "scene"},
    "geometry_library": [{"id": "Cloth-g", "vertices": {"values": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]]},
        "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["Felt"]},
        "polylist": {"values": [[0,0,0,1,2,3]]}}],
    "node_library": [{"id": "Cloth", "type": "node", "label": "Cloth"}],
    "modifier_library": [
        {"id": "Hue", "name": "Hue", "parent": "#Cloth-g", "group": "/Paint", "channel":
            {"id": "value", "type": "color", "name": "Hue", "value": [1, 0, 0.5], "vendor": 7}},
        {"id": "Note", "name": "Note", "parent": "#Cloth-g", "channel":
            {"id": "value", "type": "string", "name": "Note", "value": "5"}},
        {"id": "Pair", "name": "Pair", "parent": "#Cloth-g", "channel":
            {"id": "value", "type": "float2", "name": "Pair", "value": [1, 2]}},
        {"id": "Odd", "name": "Odd", "parent": "#Cloth-g", "channel":
            {"id": "value", "type": "spectrum", "name": "Odd", "value": {"nm": [400, 700]}}},
        {"id": "Wheel", "name": "Wheel", "parent": "#Cloth", "channel":
            {"id": "value", "type": "dial_wheel", "name": "Wheel", "value": 0.5, "min": -3, "max": 3}},
        {"id": "Soft", "name": "Soft", "parent": "#Cloth-g", "extra": [{"type": "studio/modifier/smoothing"},
            {"type": "studio_modifier_channels", "channels": [
                {"channel": {"id": "Tint", "type": "color", "name": "Tint", "value": [0, 0, 0]}},
                {"channel": {"id": "Grid", "type": "int2", "name": "Grid", "value": [3, 4]}}]}]}],
    "scene": {"nodes": [
            {"id": "Doll", "url": "/data/Nord/Doll/Doll.dsf#Doll", "label": "Doll",
             "geometries": [{"id": "Doll-1", "url": "/data/Nord/Doll/Doll.dsf#Doll-1"}],
             "extra": [{"type": "studio_node_channels", "channels": [
                {"channel": {"id": "Tag", "type": "string", "name": "Tag", "current_value": "left"}, "group": "/Own"},
                {"channel": {"id": "Cast Shadows", "type": "bool", "name": "Cast Shadows", "current_value": false}},
                {"channel": {"id": "Lamp", "type": "float_color", "current_value": [1, 1, 0.25]}}]}]},
            {"id": "Cloth-1", "url": "#Cloth", "label": "Cloth",
             "geometries": [{"id": "Cloth-1-g", "url": "#Cloth-g"}]}],
        "modifiers": [
            {"id": "Own-1", "url": "/data/Nord/Doll/Doll.dsf#Own", "parent": "#Doll-1", "extra": [
                {"type": "studio_modifier_channels", "channels": [
                    {"channel": {"id": "Item", "type": "string", "current_value": "b"}}]}]},
            {"id": "Name-1", "url": "/data/Nord/Doll/Doll.dsf#Name", "parent": "#Doll-1",
             "channel": {"id": "value", "type": "string", "current_value": "Ada"}},
            {"id": "Hue-1", "url": "#Hue", "parent": "#Cloth-1-g",
             "channel": {"id": "value", "type": "color", "current_value": [0.25, 0, 1]}},
            {"id": "Note-1", "url": "#Note", "parent": "#Cloth-1-g",
             "channel": {"id": "value", "type": "string", "current_value": "six"}},
            {"id": "Pair-1", "url": "#Pair", "parent": "#Cloth-1-g",
             "channel": {"id": "value", "type": "float2", "current_value": [3, 4]}},
            {"id": "Odd-1", "url": "#Odd", "parent": "#Cloth-1-g"},
            {"id": "Wheel-1", "url": "#Wheel", "parent": "#Cloth-1",
             "channel": {"id": "value", "type": "dial_wheel", "current_value": 2}},
            {"id": "Soft-1", "url": "#Soft", "parent": "#Cloth-1-g", "extra": [
                {"type": "studio_modifier_channels", "channels": [
                    {"channel": {"id": "Tint", "type": "color", "current_value": [0.5, 0.5, 1]}}]}]}]}})";

class SavedValues : public SaveTest {
protected:
    void SetUp() override
    {
        SaveTest::SetUp();
        ASSERT_TRUE(openBesideDoll(R"(, {"id": "Own", "name": "Own", "parent": "#Doll-1", "extra": [
            {"type": "studio/modifier/smoothing"}, {"type": "studio_modifier_channels", "channels": [
                {"channel": {"id": "Item", "type": "string", "name": "Item", "value": "a"}}]}]},
            {"id": "Name", "name": "Name", "parent": "#Doll-1",
             "channel": {"id": "value", "type": "string", "name": "Name", "value": "Eve"}})",
                                   scene))
            << log().toStdString();
    }
    json saved(const char* name)
    {
        EXPECT_EQ(save("DzSceneAssetFilter", file(name)), 0) << log().toStdString();
        return json::parse(ReadBytes(file(name)));
    }
    static json withId(const json& list, const std::string& id)
    {
        for (const json& item : list)
            if (item.value("id", "") == id)
                return item;
        return json();
    }
    /// The instance of the modifier that the URL ends with.
    static json instanceOf(const json& file, const std::string& id)
    {
        for (const json& item : file.at("scene").at("modifiers")) {
            const std::string url = item.at("url");
            if (url.substr(url.find('#') + 1) == id)
                return item;
        }
        return json();
    }
    static void expectAll(const json& file)
    {
        const json& defined = file.at("modifier_library");
        const auto definition = [&](const char* id) { return withId(defined, id)["channel"]; };
        EXPECT_EQ(definition("Hue"), json::parse(R"({"id": "value", "type": "color", "name": "Hue",
                                                     "value": [1, 0, 0.5], "vendor": 7})"));
        EXPECT_EQ(definition("Note")["value"], "5");
        EXPECT_EQ(definition("Pair")["value"], json({1, 2}));
        EXPECT_EQ(definition("Odd")["value"]["nm"], json({400, 700}));
        EXPECT_EQ(definition("Wheel")["type"], "dial_wheel");
        EXPECT_EQ(definition("Wheel")["value"], 0.5);
        EXPECT_EQ(definition("Wheel")["min"], -3);
        const auto current = [&](const char* id) { return instanceOf(file, id)["channel"]["current_value"]; };
        EXPECT_EQ(current("Hue"), json({0.25, 0, 1}));
        EXPECT_EQ(current("Note"), "six");
        EXPECT_EQ(current("Pair"), json({3, 4}));
        EXPECT_EQ(current("Name"), "Ada");
        EXPECT_EQ(current("Wheel"), 2);
        json soft = withId(defined, "Soft")["extra"][1]["channels"];
        EXPECT_EQ(soft[0]["channel"]["current_value"], json({0.5, 0.5, 1}));
        EXPECT_EQ(soft[1]["channel"]["value"], json({3, 4}));
        EXPECT_EQ(soft[1]["channel"].count("current_value"), 0u);
        EXPECT_EQ(instanceOf(file, "Own")["extra"][0]["channels"][0]["channel"]["current_value"], "b");
        EXPECT_EQ(instanceOf(file, "Odd").count("channel"), 0u);
    }
    static void expectNodeChannels(const json& file)
    {
        const json doll = file.at("scene").at("nodes").at(0);
        const json original =
            json::parse(scene).at("scene").at("nodes").at(0).at("extra").at(0).at("channels");
        ASSERT_EQ(doll.at("label"), "Doll");
        EXPECT_EQ(doll.at("extra").at(0).at("type"), "studio_node_channels");
        EXPECT_EQ(doll.at("extra").at(0).at("channels"), original);
    }
};

} // namespace

TEST_F(SavedValues, of_modifiers_stay_what_they_are_and_so_do_their_definitions)
{
    expectAll(saved("One.duf"));
    dzScene->clear();
    ASSERT_TRUE(open(file("One.duf"))) << log().toStdString();
    expectAll(saved("Two.duf"));
    EXPECT_TRUE(log().contains(QStringLiteral(
        "4 modifiers have values that are not one number; they are kept as they are, such as Hue")))
        << log().toStdString();
}

TEST_F(SavedValues, of_nodes_that_the_host_knows_nothing_of_are_kept)
{
    expectNodeChannels(saved("One.duf"));
    dzScene->clear();
    ASSERT_TRUE(open(file("One.duf")));
    expectNodeChannels(saved("Two.duf"));
}

TEST_F(SavedValues, that_are_no_numbers_are_no_dials)
{
    const DzNode* const cloth = dzScene->findNodeByLabel(QStringLiteral("Cloth"));
    for (const char* const name : {"Hue", "Note", "Pair", "Odd"}) {
        const DzModifier* const modifier = cloth->getObject()->findModifier(QLatin1String(name));
        ASSERT_NE(modifier, nullptr) << name;
        EXPECT_EQ(modifier->getNumProperties(), 0) << name;
    }
    const DzModifier* const soft = cloth->getObject()->findModifier(QStringLiteral("Soft"));
    EXPECT_EQ(soft->findProperty(QStringLiteral("Grid")), nullptr);
}

namespace {

/// Values that instances give in the short form, without a type, on a figure in a content library.
class ShortValues : public KeepTest {
protected:
    void SetUp() override
    {
        KeepTest::SetUp();
        const auto define = [this](const char* name, const std::string& channel, const char* folder) {
            write(folder + std::string(name) + ".dsf", doll::ModifierFile(doll::Control(name, "", channel)));
        };
        using doll::shapes;
        define("Tint", R"({"id": "value", "type": "color", "value": [1, 0, 0]})", shapes);
        define("Next", R"({"id": "value", "type": "numeric_node", "value": 3})", shapes);
        define("Note", R"({"id": "value", "type": "string", "value": "0.25"})", shapes);
        define("Far", R"({"id": "value", "type": "color", "value": [1, 0, 0]})", "data/Acme/M/");
        write(std::string(doll::shapes) + "Soft.dsf", doll::ModifierFile(R"({"id": "Soft", "name": "Soft",
            "parent": "/data/Nord/Doll/Doll.dsf#Doll-1", "extra": [{"type": "studio/modifier/smoothing"},
            {"type": "studio_modifier_channels", "channels": [
                {"channel": {"id": "k", "type": "color", "name": "k", "value": [0, 0, 0]}},
                {"channel": {"id": "n", "type": "string", "name": "n", "value": ""}}]}]})"));
    }
    static std::string instance(const std::string& id, const std::string& more,
                                const std::string& folder = doll::shapes)
    {
        return R"({"id": ")" + id + R"(-1", "url": "/)" + folder + id + ".dsf#" + id +
               R"(", "parent": "#Doll-1")" + more + "}";
    }
    static std::string set(const std::string& value)
    {
        return R"(, "channel": {"id": "value", "current_value": )" + value + "}";
    }
    nlohmann::ordered_json modifiersOf(const std::string& modifiers)
    {
        return resaved(
            KeepTest::scene(doll::Instance(), R"(, "modifiers": [)" + modifiers + "]"))["scene"]["modifiers"];
    }
    /// Whose URL ends with that id.
    static nlohmann::ordered_json of(const nlohmann::ordered_json& modifiers, const std::string& id)
    {
        for (const auto& item : modifiers)
            if (const std::string url = item.at("url"); url.substr(url.find('#') + 1) == id)
                return item;
        return nullptr;
    }
};

} // namespace

TEST_F(ShortValues, are_of_the_type_that_the_definition_has)
{
    const nlohmann::ordered_json saved =
        modifiersOf(instance("Tint", set("[0.5, 0.5, 0.25]")) + ", " + instance("Next", set("5")) + ", " +
                    instance("Note", set("\"0.5\"")));
    const auto current = [&](const char* id) { return of(saved, id)["channel"]["current_value"]; };
    EXPECT_EQ(current("Tint"), parsed("[0.5, 0.5, 0.25]")) << saved.dump(1);
    EXPECT_EQ(current("Next"), 5);
    EXPECT_EQ(current("Note"), "0.5");
    EXPECT_FALSE(logged("as texts")) << log().toStdString();
    EXPECT_FALSE(logged("no number that a dial can hold"));
    EXPECT_FALSE(logged("value that is no number"));
    const DzFigure* const figure = qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
    ASSERT_NE(figure, nullptr);
    EXPECT_TRUE(openhost::FindMissingShapes(*figure).shapes.empty()) << "a conversion can do without a dial";
    expectStable();
}

TEST_F(ShortValues, in_texts_are_told_where_they_turn_a_dial)
{
    writeShape("Up", doll::Morph("Up", 1, 1.0));
    modifiersOf(instance("Up", set("\"0.5\"")));
    EXPECT_EQ(ValueIn(*qobject_cast<DzFigure*>(dzScene->getPrimarySelection()), "Up"), 0.5);
    EXPECT_EQ(timesLogged("has 1 number as texts, read as what they say, such as \"0.5\""), 1)
        << log().toStdString();
}

TEST_F(ShortValues, of_further_channels_are_of_the_type_that_the_definition_has)
{
    const nlohmann::ordered_json saved = modifiersOf(instance("Soft", R"(, "extra": [
        {"type": "studio_modifier_channels", "channels": [
            {"channel": {"id": "k", "current_value": [1, 1, 1]}}, {"channel": {"id": "n", "current_value": "2"}},
            {"channel": {"id": "Weight", "current_value": 0.75}},
            {"channel": {"id": "own", "current_value": [1, 2]}}]}])"));
    const nlohmann::ordered_json extra = of(saved, "Soft")["extra"];
    ASSERT_EQ(extra.size(), 1u) << saved.dump(1);
    std::map<std::string, nlohmann::ordered_json> values;
    for (const auto& entry : extra[0]["channels"])
        EXPECT_TRUE(values.emplace(entry["channel"]["id"], entry["channel"]["current_value"]).second)
            << extra.dump(1);
    EXPECT_EQ(values["k"], parsed("[1, 1, 1]"));
    EXPECT_EQ(values["n"], "2");
    EXPECT_EQ(values["Weight"], 0.75);
    EXPECT_EQ(values["own"], parsed("[1, 2]"));
    EXPECT_FALSE(logged("as texts")) << log().toStdString();
    EXPECT_FALSE(logged("value that is no number")) << log().toStdString();
    expectStable();
}

TEST_F(ShortValues, that_a_further_dial_cannot_hold_are_told)
{
    modifiersOf(instance("Soft", R"(, "extra": [{"type": "studio_modifier_channels", "channels": [
        {"channel": {"id": "Weight", "current_value": [1]}}]}])"));
    EXPECT_TRUE(logged("1 value of a modifier is no number that its dial can hold and is not taken over, "
                       "such as Weight"))
        << log().toStdString();
}

TEST_F(ShortValues, of_modifiers_from_any_folder_are_kept)
{
    for (const char* const more : {"", R"(, "channel": {"id": "value", "current_value": [0, 1, 0]})"}) {
        TestHost().reset();
        use(_library);
        const nlohmann::ordered_json saved = modifiersOf(instance("Far", more, "data/Acme/M/"));
        const nlohmann::ordered_json far = of(saved, "Far");
        ASSERT_TRUE(far.is_object()) << saved.dump(1);
        EXPECT_EQ(far.contains("channel"), *more != '\0');
        if (*more) {
            EXPECT_EQ(far["channel"]["current_value"], parsed("[0, 1, 0]"));
        }
        expectStable();
    }
}

TEST_F(ShortValues, of_what_is_not_installed_are_kept)
{
    const nlohmann::ordered_json saved = modifiersOf(instance("Gone", set("[0, 1, 0]")));
    EXPECT_EQ(of(saved, "Gone")["channel"]["current_value"], parsed("[0, 1, 0]")) << saved.dump(1);
}

TEST_F(ShortValues, of_further_channels_of_unknown_types_keep_the_type)
{
    const nlohmann::ordered_json saved = modifiersOf(instance("Soft", R"(, "extra": [
        {"type": "studio_modifier_channels", "channels": [
            {"channel": {"id": "w", "type": "dial_wheel", "name": "Wheel", "current_value": 2}}]}])"));
    const nlohmann::ordered_json channel = of(saved, "Soft")["extra"][0]["channels"][0]["channel"];
    EXPECT_EQ(channel["type"], "dial_wheel") << saved.dump(1);
    EXPECT_EQ(channel["current_value"], 2);
    expectStable();
}
