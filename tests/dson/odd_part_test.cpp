// Nodes and geometries whose members are of types that nobody expects.
// SPDX-License-Identifier: MIT

#include "tests/dson/odd_document.h"

namespace {

class OddPart : public OddDocument {
protected:
    dson::Document defined(const std::string& member, const std::string& more = "") const
    {
        return read(R"("node_library": [{"id": "A", "type": "node", )" + member + "}" + more + "]");
    }
    dson::Document placed(const std::string& member, const std::string& more = "") const
    {
        return read(R"("scene": {"nodes": [{"id": "A", )" + member + "}" + more + "]}");
    }
};

} // namespace

TEST_F(OddPart, has_a_rotation_order_that_there_is_not)
{
    const dson::Document definition = defined(R"("rotation_order": "XXY")");
    EXPECT_EQ(definition.nodes.at(0).rotationOrder, "XYZ");
    EXPECT_EQ(told(definition), R"(A: has the unknown rotation order "XXY"; XYZ is used)");
    const dson::Document instance = placed(R"("rotation_order": 7)");
    EXPECT_EQ(instance.nodeInstances.at(0).rotationOrder, "");
    EXPECT_EQ(told(instance), "A: has the unknown rotation order 7; its definition's is used");
    EXPECT_EQ(told(placed(R"("rotation_order": ["X"])", R"(, {"id": "B", "rotation_order": ["Y"]})")),
              "2 nodes have the unknown rotation order that is a list; its definition's is used, such as A");
}

TEST_F(OddPart, has_a_rotation_order_in_another_letter_case)
{
    const dson::Document definition = defined(R"("rotation_order": "zxy")");
    EXPECT_EQ(definition.nodes.at(0).rotationOrder, "ZXY");
    EXPECT_EQ(told(definition), R"(A: has the rotation order "zxy", read as ZXY)");
    EXPECT_EQ(told(defined(R"("rotation_order": "ZXY")")), "");
}

TEST_F(OddPart, says_in_words_whether_it_inherits_scales)
{
    for (const char* const no : {"no", "False", "OFF"}) {
        const std::string member = std::string(R"("inherits_scale": ")") + no + "\"";
        EXPECT_FALSE(defined(member).nodes.at(0).inheritsScale) << no;
        EXPECT_EQ(placed(member).nodeInstances.at(0).inheritsScale, false) << no;
        EXPECT_EQ(told(placed(member)),
                  std::string("A: has an inherits_scale \"") + no + "\", read as false");
    }
    EXPECT_EQ(placed(R"("inherits_scale": "yes")").nodeInstances.at(0).inheritsScale, true);
    EXPECT_EQ(told(placed(R"("inherits_scale": false)")), "");
    EXPECT_EQ(told(placed(R"("inherits_scale": "1")")),
              R"(has 1 number as texts, read as what they say, such as "1")");
}

TEST_F(OddPart, that_does_not_say_clearly_whether_it_inherits_scales_says_nothing)
{
    const char* const maybe = R"("inherits_scale": "maybe")";
    EXPECT_EQ(placed(maybe).nodeInstances.at(0).inheritsScale, std::nullopt);
    EXPECT_EQ(told(placed(maybe)), R"(A: has an inherits_scale "maybe", which is neither true nor false and )"
                                   "counts for nothing");
    const char* const chain = R"(, {"id": "b", "type": "bone", "parent": "#A"},
        {"id": "c", "type": "bone", "parent": "#b", "inherits_scale": [1]})";
    EXPECT_FALSE(defined(R"("name": "A")", chain).nodes.at(2).inheritsScale) << "as bones below bones do";
}

TEST_F(OddPart, hangs_on_what_is_no_reference)
{
    const dson::Document definition = defined(R"("parent": 5)");
    EXPECT_EQ(definition.nodes.at(0).parent, "");
    EXPECT_EQ(told(definition), "A: has a parent 5, which is no reference and counts for nothing");
    EXPECT_EQ(told(placed(R"("parent": {"id": "B"})")),
              "A: has a parent that is an object, which is no reference and counts for nothing");
    EXPECT_EQ(told(placed(R"("parent": null, "parent_in_place": true)")),
              "A: has a parent_in_place true, which is no reference and counts for nothing");
}

TEST_F(OddPart, has_a_scale_that_is_a_list)
{
    EXPECT_NE(told(defined(R"("general_scale": [1])")).find("has 1 value that is no number, not taken over"),
              std::string::npos);
    EXPECT_NE(told(placed(R"("general_scale": [1])")).find("has 1 value that is no number, not taken over"),
              std::string::npos);
}

TEST_F(OddPart, has_geometries_where_they_are_only_defined)
{
    EXPECT_EQ(told(defined(R"("geometries": [{"id": "g", "url": "#g"}])")),
              "A: has geometries in the definition, which have no effect there");
    EXPECT_EQ(told(defined(R"("geometries": [])")), "");
}

TEST_F(OddPart, is_a_geometry_of_no_type_or_level)
{
    EXPECT_EQ(told(read(R"("geometry_library": [{"id": "g", "type": 7}, {"id": "h", "type": 7},
        {"id": "i", "type": "polygon_mesh"}])")),
              "2 geometries have the unknown type 7, read as polygon_mesh, such as g");
    const dson::Document instance =
        placed(R"("geometries": [{"id": "g", "type": "nurbs", "current_subdivision_level": "high"}])");
    EXPECT_EQ(instance.nodeInstances.at(0).geometries.at(0).subdivisionLevel, std::nullopt);
    EXPECT_EQ(told(instance),
              "g: has a current_subdivision_level \"high\", which is no number; its definition's is used\n"
              "g: has the unknown type \"nurbs\", read as polygon_mesh");
    EXPECT_EQ(told(read(R"("geometry_library": [{"id": "g", "extra": [{"type": "studio_geometry_channels",
        "channels": [{"channel": {"id": "SubDIALevel", "type": "int", "value": "high"}}]}]}])")),
              "g: has 1 value that is no number, not taken over, such as of SubDIALevel");
}

TEST_F(OddPart, without_an_id_ends_no_line_in_nothing)
{
    EXPECT_EQ(told(read(R"("geometry_library": [{"type": 7}, {"type": 7}])")),
              "2 geometries have the unknown type 7, read as polygon_mesh");
    EXPECT_EQ(told(read(R"("modifier_library": [{"id": "m", "channel": {"value": []}}])")),
              "m: has 1 value that is no number, not taken over");
}

TEST_F(OddPart, with_a_very_long_value_is_told_in_a_short_line)
{
    std::string order;
    for (int i = 0; i < 1000; ++i)
        order += "\u00e4";
    const std::string line = told(defined(R"("rotation_order": ")" + order + "\""));
    EXPECT_LT(line.size(), 120u);
    const std::size_t end = line.find("...");
    ASSERT_NE(end, std::string::npos) << line;
    EXPECT_EQ(line.substr(end - 2, 2), "\u00e4") << "characters stay whole";
}
