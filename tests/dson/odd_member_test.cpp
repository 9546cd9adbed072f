// Members of other types than they should be of, and what is told of them.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "tests/dson/odd_document.h"

namespace {

class OddMember : public OddDocument {
protected:
    dson::Document modifier(const std::string& members) const
    {
        return read(R"("modifier_library": [{"id": "m", )" + members + "}]");
    }
};

} // namespace

TEST_F(OddMember, that_should_be_a_text_counts_for_nothing_and_is_told_once)
{
    const dson::Document document = modifier(R"("parent": [1], "group": [[]], "label": {"en": "Nose"})");
    EXPECT_EQ(document.modifiers.at(0).parent, "");
    EXPECT_EQ(document.modifiers.at(0).group, "/");
    EXPECT_EQ(told(document), "m: has a member group that is no text and counts for nothing\n"
                              "m: has a member label that is no text and counts for nothing\n"
                              "m: has a member parent that is no text and counts for nothing");
}

TEST_F(OddMember, counts_once_however_often_it_is_looked_at)
{
    EXPECT_EQ(told(read(R"("modifier_library": [{"id": 5, "name": "n", "formulas": []}])")),
              "n: has a member id that is no text and counts for nothing");
}

TEST_F(OddMember, of_many_parts_is_told_in_one_line)
{
    EXPECT_EQ(
        told(read(R"("node_library": [{"id": "a", "label": 1}, {"id": "b", "label": [], "name": "b"}])")),
        "2 members label are no texts and count for nothing, such as of a");
    EXPECT_EQ(
        told(read(R"("scene": {"nodes": [{"id": "a", "url": 5}], "modifiers": [{"id": "m", "url": 5}]})")),
        "2 members url are no texts and count for nothing, such as of a");
}

TEST_F(OddMember, that_should_be_an_object_counts_for_nothing)
{
    for (const char* const odd : {"-1", "\"x\"", "[1]", "true"}) {
        const dson::Document document =
            modifier(std::string(R"("morph": )") + odd + R"(, "channel": )" + odd);
        EXPECT_FALSE(document.modifiers.at(0).morph) << odd;
        EXPECT_FALSE(document.modifiers.at(0).hasChannel) << odd;
        EXPECT_EQ(told(document), "m: has a member channel that is no object and counts for nothing\n"
                                  "m: has a member morph that is no object and counts for nothing")
            << odd;
    }
}

TEST_F(OddMember, that_should_be_true_or_false_is_read_from_words_or_counts_for_nothing)
{
    const auto clamped = [this](const char* value) {
        return modifier(std::string(R"("channel": {"id": "value", "clamped": )") + value + "}");
    };
    EXPECT_FALSE(clamped("[null]").modifiers.at(0).channel.clamped);
    EXPECT_EQ(told(clamped("[null]")),
              "m: has a member clamped that is neither true nor false and counts for nothing");
    EXPECT_TRUE(clamped("\"Yes\"").modifiers.at(0).channel.clamped);
    EXPECT_EQ(told(clamped("\"Yes\"")),
              "m: has a member clamped that is a word for true or false and read as that");
    EXPECT_TRUE(clamped("1").modifiers.at(0).channel.clamped);
    EXPECT_EQ(told(clamped("1")), "");
}

TEST_F(OddMember, that_limits_a_number_is_told_unless_the_values_are_no_numbers)
{
    const auto limited = [this](const char* type, const char* min) {
        return modifier(std::string(R"("channel": {"id": "value", "type": ")") + type + R"(", "min": )" +
                        min + R"(, "max": 1})");
    };
    EXPECT_EQ(limited("float", "\"low\"").modifiers.at(0).channel.min, std::nullopt);
    EXPECT_EQ(told(limited("float", "\"low\"")),
              "m: has a member min that is no number that can be used and counts for nothing");
    EXPECT_EQ(told(limited("float_color", "[0, 0, 0]")), "");
}

TEST_F(OddMember, that_places_a_joint_names_a_value_for_each_axis)
{
    const auto placed = [this](const char* center) {
        return read(std::string(R"("node_library": [{"id": "hip", "type": "bone", "center_point": )") +
                    center + "}]");
    };
    const char* const odd =
        "hip: has a member center_point that does not give one value for each of x, y and z";
    EXPECT_EQ(placed("[1]").nodes.at(0).centerPoint, (std::array<double, 3>{1, 0, 0}));
    for (const char* const center : {"[1]", "[1, 2]", "[1, 2, 3, 4]", R"([{"id": "w", "value": 2}])"})
        EXPECT_EQ(told(placed(center)), odd) << center;
    for (const char* const center : {"[1, 2, 3]", "[]", R"([{"id": "y", "value": 2}])", "null"})
        EXPECT_EQ(told(placed(center)), "") << center;
}

TEST_F(OddMember, of_a_joint_is_told_with_the_joint_s_id)
{
    const dson::Document document = modifier(R"("skin": {"node": "#F", "geometry": "#g", "joints": [
        {"id": "hip", "node": [1], "node_weights": {"values": [[0, 1]]}}]})");
    EXPECT_EQ(document.skins.at(0).binding.joints.at(0).node, "hip");
    EXPECT_EQ(told(document), "hip: has a member node that is no text and counts for nothing");
}

TEST_F(OddMember, within_a_list_of_texts_leaves_the_others_at_their_places)
{
    const dson::Document document = modifier(R"("channel": {"id": "value", "type": "enum", "value": 2,
        "enum_values": ["a", {"b": 1}, "c"]})");
    EXPECT_EQ(document.modifiers.at(0).channel.enumValues, (std::vector<std::string>{"a", "", "c"}));
    EXPECT_EQ(told(document),
              "m: has a member enum_values that lists something else than texts, which counts for nothing");
}

TEST_F(OddMember, that_would_be_a_dial_s_present_value_gives_way_to_its_usual_one_in_a_line)
{
    const dson::Document document = read(R"("scene": {"modifiers": [{"id": "m", "url": "#m", "channel":
        {"id": "value", "type": "float", "current_value": 1e39, "value": 0.5}}]})");
    EXPECT_EQ(document.modifierInstances.at(0).value, 0.5);
    EXPECT_EQ(told(document),
              "m: has a member current_value that is no number that can be used and counts for nothing");
}

TEST_F(OddMember, that_does_not_fit_the_others_of_its_channel_is_told)
{
    const auto channel = [this](const std::string& members) {
        return told(modifier(R"("channel": {"id": "value", )" + members + "}"));
    };
    EXPECT_EQ(channel(R"("type": "float", "min": 2, "max": -1)"),
              "m: has a member min that is above the max and changes places with it");
    const char* const held = "m: has a member value that is beyond the limits, which hold it";
    EXPECT_EQ(channel(R"("type": "float", "min": 0, "max": 1, "clamped": true, "value": 5)"), held);
    EXPECT_EQ(channel(R"("type": "float", "min": 0, "clamped": true, "value": -1)"), held);
    EXPECT_EQ(channel(R"("type": "enum", "enum_values": ["a", "b"], "value": 2)"), held);
    EXPECT_EQ(
        channel(R"("type": "float", "min": 0, "max": 1, "clamped": true, "value": 1, "current_value": 1.5)"),
        "m: has a member current_value that is beyond the limits, which hold it");
    const char* const rounded =
        "m: has a member value that is no whole number that there is room for and gets the nearest";
    EXPECT_EQ(channel(R"("type": "int", "value": 1.5)"), rounded);
    EXPECT_EQ(channel(R"("type": "int", "value": 1e30)"), rounded);
}

TEST_F(OddMember, is_none_where_a_channel_needs_no_limits_or_keeps_within_them)
{
    for (const char* const members :
         {R"("type": "float", "min": 0, "max": 1, "value": 5)",
          R"("type": "float", "min": 0, "max": 1, "clamped": true, "value": 1)",
          R"("type": "float", "clamped": true, "value": 5)", R"("type": "int", "value": 3.0)",
          R"("type": "bool", "min": 1, "max": 0, "value": true)", R"("type": "enum", "value": 7)",
          R"("type": "color", "min": 1, "max": 0, "clamped": true, "value": [2, 0, 0])"})
        EXPECT_EQ(told(modifier(std::string(R"("channel": {"id": "value", )") + members + "}")), "")
            << members;
}

TEST_F(OddMember, of_an_instance_s_limits_is_told)
{
    EXPECT_EQ(told(read(R"("scene": {"nodes": [{"id": "hip", "rotation": [
                  {"id": "x", "current_value": 0, "min": 9, "max": 1}]}]})")),
              "hip: has a member min that is above the max and changes places with it");
}

TEST_F(OddMember, of_formulas_is_told)
{
    const auto spline = [this](const std::string& knots, const std::string& count) {
        return told(modifier(R"("formulas": [{"output": "#hip?rotation/x", "operations": [
            {"op": "push", "url": "#m?value"}, )" +
                             knots + R"(, {"op": "push", "val": )" + count +
                             R"(}, {"op": "spline_tcb"}]}])"));
    };
    const std::string two = R"({"op": "push", "val": [0, 0, 0, 0, 0]}, {"op": "push", "val": [1, 2]})";
    EXPECT_EQ(spline(two, "2"), "");
    for (const char* const count : {"99", "-1", "1.5"})
        EXPECT_EQ(spline(two, count),
                  "m: 1 formula counts other knots than it has; those that it has are used");
    EXPECT_EQ(spline(R"({"op": "push", "val": [0]}, {"op": "push", "val": [1, 2, 0, 0, 0, 7]})", "2"),
              "m: 2 knots of formulas are not two to five numbers; what lacks is 0, the rest left out");
}

TEST_F(OddMember, is_a_node_s_type_that_there_is_not)
{
    const dson::Document document =
        read(R"("node_library": [{"id": "A", "type": "x"}, {"id": "B", "type": "light"}])");
    EXPECT_EQ(document.nodes.size(), 2u);
    EXPECT_EQ(told(document), "A: has the unknown type \"x\", read as node");
}

TEST_F(OddMember, is_none_of_a_modifier_that_nothing_can_name)
{
    EXPECT_EQ(told(read(R"("modifier_library": [{"channel": {"id": "value"}}, {"name": "B"}])")),
              "1 modifier has neither id nor name and is left out");
}

TEST_F(OddMember, is_a_vertex_or_a_delta_farther_out_than_anything_real)
{
    EXPECT_EQ(
        told(read(
            R"("geometry_library": [{"id": "g", "vertices": {"values": [[0, 0, 0], [0, -2e9, 0], [3e9, 0, 0]]}}])")),
        "g: 2 vertices lie farther than 1e+09 cm, which is nothing real: the first is 1");
    const char* const near = R"("morph": {"vertex_count": 9, "deltas": {"values": [[7, 1e9, 0, 0]]}})";
    const char* const far = R"("morph": {"vertex_count": 9, "deltas": {"values": [[7, 1e20, 0, 0]]}})";
    EXPECT_EQ(told(modifier(near)), "");
    EXPECT_EQ(told(modifier(far)),
              "m: 1 vertex is moved farther than 1e+09 cm, which is nothing real: the first is 7");
}

TEST_F(OddMember, is_the_version_which_is_told_and_keeps_no_file_from_being_read)
{
    const auto versioned = [this](const std::string& version) {
        return readText("{" + version + R"("node_library": [{"id": "A"}]})");
    };
    const std::string none = "has no file_version and is read as if it had the usual one";
    for (const auto& [version, line] : std::vector<std::pair<std::string, std::string>>{
             {"", none},
             {R"("file_version": null, )", none},
             {R"("file_version": "", )", none},
             {R"("file_version": "x", )",
              "has the file_version \"x\", which is none, and is read as if it had the usual one"},
             {R"("file_version": 0.6, )", "has a member file_version that is no text and counts for nothing"},
             {R"("file_version": "1.0.0.0", )", "has the newer format version 1.0.0.0"},
             {R"("file_version": "0.6.1.0", )", ""}}) {
        EXPECT_EQ(versioned(version).nodes.size(), 1u) << version;
        EXPECT_EQ(told(versioned(version)), line) << version;
    }
}

TEST_F(OddMember, is_the_version_of_something_else_which_is_refused)
{
    try {
        readText(R"({"name": "some-package", "version": "1.2"})");
        FAIL() << "read as a DSON file";
    } catch (const base::FormatError& error) {
        EXPECT_NE(std::string(error.what()).find("odd.duf: is not a DSON file: it has no file_version"),
                  std::string::npos)
            << error.what();
    }
}
