// What other programs' files do that no document promises; each line of the list of pitfalls is one test.
// SPDX-License-Identifier: MIT

#include "dson/gzip.h"
#include "dson/reader.h"
#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzselectionmap.h"
#include "dzskinbinding.h"
#include "openhost/missing_shapes.h"
#include "tests/host/foreign_fixture.h"

#include <clocale>
#include <cmath>

#include <QLocale>

namespace {

namespace fs = std::filesystem;
using namespace doll;

class Pitfall : public ForeignTest {
protected:
    /// Text of a warning or error of reading a file with these members alone.
    dson::Document read(const std::string& members) const
    {
        return dson::ReadDocument(write("file.dsf", File(members)));
    }
};

std::u16string ToUtf16(const std::string& text)
{
    return QString::fromStdString(text).toStdU16String();
}

} // namespace

TEST_F(Pitfall, name_and_id_of_a_control_differ_and_both_find_it)
{
    std::string control = Control("CTRLHipBend");
    control.replace(control.find("\"name\": \"CTRLHipBend\""), 21, "\"name\": \"body_ctrl_HipBend\"");
    writeShape("body_ctrl_HipBend", control);
    writeShape("ById", Control("ById", Driven("Doll:#ById?value", "Doll:#CTRLHipBend?value", "2")));
    writeShape("ByName",
               Control("ByName", Driven("Doll:#ByName?value", "Doll:#body_ctrl_HipBend?value", "3")));
    writeShape("ByFile",
               Control("ByFile", Driven("Doll:#ByFile?value",
                                        "Doll:/data/Nord/Doll/Morphs/Nord/Shapes/body_ctrl_HipBend.dsf"
                                        "#body_ctrl_HipBend?value",
                                        "4")));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(DialIn(*figure, "body_ctrl_HipBend"), nullptr);
    EXPECT_EQ(DialIn(*figure, "CTRLHipBend"), nullptr);
    DialIn(*figure, "body_ctrl_HipBend")->setDoubleValue(0.5);
    EXPECT_NEAR(ValueIn(*figure, "ById"), 1.0, 1e-6);
    EXPECT_NEAR(ValueIn(*figure, "ByName"), 1.5, 1e-6);
    EXPECT_NEAR(ValueIn(*figure, "ByFile"), 2.0, 1e-6);
}

TEST_F(Pitfall, labels_repeat_and_are_no_identity)
{
    const std::string channel = R"({"id": "value", "type": "float", "label": "Same"})";
    writeShape("One", Control("One", "", channel));
    writeShape("Two", Control("Two", Driven("Doll:#Two?value", "Doll:#One?value", "1"), channel));
    ASSERT_TRUE(load("People/Both.duf", Scene(Instance("", R"(, "label": "Doll")") + ", " +
                                              Instance("-2", R"(, "label": "Doll")"))));
    EXPECT_NE(labelled("Doll"), nullptr);
    DzFigure* const second = labelled("Doll (2)");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(DialIn(*second, "One")->getLabel(), QStringLiteral("Same"));
    EXPECT_EQ(DialIn(*second, "Two")->getLabel(), QStringLiteral("Same"));
    DialIn(*second, "One")->setDoubleValue(0.5);
    EXPECT_EQ(ValueIn(*second, "Two"), 0.5);
    EXPECT_EQ(ValueIn(*labelled("Doll"), "Two"), 0.0);
}

TEST_F(Pitfall, odd_characters_are_raw_in_ids_and_encoded_or_not_in_uris)
{
    struct Case {
        const char* name;    ///< as in an id and on the disk
        const char* encoded; ///< as in a URI
    };
    const Case cases[] = {{"Half Way", "Half%20Way"},
                          {"Bare Blank", "Bare Blank"},
                          {"Gr\xC3\xB6\xC3\x9F"
                           "e",
                           "Gr%C3%B6%C3%9Fe"},
                          {"No#1", "No%231"},
                          {"50%", "50%25"},
                          {"50%20", "50%2520"},
                          {"A+B", "A%2BB"},
                          {"C+D", "C+D"},
                          {"(x)", "%28x%29"},
                          {"\xE8\x85\x95", "%e8%85%95"}};
    std::string modifiers;
    for (const Case& one : cases) {
        writeShape(one.name, Control(one.name));
        const std::string url =
            std::string("/data/Nord/Doll/Morphs/Nord/Shapes/") + one.encoded + ".dsf#" + one.encoded;
        modifiers += std::string(modifiers.empty() ? "" : ", ") + R"({"id": "i)" + one.encoded +
                     R"(", "url": ")" + url +
                     R"(", "parent": "#Doll-1", "channel": {"id": "value", "current_value": 0.25}})";
    }
    ASSERT_TRUE(load("People/Odd.duf", Scene(Instance(), ", \"modifiers\": [" + modifiers + "]")));
    const DzNode* const figure = dzScene->getPrimarySelection();
    for (const Case& one : cases)
        EXPECT_EQ(ValueIn(*figure, one.name), 0.25) << one.name;
    EXPECT_FALSE(logged("is in no content library")) << log().toStdString();
}

TEST_F(Pitfall, the_case_of_paths_differs_between_files_and_disk)
{
    fs::rename(_library / "data/Nord", _library / "data/N\xC3\x84"
                                                  "HER");
    write("data/N\xC3\x84"
          "HER/Doll/Morphs/Up.dsf",
          ModifierFile(R"({"id": "Up", "parent":
        "/DATA/n%C3%A4her/doll/DOLL.DSF#Doll", "channel": {"id": "value", "type": "float"}})"));
    ASSERT_TRUE(load("People/Mangled.duf", Scene(Instance("", "", "", "/Data/n%C3%A4her/DOLL/doll.dsf"))));
    const DzNode* const figure = dzScene->getPrimarySelection();
    EXPECT_NE(DialIn(*figure, "Up"), nullptr);
    // The file's own spelling is kept for what is written from here.
    EXPECT_EQ(figure->getAssetUri().toString(), QStringLiteral("/Data/n%C3%A4her/DOLL/doll.dsf#Doll"));
    EXPECT_NE(BoneOf(*figure, "hand"), nullptr);
}

TEST_F(Pitfall, accents_are_composed_on_one_system_and_not_on_the_other)
{
    fs::rename(_library / "data/Nord", _library / "data/Ba\xCC\x88r");
    ASSERT_TRUE(load("People/Bear.duf", Scene(Instance("", "", "", "/data/B%C3%A4r/Doll/Doll.dsf"))));
    EXPECT_TRUE(dzScene->getPrimarySelection() != nullptr);
}

TEST_F(Pitfall, vertex_counts_of_minus_one_and_zero_are_unchecked_and_others_must_fit)
{
    for (const char* const count : {"-1", "0", "8", "9"})
        writeShape(count, Control(std::string("n") + count,
                                  std::string(R"(, "morph": {"vertex_count": )") + count +
                                      R"(, "deltas": {"count": 1, "values": [[1, 0, 1, 0]]}})"));
    writeShape("empty", Control("empty", R"(, "morph": {"vertex_count": 0})"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    for (const char* const name : {"n-1", "n0", "n8"}) {
        ASSERT_NE(FindMorph(*figure, name), nullptr) << name;
        DialIn(*figure, name)->setDoubleValue(1.0);
    }
    ExpectAt(VertexAt(*figure, 1), 5, 3, 0);
    EXPECT_EQ(FindMorph(*figure, "n9"), nullptr);
    ASSERT_NE(FindMorph(*figure, "empty"), nullptr);
    DialIn(*figure, "empty")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*figure, 1), 5, 3, 0);
    EXPECT_TRUE(logged("1 morph is for a mesh of another size and is left out, such as "))
        << log().toStdString();
}

TEST_F(Pitfall, the_length_of_a_list_counts_and_not_its_count)
{
    writeShape("Up", Control("Up", R"(, "morph": {"vertex_count": 8, "deltas":
        {"count": 84, "values": [[1, 0, 1, 0], [2, 0, 1, 0]]}})"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DialIn(*figure, "Up")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*figure, 1), 5, 1, 0);
    ExpectAt(VertexAt(*figure, 2), 0, 11, 0);
}

TEST_F(Pitfall, of_equal_ids_in_a_file_the_first_counts)
{
    write("data/Nord/Doll/Morphs/Twice.dsf",
          ModifierFile(Morph("Twice", 1, 1.0) + ", " + Morph("Twice", 1, 50.0)));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DialIn(*figure, "Twice")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*figure, 1), 5, 1, 0);
    EXPECT_TRUE(logged("Twice.dsf: 1 id is given more than once, such as Twice; the first counts"))
        << log().toStdString();
}

TEST_F(Pitfall, equal_names_in_different_files_are_told_apart_by_the_file_and_a_line_says_so)
{
    write("data/Nord/Doll/Morphs/A/Same.dsf", ModifierFile(Morph("Same", 1, 1.0)));
    write("data/Nord/Doll/Morphs/B/Same.dsf", ModifierFile(Morph("Same", 1, 50.0)));
    write("data/Nord/Doll/Morphs/C/Same.dsf", ModifierFile(Morph("Same", 1, 70.0)));
    const char* const modifiers = R"(, "modifiers": [
        {"id": "s-1", "url": "/data/Nord/Doll/Morphs/B/Same.dsf#Same", "parent": "#Doll-1",
         "channel": {"id": "value", "current_value": 1}}])";
    ASSERT_TRUE(load("People/Same.duf", Scene(Instance(), modifiers)));
    const DzNode* const figure = dzScene->getPrimarySelection();
    for (const char* const name : {"Same", "Same 2", "Same 3"})
        ASSERT_NE(FindMorph(*figure, name), nullptr) << name;
    ExpectAt(VertexAt(*figure, 1), 5, 50, 0);
    EXPECT_EQ(ValueIn(*figure, "Same"), 0.0); // of the first file
    EXPECT_EQ(ValueIn(*figure, "Same 2"), 1.0);
    DialIn(*figure, "Same 3")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*figure, 1), 5, 120, 0);
    EXPECT_EQ(timesLogged("2 morphs have names that are taken and get others, such as "), 1);
    EXPECT_TRUE(logged("B/Same.dsf"));
}

TEST_F(Pitfall, a_shape_that_is_broken_or_for_another_mesh_is_missed_and_not_the_one_of_its_name_worn)
{
    write("data/Nord/Doll/Morphs/A/Same.dsf", ModifierFile(Morph("Same", 1, 1.0)));
    std::string other = Morph("Same", 1, 50.0);
    const std::size_t count = other.find("\"vertex_count\": 8");
    ASSERT_NE(count, other.npos) << other;
    other.replace(count, 17, "\"vertex_count\": 9");
    const std::string url = "/data/Nord/Doll/Morphs/B/Same.dsf#Same";
    const std::string worn = R"(, "modifiers": [{"id": "s-1", "url": ")" + url + R"(", "parent": "#Doll-1",
         "channel": {"id": "value", "current_value": 1}}])";
    writeShape("Drive", Control("Drive", Driven("Doll:" + url + "?value", "Doll:#Drive?value", "1")));
    for (const std::string& text : {ModifierFile(other), std::string("{")}) {
        write("data/Nord/Doll/Morphs/B/Same.dsf", text);
        ASSERT_TRUE(load("People/Same.duf", Scene(Instance(), worn)));
        const DzNode& figure = *dzScene->getPrimarySelection();
        EXPECT_EQ(ValueIn(figure, "Same"), 0.0) << text;
        EXPECT_EQ(openhost::FindMissingShapes(figure).shapes.size(), 1u) << text;

        DzFigure* const bare = openDoll();
        ASSERT_NE(bare, nullptr);
        EXPECT_TRUE(openhost::FindMissingShapes(*bare).shapes.empty()) << text;
        DialIn(*bare, "Drive")->setDoubleValue(1.0);
        EXPECT_EQ(ValueIn(*bare, "Same"), 0.0) << text;
        EXPECT_EQ(openhost::FindMissingShapes(*bare).shapes.size(), 1u) << text;
    }
}

TEST_F(Pitfall, a_scene_wears_the_shape_that_it_defines_and_not_the_one_of_its_name_in_the_library)
{
    writeShape("Same", Morph("Same", 1, 1.0));
    const std::string worn = R"(, "modifiers": [{"id": "s-1", "url": "#Same", "parent": "#Doll-1",
         "channel": {"id": "value", "current_value": 1}}])";
    ASSERT_TRUE(load("People/Same.duf", File(R"("modifier_library": [)" + Morph("Same", 1, 50.0) +
                                                 R"(], "scene": {"nodes": [)" + Instance() + "]" + worn + "}",
                                             "scene")));
    const DzNode& figure = *dzScene->getPrimarySelection();
    ExpectAt(VertexAt(figure, 1), 5, 50, 0);
    EXPECT_EQ(ValueIn(figure, "Same"), 0.0);
}

TEST_F(Pitfall, the_shape_of_a_file_that_is_gone_is_looked_for_by_its_name_and_a_line_says_so)
{
    write("data/Nord/Doll/Morphs/A/Moved.dsf", ModifierFile(Morph("Moved", 1, 1.0)));
    const auto worn = [](const char* folder) {
        return std::string(R"(, "modifiers": [{"id": "m-1", "url": "/data/Nord/Doll/Morphs/)") + folder +
               R"(/Moved.dsf#Moved", "parent": "#Doll-1", "channel": {"id": "value", "current_value": 1}}])";
    };
    ASSERT_TRUE(load("People/There.duf", Scene(Instance(), worn("A"))));
    EXPECT_EQ(ValueIn(*dzScene->getPrimarySelection(), "Moved"), 1.0);
    EXPECT_FALSE(logged("in no content library")) << log().toStdString();
    ASSERT_TRUE(load("People/Gone.duf", Scene(Instance(), worn("B"))));
    EXPECT_EQ(ValueIn(*dzScene->getPrimarySelection(), "Moved"), 1.0);
    EXPECT_TRUE(logged("1 file is in no content library, and the dial of its name is turned, such as "
                       "for /data/Nord/Doll/Morphs/B/Moved.dsf"))
        << log().toStdString();
}

TEST_F(Pitfall, a_name_that_is_given_is_not_given_again)
{
    write("data/Nord/Doll/Morphs/A/Same.dsf", ModifierFile(Morph("Same", 1, 1.0)));
    write("data/Nord/Doll/Morphs/B/Same.dsf", ModifierFile(Morph("Same", 1, 2.0)));
    write("data/Nord/Doll/Morphs/C/Same 2.dsf", ModifierFile(Morph("Same 2", 1, 4.0)));
    write("data/Nord/Doll/Morphs/D/Same.dsf", ModifierFile(Morph("Same", 1, 8.0)));
    write("data/Nord/Doll/Morphs/E/Turn.dsf", ModifierFile(Control("Turn")));
    write("data/Nord/Doll/Morphs/F/Turn.dsf", ModifierFile(Morph("Turn", 2, 1.0)));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    std::set<QString> names;
    for (int i = 0; i < figure->getObject()->getNumModifiers(); ++i) {
        DzModifier* const modifier = figure->getObject()->getModifier(i);
        EXPECT_TRUE(names.insert(modifier->getName()).second) << modifier->getName().toStdString();
        if (const auto* const morph = qobject_cast<DzMorph*>(modifier))
            morph->getValueControl()->setValue(1.0f);
    }
    ExpectAt(VertexAt(*figure, 1), 5, 15, 0);
    EXPECT_EQ(names.count(QStringLiteral("Turn")), 0u) << "the control has it";
    EXPECT_EQ(names.count(QStringLiteral("Turn 2")), 1u);
}

TEST_F(Pitfall, a_morph_of_a_taken_name_is_driven_by_its_own_formulas_and_no_other_s)
{
    const char* const drive = R"(, "formulas": [{"output": "Doll:#Same?value",
        "operations": [{"op": "push", "url": "hand:#hand?rotation/z"}]}])";
    write("data/Nord/Doll/Morphs/A/Same.dsf", ModifierFile(Morph("Same", 1, 1.0, drive)));
    write("data/Nord/Doll/Morphs/B/Same.dsf", ModifierFile(Morph("Same", 1, 1.0, drive)));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DialIn(*BoneOf(*figure, "hand"), "ZRotate")->setDoubleValue(3.0);
    ASSERT_NE(FindMorph(*figure, "Same 2"), nullptr);
    EXPECT_EQ(ValueIn(*figure, "Same"), 3.0);
    EXPECT_EQ(ValueIn(*figure, "Same 2"), 3.0);
}

TEST_F(Pitfall, an_alias_does_not_take_the_name_of_what_it_stands_for)
{
    write("data/Nord/Doll/Morphs/A/alias_Up.dsf", ModifierFile(R"({"id": "Up", "name": "Up",
        "parent": "/data/Nord/Doll/Doll.dsf#hand", "channel": {"id": "value", "type": "alias", "name": "Value",
        "label": "Here", "target_channel": "Doll:/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up?value"}})"));
    writeShape("Up", Morph("Up", 1, 1.0));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(FindMorph(*figure, "Up"), nullptr);
    FindMorph(*figure, "Up")->getValueControl()->setValue(0.5f);
    EXPECT_EQ(qobject_cast<DzNumericProperty*>(BoneOf(*figure, "hand")->findProperty(QStringLiteral("Up")))
                  ->getDoubleValue(),
              0.5);
    EXPECT_FALSE(logged("taken and get")) << log().toStdString();
}

TEST_F(Pitfall, equal_ids_in_different_files_are_told_apart_by_the_file)
{
    for (const char* const name : {"First", "Second"}) {
        std::string control = Control(name);
        control.replace(0, control.find(","), R"({"id": "shared")");
        writeShape(name, control);
    }
    const char* const modifiers = R"(, "modifiers": [
        {"id": "s-1", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Second.dsf#shared", "parent": "#Doll-1",
         "channel": {"id": "value", "current_value": 0.75}}])";
    ASSERT_TRUE(load("People/Shared.duf", Scene(Instance(), modifiers)));
    const DzNode* const figure = dzScene->getPrimarySelection();
    EXPECT_EQ(ValueIn(*figure, "First"), 0.0);
    EXPECT_EQ(ValueIn(*figure, "Second"), 0.75);
}

TEST_F(Pitfall, of_the_same_morph_in_two_directories_the_first_counts)
{
    writeShape("Up", Morph("Up", 1, 1.0));
    WriteBytes(folder("bought") / doll::shapes / "Up.dsf", ModifierFile(Morph("Up", 1, 50.0)));
    use(folder("bought"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DialIn(*figure, "Up")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*figure, 1), 5, 1, 0);
    EXPECT_TRUE(logged(("/data/Nord/Doll/Doll.dsf: 1 morph file is in more than one content library; the "
                        "first is used instead of " +
                        (folder("bought") / doll::shapes / "Up.dsf").string())
                           .c_str()))
        << log().toStdString();
}

TEST_F(Pitfall, circular_formulas_are_cut_and_reported_once)
{
    writeShape("A", Control("A", Driven("Doll:#A?value", "Doll:#C?value", "1")));
    writeShape("B", Control("B", Driven("Doll:#B?value", "Doll:#A?value", "1")));
    writeShape("C", Control("C", Driven("Doll:#C?value", "Doll:#B?value", "1")));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    for (const char* const turned : {"A", "B", "C", "A"})
        for (const char* const asked : {"C", "A", "B"}) {
            DialIn(*figure, turned)->setDoubleRawValue(ValueIn(*figure, turned) + 0.125);
            EXPECT_TRUE(std::isfinite(ValueIn(*figure, asked)));
        }
    EXPECT_EQ(timesLogged("links form a cycle through "), 1) << log().toStdString();
}

TEST_F(Pitfall, the_factor_stage_has_two_names)
{
    writeShape("In", Control("In"));
    for (const char* const stage : {"mult", "multiply"})
        writeShape(stage,
                   Control(stage, std::string(R"(, "formulas": [{"output": "Doll:#)") + stage +
                                      R"(?value", "stage": ")" + stage +
                                      R"(", "operations": [{"op": "push", "url": "Doll:#In?value"}]}])"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DialIn(*figure, "In")->setDoubleValue(0.5);
    for (const char* const stage : {"mult", "multiply"}) {
        DialIn(*figure, stage)->setDoubleRawValue(3.0);
        EXPECT_EQ(ValueIn(*figure, stage), 1.5) << stage;
    }
}

TEST_F(Pitfall, channels_may_be_truth_values_and_texts)
{
    writeShape("Switch", Control("Switch", "", R"({"id": "value", "type": "bool", "value": true})"));
    writeShape("Note", Control("Note", "", R"({"id": "value", "type": "string", "value": "1.5"})"));
    writeShape("Off", Control("Off", "",
                              R"({"id": "value", "type": "bool", "value": true, "current_value": false})"));
    writeShape("Up", Morph("Up", 1, 1.0, R"(, "formulas": [{"output": "Doll:#Up?value", "stage": "mult",
        "operations": [{"op": "push", "url": "Doll:#Switch?value"}]}])"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(ValueIn(*figure, "Switch"), 1.0);
    EXPECT_EQ(ValueIn(*figure, "Off"), 0.0);
    EXPECT_EQ(DialIn(*figure, "Note"), nullptr);
    DialIn(*figure, "Up")->setDoubleValue(0.5);
    EXPECT_EQ(ValueIn(*figure, "Up"), 0.5);
    DialIn(*figure, "Switch")->setDoubleValue(0.0);
    EXPECT_EQ(ValueIn(*figure, "Up"), 0.0);
}

TEST_F(Pitfall, an_instance_without_channel_has_the_definitions_value)
{
    writeShape("Half", Control("Half", "", R"({"id": "value", "type": "float", "value": 0.5})"));
    writeShape("Both", Control("Both", "",
                               R"({"id": "value", "type": "float", "value": 0.5, "current_value": 0.75})"));
    writeShape("Plain", Control("Plain", "", R"({"id": "value", "type": "float", "value": 0.5})"));
    const char* const modifiers = R"(, "modifiers": [
        {"id": "Half-1", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Half.dsf#Half", "parent": "#Doll-1"},
        {"id": "Plain-1", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Plain.dsf#Plain", "parent": "#Doll-1",
         "channel": {"id": "value", "type": "float", "value": 0.25}}])";
    ASSERT_TRUE(load("People/Half.duf", Scene(Instance(), modifiers)));
    const DzNode* const figure = dzScene->getPrimarySelection();
    EXPECT_EQ(ValueIn(*figure, "Half"), 0.5);
    EXPECT_EQ(ValueIn(*figure, "Both"), 0.75);
    EXPECT_EQ(ValueIn(*figure, "Plain"), 0.25);
    EXPECT_EQ(DialIn(*figure, "Both")->getDoubleDefaultValue(), 0.5);
}

TEST_F(Pitfall, extra_may_be_an_object_or_a_list_in_any_order)
{
    const std::string settings = R"({"type": "skin_settings", "general_map_mode": "Linear"})";
    const std::string other = R"({"type": "studio_modifier_channels", "channels": []})";
    for (const std::string& extra : {settings, "[" + settings + "]", "[" + other + ", " + settings + "]",
                                     "[1, " + settings + ", " + other + "]"}) {
        const dson::Document document =
            read("\"modifier_library\": [{\"id\": \"s\", \"skin\": {\"node\": \"#a\"}, \"extra\": " + extra +
                 "}]");
        ASSERT_EQ(document.skins.size(), 1u);
        EXPECT_FALSE(document.skins[0].binding.dualQuaternion) << extra;
    }
}

TEST_F(Pitfall, an_empty_graft_and_an_empty_rigidity_mean_none)
{
    // The Doll's geometry has both.
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_FALSE(figure->isGraftFollowing());
    ExpectAt(VertexAt(*figure, 7), 5, 30, 0);
}

TEST_F(Pitfall, a_misspelled_key_does_not_harm)
{
    std::string figure = Figure();
    figure.replace(figure.find("\"rigidity\": {}"), 14,
                   R"("rigidity": {"weights": {"count": 1, "values": [[0, 1]]},
        "groups": [{"id": "g", "rotation_mode": "none", "use_tranform_bones_for_scale": true}]})");
    write("data/Nord/Doll/Doll.dsf", File(figure));
    EXPECT_NE(openDoll(), nullptr);
}

TEST_F(Pitfall, packaging_differs_and_the_first_bytes_tell)
{
    const std::string good = Scene(Instance("", R"(, "label": "Packed")"));
    std::string zeroed = dson::Compress(good);
    for (std::size_t i = zeroed.size() - 8; i < zeroed.size(); ++i)
        zeroed[i] = '\0';
    std::string commas = good;
    commas.insert(commas.rfind(']'), " ,\n\t");
    const std::u16string wide = ToUtf16(good);
    const std::string little =
        "\xFF\xFE" + std::string(reinterpret_cast<const char*>(wide.data()), wide.size() * 2);
    for (const std::string& text :
         {good, dson::Compress(good), zeroed, "\xEF\xBB\xBF" + good, little, commas}) {
        dzScene->clear();
        EXPECT_TRUE(load("People/Packed.duf", text)) << text.substr(0, 4) << log().toStdString();
        EXPECT_NE(labelled("Packed"), nullptr);
    }
    EXPECT_TRUE(logged("Packed.duf: has 1 stray comma, left out: line "));
}

TEST_F(Pitfall, companion_files_of_other_systems_are_passed_over)
{
    writeShape("Up", Morph("Up", 1, 1.0));
    write(std::string(doll::shapes) + "._Up.dsf", std::string("\x00\x05\x16\x07 and so on", 14));
    ASSERT_NE(openDoll(), nullptr);
    EXPECT_FALSE(logged("._Up.dsf")) << log().toStdString();
    EXPECT_FALSE(open(_library / doll::shapes / "._Up.dsf"));
    EXPECT_TRUE(logged("._Up.dsf: line 1, column 1 is not valid JSON"));
}

TEST_F(Pitfall, the_id_in_asset_info_may_be_wrong_after_a_copy)
{
    // Every file here says "/x.duf" of itself.
    writeShape("Up", Morph("Up", 1, 1.0));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(FindMorph(*figure, "Up")->getAssetUri().toString(),
              QStringLiteral("/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up"));
}

TEST_F(Pitfall, numbers_have_a_point_whatever_the_locale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    // Where it is installed; the toolkit brings its own.
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    QLocale::setDefault(QLocale(QLocale::German));
    writeShape("Up", Morph("Up", 1, 1.5));
    DzFigure* const figure = openDoll();
    QLocale::setDefault(QLocale::c());
    std::setlocale(LC_ALL, before.c_str());
    ASSERT_NE(figure, nullptr);
    DialIn(*figure, "Up")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*figure, 1), 5, 1.5f, 0);
}

TEST_F(Pitfall, any_json_number_will_do)
{
    writeShape("Up", Control("Up", R"(, "morph": {"vertex_count": 8.0, "deltas": {"values":
        [[1e0, 0, 1.525902e+0, -0], [2.0, 0, 5E-1, 0]]}})",
                             R"({"id": "value", "min": -1, "max": 1e1, "clamped": 1})"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DialIn(*figure, "Up")->setDoubleValue(100.0);
    EXPECT_EQ(ValueIn(*figure, "Up"), 10.0);
    DialIn(*figure, "Up")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*figure, 1), 5, 1.525902f, 0);
    ExpectAt(VertexAt(*figure, 2), 0, 10.5f, 0);
}

TEST_F(Pitfall, centre_points_are_absolute)
{
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    BoneOf(*figure, "hip")->getZRotControl()->setValue(90.0f);
    const DzVec3 hand = BoneOf(*figure, "hand")->getWSPos();
    ExpectAt(hand, -20, 0, 0);
    ExpectAt(VertexAt(*figure, 6), -30, 0, 0);
}

TEST_F(Pitfall, orientations_are_always_xyz_and_rotations_as_their_order_says)
{
    // A parent at y = 100 turned by 90 about Z; a child at (10, 100), oriented by 30 about Z, order YZX.
    const std::string figure = R"("node_library": [
        {"id": "F", "type": "figure", "rotation_order": "XYZ"},
        {"id": "p", "type": "bone", "parent": "#F", "rotation_order": "XYZ", "center_point": [0, 100, 0],
         "rotation": [{"id": "z", "value": 0, "current_value": 90}]},
        {"id": "c", "type": "bone", "parent": "#p", "rotation_order": "YZX", "center_point": [10, 100, 0],
         "orientation": [0, 0, 30], "rotation": [{"id": "x", "current_value": 20}, {"id": "y", "current_value": 30},
         {"id": "z", "current_value": 40}]}])";
    write("data/Nord/F/F.dsf", File(figure, "figure"));
    ASSERT_TRUE(load("People/F.duf", Scene(R"({"id": "F", "url": "/data/Nord/F/F.dsf#F"})")));
    const DzNode* const child = BoneOf(*dzScene->getPrimarySelection(), "c");
    const DzVec3 vertex =
        child->getWSTransform().multVec(DzVec3(20, 100, 5) - child->getOrigin()) + child->getWSPos();
    ExpectAt(child->getWSPos(), 0, 110, 0, 1e-3f);
    ExpectAt(vertex, -7.5512f, 118.1970f, 0.8884f, 1e-3f);
}

TEST_F(Pitfall, bones_of_two_figures_with_equal_ids_stay_with_their_own)
{
    const char* const turned = R"(, "rotation": [{"id": "z", "current_value": 90}])";
    ASSERT_TRUE(load("People/Two.duf", Scene(Instance("", R"(, "label": "A")") + ", " +
                                             Instance("-2", R"(, "label": "B")", turned))));
    ExpectAt(VertexAt(*labelled("A"), 6), 0, 30, 0);
    ExpectAt(VertexAt(*labelled("B"), 6), -10, 20, 0);
}

TEST_F(Pitfall, a_preset_as_the_parent_of_a_morph_is_tolerated)
{
    std::string morph = Morph("Up", 1, 1.0);
    morph.replace(morph.find("/data/Nord/Doll/Doll.dsf"), 24, "/People/Doll.duf");
    writeShape("Up", morph);
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(FindMorph(*figure, "Up"), nullptr);
}

TEST_F(Pitfall, limits_hold_only_where_a_channel_says_that_they_do)
{
    writeShape("Loose", Control("Loose", "", R"({"id": "value", "min": 0, "max": 1})"));
    writeShape("Tight",
               Control("Tight", "", R"({"id": "value", "min": 0, "max": 1, "clamped": true, "value": 3})"));
    writeShape("Default", Control("Default", "", R"({"id": "value", "max": 2, "clamped": true})"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DialIn(*figure, "Loose")->setDoubleValue(2.5);
    EXPECT_EQ(ValueIn(*figure, "Loose"), 2.5);
    EXPECT_EQ(ValueIn(*figure, "Tight"), 1.0);
    DialIn(*figure, "Default")->setDoubleValue(-1.0);
    EXPECT_EQ(ValueIn(*figure, "Default"), 0.0);
    EXPECT_EQ(DialIn(*figure, "Default")->getDoubleMax(), 2.0);
}

TEST_F(Pitfall, hidden_master_switches_count)
{
    writeShape("Master",
               Control("Master", "", R"({"id": "value", "type": "bool", "value": true, "visible": false})"));
    for (const char* const name : {"JCM1", "JCM2"})
        writeShape(name, Morph(name, 1, 1.0,
                               std::string(R"(, "formulas": [
            {"output": "Doll:#)") + name +
                                   R"(?value", "operations": [{"op": "push", "url": "hand:#hand?rotation/z"},
                {"op": "push", "val": 0.01}, {"op": "mult"}]},
            {"output": "Doll:#)" + name +
                                   R"(?value", "stage": "mult", "operations":
                [{"op": "push", "url": "Doll:#Master?value"}]}])"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_TRUE(DialIn(*figure, "Master")->isHidden());
    BoneOf(*figure, "hand")->getZRotControl()->setValue(50.0f);
    EXPECT_NEAR(ValueIn(*figure, "JCM1"), 0.5, 1e-6);
    ExpectAt(VertexAt(*figure, 1), 5, 1, 0);
    DialIn(*figure, "Master")->setDoubleValue(0.0);
    ExpectAt(VertexAt(*figure, 1), 5, 0, 0);
}

TEST_F(Pitfall, parts_of_a_body_are_figures_of_their_own_that_follow_its_dials)
{
    std::string eyes = Figure();
    write("data/Nord/Eyes/Eyes.dsf", File(eyes));
    writeShape("Tall",
               Control("Tall", R"(, "morph": {"vertex_count": 8, "deltas": {"values": [[1, 0, 1, 0]]}})",
                       R"({"id": "value", "auto_follow": true})"));
    std::string follow = Morph("Tall", 3, 2.0);
    follow.replace(follow.find("/data/Nord/Doll/Doll.dsf"), 24, "/data/Nord/Eyes/Eyes.dsf");
    write("data/Nord/Eyes/Morphs/Tall.dsf", ModifierFile(follow));
    ASSERT_TRUE(
        load("People/Whole.duf", Scene(Instance("", R"(, "label": "Body")") + ", " +
                                       Instance("-e", R"(, "label": "Eyes", "conform_target": "#Doll")", "",
                                                "/data/Nord/Eyes/Eyes.dsf"))));
    DzFigure* const body = labelled("Body");
    DzFigure* const part = labelled("Eyes");
    ASSERT_TRUE(body && part);
    DialIn(*body, "Tall")->setDoubleValue(0.5);
    EXPECT_EQ(ValueIn(*part, "Tall"), 0.5);
    ExpectAt(VertexAt(*part, 3), 5, 11, 0);
}

TEST_F(Pitfall, a_huge_list_is_read_without_a_thought)
{
    std::string rows;
    for (int i = 0; i < 200000; ++i)
        rows += (i ? ",[" : "[") + std::to_string(i % 8) + ",0,0.001,0]";
    writeShape("Big",
               Control("Big", R"(, "morph": {"vertex_count": 8, "deltas": {"values": [)" + rows + "]}}"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DialIn(*figure, "Big")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*figure, 1), 5, 0.001f, 0);
}

TEST_F(Pitfall, paths_that_leave_the_content_directories_name_nothing)
{
    WriteBytes(folder("outside.dsf"), File(Figure()));
    for (const char* const path : {"/../outside.dsf", "/data/../../outside.dsf", "/%2E%2E/outside.dsf",
                                   "/data/..\\\\..\\\\..\\\\outside.dsf"}) {
        EXPECT_FALSE(load("People/Climb.duf", Scene(Instance("", "", "", path)))) << path;
        EXPECT_EQ(dzScene->getNumNodes(), 0);
    }
    EXPECT_EQ(timesLogged("Climb.duf: none of its figures could be loaded"), 4);
    WriteBytes(folder("stolen.dsf"), ModifierFile(Morph("Stolen", 1, 1.0)));
    const char* const modifiers = R"(, "modifiers": [{"id": "s", "url": "/data/../../stolen.dsf#Stolen",
        "parent": "#Doll-1", "channel": {"id": "value", "current_value": 1}}])";
    ASSERT_TRUE(load("People/Thief.duf", Scene(Instance(), modifiers)));
    EXPECT_EQ(FindMorph(*dzScene->getPrimarySelection(), "Stolen"), nullptr);
}

TEST_F(Pitfall, counts_from_files_allocate_nothing)
{
    std::string figure = Figure();
    figure.replace(figure.find("\"count\": 8"), 10, "\"count\": 4000000000");
    write("data/Nord/Doll/Doll.dsf", File(figure));
    writeShape("Up", Control("Up", R"(, "morph": {"vertex_count": 8, "deltas": {"count": 1e18, "values":
        [[1, 0, 1, 0], [4294967294, 1, 1, 1]]}})"));
    writeShape("Open", Control("Open", R"(, "morph": {"vertex_count": -1, "deltas": {"values":
        [[4294967294, 1, 1, 1]]}})"));
    DzFigure* const loaded = openDoll();
    ASSERT_NE(loaded, nullptr);
    DialIn(*loaded, "Up")->setDoubleValue(1.0);
    DialIn(*loaded, "Open")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*loaded, 1), 5, 1, 0);
}

TEST_F(Pitfall, a_file_that_was_renamed_without_what_is_in_it_is_known_by_its_only_control)
{
    writeShape("New Name", Control("OldName"));
    const char* const modifiers = R"(, "modifiers": [
        {"id": "n", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/New%20Name.dsf#NewName", "parent": "#Doll-1",
         "channel": {"id": "value", "current_value": 0.5}},
        {"id": "c", "url": "#oldname", "parent": "#Doll-1", "channel": {"id": "value", "current_value": 0.75}},
        {"id": "s", "url": "/data/Nord/Doll/Doll.dsf#Skin", "parent": "#Doll-1"}])";
    ASSERT_TRUE(load("People/Renamed.duf", Scene(Instance(), modifiers)));
    EXPECT_EQ(ValueIn(*dzScene->getPrimarySelection(), "OldName"), 0.75);
    EXPECT_EQ(DialIn(*dzScene->getPrimarySelection(), "NewName"), nullptr);
}
